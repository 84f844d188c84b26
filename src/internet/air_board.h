#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tavora {

// One recording as the web shows it.
struct AirItem {
    int slot = 0;
    long recid = 0;
    std::string slot_title;  // "title - artist", as the status file has it
    std::string title;
    std::string artist;
    std::string start;  // "yyyy-mm-dd hh:mm:ss.fff" of its AIR line; empty if not aired
    double length_s = 0;
    double left_s = 0;
};

// What plays, copied out of the rule state by the rule thread. The web
// thread only ever reads a published copy.
struct AirSnapshot {
    std::string mode = "idle";  // running, paused, break or idle
    bool on_air = false;
    AirItem now;
    std::vector<AirItem> next;  // the rest of the set, then the next set
    std::vector<AirItem> last;  // newest first, at most ten
    std::string status;         // the status line of the request window
    bool requests_on = false;   // the request window takes titles from the exchange file
    std::string time;           // station time of the copy
    std::uint64_t airs = 0;     // AIR events so far: a change means a new song
};

// The hand-over point between the two threads: the rule thread publishes,
// any number of web threads read or wait for the next AIR.
class AirBoard {
  public:
    void publish(AirSnapshot snapshot);
    std::shared_ptr<const AirSnapshot> current() const;
    // Waits until `airs` passes `seen`, the board closes, or the time runs
    // out; returns what is current then.
    std::shared_ptr<const AirSnapshot> wait_past(std::uint64_t seen,
                                                 std::chrono::milliseconds timeout) const;
    // Wakes every waiter for good: the server is going down.
    void close();
    bool closed() const;

  private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::shared_ptr<const AirSnapshot> current_ = std::make_shared<AirSnapshot>();
    bool closed_ = false;
};

// The snapshot as `GET /api/now-playing` answers it.
std::string now_playing_json(const AirSnapshot& snapshot);
// The one AIR event as `/api/events` sends it.
std::string air_event_json(const AirSnapshot& snapshot);

}  // namespace tavora
