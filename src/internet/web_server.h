#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "internet/air_board.h"
#include "internet/control_api.h"
#include "internet/request_gate.h"
#include "internet/web_library.h"

namespace httplib {
class Server;
}

namespace tavora {

// What an operator's command came to, told by the rule thread.
struct ControlAnswer {
    bool done = false;              // false: the rules refused, or the station was busy
    std::string mode;               // the station's mode afterwards
    std::vector<std::string> said;  // the rules' messages on the way
    std::string note;               // our own words when it wasn't done
};

// The station's HTTP server on threads of its own. It reads the snapshots
// on the board, searches the library through its own connection, passes
// listeners' requests through the gate, and hands operator commands to the
// rule thread through `control`; it never touches the rule state itself.
class WebServer {
  public:
    struct Ports {
        AirBoard& board;
        WebLibrary& library;
        RequestGate& gate;
        // "run", "skip", "pause" or "break" (with its order); blocks until
        // the rule thread has carried it out or gave up.
        std::function<ControlAnswer(const std::string& command, const BreakOrder* order)> control;
        std::string token;  // empty: the control API refuses everything
    };
    explicit WebServer(Ports ports);
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    // Binds and starts listening; port 0 takes any free port. False, with
    // `error()`, when the address can't be bound.
    bool start(const std::string& address, int port);
    void stop();
    bool running() const { return thread_.joinable(); }
    int port() const { return port_; }
    const std::string& address() const { return address_; }
    const std::string& error() const { return error_; }

    // Worker threads: each keep-alive client or event stream holds one.
    static constexpr int kThreads = 96;

  private:
    void route();
    void route_control();

    Ports ports_;
    std::unique_ptr<httplib::Server> server_;
    std::thread thread_;
    std::atomic<bool> stopping_{false};
    std::string address_;
    int port_ = 0;
    std::string error_;
};

// The listener's page and its script and style.
extern const char* const kWebPageHtml;
extern const char* const kWebPageScript;
extern const char* const kWebPageStyle;

}  // namespace tavora
