#include "sim/simulator.h"

#include <cmath>
#include <cstdio>
#include <ostream>

#include "platform/clock.h"
#include "platform/dialog_stand_ins.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "platform/virtual_scheduler.h"
#include "runtime/date_text.h"
#include "runtime/dates.h"
#include "runtime/random.h"
#include "runtime/text_file.h"
#include "sim/script.h"
#include "station/station_app.h"

namespace tavora {

namespace {

constexpr double kMsPerDay = 86'400'000.0;

std::string in_quotes(const std::string& text) {
    return "\"" + text + "\"";
}

// Scripted answers, each dialog written as an event line.
class SimulatorDialogs : public Dialogs {
  public:
    SimulatorDialogs(const Clock& clock, std::ostream& out) : clock_(clock), out_(out) {}

    DialogReply Ask(const DialogRequest& request) override {
        DialogReply reply = script_.Ask(request);
        const std::string answer = request.kind == DialogKind::Message
                                       ? std::string(AnswerName(reply.answer))
                                       : in_quotes(reply.text);
        out_ << "DIALOG " << event_time(clock_.Now()) << " " << in_quotes(request.title) << " "
             << in_quotes(request.text) << " -> " << answer << "\n";
        return reply;
    }

    void Queue(const std::string& answer) {
        for (Answer button : {Answer::OK, Answer::Cancel, Answer::Abort, Answer::Retry,
                              Answer::Ignore, Answer::Yes, Answer::No}) {
            if (answer == AnswerName(button)) return script_.Queue(button);
        }
        script_.QueueText(answer);
    }

  private:
    const Clock& clock_;
    std::ostream& out_;
    ScriptedDialogs script_;
};

bool put_line(const PathMap& paths, const ScriptAction& action) {
    const auto native = paths.ToNative(action.path);
    const std::filesystem::path file = native.status == PathMap::Status::Mapped
                                           ? std::filesystem::path(native.path)
                                           : paths.install_folder() / action.path;
    TextWriter writer(file, action.kind == ScriptAction::Kind::Append ? TextWriter::Mode::Append
                                                                      : TextWriter::Mode::Create);
    writer.write_line(action.text);
    return writer.close();
}

}  // namespace

std::string event_time(double date) {
    const double ms = std::round((date - std::floor(date)) * kMsPerDay);
    char millis[8];
    std::snprintf(millis, sizeof millis, ".%03d", static_cast<int>(std::fmod(ms, 1000.0)));
    return Format(date, "yyyy-mm-dd hh:mm:ss") + millis;
}

int run_simulation(const SimulationOptions& options, std::ostream& out, std::ostream& err) {
    const Script script = parse_script(options.script);
    if (!script.error.empty()) {
        err << "tavora: script " << script.error << "\n";
        return 2;
    }

    VirtualClock clock(options.start);
    VirtualScheduler loop(clock);
    SimulatorDialogs dialogs(clock, out);
    PathMap paths(options.home);
    RecordingLauncher launcher;
    Random random;
    const Services services{clock, loop, dialogs, paths, launcher, random};

    StationApp app(services);
    app.on_end = [&loop] { loop.quit(); };
    const double end = options.start + options.duration_ms / kMsPerDay;
    long actions_run = 0;

    if (app.Sub_Main()) {
        for (const ScriptAction& action : script.actions) {
            loop.run_until(std::min(end, options.start + action.at_ms / kMsPerDay));
            if (app.ended() || clock.Now() >= end) break;
            switch (action.kind) {
                case ScriptAction::Kind::Answer:
                    dialogs.Queue(action.text);
                    break;
                case ScriptAction::Kind::Click:
                case ScriptAction::Kind::Set: {
                    Form* form = app.form(action.form);
                    const bool done =
                        form && (action.kind == ScriptAction::Kind::Click
                                     ? form->click(action.control, action.index)
                                     : form->set(action.control, action.index, action.text));
                    if (!done) {
                        err << "tavora: script line " << action.line << ": no " << action.form
                            << "." << action.control << " to act on\n";
                    }
                    break;
                }
                case ScriptAction::Kind::Append:
                case ScriptAction::Kind::Write:
                    put_line(paths, action);
                    break;
            }
            ++actions_run;
        }
        if (!app.ended()) loop.run_until(end);
    }
    app.Shutdown();
    out << "END " << event_time(clock.Now()) << " aired=0 picks=0 fallbacks=0 dead_air_s=0\n";
    return 0;
}

}  // namespace tavora
