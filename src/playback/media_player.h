#pragma once

#include <functional>
#include <memory>
#include <string>

namespace tavora {

// Screen appearance of a video player: plain state for a display to read.
struct Appearance {
    bool Visible = false;
    bool ShowControls = true;
    bool ShowPositionControls = true;
    bool ShowTracker = true;
    bool EnablePositionControls = true;
    bool EnableTracker = true;
    bool ShowGotoBar = false;
    bool ShowAudioControls = true;
    bool ShowStatusBar = false;
    bool ShowDisplay = false;
    int DisplaySize = 0;
    int Height = 0;
    int Width = 0;
};

// One player of the bank, as the rules see the media control: its members
// and its events, nothing more. Two kinds stand behind it: the audio engine's
// player and a probe that only reads each file's length and plays in clock
// time. The cue-point editor's preview is one more of the engine's, outside
// the bank. Rule thread only.
class MediaPlayer {
  public:
    enum State { kStopped = 0, kPaused = 1, kPlaying = 2, kClosed = 6 };
    static constexpr int kReady = 4;

    virtual ~MediaPlayer() = default;

    virtual void Open(const std::string& path) = 0;
    virtual void play() = 0;
    virtual void pause() = 0;
    virtual void Stop() = 0;
    virtual int PlayState() const = 0;
    virtual int ReadyState() const = 0;
    virtual double Duration() const = 0;
    virtual double CurrentPosition() const = 0;
    virtual void CurrentPosition(double seconds) = 0;
    virtual double SelectionStart() const = 0;
    virtual void SelectionStart(double seconds) = 0;
    virtual double SelectionEnd() const = 0;
    virtual void SelectionEnd(double seconds) = 0;
    virtual int Volume() const = 0;
    virtual void Volume(double hundredths_db) = 0;
    virtual bool Mute() const = 0;
    virtual void Mute(bool mute) = 0;
    virtual std::string ErrorDescription() const = 0;
    virtual const std::string& FileName() const = 0;

    // Beyond the control: loudness normalisation in decibels on top of Volume.
    // Players that make no sound have nothing to trim.
    virtual void Trim(double /*db*/) {}
    // Speed, 0.5 to 1.5 with the pitch kept: the preview slows a file down to
    // find its marks. Players that make no sound play at 1.
    virtual double Rate() const { return 1; }
    virtual void Rate(double /*rate*/) {}

    Appearance& appearance() { return appearance_; }

    // Raised on the rule thread, after the call or the moment that caused
    // them; the handlers read PlayState again, so the arguments are advisory.
    std::function<void(int old_state, int new_state)> PlayStateChange;
    std::function<void()> Error;
    // Raised when a file opened in the background is ready; a player whose
    // open finishes within the call (the probe) raises none.
    std::function<void()> ReadyStateChange;

  protected:
    void raise_state(int old_state, int new_state) {
        if (PlayStateChange) PlayStateChange(old_state, new_state);
    }
    void raise_error() {
        if (Error) Error();
    }

  private:
    Appearance appearance_;
};

// Makes the seven players of a bank, numbered 1 to 7; never returns null.
using PlayerFactory = std::function<std::unique_ptr<MediaPlayer>(int number)>;

}  // namespace tavora
