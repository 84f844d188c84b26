#include "platform/timer_queue.h"

#include <algorithm>

namespace tavora {

struct TimerQueue::State {
    struct Entry {
        int interval = 0;
        bool enabled = false;
        Ms due = 0;
        // Shared so that a handler that destroys its own timer keeps running.
        std::shared_ptr<std::function<void()>> handler;
    };
    std::function<Ms()> now;
    std::map<std::uint64_t, Entry> entries;  // keyed by creation order
    std::uint64_t next_id = 0;

    bool Armed(const Entry& e) const { return e.enabled && e.interval > 0; }
};

namespace {

class QueuedTimer : public Timer {
  public:
    QueuedTimer(std::weak_ptr<TimerQueue::State> state, std::uint64_t id)
        : state_(std::move(state)), id_(id) {}
    ~QueuedTimer() override {
        if (auto s = state_.lock()) s->entries.erase(id_);
    }

    int Interval() const override { return interval_; }
    bool Enabled() const override { return enabled_; }

    void SetInterval(int ms) override {
        interval_ = std::max(ms, 0);
        if (auto* e = Find()) {
            e->interval = interval_;
            if (e->enabled) Restart(*e);
        }
    }

    void SetEnabled(bool on) override {
        const bool was = enabled_;
        enabled_ = on;
        if (auto* e = Find()) {
            e->enabled = on;
            if (on && !was) Restart(*e);
        }
    }

  private:
    TimerQueue::State::Entry* Find() {
        auto s = state_.lock();
        if (!s) return nullptr;
        auto it = s->entries.find(id_);
        return it == s->entries.end() ? nullptr : &it->second;
    }
    void Restart(TimerQueue::State::Entry& e) {
        if (auto s = state_.lock()) e.due = s->now() + e.interval;
    }

    std::weak_ptr<TimerQueue::State> state_;
    std::uint64_t id_;
    // Kept here too so the properties still read back once the queue is gone.
    int interval_ = 0;
    bool enabled_ = false;
};

}  // namespace

TimerQueue::TimerQueue(std::function<Ms()> now) : state_(std::make_shared<State>()) {
    state_->now = std::move(now);
}

TimerQueue::~TimerQueue() = default;

std::unique_ptr<Timer> TimerQueue::Create(std::function<void()> handler) {
    const std::uint64_t id = state_->next_id++;
    State::Entry& e = state_->entries[id];
    e.handler = std::make_shared<std::function<void()>>(std::move(handler));
    return std::make_unique<QueuedTimer>(state_, id);
}

std::optional<TimerQueue::Ms> TimerQueue::NextDue() const {
    std::optional<Ms> best;
    for (const auto& [id, e] : state_->entries) {
        if (state_->Armed(e) && (!best || e.due < *best)) best = e.due;
    }
    return best;
}

bool TimerQueue::FireNext(Ms limit) {
    State::Entry* next = nullptr;
    for (auto& [id, e] : state_->entries) {
        // Strictly earlier only, so the first created wins a tie.
        if (state_->Armed(e) && e.due <= limit && (!next || e.due < next->due)) next = &e;
    }
    if (!next) return false;
    // Periods missed while the thread was busy collapse into this one firing,
    // and the count keeps its phase. Set before the handler runs, so the
    // handler's own changes to the timer win.
    const Ms now = state_->now();
    next->due += next->interval;
    if (next->due <= now) next->due += ((now - next->due) / next->interval + 1) * next->interval;
    auto handler = next->handler;
    if (*handler) (*handler)();
    return true;
}

}  // namespace tavora
