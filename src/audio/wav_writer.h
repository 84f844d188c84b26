#pragma once

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>

#include "audio/spsc_ring.h"
#include "audio/voice.h"

namespace tavora::audio {

// Writes the mix to a 32-bit float WAV file, for inspection. write() is the tap: in
// real time it only queues, and a thread of its own does the disk work; offline
// (`direct`) it writes at once, since nothing waits on the offline mixer.
class WavWriter {
  public:
    WavWriter(const std::string& path, bool direct);
    ~WavWriter();  // finishes the header
    WavWriter(const WavWriter&) = delete;
    WavWriter& operator=(const WavWriter&) = delete;

    bool ok() const { return file_ != nullptr; }
    void write(const float* frames, std::size_t count);

  private:
    void run();
    void put(const float* frames, std::size_t count);
    void write_header();

    std::FILE* file_ = nullptr;
    const bool direct_;
    std::uint64_t data_bytes_ = 0;
    SpscRing<Block> queue_{64};
    std::atomic<bool> quit_{false};
    std::thread thread_;
};

}  // namespace tavora::audio
