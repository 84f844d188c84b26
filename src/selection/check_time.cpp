#include "selection/check_time.h"

#include <algorithm>

#include "core/version.h"
#include "selection/fields.h"

namespace tavora {

namespace {

// "major.minor" of the version text.
std::string major_minor() {
    const std::string version = kVersion;
    const auto first = version.find('.');
    if (first == std::string::npos) return version;
    return version.substr(0, version.find('.', first + 1));
}

}  // namespace

void CheckTime(Station& station, DataControl& requests, QXMain& main, const NowPlaying& players) {
    const bool seventh = players.seventh_playing && players.seventh_playing();
    const std::string& title = station.Slot_Title[seventh ? kSeventhSlot : station.Ply_Now];
    if (seventh && players.seventh_title) players.seventh_title(title);
    main.Caption = title + "   Tavora Music System Ver. " + major_minor();

    requests.Refresh();
    station.Look_Play = 0;
    for (int slot = std::max(station.Ply_Now, 0); slot < kSlots; ++slot) {
        if (!station.Slot_Title[slot].empty()) station.Look_Play += station.Slot_Length[slot];
    }
    station.Look_Sched = station.Look_Play;
    Recordset& rows = requests.Recordset();
    for (rows.MoveFirst(); !rows.IsEOF(); rows.MoveNext()) {
        const double sel = field(rows, rec::Sel).number();
        if (sel <= 0) continue;
        // A priority request plays once, whatever its number.
        const double times = sel > 49 ? 1 : sel;
        station.Look_Sched += field(rows, rec::Length).number() * times;
    }
}

}  // namespace tavora
