#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "runtime/value.h"
#include "store/library.h"

namespace tavora {

// The rows of a keyed recordset as read from the file: a block of rows at
// a time, and of each row only the fields that were asked for, so a walk
// that looks at a few fields of every row never decodes the rest.
class RowCache {
  public:
    // Stale blocks are those read before the library's generation moved.
    const Value& field(Library& library, QueryPlan& plan, const std::vector<long long>& keys,
                       std::size_t index, std::size_t column);
    // Every field of one row, read now; nothing when the row is gone.
    static std::optional<std::vector<Value>> whole_row(Library& library, QueryPlan& plan,
                                                       long long key);

    void clear();
    // After a write through this recordset: blocks that were current stay
    // so, with the written row's fields replaced.
    void note_written(std::uint64_t before, std::uint64_t after, std::size_t index,
                      const std::vector<Value>& row);

  private:
    struct Block {
        std::size_t first = 0;
        std::size_t count = 0;
        std::uint64_t generation = 0;
        std::uint64_t mask = 0;  // the fields read
        std::vector<int> slot;   // a field's place in a row of cells, -1 when not read
        std::size_t width = 0;   // cells a row
        std::vector<Value> cells;
    };

    Block* find(std::uint64_t generation, std::size_t index);
    void load(Block& block, Library& library, QueryPlan& plan, const std::vector<long long>& keys,
              std::size_t index, std::uint64_t mask);

    std::array<Block, 2> blocks_;
    std::size_t next_ = 0;
};

// The statement that reads the key and the fields of a mask for the keys
// between two bounds; kAllFields reads every field.
constexpr std::uint64_t kAllFields = ~std::uint64_t{0};
Statement& fetch_statement(Library& library, QueryPlan& plan, std::uint64_t mask);

}  // namespace tavora
