#pragma once

#include <functional>
#include <string>

#include "platform/dialogs.h"
#include "platform/path_map.h"

class QWidget;
class QString;

namespace tavora::ui {

// Message boxes, input boxes and file dialogs of Qt behind the rules' one
// dialog interface. The words, buttons and default are the request's; the
// window's close box answers Cancel, or the default button when the set has
// no Cancel. File dialogs show this machine's paths and hand back the
// stored DOS form through the path map.
class QtDialogs : public Dialogs {
  public:
    explicit QtDialogs(const PathMap& paths) : paths_(paths) {}

    DialogReply Ask(const DialogRequest& request) override;

    // The window dialogs stand over; null for none.
    QWidget* parent = nullptr;
    // Runs before a dialog shows, so the screens behind it are current.
    std::function<void()> before_show;

    // The caption of a message box or input box asked without a title.
    static constexpr const char* kDefaultTitle = "Tavora Music System";

  private:
    DialogReply message(const DialogRequest& request);
    DialogReply input(const DialogRequest& request);
    DialogReply file(const DialogRequest& request);

    const PathMap& paths_;
};

// "Text files|*.txt;*.log|All|*.*" as a Qt name filter list.
QString QtFilter(const std::string& filter);

}  // namespace tavora::ui
