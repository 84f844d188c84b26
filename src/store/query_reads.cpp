#include "store/query_reads.h"

#include <algorithm>
#include <array>

#include "runtime/strings.h"

namespace tavora {

namespace {

// Functions whose answer depends on their arguments alone.
constexpr std::array<std::string_view, 22> kSteadyFunctions = {
    "abs",   "char",   "coalesce",  "glob", "ifnull", "iif",    "instr",   "length",
    "like",  "lower",  "ltrim",     "max",  "min",    "nullif", "replace", "round",
    "rtrim", "substr", "substring", "trim", "typeof", "upper",
};

int note_access(void* context, int action, const char* /*table*/, const char* name,
                const char* /*database*/, const char* /*trigger*/) {
    auto& reads = *static_cast<QueryReads*>(context);
    if (name == nullptr) return SQLITE_OK;
    if (action == SQLITE_READ) {
        std::string key = column_key(name);
        if (std::find(reads.columns.begin(), reads.columns.end(), key) == reads.columns.end())
            reads.columns.push_back(std::move(key));
    } else if (action == SQLITE_FUNCTION) {
        const std::string function = LCase(name);
        if (std::find(kSteadyFunctions.begin(), kSteadyFunctions.end(), function) ==
            kSteadyFunctions.end())
            reads.volatile_answer = true;
    }
    return SQLITE_OK;
}

}  // namespace

std::string column_key(std::string_view column) {
    return LCase(column);
}

Statement prepare_noting_reads(Connection& connection, std::string_view sql, QueryReads& reads) {
    reads = QueryReads{};
    sqlite3* db = connection.handle();
    if (db != nullptr) sqlite3_set_authorizer(db, note_access, &reads);
    Statement statement = connection.prepare(sql);
    if (db != nullptr) sqlite3_set_authorizer(db, nullptr, nullptr);
    if (!statement.ok()) reads.volatile_answer = true;
    return statement;
}

}  // namespace tavora
