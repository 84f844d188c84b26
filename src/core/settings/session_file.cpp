#include "core/settings/session_file.h"

#include <functional>
#include <optional>
#include <string>

#include "runtime/convert.h"
#include "runtime/strings.h"
#include "runtime/text_file.h"

namespace tavora {

namespace {

std::string flag_text(bool on) {
    return on ? "1" : "0";
}
std::string bool_text(bool on) {
    return on ? "True" : "False";
}

// A read of one item into a numeric variable: an empty item reads as 0,
// text that isn't a number is a read error like the end of the file.
std::optional<double> read_number(TextReader& reader) {
    ReadResult item = reader.read_item();
    if (!item.ok()) return std::nullopt;
    const std::string text = Trim(item.text);
    if (text.empty()) return 0.0;
    if (!IsNumeric(text)) return std::nullopt;
    return Val(text);
}

// A read into a boolean; text that is no boolean is a failure.
std::optional<bool> read_bool(TextReader& reader) {
    ReadResult item = reader.read_item();
    return item.ok() ? parse_boolean(item.text) : std::nullopt;
}

}  // namespace

bool BP_Ini(const Station& s, const std::filesystem::path& file) {
    TextWriter out(file, TextWriter::Mode::Create);
    const std::string lines[] = {
        flag_text(s.BP_On),        flag_text(s.BP_Tuesday),    number_text(s.BP_Block),
        number_text(s.BP_Chars),   bool_text(s.Vid_On),        bool_text(s.Ply7_View),
        bool_text(s.CD_On),        number_text(s.Ply7_MixOut), number_text(s.Antiskip),
        bool_text(s.Marq_On),      number_text(s.Log_Due),     number_text(s.Wnd_Left),
        number_text(s.Wnd_Height), number_text(s.Wnd_Width),   number_text(s.Wnd_Top),
        number_text(s.Wnd_State),  number_text(s.Snip_Max),    number_text(s.Least_Every),
    };
    for (const std::string& line : lines)
        out.write_line(line);
    return out.close();
}

bool Read_BP(Station& s, const std::filesystem::path& file) {
    TextReader in(file);
    if (!in.is_open()) return false;

    // Lines 1 and 2: a failure is passed over and the next line is tried.
    if (auto v = read_number(in)) s.BP_On = (*v == 1);
    if (auto v = read_number(in)) s.BP_Tuesday = (*v == 1);

    // From line 3 on the first failure ends the reading.
    auto whole = [&](int& target) {
        auto v = read_number(in);
        if (v) target = CInt(*v);
        return v.has_value();
    };
    auto number = [&](double& target) {
        auto v = read_number(in);
        if (v) target = *v;
        return v.has_value();
    };
    auto flag = [&](bool& target) {
        auto v = read_bool(in);
        if (v) target = *v;
        return v.has_value();
    };
    bool dropped = true;
    const std::function<bool()> lines[] = {
        [&] { return whole(s.BP_Block); },    [&] { return whole(s.BP_Chars); },
        [&] { return flag(s.Vid_On); },       [&] { return flag(dropped); },
        [&] { return flag(s.CD_On); },        [&] { return whole(s.Ply7_MixOut); },
        [&] { return whole(s.Antiskip); },    [&] { return flag(s.Marq_On); },
        [&] { return whole(s.Log_Due); },     [&] { return number(s.Wnd_Left); },
        [&] { return number(s.Wnd_Height); }, [&] { return number(s.Wnd_Width); },
        [&] { return number(s.Wnd_Top); },    [&] { return whole(s.Wnd_State); },
        [&] { return whole(s.Snip_Max); },    [&] { return whole(s.Least_Every); },
    };
    for (const auto& line : lines) {
        if (!line()) break;
    }
    // The stored view is dropped on purpose: the button always starts as "M7".
    s.Ply7_View = true;
    return true;
}

}  // namespace tavora
