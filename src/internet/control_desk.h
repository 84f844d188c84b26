#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "core/services.h"
#include "core/station.h"
#include "internet/air_publisher.h"
#include "internet/remote_answers.h"
#include "internet/station_manager.h"
#include "internet/web_server.h"
#include "playback/playback.h"

namespace tavora {

// The operator's commands from the control API, carried out on the rule
// thread through the same routines as the menu and the station manager's
// order file. `answers`, when the front end gave one, answers the rules'
// questions for the caller; without it they go to the desk as usual.
class ControlDesk {
  public:
    ControlDesk(Station& station, Playback& playback, StationManagerLink& manager,
                const Services& services, RemoteAnswers* answers, AirPublisher& publisher)
        : s_(station),
          playback_(playback),
          manager_(manager),
          services_(services),
          answers_(answers),
          publisher_(publisher) {}

    // Rule thread: one command, then a fresh snapshot.
    ControlAnswer carry_out(const std::string& command, const BreakOrder* order);

    // Any thread: hands the command to the rule thread and waits for its
    // answer, at most `patience` (a selection pass may hold the thread).
    ControlAnswer post_and_wait(const std::string& command, const BreakOrder* order,
                                std::chrono::milliseconds patience);

  private:
    std::string arm_break(BreakOrder order);

    Station& s_;
    Playback& playback_;
    StationManagerLink& manager_;
    const Services& services_;
    RemoteAnswers* answers_;
    AirPublisher& publisher_;
    // Commands still queued when the desk goes are dropped, not run on a
    // dead desk.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace tavora
