#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace tavora {

// Stands for the live encoder object the recorder window drives: the members it
// uses and nothing more. An implementation encodes the station's mix on threads of
// its own; every member here returns at once. `LoadASD` takes a native path.
class Encoder {
  public:
    virtual ~Encoder() = default;

    virtual bool LoadASD(const std::string& path) = 0;
    virtual bool Start() = 0;
    virtual void Stop() = 0;

    virtual bool IsRecording() const = 0;
    virtual bool IsStarted() const = 0;
    virtual bool IsNetEnabled() const = 0;
    virtual std::string RecordFileName() const = 0;  // as the profile names it
    virtual std::int64_t RecordSize() const = 0;     // bytes in the file so far
    virtual double RecordDuration() const = 0;       // seconds of audio recorded
    virtual std::int64_t RecordMaxSize() const = 0;  // bytes; 0 for no limit
    virtual void RecordMaxSize(std::int64_t bytes) = 0;
    virtual std::string Description() const = 0;
    virtual int IPPort() const = 0;  // of the stream's server; 0 without one
    virtual int numclients() const = 0;

    virtual bool AllowAudio() const = 0;
    virtual int DelayBuffer() const = 0;     // milliseconds of audio held before encoding
    virtual int AudioFormatTag() const = 0;  // the codec's wave format tag
    virtual std::string AudioSource() const = 0;
    virtual int Bandwidth() const = 0;  // bits a second
    virtual std::string InputSourceFile() const = 0;
    virtual std::string StreamAlias() const = 0;  // the stream's mount point

    // An audio-only encoder: no picture.
    bool AllowVideo() const { return false; }
    int ImageWidth() const { return 0; }
    int ImageHeight() const { return 0; }
    int FramesPerSecond() const { return 0; }
    int SecondsPerIFrame() const { return 0; }
    int BitsPerPixel() const { return 0; }

    bool Visible = false;
};

// What is on the air now, written by the rule thread at each hand-over and read by
// the stream's thread, which sends it to the server when it changes.
class AirTitle {
  public:
    void set(std::string title) {
        std::lock_guard lock(mutex_);
        title_ = std::move(title);
        ++version_;
    }
    // The title, and a number that changes with it.
    std::pair<std::string, std::uint64_t> get() const {
        std::lock_guard lock(mutex_);
        return {title_, version_};
    }

  private:
    mutable std::mutex mutex_;
    std::string title_;
    std::uint64_t version_ = 0;
};

// Makes an encoder that streams the titles it is given; null when the platform has
// none ("Object not loaded.").
using EncoderFactory = std::function<std::unique_ptr<Encoder>(const AirTitle& titles)>;

}  // namespace tavora
