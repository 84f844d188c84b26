#include "internet/web_server.h"

#include <httplib.h>

#include <charconv>
#include <chrono>
#include <iostream>
#include <thread>

#include "internet/web_text.h"

namespace tavora {

namespace {

constexpr const char* kJson = "application/json; charset=utf-8";
// A half-open or trickling client gives its thread back after this long.
constexpr int kReadTimeoutS = 5;
constexpr int kKeepAliveS = 5;
constexpr std::size_t kKeepAliveRequests = 1000;
constexpr std::size_t kMaxBody = 16 * 1024;
constexpr auto kEventPing = std::chrono::seconds(15);
constexpr int kPerPage = 25;
constexpr const char* kBootMark = "<!--BOOT-->";

int int_param(const httplib::Request& req, const char* name, int fallback) {
    if (!req.has_param(name)) return fallback;
    const std::string text = req.get_param_value(name);
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? value : fallback;
}

void send_json(httplib::Response& res, int status, const std::string& body) {
    res.status = status;
    res.set_header("Cache-Control", "no-store");
    res.set_content(body, kJson);
}

void send_error(httplib::Response& res, int status, const std::string& message) {
    send_json(res, status, "{\"error\":" + json_string(message) + "}");
}

std::string library_json(const WebLibrary::Page& page, const std::string& query) {
    std::string rows;
    for (const WebLibrary::Row& row : page.rows) {
        if (!rows.empty()) rows += ",";
        rows += "{\"recid\":" + std::to_string(row.recid) + ",\"title\":" + json_string(row.title) +
                ",\"artist\":" + json_string(row.artist) + ",\"chart\":" + json_string(row.chart) +
                "}";
    }
    return "{\"q\":" + json_string(query) + ",\"total\":" + std::to_string(page.total) +
           ",\"page\":" + std::to_string(page.page) +
           ",\"per_page\":" + std::to_string(page.per_page) + ",\"rows\":[" + rows + "]}";
}

int status_of(GateAnswer::Result result) {
    switch (result) {
        case GateAnswer::Result::Requested:
            return 200;
        case GateAnswer::Result::Unknown:
            return 404;
        case GateAnswer::Result::Limit:
        case GateAnswer::Result::Recent:
            return 429;
        case GateAnswer::Result::Off:
        case GateAnswer::Result::Unwritable:
            return 503;
        case GateAnswer::Result::Empty:
            return 400;
    }
    return 400;
}

std::string bearer_token(const httplib::Request& req) {
    const std::string header = req.get_header_value("Authorization");
    if (header.rfind("Bearer ", 0) == 0) return header.substr(7);
    return req.get_param_value("token");
}

std::string control_json(const ControlAnswer& answer) {
    std::string said;
    for (const std::string& words : answer.said) {
        if (!said.empty()) said += ",";
        said += json_string(words);
    }
    return "{\"done\":" + std::string(answer.done ? "true" : "false") +
           ",\"mode\":" + json_string(answer.mode) + ",\"said\":[" + said +
           "],\"note\":" + json_string(answer.note) + "}";
}

}  // namespace

WebServer::WebServer(Ports ports) : ports_(std::move(ports)) {}

WebServer::~WebServer() {
    stop();
}

bool WebServer::start(const std::string& address, int port) {
    if (running()) return true;
    server_ = std::make_unique<httplib::Server>();
    server_->new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
    server_->set_read_timeout(kReadTimeoutS, 0);
    server_->set_write_timeout(kReadTimeoutS, 0);
    server_->set_keep_alive_timeout(kKeepAliveS);
    server_->set_keep_alive_max_count(kKeepAliveRequests);
    server_->set_tcp_nodelay(true);
    server_->set_payload_max_length(kMaxBody);
    server_->set_default_headers(
        {{"X-Content-Type-Options", "nosniff"}, {"Referrer-Policy", "no-referrer"}});
    // A fault in one answer is that answer's 500, never the station's end.
    server_->set_exception_handler(
        [](const httplib::Request&, httplib::Response& res, std::exception_ptr) {
            send_error(res, 500, "The station could not answer that.");
        });
    route();
    route_control();

    stopping_ = false;
    address_ = address;
    port_ = port == 0 ? server_->bind_to_any_port(address) : port;
    if (port_ <= 0 || (port != 0 && !server_->bind_to_port(address, port))) {
        error_ = "cannot listen on " + address + ":" + std::to_string(port);
        server_.reset();
        port_ = 0;
        return false;
    }
    thread_ = std::thread([this] {
        try {
            server_->listen_after_bind();
        } catch (const std::exception& e) {
            std::cerr << "tavora: the web server stopped: " << e.what() << "\n";
        }
    });
    // The server's stop only ends a listen that has begun: a stop right after
    // the start would otherwise leave its thread listening for ever.
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!server_->is_running() && std::chrono::steady_clock::now() < give_up)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return true;
}

void WebServer::stop() {
    if (!running()) return;
    stopping_ = true;
    // Event streams wait on the board: closing it lets their threads go.
    ports_.board.close();
    server_->stop();
    thread_.join();
    server_.reset();
}

void WebServer::route() {
    httplib::Server& s = *server_;
    s.Get("/", [this](const httplib::Request&, httplib::Response& res) {
        res.set_header("Cache-Control", "no-store");
        res.set_header("Content-Security-Policy",
                       "default-src 'self'; img-src 'self' data:; frame-ancestors 'none'");
        // JSON in a data block: json_string escapes "<", so no title can end it.
        const std::string first = "<script type=\"application/json\" id=\"boot\">{\"now\":" +
                                  now_playing_json(*ports_.board.current()) + ",\"library\":" +
                                  library_json(ports_.library.search("", 1, kPerPage), "") +
                                  "}</script>";
        std::string page = kWebPageHtml;
        page.replace(page.find(kBootMark), std::string_view(kBootMark).size(), first);
        res.set_content(page, "text/html; charset=utf-8");
    });
    s.Get("/app.js", [](const httplib::Request&, httplib::Response& res) {
        res.set_header("Cache-Control", "no-cache");
        res.set_content(kWebPageScript, "text/javascript; charset=utf-8");
    });
    s.Get("/app.css", [](const httplib::Request&, httplib::Response& res) {
        res.set_header("Cache-Control", "no-cache");
        res.set_content(kWebPageStyle, "text/css; charset=utf-8");
    });
    s.Get("/api/now-playing", [this](const httplib::Request&, httplib::Response& res) {
        send_json(res, 200, now_playing_json(*ports_.board.current()));
    });
    s.Get("/api/library", [this](const httplib::Request& req, httplib::Response& res) {
        const std::string query = clean_web_text(req.get_param_value("q"), 100);
        const WebLibrary::Page page = ports_.library.search(query, int_param(req, "page", 1),
                                                            int_param(req, "per_page", kPerPage));
        send_json(res, 200, library_json(page, query));
    });
    s.Post("/api/request", [this](const httplib::Request& req, httplib::Response& res) {
        const GateAnswer answer =
            ports_.gate.request(req.remote_addr, req.get_param_value("title"));
        send_json(res, status_of(answer.result),
                  "{\"result\":" + json_string(result_name(answer.result)) +
                      ",\"title\":" + json_string(answer.title) +
                      ",\"message\":" + json_string(answer.message) + "}");
    });
    s.Get("/api/events", [this](const httplib::Request&, httplib::Response& res) {
        res.set_header("Cache-Control", "no-store");
        res.set_header("X-Accel-Buffering", "no");
        auto seen = std::make_shared<std::uint64_t>(0);
        auto first = std::make_shared<bool>(true);
        res.set_chunked_content_provider(
            "text/event-stream", [this, seen, first](std::size_t, httplib::DataSink& sink) {
                std::string event;
                if (*first) {
                    // The stream opens with what airs now, so a page is whole at once.
                    *first = false;
                    const auto now = ports_.board.current();
                    *seen = now->airs;
                    event = "event: now\ndata: " + air_event_json(*now) + "\n\n";
                } else {
                    const auto now = ports_.board.wait_past(*seen, kEventPing);
                    if (stopping_ || ports_.board.closed()) {
                        sink.done();
                        return true;
                    }
                    if (now->airs > *seen) {
                        *seen = now->airs;
                        event = "event: air\ndata: " + air_event_json(*now) + "\n\n";
                    } else {
                        event = ": still here\n\n";  // keeps proxies from closing the stream
                    }
                }
                return sink.write(event.data(), event.size());
            });
    });
    s.set_error_handler([](const httplib::Request&, httplib::Response& res) {
        if (res.body.empty()) send_error(res, res.status, "Not here.");
    });
}

void WebServer::route_control() {
    for (const char* command : {"run", "skip", "pause", "break"}) {
        server_->Post(std::string("/api/") + command, [this, command](const httplib::Request& req,
                                                                      httplib::Response& res) {
            if (!control_allowed(req.remote_addr, address_))
                return send_error(res, 403, "The control API answers only on this machine.");
            if (!token_matches(bearer_token(req), ports_.token))
                return send_error(res, 403, "The control API needs the station's token.");
            if (!ports_.control) return send_error(res, 503, "The station takes no commands.");
            BreakParse order;
            if (std::string(command) == "break") {
                std::multimap<std::string, std::string> fields(req.params.begin(),
                                                               req.params.end());
                order = parse_break_order(fields);
                if (!order.order) return send_error(res, 400, order.error);
            }
            const ControlAnswer answer =
                ports_.control(command, order.order ? &*order.order : nullptr);
            send_json(res, answer.done ? 200 : 409, control_json(answer));
        });
    }
}

}  // namespace tavora
