#include "internet/control_api.h"

#include <arpa/inet.h>

#include <cstdio>

#include "internet/web_text.h"

namespace tavora {

namespace {

// "HH:MM" or "HH:MM:SS" made "hh:mm:ss".
std::optional<std::string> clock_time(const std::string& text) {
    if (text.size() != 5 && text.size() != 8) return std::nullopt;
    if (text[2] != ':' || (text.size() == 8 && text[5] != ':')) return std::nullopt;
    const auto h = whole_number(text.substr(0, 2), 0, 23);
    const auto m = whole_number(text.substr(3, 2), 0, 59);
    const auto s =
        text.size() == 8 ? whole_number(text.substr(6, 2), 0, 59) : std::optional<int>(0);
    if (!h || !m || !s) return std::nullopt;
    char out[16];
    std::snprintf(out, sizeof out, "%02d:%02d:%02d", *h, *m, *s);
    return std::string(out);
}

bool calendar_date(const std::string& text) {
    if (text.size() != 10 || text[4] != '-' || text[7] != '-') return false;
    const auto y = whole_number(text.substr(0, 4), 1900, 9999);
    const auto m = whole_number(text.substr(5, 2), 1, 12);
    const auto d = whole_number(text.substr(8, 2), 1, 31);
    if (!y || !m || !d) return false;
    static constexpr int kDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (*y % 4 == 0 && *y % 100 != 0) || *y % 400 == 0;
    return *d <= kDays[*m - 1] && (*m != 2 || *d <= 28 || leap);
}

std::optional<bool> switch_of(const std::string& text) {
    if (text == "true" || text == "1" || text == "yes" || text == "on") return true;
    if (text == "false" || text == "0" || text == "no" || text == "off") return false;
    return std::nullopt;
}

const char* word(bool on) {
    return on ? "True" : "False";
}

}  // namespace

bool control_allowed(const std::string& remote, const std::string& bound) {
    in_addr address{};
    if (inet_pton(AF_INET, remote.c_str(), &address) != 1) return false;
    if ((ntohl(address.s_addr) >> 24) == 127) return true;
    return bound != "0.0.0.0" && remote == bound;
}

bool token_matches(const std::string& given, const std::string& token) {
    if (token.empty()) return false;
    unsigned char differ = given.size() == token.size() ? 0 : 1;
    for (std::size_t i = 0; i < token.size(); ++i)
        differ |= static_cast<unsigned char>(token[i] ^ (i < given.size() ? given[i] : 0));
    return differ == 0;
}

BreakParse parse_break_order(const std::multimap<std::string, std::string>& fields) {
    BreakParse result;
    BreakOrder order;
    const auto field = [&fields](const char* name) -> std::optional<std::string> {
        const auto found = fields.find(name);
        if (found == fields.end()) return std::nullopt;
        return found->second;
    };
    for (const auto& [name, target] : {std::pair{"start", &order.start}, {"end", &order.end}}) {
        const auto text = field(name);
        const auto time = text ? clock_time(*text) : std::nullopt;
        if (!time) {
            result.error = std::string(name) + " needs a time of day as HH:MM or HH:MM:SS";
            return result;
        }
        *target = *time;
    }
    if (const auto date = field("date")) {
        if (!calendar_date(*date)) {
            result.error = "date needs a day as YYYY-MM-DD";
            return result;
        }
        order.date = *date;
    }
    const std::pair<const char*, bool*> switches[] = {
        {"exit1", &order.exit1}, {"exit2", &order.exit2}, {"block_party", &order.block_party},
        {"cd", &order.cd},       {"skip", &order.skip},   {"play", &order.play}};
    for (const auto& [name, target] : switches) {
        const auto text = field(name);
        if (!text) continue;
        const auto on = switch_of(*text);
        if (!on) {
            result.error = std::string(name) + " needs true or false";
            return result;
        }
        *target = *on;
    }
    if (const auto songs = field("block_songs")) {
        const auto n = whole_number(*songs, 0, 99);
        if (!n) {
            result.error = "block_songs needs a number from 0 to 99";
            return result;
        }
        order.block_songs = *n;
    }
    result.order = order;
    return result;
}

std::string break_order_file(const BreakOrder& o) {
    // Labels are the file's own words for the next value; the reader drops
    // them. Times and dates go between two marks, which the reader strips.
    const std::string items[] = {"Exit1",
                                 word(o.exit1),
                                 "Exit2",
                                 word(o.exit2),
                                 "Spare",
                                 "0",
                                 "0",
                                 "Start",
                                 "#" + o.start + "#",
                                 "End",
                                 "#" + o.end + "#",
                                 "0",
                                 "#" + o.date + "#",
                                 "BlockParty",
                                 word(o.block_party),
                                 std::to_string(o.block_songs),
                                 "CD",
                                 word(o.cd),
                                 "Skip",
                                 word(o.skip),
                                 "Spare",
                                 "0",
                                 "Play",
                                 word(o.play)};
    std::string text;
    for (const std::string& item : items)
        text += item + "\r\n";
    return text;
}

}  // namespace tavora
