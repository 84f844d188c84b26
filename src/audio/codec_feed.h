#pragma once

#include <cstdint>
#include <functional>
#include <string>

struct AVAudioFifo;
struct AVCodecContext;
struct AVFrame;
struct AVPacket;

namespace tavora::audio {

// Cuts samples queued in an opened encoder's own format and layout into the
// frames the codec takes and hands on every packet it gives back: what the
// demo's files and the station's recording and stream share. One thread.
class CodecFeed {
  public:
    // False when the packet could not be written; the packets after it still are.
    using Write = std::function<bool(AVPacket* packet)>;

    explicit CodecFeed(AVCodecContext* codec);  // not owned; outlives the feed
    ~CodecFeed();
    CodecFeed(const CodecFeed&) = delete;
    CodecFeed& operator=(const CodecFeed&) = delete;

    bool queue(void* const* planes, int frames);
    // Encodes every whole frame queued; `flush` also encodes what is left and
    // takes the codec's last packets. Empty, or why something was lost.
    std::string encode(bool flush, const Write& write);
    std::int64_t frames_encoded() const { return next_pts_; }

  private:
    bool take_packets(const Write& write);

    AVCodecContext* codec_;
    AVAudioFifo* fifo_ = nullptr;
    AVFrame* frame_ = nullptr;
    AVPacket* packet_ = nullptr;
    int frame_size_ = 1024;
    std::int64_t next_pts_ = 0;
};

}  // namespace tavora::audio
