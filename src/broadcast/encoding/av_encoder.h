#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "broadcast/profile.h"

struct AVCodecContext;
struct AVFormatContext;
struct AVPacket;
struct SwrContext;

namespace tavora {

namespace audio {
class CodecFeed;
}

// Encodes the engine's mix (48 kHz interleaved stereo float) with a profile's codec
// and muxes the packets into a file, and into a second byte stream for a server.
// One thread owns an instance.
class AvEncoder {
  public:
    using ByteSink = std::function<void(const std::uint8_t* data, std::size_t size)>;

    // Null, and why, when the codec refuses the profile (a bitrate it doesn't take).
    static std::unique_ptr<AvEncoder> open(const Profile& profile, std::string& why);
    ~AvEncoder();
    AvEncoder(const AvEncoder&) = delete;
    AvEncoder& operator=(const AvEncoder&) = delete;

    bool open_file(const std::string& path, std::string& why);
    // (Re)starts the server's byte stream: a fresh header, then every packet. The
    // title goes into an Ogg stream's comments; an MP3 stream carries none.
    bool open_stream(ByteSink sink, const std::string& title);

    // False when the file could not be written; the stream goes on without it.
    bool encode(const float* frames, std::size_t count);
    // Flushes the codec and closes the file and the stream properly.
    void finish();
    // Ends the file here, as it stands (its maximum size, a write error).
    void close_file();
    bool file_open() const { return file_ != nullptr; }

    std::int64_t file_bytes() const { return file_bytes_; }
    double seconds() const;
    int format_tag() const;
    const char* stream_format() const;  // "mp3" or "ogg"

  private:
    AvEncoder() = default;
    bool drain(bool flushing);
    bool write_packet(AVPacket* packet);
    void close_stream();

    Profile profile_;
    AVCodecContext* codec_ = nullptr;
    SwrContext* swr_ = nullptr;
    std::unique_ptr<audio::CodecFeed> feed_;
    AVFormatContext* file_ = nullptr;
    AVFormatContext* stream_ = nullptr;
    ByteSink sink_;
    std::int64_t stream_pts_base_ = -1;
    std::int64_t file_bytes_ = 0;
};

}  // namespace tavora
