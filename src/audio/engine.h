#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "audio/mixer.h"
#include "audio/player.h"

namespace tavora::audio {

class NullOutput;
class CardOutput;
class WavWriter;

enum class OutputKind {
    Offline,  // the owner calls render(); as fast as the CPU goes, the same every time
    Null,     // real time, to nowhere
    Card,     // real time, the default sound card (the null output when there is none)
};

// The players, their mixer and its output. Threads: the rule thread makes players and
// calls everything here; offline, it is also the mixer's thread (render). Events from
// the engine's threads reach the rule thread only through `post`.
class Engine {
  public:
    Engine(OutputKind output, Post post);
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    // `on_air_meter`: the air meter hears the player; false for one that stands in
    // for the air, as the watchdog's fallback does.
    std::shared_ptr<Player> add_player(bool on_air_meter = true);
    // The bank's level after the fader, for the dead-air watchdog.
    AirMeter& air_meter() { return air_meter_; }
    bool add_tap(Tap tap);
    bool write_wav(const std::string& path);  // the mix also goes to this file

    // Offline only: mixes the next `frames` frames into `out` (interleaved stereo),
    // waiting for decoders rather than playing silence, then posts what happened.
    void render(float* out, std::size_t frames);

    // Waits until every Open asked for so far has finished and its event is posted,
    // so that virtual time never races a file being opened.
    void settle();

    OutputKind output() const { return output_; }
    const std::string& note() const { return note_; }  // why the card wasn't used

    // Told on the rule thread, with the new note, when the sound card goes
    // away mid-run; the mix has gone on to the null output by then.
    std::function<void(const std::string& note)> on_card_lost;

  private:
    void deliver_events();
    void watch_card();

    Post post_;
    OutputKind output_;
    std::string note_;
    AirMeter air_meter_;
    Mixer mixer_{&air_meter_};
    std::mutex players_mutex_;  // add_player against the event thread
    std::vector<std::shared_ptr<Player>> players_;
    std::vector<std::unique_ptr<Tap>> taps_;
    std::unique_ptr<WavWriter> wav_;
    std::unique_ptr<NullOutput> null_;
    std::unique_ptr<CardOutput> card_;
    std::atomic<bool> quit_{false};
    std::thread events_;
};

}  // namespace tavora::audio
