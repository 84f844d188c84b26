#pragma once

#include <functional>
#include <string>

namespace tavora {

// The cue-point editor's own media player: not one of the bank's seven.
// The front end puts the audio engine behind it; positions are in file time
// whatever the rate. Rule thread only.
class PreviewPlayer {
  public:
    enum State { kStopped = 0, kPaused = 1, kPlaying = 2, kClosed = 6 };

    virtual ~PreviewPlayer() = default;

    // Opens the file (a native path); ReadyStateChange follows on the rule
    // thread once it is open.
    virtual void FileName(const std::string& path) = 0;
    virtual const std::string& FileName() const = 0;
    virtual double CurrentPosition() const = 0;
    virtual void CurrentPosition(double seconds) = 0;
    virtual double SelectionStart() const = 0;
    virtual void SelectionStart(double seconds) = 0;
    virtual double SelectionEnd() const = 0;
    virtual void SelectionEnd(double seconds) = 0;
    virtual double Duration() const = 0;
    virtual int Volume() const = 0;
    virtual void Volume(double hundredths_db) = 0;
    virtual int PlayState() const = 0;
    virtual double Rate() const = 0;
    virtual void Rate(double rate) = 0;
    virtual void Play() = 0;
    virtual void Stop() = 0;

    std::function<void()> ReadyStateChange;
};

}  // namespace tavora
