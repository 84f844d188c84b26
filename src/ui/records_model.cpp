#include "ui/records_model.h"

namespace tavora::ui {

RecordsModel::RecordsModel(DataControl& data, std::vector<const Control*> columns,
                           std::function<bool(int)> editable,
                           std::function<void(int, int, std::string)> typed)
    : data_(data),
      columns_(std::move(columns)),
      editable_(std::move(editable)),
      typed_(std::move(typed)) {
    seen_ = now();
    map_columns();
}

RecordsModel::Seen RecordsModel::now() const {
    Recordset& rows = data_.Recordset();
    Seen seen;
    seen.library = rows.library().get();
    seen.source = rows.source();
    seen.rows = rows.is_open() ? rows.RecordCount() : 0;
    seen.generation = rows.library() ? rows.library()->known_generation() : 0;
    seen.position = rows.AbsolutePosition();
    seen.editing = rows.is_editing();
    return seen;
}

void RecordsModel::map_columns() {
    Recordset& rows = data_.Recordset();
    ordinals_.clear();
    heads_.clear();
    if (columns_.empty()) {
        for (int ordinal = 0; ordinal < rows.field_count(); ++ordinal) {
            ordinals_.push_back(ordinal);
            heads_.push_back(QString::fromStdString(rows.field_name(ordinal)));
        }
        return;
    }
    for (const Control* column : columns_) {
        ordinals_.push_back(rows.field_index(column->Caption));
        heads_.push_back(QString::fromStdString(column->Caption));
    }
}

bool RecordsModel::refresh(int keep_row) {
    const Seen seen = now();
    const bool other_rows =
        seen.library != seen_.library || seen.source != seen_.source || seen.rows != seen_.rows;
    const bool other_values = seen.generation != seen_.generation ||
                              seen.position != seen_.position || seen.editing != seen_.editing;
    seen_ = seen;
    if (other_rows) {
        beginResetModel();
        map_columns();
        endResetModel();
    } else if (other_values && !ordinals_.empty()) {
        const int last = static_cast<int>(ordinals_.size()) - 1;
        const int rows = static_cast<int>(seen.rows);
        const auto changed = [&](int first, int end) {
            if (first < end) emit dataChanged(index(first, 0), index(end - 1, last));
        };
        if (keep_row >= 0 && keep_row < rows) {
            changed(0, keep_row);
            changed(keep_row + 1, rows);
        } else {
            changed(0, rows);
        }
    }
    return other_rows;
}

int RecordsModel::current_row() const {
    return static_cast<int>(seen_.position);
}

int RecordsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(seen_.rows);
}

int RecordsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(ordinals_.size());
}

QVariant RecordsModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole && role != Qt::EditRole) return {};
    if (!index.isValid() || index.row() >= seen_.rows) return {};
    const int ordinal = ordinals_[static_cast<std::size_t>(index.column())];
    const Value& value = data_.Recordset().FieldAt(index.row(), ordinal);
    return QString::fromStdString(value.text());
}

QVariant RecordsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
        section < static_cast<int>(heads_.size())) {
        return heads_[static_cast<std::size_t>(section)];
    }
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags RecordsModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (index.isValid() && editable_(index.column())) flags |= Qt::ItemIsEditable;
    return flags;
}

bool RecordsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || !index.isValid()) return false;
    typed_(index.row(), index.column(), value.toString().toStdString());
    return true;
}

}  // namespace tavora::ui
