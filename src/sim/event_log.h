#pragma once

#include <array>
#include <functional>
#include <iosfwd>
#include <string>

#include "core/station.h"
#include "platform/clock.h"
#include "platform/event_loop.h"
#include "playback/playback.h"
#include "playback/ports.h"
#include "runtime/date_text.h"
#include "selection/selection.h"
#include "sim/dead_air.h"

namespace tavora {

// Writes what the station airs and picks as one line an event, and keeps the
// counts of the run's last line. Rule thread only.
class EventLog : public PlaybackObserver {
  public:
    EventLog(const Clock& clock, EventLoop& loop, std::ostream& out, Station& station,
             Playback& playback);
    ~EventLog() override;
    EventLog(const EventLog&) = delete;
    EventLog& operator=(const EventLog&) = delete;

    // Hears every pick; with `trace`, also every line of the selection trace.
    void listen_to(Selection& selection, bool trace);
    // Dead air counted from the players' states, for players that make no
    // sound to measure.
    void count_silence_by_players() { by_players_ = true; }

    void state_changed(int player, int slot, int state) override;
    void cd_state_changed(int state) override;

    // Told of each AIR line as it is written: slot and the line's time.
    std::function<void(int slot, double when)> on_air;

    int aired() const { return aired_; }
    int picks() const { return picks_; }
    int fallbacks() const { return fallbacks_; }
    DeadAir& dead_air() { return dead_air_; }
    // Seconds since the log began: the scale of `dead_air`.
    double seconds() const;

    // "END <time> aired=<n> picks=<n> fallbacks=<n> dead_air_s=<seconds>
    // longest_dead_air_s=<seconds>".
    void end();

  private:
    void check_start(int player, int slot);
    void check_silence();
    void write_pick(const PickReport& pick);

    const Clock& clock_;
    EventLoop& loop_;
    std::ostream& out_;
    Station& s_;
    Playback& playback_;
    Selection* selection_ = nullptr;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    const double began_;
    bool by_players_ = false;
    DeadAir dead_air_;
    // Whether a player's current load has aired: a prime (play then pause at
    // once) or a resume after a pause is not a new start.
    std::array<bool, kPlayers + 1> aired_load_{};
    bool cd_playing_ = false;
    int aired_ = 0;
    int picks_ = 0;
    int fallbacks_ = 0;
};

}  // namespace tavora
