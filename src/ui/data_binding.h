#pragma once

// Grids and boxes bound to a window's data controls.
//
// A widget names its data control in the layout with the dynamic property
// `dataSource`, as a bound control does. A table view shows that control's
// rows: its columns are the window's controls of the grid's own name
// (DataGrid1(0), DataGrid1(1), ...), each captioned with its field, or every
// field when the window has none. A line edit with `dataField` too shows
// that field of the current row.
// - a row picked in a grid moves the data control there and runs its
//   Reposition; a head click is the column's "HeadClick", a cell click its
//   "Click";
// - a column is editable when the window handles its "Change": the typed
//   text becomes the column's Text, then "Change";
// - typing into a bound box puts the current row into Edit and sets the
//   field; the window's own Update writes it. A value the field refuses
//   goes back to the field's when the editing ends.
// Grid events are queued, so that no rule runs inside an item view's own
// signal (an edit being committed, a header being pressed).

#include <QObject>
#include <memory>
#include <string>
#include <vector>

#include "core/forms/form.h"
#include "ui/qt_event_loop.h"

class QWidget;

namespace tavora::ui {

class DataBindings : public QObject {
  public:
    DataBindings(Form& form, QWidget& window, QtEventLoop& loop);
    ~DataBindings() override;

    bool empty() const { return grids_.empty() && boxes_.empty(); }
    // Brings the grids and boxes up to date with their data controls.
    void sync();

    struct Grid;
    struct Box;

  private:
    void bind_grid(QWidget& view, const Form::DataLink& link);
    void bind_box(QWidget& edit, const Form::DataLink& link, const QString& field);
    void fire(Grid& grid, int column, const char* event);
    void move(Grid& grid, int row);
    void edit(Grid& grid, int row, int column, std::string text);

    Form& form_;
    QtEventLoop& loop_;
    std::vector<std::unique_ptr<Grid>> grids_;
    std::vector<std::unique_ptr<Box>> boxes_;
};

}  // namespace tavora::ui
