#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "platform/event_loop.h"
#include "platform/timer_queue.h"

namespace tavora::ui {

// The desktop's rule thread is Qt's GUI thread. Every way into the rules (a
// timer, work posted by the audio engine, a click forwarded by the binder)
// goes through `run_event`, which keeps the one rule the station is built
// on: a handler runs to its end before the next begins. A modal dialog
// spins a nested Qt loop inside a handler; what falls due meanwhile waits
// and runs when the handler is done. After each outermost event the
// `after_event` hook runs (the binder's sync) and the one Qt timer that
// drives the timer queue is armed for the next due timer.
class QtEventLoop : public QObject, public EventLoop {
  public:
    QtEventLoop();
    ~QtEventLoop() override;

    std::unique_ptr<Timer> CreateTimer(std::function<void()> handler) override;
    // Safe from any thread.
    void post(std::function<void()> fn) override;
    void quit() override;

    // Runs `fn` as one event of the rule thread, or after the running one.
    void run_event(std::function<void()> fn);
    bool busy() const { return depth_ > 0; }

    std::function<void()> after_event;

    // Arms the Qt timer for the earliest due timer; timers call it when
    // they change.
    void rearm();

  private:
    TimerQueue::Ms elapsed() const;
    void wake();
    void settle();
    void run_posted();
    void fire_due_timers();

    const std::chrono::steady_clock::time_point start_;
    TimerQueue timers_;
    QTimer wake_;
    int depth_ = 0;
    bool settling_ = false;
    std::deque<std::function<void()>> waiting_;  // events that came while busy

    std::mutex posted_mutex_;
    std::deque<std::function<void()>> posted_;
    // Shared with the posting threads: a post that races with destruction
    // finds it cleared and drops its wake-up.
    std::shared_ptr<std::atomic<QtEventLoop*>> alive_;
};

}  // namespace tavora::ui
