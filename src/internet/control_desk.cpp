#include "internet/control_desk.h"

#include <fstream>
#include <future>
#include <memory>

#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/path_map.h"
#include "runtime/date_text.h"
#include "runtime/dates.h"

namespace tavora {

ControlAnswer ControlDesk::carry_out(const std::string& command, const BreakOrder* order) {
    ControlAnswer answer;
    if (answers_) answers_->begin_command();
    if (command == "run") {
        // Run over a running bank would start the day again; the menu is
        // not pressed twice by an operator who sees the players.
        if (playback_.TimerViewer().Enabled())
            answer.note = "The players are running already.";
        else
            playback_.Run();
    } else if (command == "skip") {
        playback_.Skip_One();
    } else if (command == "pause") {
        playback_.Ply_Pse();
    } else if (command == "break" && order) {
        answer.note = arm_break(*order);
    } else {
        answer.note = "No such command.";
    }
    if (answers_) answer.said = answers_->end_command();
    answer.done = answer.note.empty();
    answer.mode = publisher_.mode();
    publisher_.publish();
    return answer;
}

std::string ControlDesk::arm_break(BreakOrder order) {
    if (s_.Run_Mode == 1) return "A station in remote use takes no break orders.";
    if (s_.SM_State == 1) return "A break order is armed already; end it before giving another.";
    if (order.date.empty()) order.date = Format(DateValueOf(services_.clock.Now()), "yyyy-mm-dd");
    const auto file = services_.paths.ToNative("c:\\tavora\\qxsm.ini").path;
    {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out << break_order_file(order);
        if (!out) return "The order file could not be written.";
    }
    // Read at once by the routine the tick calls, so the order goes through
    // exactly the station manager's path.
    manager_.SM_Check();
    return s_.SM_State == 1 ? "" : "The order was not taken.";
}

ControlAnswer ControlDesk::post_and_wait(const std::string& command, const BreakOrder* order,
                                         std::chrono::milliseconds patience) {
    auto promise = std::make_shared<std::promise<ControlAnswer>>();
    auto result = promise->get_future();
    const std::optional<BreakOrder> copy = order ? std::optional(*order) : std::nullopt;
    services_.loop.post([this, alive = std::weak_ptr<bool>(alive_), promise, command, copy] {
        if (alive.expired()) return;
        promise->set_value(carry_out(command, copy ? &*copy : nullptr));
    });
    if (result.wait_for(patience) != std::future_status::ready) {
        ControlAnswer busy;
        busy.note = "The station is busy; the command will still be carried out.";
        return busy;
    }
    return result.get();
}

}  // namespace tavora
