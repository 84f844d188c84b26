#include "sim/event_dialogs.h"

#include <ostream>

#include "sim/event_log.h"

namespace tavora {

namespace {

std::string in_quotes(const std::string& text) {
    return "\"" + text + "\"";
}

}  // namespace

DialogReply EventDialogs::Ask(const DialogRequest& request) {
    DialogReply reply = script_.Ask(request);
    const std::string answer = request.kind == DialogKind::Message
                                   ? std::string(AnswerName(reply.answer))
                                   : in_quotes(reply.text);
    out_ << "DIALOG " << event_time(clock_.Now()) << " " << in_quotes(request.title) << " "
         << in_quotes(request.text) << " -> " << answer << "\n";
    return reply;
}

void EventDialogs::Queue(const std::string& answer) {
    for (Answer button : {Answer::OK, Answer::Cancel, Answer::Abort, Answer::Retry, Answer::Ignore,
                          Answer::Yes, Answer::No}) {
        if (answer == AnswerName(button)) return script_.Queue(button);
    }
    script_.QueueText(answer);
}

}  // namespace tavora
