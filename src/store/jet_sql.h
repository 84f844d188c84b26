#pragma once

#include <string>
#include <string_view>

namespace tavora {

// A query text written for the Jet engine, made ready for SQLite:
//   Like patterns   * and ? become % and _, a bracketed [c] is the literal c,
//                   and a literal % or _ is escaped;
//   = null, <> null become IS NULL, IS NOT NULL (the rows with a Null field);
//   True, False     become -1 and 0;
//   "text"          becomes the string 'text'.
// [Bracketed names] are kept: SQLite reads them as identifiers.
struct JetTranslation {
    std::string sql;
    // For "SELECT * FROM <table> [WHERE ...] [ORDER BY ...]": the table as
    // written and the same query selecting the table's rowid only, so a
    // recordset can hold keys and read rows when they are reached.
    std::string table;
    std::string rowid_sql;
};

JetTranslation translate_jet_sql(std::string_view jet);

}  // namespace tavora
