#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "store/library.h"
#include "store/recordset.h"

namespace tavora {

// The row of a table whose first column, its key, holds `key`: ready to read
// or edit, or past the end when there is none.
inline Recordset keyed_row(const std::shared_ptr<Library>& library, const char* table, double key) {
    Recordset rows = OpenRecordset(library, table);
    while (!rows.IsEOF() && rows.Fields(0).number() != key)
        rows.MoveNext();
    return rows;
}

// Whether a row holds the numbers given, naming each field that does not.
inline ::testing::AssertionResult holds(Recordset row, const std::map<std::string, double>& want) {
    if (row.IsEOF()) return ::testing::AssertionFailure() << "no such row";
    std::string wrong;
    for (const auto& [name, value] : want) {
        const double got = row.Fields(name).number();
        if (got != value) wrong += name + " is " + std::to_string(got) + "; ";
    }
    if (wrong.empty()) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << wrong;
}

}  // namespace tavora
