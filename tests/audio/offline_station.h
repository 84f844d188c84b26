#pragma once

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "audio/engine.h"

namespace tavora::audio::test {

inline std::string media(const std::string& name) {
    return std::string(TAVORA_AUDIO_MEDIA) + "/" + name;
}

// The whole of a file.
inline std::string file_bytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// An engine (offline unless told) and a queue standing for the rule thread's event loop.
class OfflineStation {
  public:
    explicit OfflineStation(OutputKind kind = OutputKind::Offline) : engine_(kind, post()) {}

    Engine& engine() { return engine_; }
    Post post() {
        return [this](std::function<void()> f) {
            std::lock_guard lock(mutex_);
            posted_.push_back(std::move(f));
        };
    }

    // Runs what the engine has posted, as the rule thread would.
    void run_events() {
        for (;;) {
            std::function<void()> f;
            {
                std::lock_guard lock(mutex_);
                if (posted_.empty()) return;
                f = std::move(posted_.front());
                posted_.pop_front();
            }
            f();
        }
    }

    // For the real-time outputs: runs events until `done` holds or `limit` has passed.
    bool run_until(const std::function<bool()>& done, std::chrono::milliseconds limit) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        for (run_events(); !done(); run_events()) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return true;
    }

    // A player that has tried to open a test file (`name`) or any path or URL (`at`).
    std::shared_ptr<Player> open(const std::string& name) { return open_at(media(name)); }
    std::shared_ptr<Player> open_at(const std::string& at) {
        auto player = engine_.add_player();
        player->Open(at);
        engine_.settle();
        run_events();
        return player;
    }

    std::vector<float> render(std::size_t frames) {
        std::vector<float> out(frames * kChannels);
        engine_.render(out.data(), frames);
        run_events();
        return out;
    }

    // Renders `frames` and also keeps them at the end of `kept`.
    std::vector<float> render(std::size_t frames, std::vector<float>& kept) {
        auto part = render(frames);
        kept.insert(kept.end(), part.begin(), part.end());
        return part;
    }

    // Plays to the end, or `limit` seconds of output; returns the seconds it took.
    double play_out(Player& player, double limit = 60) {
        player.play();
        std::size_t rendered = 0;
        while (player.PlayState() == Player::kPlaying && rendered < limit * kRate) {
            render(kRate / 20);
            rendered += kRate / 20;
        }
        return static_cast<double>(rendered) / kRate;
    }

  private:
    std::mutex mutex_;
    std::deque<std::function<void()>> posted_;
    Engine engine_;
};

// Root mean square of one channel over `frames` frames from `from`.
inline double rms(const std::vector<float>& mix, int channel, std::size_t from = 0,
                  std::size_t frames = 0) {
    if (frames == 0) frames = mix.size() / kChannels - from;
    double sum = 0;
    for (std::size_t i = from; i < from + frames; ++i)
        sum += double{mix[i * kChannels + channel]} * mix[i * kChannels + channel];
    return std::sqrt(sum / static_cast<double>(frames));
}

// The frame number that index.wav carries in its left channel.
inline long index_at(const std::vector<float>& mix, std::size_t frame) {
    return std::lround(mix[frame * kChannels] * 1048576.0);
}

}  // namespace tavora::audio::test
