#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>

namespace tavora {

// What a listener's request came to.
struct GateAnswer {
    enum class Result { Requested, Empty, Off, Unknown, Limit, Recent, Unwritable };
    Result result = Result::Empty;
    std::string title;    // the cleaned title
    std::string message;  // the words the listener sees
};
const char* result_name(GateAnswer::Result result);

// The web's own guard in front of the request exchange: one listener
// address gets at most `per_hour` titles an hour, and one title goes to the
// file at most once in 15 minutes, whoever asks. What passes is appended to
// newreq.tqf by `append` (on the rule thread), where the request window
// takes it up as it would the station manager's. Safe from any thread.
class RequestGate {
  public:
    struct Ports {
        std::function<bool()> requests_on;                    // the request window reads the file
        std::function<bool(const std::string& title)> known;  // a library title
        std::function<bool(const std::string& item)> append;  // one item onto newreq.tqf
        std::function<double()> seconds = [] {
            return std::chrono::duration<double>(
                       std::chrono::steady_clock::now().time_since_epoch())
                .count();
        };
    };
    RequestGate(Ports ports, int per_hour) : ports_(std::move(ports)), per_hour_(per_hour) {}

    GateAnswer request(const std::string& address, const std::string& raw_title);

    static constexpr double kHour = 3600;
    static constexpr double kSameTitle = 15 * 60;

  private:
    void forget_old(double now);

    Ports ports_;
    const int per_hour_;
    std::mutex mutex_;
    std::map<std::string, std::deque<double>> by_address_;
    std::map<std::string, double> by_title_;
};

// A title as one item of newreq.tqf: a comma would split it, so such a
// title goes in double quotes. Empty when it can't be one item.
std::string exchange_item(const std::string& title);

}  // namespace tavora
