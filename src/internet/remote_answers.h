#pragma once

#include <string>
#include <vector>

#include "platform/dialogs.h"

namespace tavora {

// The front end's dialogs, with one difference: while an operator's command
// from the control API runs, message boxes are answered here, not at the
// desk: "are you sure" takes the answer that goes on (the token holder has
// asked already), and the words are kept to be sent back to the caller.
// Everything else passes through.
// Rule thread only.
class RemoteAnswers : public Dialogs {
  public:
    explicit RemoteAnswers(Dialogs& inner) : inner_(inner) {}

    DialogReply Ask(const DialogRequest& request) override;

    // Between these two the questions are answered here.
    void begin_command();
    // The messages the rules gave meanwhile.
    std::vector<std::string> end_command();

  private:
    Dialogs& inner_;
    bool in_command_ = false;
    std::vector<std::string> said_;
};

}  // namespace tavora
