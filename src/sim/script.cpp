#include "sim/script.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace tavora {

namespace {

std::string_view next_word(std::string_view& rest) {
    while (!rest.empty() && rest.front() == ' ')
        rest.remove_prefix(1);
    const std::size_t end = std::min(rest.find(' '), rest.size());
    std::string_view word = rest.substr(0, end);
    rest.remove_prefix(end);
    while (!rest.empty() && rest.front() == ' ')
        rest.remove_prefix(1);
    return word;
}

std::optional<int> whole(std::string_view digits) {
    int value = 0;
    auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size() || digits.empty()) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::int64_t> clock_ms(std::string_view text) {
    if (text.size() != 8 || text[2] != ':' || text[5] != ':') return std::nullopt;
    auto h = whole(text.substr(0, 2)), m = whole(text.substr(3, 2)), s = whole(text.substr(6, 2));
    if (!h || !m || !s || *m > 59 || *s > 59) return std::nullopt;
    return ((*h * 60LL + *m) * 60 + *s) * 1000;
}

// "Form.Control" or "Form.Control(3)".
bool read_target(std::string_view target, ScriptAction& action) {
    const std::size_t dot = target.find('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == target.size()) return false;
    action.form = target.substr(0, dot);
    std::string_view control = target.substr(dot + 1);
    if (const std::size_t open = control.find('('); open != std::string_view::npos) {
        if (control.back() != ')' || open == 0) return false;
        auto index = whole(control.substr(open + 1, control.size() - open - 2));
        if (!index) return false;
        action.index = *index;
        control = control.substr(0, open);
    }
    action.control = control;
    return true;
}

std::string parse_line(std::string_view line, ScriptAction& action) {
    std::string_view rest = line;
    auto at = clock_ms(next_word(rest));
    if (!at) return "the time must be HH:MM:SS";
    action.at_ms = *at;
    const std::string_view verb = next_word(rest);
    if (verb == "click") {
        action.kind = ScriptAction::Kind::Click;
        if (!read_target(next_word(rest), action) || !rest.empty()) {
            return "click needs FORM.CONTROL or FORM.CONTROL(INDEX)";
        }
    } else if (verb == "close") {
        action.kind = ScriptAction::Kind::Close;
        action.form = next_word(rest);
        if (action.form.empty() || !rest.empty()) return "close needs FORM";
    } else if (verb == "set") {
        action.kind = ScriptAction::Kind::Set;
        if (!read_target(next_word(rest), action)) return "set needs FORM.CONTROL VALUE";
        action.text = rest;
    } else if (verb == "answer") {
        action.kind = ScriptAction::Kind::Answer;
        action.text = rest;
    } else if (verb == "append" || verb == "write") {
        action.kind = verb == "append" ? ScriptAction::Kind::Append : ScriptAction::Kind::Write;
        action.path = next_word(rest);
        if (action.path.empty()) return std::string(verb) + " needs PATH TEXT";
        action.text = rest;
    } else if (verb == "cd") {
        const std::string_view what = next_word(rest);
        if (what == "eject" && rest.empty()) {
            action.kind = ScriptAction::Kind::CdEject;
        } else if (what == "insert" && !rest.empty()) {
            action.kind = ScriptAction::Kind::CdInsert;
            action.path = rest;
        } else {
            return "cd needs insert FOLDER or eject";
        }
    } else {
        return "unknown action \"" + std::string(verb) + "\"";
    }
    return {};
}

}  // namespace

Script parse_script(std::string_view text) {
    Script script;
    int number = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        ++number;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        const std::size_t first = line.find_first_not_of(' ');
        if (first == std::string_view::npos || line[first] == '#') continue;
        ScriptAction action;
        action.line = number;
        if (std::string why = parse_line(line.substr(first), action); !why.empty()) {
            script.actions.clear();
            script.error = "line " + std::to_string(number) + ": " + why;
            return script;
        }
        script.actions.push_back(std::move(action));
    }
    std::stable_sort(
        script.actions.begin(), script.actions.end(),
        [](const ScriptAction& a, const ScriptAction& b) { return a.at_ms < b.at_ms; });
    return script;
}

std::optional<std::int64_t> parse_duration(std::string_view text) {
    if (text.size() < 2) return std::nullopt;
    auto count = whole(text.substr(0, text.size() - 1));
    if (!count || *count <= 0) return std::nullopt;
    switch (text.back()) {
        case 's':
            return *count * 1000LL;
        case 'm':
            return *count * 60'000LL;
        case 'h':
            return *count * 3'600'000LL;
        case 'd':
            return *count * 86'400'000LL;
        default:
            return std::nullopt;
    }
}

}  // namespace tavora
