#include "internet/remote_answers.h"

#include <algorithm>
#include <utility>

namespace tavora {

DialogReply RemoteAnswers::Ask(const DialogRequest& request) {
    if (!in_command_ || request.kind != DialogKind::Message) return inner_.Ask(request);
    said_.push_back(request.text);
    const std::vector<Answer> buttons = ButtonsOf(request.buttons);
    for (const Answer goes_on : {Answer::Yes, Answer::OK, Answer::Retry}) {
        if (std::find(buttons.begin(), buttons.end(), goes_on) != buttons.end())
            return DialogReply{goes_on, {}};
    }
    return DefaultReply(request);
}

void RemoteAnswers::begin_command() {
    in_command_ = true;
    said_.clear();
}

std::vector<std::string> RemoteAnswers::end_command() {
    in_command_ = false;
    return std::exchange(said_, {});
}

}  // namespace tavora
