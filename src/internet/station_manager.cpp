#include "internet/station_manager.h"

#include <optional>

#include "platform/dialogs.h"
#include "platform/file_ops.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "runtime/convert.h"
#include "runtime/date_text.h"
#include "runtime/dates.h"
#include "runtime/strings.h"
#include "runtime/text_file.h"

namespace tavora {

namespace {

// What each of the 24 items of a break order goes into. Labels are the
// file's own words for the next value; the unread items nothing uses.
enum class Item { Drop, Exit1, Exit2, Start, End, Date, BP, BPSongs, CD, Skip, Play };
constexpr Item kOrder[] = {
    Item::Drop, Item::Exit1, Item::Drop,  Item::Exit2,   Item::Drop, Item::Drop,
    Item::Drop, Item::Drop,  Item::Start, Item::Drop,    Item::End,  Item::Drop,
    Item::Date, Item::Drop,  Item::BP,    Item::BPSongs, Item::Drop, Item::CD,
    Item::Drop, Item::Skip,  Item::Drop,  Item::Drop,    Item::Drop, Item::Play,
};

// The station manager writes times and dates between two marks.
std::optional<double> read_date(const std::string& item, const char* form) {
    if (Len(item) < 2) return std::nullopt;
    return parse_date_text(Format(Mid(item, 2, Len(item) - 2), form));
}

// False when the item can't be read as its variable: the reading ends.
bool take(Station& s, Item kind, const std::string& item) {
    if (kind == Item::Drop) return true;
    if (kind == Item::Start || kind == Item::End) {
        const auto time = read_date(item, "hh:mm:ss AMPM");
        if (!time) return false;
        (kind == Item::Start ? s.Break_Start : s.Break_End) = TimeValueOf(*time);
        return true;
    }
    if (kind == Item::Date) {
        const auto date = read_date(item, "short date");
        if (!date) return false;
        s.Break_Date = DateValueOf(*date);
        return true;
    }
    if (kind == Item::BPSongs) {
        if (!IsNumeric(item)) return false;
        s.Brk_BPSongs = CInt(Val(item));
        return true;
    }
    const auto flag = parse_boolean(item);
    if (!flag) return false;
    switch (kind) {
        case Item::Exit1:
            s.Brk_Exit1 = *flag;
            break;
        case Item::Exit2:
            s.Brk_Exit2 = *flag;
            break;
        case Item::BP:
            s.Brk_BP = *flag;
            break;
        case Item::CD:
            s.Brk_CD = *flag;
            break;
        case Item::Skip:
            s.Brk_Skip = *flag;
            break;
        default:
            s.Brk_Play = *flag;
            break;
    }
    return true;
}

}  // namespace

void StationManagerLink::Stn_Mgr_Click() {
    if (const std::string page = web_page ? web_page() : std::string(); !page.empty()) {
        if (!services_.launcher.Start("xdg-open " + page))
            services_.dialogs.MsgBox("Open " + page + " in your web browser.");
        return;
    }
    services_.dialogs.MsgBox(
        "Warning! You must start broadcasting prior to running the Tavora Players On some PC's "
        "for correct operation");
    const std::string program = services_.paths.ToNative("c:\\tavora\\tqxst.exe").path;
    if (!services_.launcher.Start("\"" + program + "\"")) {
        services_.dialogs.MsgBox(
            "Tavora Station Manager Not Found! Please Got to our web site and install.");
    }
}

void StationManagerLink::SM_Check() {
    Station& s = station_;
    if (s.Run_Mode == 1) return;
    const auto file = services_.paths.ToNative("c:\\tavora\\qxsm.ini").path;
    if (!files::Exists(file)) return;
    TextReader in(file);
    if (!in.is_open()) return;
    // An armed order isn't replaced: the new file waits.
    if (s.SM_State == 1) return;
    if (s.SM_State < 3) {
        s.SM_State = 1;
        s.Live_Mode = 1;
    } else {
        s.SM_State = 2;
        s.Live_Mode = 2;
    }
    for (Item kind : kOrder) {
        const ReadResult item = in.read_item();
        if (!item.ok() || !take(s, kind, item.text)) break;
    }
    in.close();
    files::Kill(file);
}

}  // namespace tavora
