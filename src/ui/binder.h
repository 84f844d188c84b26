#pragma once

// How a window of the rules reaches the screen.
//
// A window is a `Form` (its controls' state and handlers) and a layout: a Qt
// Designer .ui file in src/ui/windows, compiled by AUTOUIC, whose widgets
// carry the controls' names ("Command7"; "RB_3" for member 3 of the array
// RB; menu items are QActions, menus QMenus, named the same way). Adding a
// window is its .ui file and one line in window_factory.cpp; nothing else.
//
// Binder::bind pairs a form with the widget its layout was set up on. Then:
// - sync() copies every control's state to its widget when it changed:
//   Caption (button, label, check, group box, menu, action text), Text (line
//   edit, text edit, editable combo; a browser's page, a DOS path or URL),
//   ToolTipText, Visible, Enabled, BackColor/ForeColor (blue-green-red
//   numbers, converted here; a system colour or a plain control's untouched
//   white leaves the layout's palette), Value (check 0/1/2, option -1,
//   progress bar; the page of a tab strip, by ListIndex when the control
//   has a List, else by Value), List and ListIndex (combo, list; a tab
//   strip's page titles). A caption no rule has set yet leaves the layout's
//   words. The form's Caption is
//   the window title, Visible shows and hides it, Left/Top (twips) place it,
//   MousePointer 11 is the hourglass.
// - the widgets' signals become Form::fire, each as one event of the rule
//   thread: a click of a button, action or label is "Click"; a check box
//   or option button sets Value, then "Click"; an edit sets Text, then
//   "Change", and "LostFocus" when editing ends; a combo or list pick sets
//   ListIndex and Text, then "Click", a double click "DblClick"; a menu's
//   opening is its "Click"; a tab picked sets the page, then "Click"; an
//   up-down arrow (a spin box) is "UpClick" or "DownClick", then "Change";
//   a key press is "KeyPress" with Form::KeyAscii.
//   A control a rule disabled ignores them all.
// - a menu item whose control has no Click handler is greyed: its window
//   comes with a later piece of the station.
// - the close box runs Form::close (its QueryUnload decides).
// - grids and boxes that name a data control of the window show its rows
//   and its current record (data_binding.h).
// A control without a widget is state only; a widget without a control is
// decoration. Windows without a layout get a plain generated one.

#include <QObject>
#include <QPalette>
#include <QPointer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/forms/form.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "ui/qt_event_loop.h"

class QWidget;
class QColor;
class QUrl;

namespace tavora::ui {

// The colour of a blue-green-red number.
QColor ColourOf(long bgr);
// The widget name of a control: "RB_3" for RB(3).
std::string WidgetName(const std::string& control, int index);

class Binder : public QObject {
  public:
    Binder(QtEventLoop& loop, const PathMap& paths, Launcher& launcher);
    ~Binder() override;

    // Pairs `form` with `window`, the widget its layout was set up on (or
    // that widget's sub-window in the frame). `extra` runs after each sync
    // of this window, for the few things that are not controls.
    void bind(Form& form, QWidget& window, std::function<void()> extra = {});

    // Copies the state of every bound window to its widgets; cheap when
    // nothing changed.
    void sync();

    QWidget* window_of(const Form& form) const;
    std::size_t window_count() const { return windows_.size(); }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  public:
    struct Binding;
    struct Window;

  private:
    void connect_signals(Window& window, Binding& binding);
    void sync_window(Window& window);
    void fire(Form& form, Control& control, const char* event);
    void open_link(Window& window, Binding& binding, const QUrl& url);

    QtEventLoop& loop_;
    const PathMap& paths_;
    Launcher& launcher_;
    std::vector<std::unique_ptr<Window>> windows_;
};

}  // namespace tavora::ui
