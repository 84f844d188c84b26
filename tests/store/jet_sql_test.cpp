#include "store/jet_sql.h"

#include <gtest/gtest.h>

namespace tavora {
namespace {

TEST(JetSql, LikePatternsUseSqliteWildcards) {
    EXPECT_EQ(translate_jet_sql("SELECT * from R where ([Speed]Like'*POP*')").sql,
              "SELECT * from R where ([Speed]LIKE '%POP%')");
    EXPECT_EQ(translate_jet_sql("select * from R where [A] like 'a?c'").sql,
              "select * from R where [A] LIKE 'a_c'");
    // A bracketed wildcard is the character itself; SQLite's own wildcards
    // are literal in Jet and get escaped.
    EXPECT_EQ(translate_jet_sql("SELECT * from R where [A] Like '[*]5%_'").sql,
              "SELECT * from R where [A] LIKE '*5\\%\\_' ESCAPE '\\'");
    EXPECT_EQ(translate_jet_sql("SELECT * from R where [A] Like 'it''s*'").sql,
              "SELECT * from R where [A] LIKE 'it''s%'");
}

TEST(JetSql, NullComparisonsAndLiteralsTakeSqliteForms) {
    EXPECT_EQ(translate_jet_sql("SELECT * from R where R.[Source] = null ORDER BY R.[T40]DESC").sql,
              "SELECT * from R where R.[Source] IS NULL ORDER BY R.[T40]DESC");
    EXPECT_EQ(translate_jet_sql("SELECT * from R where ([Source] <> Null and [X]=1)").sql,
              "SELECT * from R where ([Source] IS NOT NULL and [X]=1)");
    // Only the word null, not a name that starts with it.
    EXPECT_EQ(translate_jet_sql("SELECT * from R where [A] = nullable").sql,
              "SELECT * from R where [A] = nullable");
    EXPECT_EQ(translate_jet_sql("SELECT * from R where [Power] = True and [Run Now] = false").sql,
              "SELECT * from R where [Power] = -1 and [Run Now] = 0");
    EXPECT_EQ(translate_jet_sql("SELECT * from R where [Name] = \"Al's\"").sql,
              "SELECT * from R where [Name] = 'Al''s'");
    // Words inside strings and brackets are left alone.
    EXPECT_EQ(translate_jet_sql("SELECT * from R where [True] = 'True = null'").sql,
              "SELECT * from R where [True] = 'True = null'");
}

TEST(JetSql, PlainTableQueriesCanRunOnKeys) {
    const JetTranslation plain = translate_jet_sql("select * from [Type Lookup] Order by [Type]");
    EXPECT_EQ(plain.table, "[Type Lookup]");
    EXPECT_EQ(plain.rowid_sql, "SELECT [Type Lookup].rowid from [Type Lookup] Order by [Type]");

    EXPECT_EQ(translate_jet_sql("SELECT * from Recordings1;").table, "Recordings1");
    for (const char* other :
         {"SELECT Title from Recordings1", "SELECT * from Recordings1 r where r.[Sel] > 0",
          "SELECT * from A, B where A.x = B.x", "SELECT * from A join B on A.x = B.x",
          "SELECT * from A where x in (select x from B)"}) {
        EXPECT_EQ(translate_jet_sql(other).table, "") << other;
    }
}

}  // namespace
}  // namespace tavora
