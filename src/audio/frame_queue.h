#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>

#include "audio/format.h"

namespace tavora::audio {

// Converted frames between the resampler and the reader. Room is made without clearing
// it, since whoever asks for room writes every sample it commits.
class FrameQueue {
  public:
    std::size_t size() const { return end_ - read_; }  // frames
    const float* data() const { return storage_.get() + read_ * kChannels; }

    void drop(std::size_t frames) {
        read_ += std::min(frames, size());
        if (read_ == end_) clear();
    }
    void clear() { read_ = end_ = 0; }

    // Space for `frames` more after the unread ones; commit() what was written there.
    float* room(std::size_t frames) {
        if (end_ + frames > capacity_) {
            const std::size_t unread = size();
            if (unread + frames > capacity_) {
                capacity_ = std::max(unread + frames, 2 * capacity_);
                auto grown = std::make_unique_for_overwrite<float[]>(capacity_ * kChannels);
                if (unread > 0)
                    std::memcpy(grown.get(), data(), unread * kChannels * sizeof(float));
                storage_ = std::move(grown);
            } else {
                std::memmove(storage_.get(), data(), unread * kChannels * sizeof(float));
            }
            read_ = 0;
            end_ = unread;
        }
        return storage_.get() + end_ * kChannels;
    }
    void commit(std::size_t frames) { end_ += frames; }

  private:
    std::unique_ptr<float[]> storage_;
    std::size_t capacity_ = 0;  // frames
    std::size_t read_ = 0;
    std::size_t end_ = 0;
};

}  // namespace tavora::audio
