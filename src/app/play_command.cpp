#include "play_command.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <iomanip>
#include <memory>
#include <mutex>
#include <ostream>
#include <sstream>

#include "audio/engine.h"

namespace tavora {
namespace {

// The engine's events, run on this (the main) thread.
class EventQueue {
  public:
    void post(std::function<void()> f) {
        {
            std::lock_guard lock(mutex_);
            queue_.push_back(std::move(f));
        }
        ready_.notify_one();
    }
    void run_for(std::chrono::milliseconds wait) {
        std::unique_lock lock(mutex_);
        ready_.wait_for(lock, wait, [this] { return !queue_.empty(); });
        while (!queue_.empty()) {
            auto f = std::move(queue_.front());
            queue_.pop_front();
            lock.unlock();
            f();
            lock.lock();
        }
    }

  private:
    std::mutex mutex_;
    std::condition_variable ready_;
    std::deque<std::function<void()>> queue_;
};

std::string clock_text(double seconds) {
    const long whole = static_cast<long>(seconds);
    std::ostringstream text;
    text << whole / 60 << ":" << std::setw(2) << std::setfill('0') << whole % 60;
    return text.str();
}

}  // namespace

int run_play_command(const std::vector<std::string>& files, const std::string& output,
                     std::ostream& out, std::ostream& err) {
    EventQueue events;
    audio::Engine engine(output == "null" ? audio::OutputKind::Null : audio::OutputKind::Card,
                         [&events](std::function<void()> f) { events.post(std::move(f)); });
    if (!engine.note().empty()) err << "tavora: " << engine.note() << "\n";

    std::size_t running = files.size();
    int failures = 0;
    std::vector<std::shared_ptr<audio::Player>> players;
    for (const std::string& file : files) {
        auto player = engine.add_player();
        if (!player) {
            err << "tavora: too many players; " << file << " is left out\n";
            --running;
            continue;
        }
        audio::Player* p = player.get();
        player->ReadyStateChange = [p, &out, file] {
            out << "Playing " << file << " (" << clock_text(p->Duration()) << ")" << std::endl;
            p->play();
        };
        player->Error = [p, &err, &running, &failures] {
            err << "tavora: " << p->ErrorDescription() << "\n";
            ++failures;
            --running;
        };
        player->PlayStateChange = [p, &out, &running, file](int, int state) {
            if (state != audio::Player::kStopped) return;
            out << "Ended " << file << " at " << clock_text(p->CurrentPosition()) << std::endl;
            --running;
        };
        player->Open(file);
        players.push_back(std::move(player));
    }
    while (running > 0)
        events.run_for(std::chrono::milliseconds(200));
    return failures == static_cast<int>(files.size()) ? 1 : 0;
}

}  // namespace tavora
