#include "audio/wav_writer.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstring>

namespace tavora::audio {
namespace {

void put_u32(std::uint8_t* at, std::uint32_t v) {
    for (int i = 0; i < 4; ++i)
        at[i] = static_cast<std::uint8_t>(v >> (8 * i));
}
void put_u16(std::uint8_t* at, std::uint16_t v) {
    at[0] = static_cast<std::uint8_t>(v);
    at[1] = static_cast<std::uint8_t>(v >> 8);
}

}  // namespace

WavWriter::WavWriter(const std::string& path, bool direct)
    : file_(std::fopen(path.c_str(), "wb")), direct_(direct) {
    if (file_ == nullptr) return;
    write_header();
    if (!direct_) thread_ = std::thread([this] { run(); });
}

WavWriter::~WavWriter() {
    if (file_ == nullptr) return;
    if (thread_.joinable()) {
        quit_ = true;
        thread_.join();
    }
    std::fseek(file_, 0, SEEK_SET);
    write_header();
    std::fclose(file_);
}

void WavWriter::write_header() {
    std::uint8_t h[44] = {};
    const auto data = static_cast<std::uint32_t>(std::min<std::uint64_t>(data_bytes_, 0xffffffc0u));
    std::memcpy(h, "RIFF", 4);
    put_u32(h + 4, 36 + data);
    std::memcpy(h + 8, "WAVEfmt ", 8);
    put_u32(h + 16, 16);
    put_u16(h + 20, 3);  // IEEE float
    put_u16(h + 22, kChannels);
    put_u32(h + 24, kRate);
    put_u32(h + 28, kRate * kChannels * sizeof(float));
    put_u16(h + 32, kChannels * sizeof(float));
    put_u16(h + 34, 32);
    std::memcpy(h + 36, "data", 4);
    put_u32(h + 40, data);
    std::fwrite(h, 1, sizeof h, file_);
}

void WavWriter::put(const float* frames, std::size_t count) {
    data_bytes_ +=
        std::fwrite(frames, kChannels * sizeof(float), count, file_) * kChannels * sizeof(float);
}

void WavWriter::write(const float* frames, std::size_t count) {
    if (file_ == nullptr) return;
    if (direct_) {
        put(frames, count);
        return;
    }
    while (count > 0) {
        Block* block = queue_.reserve();
        if (block == nullptr) return;  // the disk fell behind: a gap in the file, not in the air
        const std::size_t n = std::min(count, kBlockFrames);
        std::memcpy(block->samples.data(), frames, n * kChannels * sizeof(float));
        block->frames = static_cast<std::uint32_t>(n);
        queue_.publish();
        frames += n * kChannels;
        count -= n;
    }
}

void WavWriter::run() {
    for (;;) {
        const bool last_round = quit_.load();
        while (const Block* block = queue_.front()) {
            put(block->samples.data(), block->frames);
            queue_.release();
        }
        if (last_round) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

}  // namespace tavora::audio
