#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "audio/mix_tap.h"
#include "broadcast/encoder.h"
#include "broadcast/encoding/icecast_source.h"
#include "broadcast/profile.h"

namespace tavora {

class AvEncoder;
class PathMap;

// The encoder of this station: takes the engine's mix from a tap and encodes it on a
// thread of its own into the profile's file and, when the profile names a server,
// into an Icecast stream. Members are called from the rule thread and return at once.
class LiveEncoder : public Encoder {
  public:
    LiveEncoder(audio::MixTap& tap, const PathMap& paths, const AirTitle& titles, EncoderLog log);
    ~LiveEncoder() override;

    bool LoadASD(const std::string& path) override;
    bool Start() override;
    void Stop() override;

    bool IsRecording() const override { return recording_.load(); }
    bool IsStarted() const override { return started_.load(); }
    bool IsNetEnabled() const override { return profile_ && profile_->stream.has_value(); }
    std::string RecordFileName() const override { return profile_ ? profile_->file : ""; }
    std::int64_t RecordSize() const override { return size_.load(); }
    double RecordDuration() const override { return duration_.load(); }
    std::int64_t RecordMaxSize() const override { return max_size_.load(); }
    void RecordMaxSize(std::int64_t bytes) override { max_size_.store(bytes); }
    std::string Description() const override { return profile_ ? profile_->description : ""; }
    int IPPort() const override;
    int numclients() const override;

    bool AllowAudio() const override { return true; }
    int DelayBuffer() const override;
    int AudioFormatTag() const override;
    std::string AudioSource() const override { return "Tavora mix"; }
    int Bandwidth() const override { return profile_ ? profile_->bitrate_kbps * 1000 : 0; }
    std::string InputSourceFile() const override { return {}; }
    std::string StreamAlias() const override;

    // Mix frames the encoder could not take in time, since the start.
    std::int64_t dropped_frames() const { return dropped_.load(); }

  private:
    void run();
    void pass_title(std::uint64_t& seen);
    void report_drops(std::int64_t dropped);

    audio::MixTap& tap_;
    const PathMap& paths_;
    const AirTitle& titles_;
    EncoderLog log_;

    std::optional<Profile> profile_;
    std::unique_ptr<AvEncoder> av_;
    std::unique_ptr<audio::MixRing> ring_;
    std::shared_ptr<IcecastSource> source_;
    std::thread thread_;
    std::atomic<bool> quit_{false};
    std::atomic<bool> started_{false};
    std::atomic<bool> recording_{false};
    std::atomic<std::int64_t> size_{0};
    std::atomic<double> duration_{0};
    std::atomic<std::int64_t> max_size_{0};
    std::atomic<std::int64_t> dropped_{0};
};

// Encoders on this engine's tap, for the recorder window.
EncoderFactory live_encoders(audio::MixTap& tap, const PathMap& paths, EncoderLog log);

}  // namespace tavora
