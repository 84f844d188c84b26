#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/services.h"
#include "core/station.h"
#include "platform/event_loop.h"
#include "playback/emergency_files.h"
#include "playback/media_player.h"
#include "playback/playback.h"

namespace tavora {

struct DeadAirSettings {
    bool on = true;
    double level_dbfs = -45;  // the air below this is silent
    double hold_seconds = 8;  // for this long before anything is done
    std::string folder;       // emergency files; empty for the demo's snipits
};

// The dead-air watchdog, a watcher beside the transport tick. When the air
// stays silent for the hold time and no break, pause or end of the run
// explains it, it logs the silence and skips to the next slot. If that slot
// is silent too, or none stands ready (the set is changing), it covers the air
// with emergency files on a player of its own until the bank sounds again,
// skipping once a hold time meanwhile. Each step is a line in the play log; the state goes into
// the status file. Rule thread only.
class DeadAirWatch {
  public:
    DeadAirWatch(Station& station, const Services& services, Playback& playback);
    ~DeadAirWatch();
    DeadAirWatch(const DeadAirWatch&) = delete;
    DeadAirWatch& operator=(const DeadAirWatch&) = delete;

    // Seconds the bank has been quiet, as the engine's meter hears it after
    // the fader. Left empty for players that make no sound: the watchdog then
    // takes "no player plays" for silence.
    std::function<double()> quiet_seconds;
    // Tells the meter a new silence level.
    std::function<void(double dbfs)> level_changed;
    // The emergency files' player, outside the bank and unheard by the meter.
    void fallback_player(std::unique_ptr<MediaPlayer> player) { fallback_ = std::move(player); }

    void apply(const DeadAirSettings& settings);

    // Words for the status file's first line while the air is in trouble.
    const std::string& state() const { return state_; }

    static constexpr int kWatchMs = 300;  // as often as the tick looks

  private:
    enum class Stage { Listening, Skipped, Covering };

    void watch();
    bool explained() const;
    bool next_cued() const;
    double quiet() const;
    bool sounded_since(double at) const;
    double now_seconds() const;
    void detect();
    void skip();
    void ready_cover();
    void look_in(double seconds);
    void cover();
    void keep_covering();
    void recover();
    void stand_down();
    void cue_next_emergency();
    void start_emergency();
    void log(const std::string& line);
    void set_state(std::string words);
    std::string on_air_title() const;

    Station& s_;
    const Services& services_;
    Playback& playback_;
    DeadAirSettings settings_;
    std::unique_ptr<Timer> timer_;
    std::unique_ptr<Timer> exact_look_;  // one look at the hold, one a tick after a skip
    std::unique_ptr<MediaPlayer> fallback_;
    Stage stage_ = Stage::Listening;
    double armed_at_ = 0;     // the silence counts from here at the earliest
    double heard_at_ = 0;     // players that make no sound: the last time one played
    double acted_at_ = 0;     // the latest skip or cover
    double silent_from_ = 0;  // the start of the stretch being handled
    EmergencyFiles emergency_;
    std::size_t next_file_ = 0;
    std::size_t failures_ = 0;  // emergency files in a row that ended or failed at once
    double opened_at_ = 0;
    std::string cued_;      // the emergency file open on the fallback player
    bool ready_ = false;    // cued before the hold was up, not yet played
    bool started_ = false;  // the open emergency file has been told to play
    bool on_tone_ = false;
    bool gave_up_ = false;
    std::string state_;
};

}  // namespace tavora
