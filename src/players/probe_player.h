#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <unordered_map>

#include "platform/clock.h"
#include "platform/event_loop.h"
#include "playback/media_player.h"

namespace tavora {

// The lengths of media files, as the engine would decode them. A song plays
// many times a day and its length only changes with the file, so each version
// of a file, told by its size and time, is measured once. Rule thread only.
class MediaLengths {
  public:
    // Seconds; a negative number when the file can't be opened, with the
    // reason in `error`. Paths are native, or URLs (never kept).
    double length(const std::string& native_path, std::string& error);

  private:
    struct Entry {
        std::uintmax_t size = 0;
        std::filesystem::file_time_type written;
        double seconds = 0;
        std::string error;
    };
    std::unordered_map<std::string, Entry> known_;
};

// A player that decodes nothing: it reads the file's length when opened and
// then "plays" on the clock, raising its events at the moments a real player
// would. Paths are native, or URLs. It lets a day of the station run on virtual time in seconds.
class ProbePlayer : public MediaPlayer {
  public:
    ProbePlayer(const Clock& clock, EventLoop& loop,
                std::shared_ptr<MediaLengths> lengths = std::make_shared<MediaLengths>());

    void Open(const std::string& path) override;
    void play() override;
    void pause() override;
    void Stop() override;
    int PlayState() const override { return failed_ && state_ == kClosed ? kStopped : state_; }
    int ReadyState() const override { return ready_; }
    double Duration() const override { return duration_; }
    double CurrentPosition() const override;
    void CurrentPosition(double seconds) override;
    double SelectionStart() const override { return selection_start_; }
    void SelectionStart(double seconds) override { selection_start_ = seconds > 0 ? seconds : 0; }
    double SelectionEnd() const override { return selection_end_; }
    void SelectionEnd(double seconds) override;
    int Volume() const override { return volume_; }
    void Volume(double hundredths_db) override;
    bool Mute() const override { return mute_; }
    void Mute(bool mute) override { mute_ = mute; }
    std::string ErrorDescription() const override { return error_; }
    const std::string& FileName() const override { return file_name_; }

  private:
    double now_seconds() const;
    double end_seconds() const;
    void set_state(int state, bool always_tell = false);
    void schedule_end();
    void ended();

    const Clock& clock_;
    EventLoop& loop_;
    std::shared_ptr<MediaLengths> lengths_;
    std::unique_ptr<Timer> end_timer_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);

    int state_ = kClosed;
    int ready_ = 0;
    bool failed_ = false;
    double duration_ = 0;
    double position_ = 0;     // where play started or the position was held
    double played_from_ = 0;  // clock seconds at which play started
    double selection_start_ = 0;
    double selection_end_ = 0;
    int volume_ = 0;
    bool mute_ = false;
    std::string error_;
    std::string file_name_;
};

// Probe players for a bank; the seven share one MediaLengths.
PlayerFactory probe_players(const Clock& clock, EventLoop& loop);

}  // namespace tavora
