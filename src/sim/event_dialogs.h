#pragma once

#include <iosfwd>
#include <string>

#include "platform/clock.h"
#include "platform/dialog_stand_ins.h"
#include "platform/dialogs.h"

namespace tavora {

// Answers each dialog with the answer queued for it, or its default when
// none is, and writes it as an event line:
// DIALOG <time> "<title>" "<text>" -> <answer>.
class EventDialogs : public Dialogs {
  public:
    EventDialogs(const Clock& clock, std::ostream& out) : clock_(clock), out_(out) {}

    DialogReply Ask(const DialogRequest& request) override;

    // A button by its name (OK, Cancel, Abort, Retry, Ignore, Yes, No), or
    // the text for the next input box.
    void Queue(const std::string& answer);

  private:
    const Clock& clock_;
    std::ostream& out_;
    ScriptedDialogs script_;
};

}  // namespace tavora
