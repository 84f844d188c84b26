#include "station/station_web.h"

#include "internet/air_publisher.h"
#include "internet/control_desk.h"
#include "internet/web_server.h"
#include "platform/path_map.h"
#include "runtime/text_file.h"

namespace tavora {

namespace {

constexpr int kRepublishMs = 1000;
constexpr auto kControlPatience = std::chrono::seconds(5);

}  // namespace

struct StationWeb::Parts {
    AirBoard board;
    std::unique_ptr<WebLibrary> library;
    std::unique_ptr<AirPublisher> publisher;
    std::unique_ptr<ControlDesk> desk;
    std::unique_ptr<RequestGate> gate;
    std::unique_ptr<WebServer> server;
    std::unique_ptr<Timer> republish;
};

StationWeb::StationWeb(StationApp& app, const Services& services, RemoteAnswers* answers)
    : app_(app), services_(services), answers_(answers) {
    app_.manager.web_page = [this] { return url(); };
}

StationWeb::~StationWeb() {
    if (app_.manager.web_page) app_.manager.web_page = nullptr;
    stop();
}

std::string StationWeb::start(const WebSettings& settings) {
    if (running()) return {};
    auto parts = std::make_unique<Parts>();
    const std::filesystem::path library = services_.paths.ToNative(app_.station.Act_Db).path;
    parts->library = std::make_unique<WebLibrary>(library);
    if (!parts->library->ok()) return "the web page cannot read the library " + library.string();

    WebLibrary& lib = *parts->library;
    parts->publisher = std::make_unique<AirPublisher>(
        app_.station, app_.playback, app_.request, services_.clock, parts->board,
        [&lib](long recid) { return lib.names_of(recid); });
    parts->desk = std::make_unique<ControlDesk>(app_.station, app_.playback, app_.manager,
                                                services_, answers_, *parts->publisher);

    AirBoard& board = parts->board;
    RequestGate::Ports gate;
    gate.requests_on = [&board] { return board.current()->requests_on; };
    gate.known = [&lib](const std::string& title) { return lib.has_title(title); };
    // The file is the request window's: the rule thread appends, so a reset
    // of the list never crosses a write.
    const std::filesystem::path newreq = services_.paths.ToNative("c:\\tavora\\newreq.tqf").path;
    EventLoop& loop = services_.loop;
    gate.append = [&loop, newreq](const std::string& item) {
        loop.post([newreq, item] {
            TextWriter out(newreq, TextWriter::Mode::Append);
            out.write_line(item);
            out.close();
        });
        return true;
    };
    parts->gate = std::make_unique<RequestGate>(std::move(gate), settings.requests_per_hour);

    ControlDesk& desk = *parts->desk;
    parts->server = std::make_unique<WebServer>(
        WebServer::Ports{board, lib, *parts->gate,
                         [&desk](const std::string& command, const BreakOrder* order) {
                             return desk.post_and_wait(command, order, kControlPatience);
                         },
                         settings.token});
    parts->publisher->publish();
    if (!parts->server->start(settings.address, settings.port)) return parts->server->error();

    AirPublisher& publisher = *parts->publisher;
    parts->republish = services_.loop.CreateTimer([&publisher] { publisher.publish(); });
    parts->republish->SetInterval(kRepublishMs);
    parts->republish->SetEnabled(true);
    parts_ = std::move(parts);
    return {};
}

void StationWeb::stop() {
    if (!parts_) return;
    parts_->board.close();
    parts_->server->stop();
    parts_.reset();
}

bool StationWeb::running() const {
    return parts_ && parts_->server->running();
}

std::string StationWeb::url() const {
    if (!running()) return {};
    const std::string host =
        parts_->server->address() == "0.0.0.0" ? "127.0.0.1" : parts_->server->address();
    return "http://" + host + ":" + std::to_string(parts_->server->port()) + "/";
}

int StationWeb::port() const {
    return running() ? parts_->server->port() : 0;
}

void StationWeb::aired(int slot, double when) {
    if (parts_) parts_->publisher->aired(slot, when);
}

WebSettings web_settings_for(const std::filesystem::path& install_folder,
                             const std::string& web_option, std::string& problems) {
    // The switches are easier found in a file that is there.
    write_default_web_settings(install_folder / "web.ini");
    WebSettingsFile file = read_web_settings(install_folder / "web.ini");
    problems = file.problems;
    if (web_option.empty()) return file.settings;
    if (const auto address = parse_web_address(web_option)) {
        file.settings.enabled = true;
        file.settings.address = address->address;
        file.settings.port = address->port;
    } else {
        problems +=
            "--web needs [ADDR:]PORT, such as 8080 or 127.0.0.1:8080, not \"" + web_option + "\"\n";
    }
    return file.settings;
}

}  // namespace tavora
