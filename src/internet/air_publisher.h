#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "core/station.h"
#include "internet/air_board.h"
#include "platform/clock.h"
#include "playback/playback.h"
#include "requests/request_form.h"

namespace tavora {

// Rule thread only: copies what plays out of the rule state onto the board
// the web reads. Told of each AIR as the event lines are; republished on a
// timer so the time left and the mode stay fresh.
class AirPublisher {
  public:
    // Title and artist of a library row, for the recid of a slot.
    using Lookup = std::function<std::pair<std::string, std::string>(long recid)>;

    AirPublisher(Station& station, Playback& playback, Request& request, const Clock& clock,
                 AirBoard& board, Lookup lookup);

    void aired(int slot, double when);
    void publish();
    // running, paused, break or idle.
    std::string mode();

    static constexpr std::size_t kHistory = 10;

  private:
    AirItem item_of(int slot);

    Station& s_;
    Playback& playback_;
    Request& request_;
    const Clock& clock_;
    AirBoard& board_;
    Lookup lookup_;
    std::map<long, std::pair<std::string, std::string>> names_;
    std::deque<AirItem> last_;  // newest first; the first is what airs
    std::uint64_t airs_ = 0;
};

}  // namespace tavora
