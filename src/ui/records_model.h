#pragma once

#include <QAbstractTableModel>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/forms/control.h"
#include "store/data_control.h"

namespace tavora::ui {

// The rows of a data control as an item model. Cells are read where the
// view looks, without moving the control's current row, so a grid over a
// large library costs only the rows on screen.
class RecordsModel : public QAbstractTableModel {
  public:
    // `columns` caption the fields shown; none shows every field. `editable`
    // tells whether a column takes typing, `typed` gets what was typed.
    RecordsModel(DataControl& data, std::vector<const Control*> columns,
                 std::function<bool(int column)> editable,
                 std::function<void(int row, int column, std::string text)> typed);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    // Tells the view what changed since the last call: other rows (a new
    // source, a row more or less) or other values, but for `keep_row`, whose
    // cell is being typed into. True when the rows were replaced.
    bool refresh(int keep_row = -1);
    // The current row of the data control, -1 when none.
    int current_row() const;

  private:
    struct Seen {
        const void* library = nullptr;
        std::string source;
        long rows = 0;
        std::uint64_t generation = 0;
        long position = -1;
        bool editing = false;
    };
    Seen now() const;
    void map_columns();

    DataControl& data_;
    std::vector<const Control*> columns_;
    std::function<bool(int)> editable_;
    std::function<void(int, int, std::string)> typed_;
    std::vector<int> ordinals_;  // of the columns shown, -1 for a name not in the source
    std::vector<QString> heads_;
    Seen seen_;
};

}  // namespace tavora::ui
