#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "audio/feeder.h"
#include "audio/voice.h"

namespace tavora::audio {

// Runs a function on the rule thread; may be called from any thread.
using Post = std::function<void(std::function<void()>)>;

// One media player, as the rules see it. Every member is for the rule thread only.
// State that the rules read changes on that thread: by their own calls, or when an
// event from the engine's threads runs there. Only CurrentPosition moves by itself,
// read from what the mixer has really played.
class Player : public std::enable_shared_from_this<Player> {
  public:
    enum State { kStopped = 0, kPaused = 1, kPlaying = 2, kClosed = 6 };
    static constexpr int kReady = 4;

    static std::shared_ptr<Player> create(bool offline, Post post);

    void Open(const std::string& path);
    void play();
    void pause();
    void Stop();
    int PlayState() const { return state_; }
    int ReadyState() const { return ready_; }
    double Duration() const { return seconds_of_frames(length_); }
    double CurrentPosition() const;
    void CurrentPosition(double seconds);
    double SelectionStart() const { return selection_start_; }
    void SelectionStart(double seconds) { selection_start_ = seconds > 0 ? seconds : 0.0; }
    double SelectionEnd() const { return selection_end_; }
    void SelectionEnd(double seconds);
    int Volume() const { return volume_; }
    void Volume(double hundredths_db);
    bool Mute() const { return mute_; }
    void Mute(bool mute);
    // Loudness normalisation, in decibels on top of Volume; 0 leaves the rules'
    // level exactly as it is.
    void Trim(double db);
    const std::string& ErrorDescription() const { return error_; }
    const std::string& FileName() const { return file_name_; }
    void FileName(const std::string& path) { Open(path); }
    double Rate() const { return rate_; }
    void Rate(double rate);  // 0.5 to 1.5, pitch kept

    // Events, run on the rule thread. The play-state change fires on play, pause, Stop
    // and the end of play, not when an open finishes: that is the ready-state change.
    std::function<void(int old_state, int new_state)> PlayStateChange;
    std::function<void()> Error;
    std::function<void()> ReadyStateChange;

    // Commands and ends lost because the mixer or the event thread fell
    // behind. Each loss also raises Error: the player no longer does what
    // the rules last asked.
    std::uint64_t dropped() const { return dropped_commands_ + dropped_ends_seen_; }

    // For the engine.
    Voice& voice() { return voice_; }
    void deliver_events();  // from the one thread that delivers the mixer's events
    void wait_opened() { feeder_->wait_opened(); }

  private:
    Player(bool offline, Post post);
    void opened(const Feeder::Opened& opened);
    void ended(const Ended& ended);
    void set_state(int state, bool always_tell = false);
    void load(std::int64_t frame);
    void send_gain();
    void send(const Command& command);
    void report_dropped();
    std::int64_t position_frames() const;
    template <typename F>
    void post_here(F&& f);

    Post post_;
    Voice voice_;
    std::unique_ptr<Feeder> feeder_;

    int state_ = kClosed;
    int ready_ = 0;
    std::int64_t length_ = 0;
    double selection_start_ = 0.0;
    double selection_end_ = 0.0;
    int volume_ = 0;
    bool mute_ = false;
    float trim_ = 1.0f;
    double rate_ = 1.0;
    std::string error_;
    std::string file_name_;
    std::uint64_t dropped_commands_ = 0;
    std::uint64_t dropped_ends_seen_ = 0;  // the voice's count, as last reported
    std::uint64_t ends_told_ = 0;          // the same, on the thread that delivers events

    std::uint32_t gen_ = 0;           // the latest open or seek
    std::uint32_t open_gen_ = 0;      // the latest open
    std::uint32_t serial_ = 0;        // the latest play
    std::int64_t pending_frame_ = 0;  // where the latest seek goes, until the mixer is there
    bool finished_ = false;           // played to its end since the latest seek
};

}  // namespace tavora::audio
