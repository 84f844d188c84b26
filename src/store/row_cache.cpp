#include "store/row_cache.h"

#include <algorithm>
#include <bit>

namespace tavora {

namespace {

// Rows read at a time: one read transaction a block keeps a walk cheap
// without holding a lock between calls.
constexpr std::size_t kBlockRows = 64;

const Value& null_value() {
    static const Value null;
    return null;
}

bool has_field(std::uint64_t mask, std::size_t column) {
    return mask == kAllFields || (column < 64 && (mask >> column & 1U) != 0);
}

}  // namespace

Statement& fetch_statement(Library& library, QueryPlan& plan, std::uint64_t mask) {
    if (const auto found = plan.fetches.find(mask); found != plan.fetches.end()) {
        return found->second;
    }
    std::string fields = "*";
    if (mask != kAllFields) {
        fields.clear();
        for (std::size_t c = 0; c < plan.names.size(); ++c) {
            if (!has_field(mask, c)) continue;
            if (!fields.empty()) fields += ", ";
            fields += quote_identifier(plan.names[c]);
        }
    }
    return plan.fetches
        .emplace(mask, library.connection().prepare("SELECT rowid, " + fields + " FROM " +
                                                    quote_identifier(plan.table) +
                                                    " WHERE rowid BETWEEN ? AND ?"))
        .first->second;
}

void RowCache::clear() {
    for (Block& block : blocks_)
        block = Block{};
}

RowCache::Block* RowCache::find(std::uint64_t generation, std::size_t index) {
    for (Block& block : blocks_) {
        if (block.generation == generation && index >= block.first &&
            index < block.first + block.count) {
            return &block;
        }
    }
    return nullptr;
}

const Value& RowCache::field(Library& library, QueryPlan& plan, const std::vector<long long>& keys,
                             std::size_t index, std::size_t column) {
    const std::uint64_t generation = library.known_generation();
    Block* block = find(generation, index);
    if (block == nullptr || !has_field(block->mask, column)) {
        plan.wanted =
            plan.names.size() > 64 ? kAllFields : plan.wanted | std::uint64_t{1} << column;
        if (block == nullptr) {
            block = &blocks_[next_];
            next_ = (next_ + 1) % blocks_.size();
        }
        load(*block, library, plan, keys, index, plan.wanted);
    }
    const int slot = block->slot[column];
    if (slot < 0) return null_value();
    return block->cells[(index - block->first) * block->width + static_cast<std::size_t>(slot)];
}

void RowCache::load(Block& block, Library& library, QueryPlan& plan,
                    const std::vector<long long>& keys, std::size_t index, std::uint64_t mask) {
    const std::size_t columns = plan.names.size();
    block.first = index - index % kBlockRows;
    block.count = std::min(kBlockRows, keys.size() - block.first);
    block.generation = library.known_generation();
    block.mask = mask;
    block.slot.assign(columns, -1);
    std::vector<ColumnType> types;
    for (std::size_t c = 0; c < columns; ++c) {
        if (!has_field(mask, c)) continue;
        block.slot[c] = static_cast<int>(types.size());
        types.push_back(plan.types[c]);
    }
    block.width = types.size();
    block.cells.clear();
    block.cells.reserve(block.count * block.width);

    Statement& fetch = fetch_statement(library, plan, mask);
    auto read_row = [&] {
        for (std::size_t c = 0; c < types.size(); ++c) {
            block.cells.push_back(fetch.column_value(static_cast<int>(c) + 1, types[c]));
        }
    };
    // A row removed by another program since the run reads as Nulls.
    auto missing_row = [&] { block.cells.resize(block.cells.size() + block.width); };

    const long long* row_keys = keys.data() + block.first;
    const std::size_t count = block.count;
    Library::ReadBatch batch(library);
    if (std::is_sorted(row_keys, row_keys + count) &&
        row_keys[count - 1] - row_keys[0] < static_cast<long long>(4 * count)) {
        // Keys in file order and close together: one scan beats a lookup each.
        fetch.bind_int64(1, row_keys[0]);
        fetch.bind_int64(2, row_keys[count - 1]);
        std::size_t r = 0;
        while (r < count && fetch.step() == Statement::Step::Row) {
            const long long key = fetch.column_int64(0);
            for (; r < count && row_keys[r] < key; ++r)
                missing_row();
            if (r < count && row_keys[r] == key) {
                read_row();
                ++r;
            }
        }
        for (; r < count; ++r)
            missing_row();
    } else {
        for (std::size_t r = 0; r < count; ++r) {
            fetch.bind_int64(1, row_keys[r]);
            fetch.bind_int64(2, row_keys[r]);
            if (fetch.step() == Statement::Step::Row) {
                read_row();
            } else {
                missing_row();
            }
            fetch.reset();
        }
    }
    fetch.reset();
}

std::optional<std::vector<Value>> RowCache::whole_row(Library& library, QueryPlan& plan,
                                                      long long key) {
    Statement& fetch = fetch_statement(library, plan, kAllFields);
    fetch.bind_int64(1, key);
    fetch.bind_int64(2, key);
    std::optional<std::vector<Value>> row;
    if (fetch.step() == Statement::Step::Row) {
        row.emplace();
        for (std::size_t c = 0; c < plan.names.size(); ++c) {
            row->push_back(fetch.column_value(static_cast<int>(c) + 1, plan.types[c]));
        }
    }
    fetch.reset();
    return row;
}

void RowCache::note_written(std::uint64_t before, std::uint64_t after, std::size_t index,
                            const std::vector<Value>& row) {
    for (Block& block : blocks_) {
        if (block.generation != before) continue;
        block.generation = after;
        if (index < block.first || index >= block.first + block.count) continue;
        for (std::size_t c = 0; c < row.size(); ++c) {
            const int slot = block.slot[c];
            if (slot >= 0) {
                block.cells[(index - block.first) * block.width + static_cast<std::size_t>(slot)] =
                    row[c];
            }
        }
    }
}

}  // namespace tavora
