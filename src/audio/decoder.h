#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "audio/frame_queue.h"

namespace tavora::audio {

enum class OpenStatus { Succeeded, Aborted, Failed };

struct OpenResult {
    OpenStatus status = OpenStatus::Failed;
    std::string error;  // a sentence for the operator when the open failed
};

// One FFmpeg input, decoded to the engine's format from any frame on. Frame 0 is the
// music's first sample: codec start offsets and encoder delay are already gone, and
// the end padding is cut, so length() is the decoded length. One thread at a time.
class Decoder {
  public:
    Decoder();
    ~Decoder();
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    // Blocks (disk, network). `abort` ends a slow open or read early when set.
    OpenResult open(const std::string& url, const std::atomic<bool>* abort = nullptr);
    void close();  // safe to call twice
    bool is_open() const;
    bool from_network() const;  // a read may then wait on a server

    // Frames, or 0 when the input doesn't say (a live stream).
    std::int64_t length() const { return length_; }

    // The next read starts exactly at `frame`. False if the input can't get there.
    bool seek(std::int64_t frame);

    // Up to `frames` frames into `out`; fewer only at the end (then 0 ever after).
    std::size_t read(float* out, std::size_t frames);

  private:
    struct Input;

    bool open_input(const std::string& url);
    std::int64_t measure_length(std::int64_t estimate);
    std::int64_t measure_end_from(std::int64_t frame);
    bool decode_more();
    bool position_from(std::int64_t pts, std::int64_t* frame) const;
    void take_frame();
    bool seek_near(std::int64_t frame, std::int64_t preroll);

    std::unique_ptr<Input> in_;
    std::string url_;
    const std::atomic<bool>* abort_ = nullptr;
    std::string error_;
    std::int64_t length_ = 0;
    std::int64_t origin_pts_ = 0;  // stream time of frame 0
    bool origin_known_ = false;
    bool resync_ = true;  // the next decoded frame sets the position from its time stamp
    bool ended_ = false;
    FrameQueue pending_;              // converted frames not yet read
    std::int64_t pending_frame_ = 0;  // position of the first of them
    std::int64_t discard_until_ = 0;  // frames before this one are dropped (seek, preroll)
    std::int64_t overshoot_ = -1;     // set when a seek landed past its target
};

}  // namespace tavora::audio
