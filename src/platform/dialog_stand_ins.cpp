#include "platform/dialog_stand_ins.h"

#include <algorithm>

namespace tavora {

bool ScriptedDialogs::Fits(const Queued& q, const DialogRequest& request) const {
    if (request.kind != DialogKind::Message) {
        return q.has_text || q.answer == Answer::OK || q.answer == Answer::Cancel;
    }
    if (q.has_text) return false;
    const auto set = ButtonsOf(request.buttons);
    return std::find(set.begin(), set.end(), q.answer) != set.end();
}

DialogReply ScriptedDialogs::Ask(const DialogRequest& request) {
    Shown shown{request, DefaultReply(request), false};
    if (!queued_.empty() && Fits(queued_.front(), request)) {
        const Queued q = std::move(queued_.front());
        queued_.pop_front();
        shown.scripted = true;
        if (q.has_text) {
            shown.reply = {Answer::OK, q.text};
        } else if (q.answer == Answer::Cancel) {
            shown.reply = {Answer::Cancel, {}};
        } else {
            shown.reply.answer = q.answer;
        }
    }
    if (sink_) sink_(DescribeDialog(shown.request, shown.reply));
    shown_.push_back(shown);
    return shown.reply;
}

DialogReply LoggingDialogs::Ask(const DialogRequest& request) {
    const DialogReply reply = DefaultReply(request);
    if (sink_) sink_(DescribeDialog(request, reply));
    return reply;
}

}  // namespace tavora
