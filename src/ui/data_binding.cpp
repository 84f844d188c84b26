#include "ui/data_binding.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QPointer>
#include <QStyledItemDelegate>
#include <QTableView>
#include <optional>

#include "store/data_control.h"
#include "ui/records_model.h"

namespace tavora::ui {

namespace {

// Knows the row whose cell is being typed into, which a refresh must leave
// alone: the view would put the field's value back over the typing.
class CellDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    int editing_row() const { return editing_row_; }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        editing_row_ = index.row();
        return QStyledItemDelegate::createEditor(parent, option, index);
    }
    void destroyEditor(QWidget* editor, const QModelIndex& index) const override {
        editing_row_ = -1;
        QStyledItemDelegate::destroyEditor(editor, index);
    }

  private:
    mutable int editing_row_ = -1;
};

}  // namespace

struct DataBindings::Grid {
    std::string name;  // the grid's, and its columns' control name
    const Form::DataLink* link = nullptr;
    QPointer<QTableView> view;
    std::unique_ptr<RecordsModel> model;
    CellDelegate* cells = nullptr;  // owned by the view
    bool syncing = false;           // the view is being put on the current row
};

struct DataBindings::Box {
    const Form::DataLink* link = nullptr;
    QPointer<QLineEdit> edit;
    std::string field;
    std::optional<std::string> shown;  // the field's text the box was given
};

namespace {

constexpr const char* kSource = "dataSource";
constexpr const char* kField = "dataField";
constexpr int kSampledRows = 40;

}  // namespace

DataBindings::DataBindings(Form& form, QWidget& window, QtEventLoop& loop)
    : form_(form), loop_(loop) {
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        const QVariant source = widget->property(kSource);
        if (!source.isValid()) continue;
        const Form::DataLink* link = form.data(source.toString().toStdString());
        if (!link) continue;
        if (qobject_cast<QTableView*>(widget)) {
            bind_grid(*widget, *link);
        } else if (qobject_cast<QLineEdit*>(widget)) {
            bind_box(*widget, *link, widget->property(kField).toString());
        }
    }
}

DataBindings::~DataBindings() = default;

void DataBindings::bind_grid(QWidget& widget, const Form::DataLink& link) {
    auto grid = std::make_unique<Grid>();
    Grid& g = *grid;
    g.name = widget.objectName().toStdString();
    g.link = &link;
    g.view = static_cast<QTableView*>(&widget);
    std::vector<const Control*> columns;
    for (int column = 0; const Control* control = form_.find(g.name, column); ++column)
        columns.push_back(control);
    const bool typing = form_.handles(g.name, "Change");
    g.model = std::make_unique<RecordsModel>(
        *link.control, std::move(columns), [typing](int) { return typing; },
        [this, &g](int row, int column, std::string text) {
            edit(g, row, column, std::move(text));
        });
    QTableView& view = *g.view;
    view.setModel(g.model.get());
    g.cells = new CellDelegate(&view);
    view.setItemDelegate(g.cells);
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setSelectionMode(QAbstractItemView::SingleSelection);
    view.setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                         QAbstractItemView::AnyKeyPressed);
    // Uniform rows, and columns fitted to a sample of rows: a view over the
    // whole library never measures all of them.
    view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view.horizontalHeader()->setResizeContentsPrecision(kSampledRows);
    view.horizontalHeader()->setSectionsClickable(true);
    // The last column takes the room that is left, so no empty band remains.
    view.horizontalHeader()->setStretchLastSection(true);
    view.resizeColumnsToContents();
    connect(view.selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this, &g](const QModelIndex& current) {
                if (!g.syncing && current.isValid()) move(g, current.row());
            });
    connect(&view, &QTableView::clicked, this,
            [this, &g](const QModelIndex& cell) { fire(g, cell.column(), "Click"); });
    connect(view.horizontalHeader(), &QHeaderView::sectionClicked, this,
            [this, &g](int column) { fire(g, column, "HeadClick"); });
    grids_.push_back(std::move(grid));
}

void DataBindings::bind_box(QWidget& widget, const Form::DataLink& link, const QString& field) {
    auto box = std::make_unique<Box>();
    Box& b = *box;
    b.link = &link;
    b.edit = static_cast<QLineEdit*>(&widget);
    b.field = field.toStdString();
    connect(b.edit, &QLineEdit::textEdited, this, [this, &b](const QString& text) {
        loop_.run_event([&b, value = text.toStdString()] {
            Recordset& rows = b.link->control->Recordset();
            if (!rows.is_editing() && !rows.Edit()) return;
            if (rows.SetField(b.field, Value(value))) b.shown = rows.Fields(b.field).text();
        });
    });
    // What the field took, once the typing is done.
    connect(b.edit, &QLineEdit::editingFinished, this,
            [this, &b] { loop_.run_event([&b] { b.shown.reset(); }); });
    boxes_.push_back(std::move(box));
}

void DataBindings::fire(Grid& grid, int column, const char* event) {
    if (!form_.handles(grid.name, event)) return;
    QMetaObject::invokeMethod(
        this,
        [this, &grid, column, event] {
            loop_.run_event([this, &grid, column, event] { form_.fire(grid.name, column, event); });
        },
        Qt::QueuedConnection);
}

void DataBindings::move(Grid& grid, int row) {
    QMetaObject::invokeMethod(
        this,
        [this, &grid, row] {
            loop_.run_event([&grid, row] {
                Recordset& rows = grid.link->control->Recordset();
                if (rows.AbsolutePosition() == row || row < 0 || row >= rows.RecordCount()) return;
                rows.MoveFirst();
                rows.Move(row);
                if (grid.link->Reposition) grid.link->Reposition();
            });
        },
        Qt::QueuedConnection);
}

void DataBindings::edit(Grid& grid, int row, int column, std::string text) {
    move(grid, row);
    QMetaObject::invokeMethod(
        this,
        [this, &grid, column, text = std::move(text)] {
            loop_.run_event([this, &grid, column, text] {
                Control* cell = form_.find(grid.name, column);
                if (!cell) return;
                cell->Text = text;
                form_.fire(grid.name, column, "Change");
            });
        },
        Qt::QueuedConnection);
}

void DataBindings::sync() {
    for (auto& grid : grids_) {
        if (!grid->view) continue;
        QTableView& view = *grid->view;
        if (grid->model->refresh(grid->cells->editing_row())) view.resizeColumnsToContents();
        const int row = grid->model->current_row();
        if (row != view.currentIndex().row() && row < grid->model->rowCount()) {
            grid->syncing = true;
            const int column = std::max(view.currentIndex().column(), 0);
            if (row < 0) {
                view.selectionModel()->clearCurrentIndex();
                view.clearSelection();
            } else {
                const QModelIndex cell = grid->model->index(row, column);
                view.selectionModel()->setCurrentIndex(
                    cell, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
                view.scrollTo(cell);
            }
            grid->syncing = false;
        }
    }
    for (auto& box : boxes_) {
        if (!box->edit) continue;
        const std::string text = box->link->control->Recordset().Fields(box->field).text();
        if (box->shown != text) {
            box->shown = text;
            box->edit->setText(QString::fromStdString(text));
        }
    }
}

}  // namespace tavora::ui
