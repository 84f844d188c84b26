#pragma once

#include <memory>
#include <string>

#include "core/services.h"
#include "internet/remote_answers.h"
#include "internet/web_settings.h"
#include "station/station_app.h"

namespace tavora {

// The station's own web page and API, wired to a station in one place: a
// front end makes one of these beside its StationApp, feeds it the AIR
// events, and calls start and stop. Rule thread only, except that the
// server it starts runs on threads of its own.
class StationWeb {
  public:
    // `answers`, when the front end built its services on one, lets the
    // control API answer the rules' questions instead of the desk.
    StationWeb(StationApp& app, const Services& services, RemoteAnswers* answers = nullptr);
    ~StationWeb();
    StationWeb(const StationWeb&) = delete;
    StationWeb& operator=(const StationWeb&) = delete;

    // After start-up (the library must be known). Empty when it listens,
    // else the reason it doesn't.
    std::string start(const WebSettings& settings);
    void stop();
    bool running() const;
    // "http://ADDR:PORT/", or empty while off.
    std::string url() const;
    int port() const;

    // Each AIR as the event lines tell it.
    void aired(int slot, double when);

  private:
    struct Parts;
    StationApp& app_;
    const Services& services_;
    RemoteAnswers* answers_;
    std::unique_ptr<Parts> parts_;
};

// The settings of web.ini in the install folder, with --web's address laid
// over them ("" leaves the file's choice). Problems with the file go to
// `problems`.
WebSettings web_settings_for(const std::filesystem::path& install_folder,
                             const std::string& web_option, std::string& problems);

}  // namespace tavora
