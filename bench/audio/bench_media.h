#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace tavora::audio::bench {

inline constexpr double kMediaSeconds = 60;

// The formats the benchmarks decode, by file extension.
inline const std::vector<std::string> kFormats = {"wav",  "mp3", "ogg", "opus",
                                                  "flac", "m4a", "wma", "mp2"};

// A minute of music-like sound in one of kFormats, made once per run by the ffmpeg
// command in a temporary folder; the path, or "" if ffmpeg failed.
std::string music(const std::string& format);

// Seconds that `ffmpeg -i path -f null -` spends decoding, best of `runs`.
double ffmpeg_decode_seconds(const std::string& path, int runs = 3);

// Stands for the rule thread's loop: collects what the engine posts, runs it on run().
class Posted {
  public:
    std::function<void(std::function<void()>)> poster() {
        return [this](std::function<void()> f) {
            std::lock_guard lock(mutex_);
            queue_.push_back(std::move(f));
        };
    }
    void run() {
        std::vector<std::function<void()>> now;
        {
            std::lock_guard lock(mutex_);
            now.swap(queue_);
        }
        for (auto& f : now)
            f();
    }

  private:
    std::mutex mutex_;
    std::vector<std::function<void()>> queue_;
};

// Seconds of CPU this process has used, all threads, and the calling thread alone.
double process_cpu_seconds();
double thread_cpu_seconds();

// Returns once this process's threads have stopped using the CPU (decoders done
// filling their buffers).
void wait_until_idle();

// Resident memory of this process in bytes.
double resident_bytes();

}  // namespace tavora::audio::bench
