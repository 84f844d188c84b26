#pragma once

#include <QMainWindow>
#include <memory>
#include <vector>

#include "ui/binder.h"

class QMdiArea;

namespace tavora {
class StationApp;
class Form;
}  // namespace tavora

namespace tavora::ui {

class FrameFitter;

// The frame of the desktop: QXMain's window with its menus and status bar,
// and every other window of the station as a sub-window inside it, each set
// up from its layout and bound to its form.
class Desktop {
  public:
    Desktop(StationApp& app, Binder& binder);
    ~Desktop();

    QMainWindow& main_window() { return *main_; }
    QMdiArea& frame() { return *frame_; }
    // The widget a form's layout was set up on; null if not shown here.
    QWidget* widget_of(const Form& form);
    // The window on screen: the frame's sub-window holding the form's widget.
    QWidget* window_of(const Form& form) { return binder_.window_of(form); }

  private:
    void add_window(Form& form, std::function<void()> extra = {});
    void add_status_panels();

    StationApp& app_;
    Binder& binder_;
    std::unique_ptr<QMainWindow> main_;
    QMdiArea* frame_ = nullptr;
    FrameFitter* fitter_ = nullptr;  // owned by the frame
    std::vector<std::pair<const Form*, QWidget*>> widgets_;
};

}  // namespace tavora::ui
