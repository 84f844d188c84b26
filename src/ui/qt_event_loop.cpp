#include "ui/qt_event_loop.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <atomic>

namespace tavora::ui {

namespace {

// A timer of the queue that asks the loop to re-arm whenever it changes, so
// a change made outside any event (start-up, a test) is not missed.
class ArmingTimer : public Timer {
  public:
    ArmingTimer(std::unique_ptr<Timer> inner, QtEventLoop& loop)
        : inner_(std::move(inner)), loop_(loop) {}
    int Interval() const override { return inner_->Interval(); }
    void SetInterval(int ms) override {
        inner_->SetInterval(ms);
        loop_.rearm();
    }
    bool Enabled() const override { return inner_->Enabled(); }
    void SetEnabled(bool on) override {
        inner_->SetEnabled(on);
        loop_.rearm();
    }

  private:
    std::unique_ptr<Timer> inner_;
    QtEventLoop& loop_;
};

}  // namespace

QtEventLoop::QtEventLoop()
    : start_(std::chrono::steady_clock::now()),
      timers_([this] { return elapsed(); }),
      alive_(std::make_shared<std::atomic<QtEventLoop*>>(this)) {
    wake_.setSingleShot(true);
    wake_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&wake_, &QTimer::timeout, this, [this] { wake(); });
}

QtEventLoop::~QtEventLoop() {
    alive_->store(nullptr);
}

TimerQueue::Ms QtEventLoop::elapsed() const {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now() - start_).count();
}

std::unique_ptr<Timer> QtEventLoop::CreateTimer(std::function<void()> handler) {
    return std::make_unique<ArmingTimer>(timers_.Create(std::move(handler)), *this);
}

void QtEventLoop::post(std::function<void()> fn) {
    {
        std::lock_guard lock(posted_mutex_);
        posted_.push_back(std::move(fn));
    }
    auto alive = alive_;
    QMetaObject::invokeMethod(
        this,
        [alive] {
            if (QtEventLoop* loop = alive->load()) loop->run_posted();
        },
        Qt::QueuedConnection);
}

void QtEventLoop::quit() {
    // Not quit(): since Qt 6 it first asks every window to close, and the
    // main window leaves its close box to the rules, which have just ended.
    QCoreApplication::exit(0);
}

void QtEventLoop::run_event(std::function<void()> fn) {
    if (busy()) {
        waiting_.push_back(std::move(fn));
        return;
    }
    ++depth_;
    fn();
    --depth_;
    settle();
}

void QtEventLoop::run_posted() {
    if (busy()) return;  // settle() takes them once the running event ends
    ++depth_;
    for (;;) {
        std::function<void()> job;
        {
            std::lock_guard lock(posted_mutex_);
            if (posted_.empty()) break;
            job = std::move(posted_.front());
            posted_.pop_front();
        }
        job();
    }
    --depth_;
    settle();
}

void QtEventLoop::fire_due_timers() {
    ++depth_;
    // Only timers already due: one that re-arms itself at 0 ms can't hold
    // the loop here.
    const TimerQueue::Ms now = elapsed();
    while (timers_.FireNext(now)) {
    }
    --depth_;
}

void QtEventLoop::wake() {
    if (busy()) return;  // the running event's settle() re-arms
    fire_due_timers();
    settle();
}

void QtEventLoop::settle() {
    if (settling_ || busy()) return;
    settling_ = true;
    for (bool more = true; more;) {
        more = false;
        while (!waiting_.empty()) {
            auto fn = std::move(waiting_.front());
            waiting_.pop_front();
            ++depth_;
            fn();
            --depth_;
            more = true;
        }
        bool posted = false;
        {
            std::lock_guard lock(posted_mutex_);
            posted = !posted_.empty();
        }
        if (posted) {
            settling_ = false;
            run_posted();  // settles again itself
            return;
        }
        if (const auto due = timers_.NextDue(); due && *due <= elapsed()) {
            fire_due_timers();
            more = true;
        }
    }
    if (after_event) after_event();
    settling_ = false;
    rearm();
}

void QtEventLoop::rearm() {
    if (busy()) return;
    const auto due = timers_.NextDue();
    if (!due) {
        wake_.stop();
        return;
    }
    const auto wait = std::max<TimerQueue::Ms>(0, *due - elapsed());
    wake_.start(static_cast<int>(std::min<TimerQueue::Ms>(wait, 1 << 30)));
}

}  // namespace tavora::ui
