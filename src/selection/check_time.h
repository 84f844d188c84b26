#pragma once

#include <functional>
#include <string>

#include "core/station.h"
#include "core/windows/qx_main.h"
#include "store/data_control.h"

namespace tavora {

// What the wait estimate needs of the players, which live above selection.
struct NowPlaying {
    std::function<bool()> seventh_playing;                  // PlayState 2 of player 7
    std::function<void(const std::string&)> seventh_title;  // caption of its window
};

// The Request window's wait estimate, kept here because the schedule check
// needs it before the Request window exists: puts the title now playing in
// the main window's title bar, then sets Look_Play to the time until the
// cue runs out and Look_Sched to that plus every open request. `requests`
// is a data control on SRequest.
void CheckTime(Station& station, DataControl& requests, QXMain& main, const NowPlaying& players);

}  // namespace tavora
