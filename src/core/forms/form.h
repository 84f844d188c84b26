#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/forms/control.h"

namespace tavora {

class DataControl;

// Base of every window's screen-state class: the window's own state and a
// registry of its controls by name and index, so that tests, the simulator's
// scripts and the Qt layer can click any control by name.
class Form {
  public:
    using Handler = std::function<void(int index)>;

    explicit Form(std::string name);
    virtual ~Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& name() const { return name_; }

    std::string Caption;
    bool Visible = false;
    bool Loaded = false;
    int WindowState = 0;  // 0 normal, 1 minimised, 2 maximised
    double Left = 0;
    double Top = 0;
    double Width = 0;
    double Height = 0;
    int MousePointer = 0;  // 11 is the hourglass
    int KeyAscii = 0;      // the key of the KeyPress being handled

    // The window's close box. Without a handler the window just hides; a
    // handler that returns false keeps it open.
    std::function<bool()> QueryUnload;
    // What the close box does: true when the window is now hidden.
    bool close();

    // The control by name, and index for a member of a control array; null
    // when the window has no such control.
    Control* find(std::string_view control, int index = -1);
    const Control* find(std::string_view control, int index = -1) const;

    // Runs the control's handler for an event ("Click", "LostFocus",
    // "Scroll", "Change", ...). False when the control or handler is missing.
    bool fire(std::string_view control, int index, std::string_view event);
    bool click(std::string_view control, int index = -1) { return fire(control, index, "Click"); }

    // Puts a value into a control as an operator would: a text box takes the
    // text and raises Change; a check box takes 0/1 and raises Click; a list
    // or combo selects the row with that text (or that number) and raises
    // Click. False when the control is missing or the value doesn't fit.
    bool set(std::string_view control, int index, const std::string& value);

    // One handler for every member of a control array, as the windows have.
    // Public so that the station can wire a menu to a window of a subsystem
    // that the window's own layer doesn't see.
    void on(std::string control, std::string event, Handler handler);
    void on_click(std::string control, Handler handler) {
        on(std::move(control), "Click", std::move(handler));
    }

    // True when the control has a handler for the event, so that a front
    // end can grey a command nothing answers yet.
    bool handles(std::string_view control, std::string_view event) const;

    enum class Kind { Plain, TextBox, CheckBox, List };
    // Every control in order of creation, with its kind, for front ends
    // that render a window they have no layout for.
    struct Entry {
        Control* control;
        Kind kind;
    };
    std::vector<Entry> controls() const;

    // A data control of the window, for front ends that show its rows in a
    // grid or bind boxes to its fields. `Reposition` is the window's own
    // handler, run after such a front end moved to another row.
    struct DataLink {
        DataControl* control;
        std::function<void()> Reposition;
    };
    // Null when the window has no data control of that name.
    const DataLink* data(std::string_view name) const;

  protected:
    Control& add(std::string control, int index = -1, Kind kind = Kind::Plain);
    Control& add_text(std::string control, int index = -1) {
        return add(std::move(control), index, Kind::TextBox);
    }
    Control& add_check(std::string control, int index = -1) {
        return add(std::move(control), index, Kind::CheckBox);
    }
    Control& add_list(std::string control, int index = -1) {
        return add(std::move(control), index, Kind::List);
    }

    void add_data(std::string name, DataControl& control, std::function<void()> reposition = {});

  private:
    struct Owned {
        std::unique_ptr<Control> control;
        Kind kind;
    };
    std::string name_;
    std::map<std::pair<std::string, int>, Owned> controls_;
    std::vector<std::pair<std::string, int>> order_;
    std::map<std::pair<std::string, std::string>, Handler> handlers_;
    std::map<std::string, DataLink, std::less<>> data_;
};

}  // namespace tavora
