#include "store/stored_queries.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "store/connection.h"
#include "store_fixture.h"

namespace tavora {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

// Six rows chosen so that every stored query has a distinct answer: mixed
// case in titles and categories, Null beside empty Source, ties broken by
// the second sort key. Each column lists its value for RecIDs 1 to 6.
class StoredQueryTest : public StoreTest {
  protected:
    void SetUp() override {
        StoreTest::SetUp();
        if (HasFatalFailure()) return;
        const Value no;  // left at the file's default
        const std::pair<const char*, std::vector<Value>> columns[] = {
            {"Title", {"Echo", "alpha", "delta", "Bravo", "foxtrot", "Charlie"}},
            {"Artist", {"Mann", "adams", "Mann", "Baker", "Cole", "Baker"}},
            {"Category", {"Pop", "Rock", "Country", "am gold", no, no}},
            {"Speed", {no, "Dance", no, "dancehall", no, no}},
            {"Type", {no, no, "Xmas", "Holiday", "POP rock", no}},
            {"Long title",
             {"d:\\m\\echo.mp3", "d:\\m\\alpha.mp3", "QXPLRand Mix", "qxp lower", "d:\\m\\fox.mp3",
              "D:\\m\\charlie.mp3"}},
            {"Sel", {0, 3, 1, no, no, 2}},
            {"Total Request", {5, 1, 9, 0, 5, 2}},
            {"Schedule Select", {1, 0, 2, 1, 0, 1}},
            {"Source", {no, "", "Timed Promo", no, "Top40", no}},
            {"T40", {no, 2, no, 1, 3, no}},
            {"C40", {no, no, 1, no, no, no}},
            {"D40", {no, no, no, 4, no, no}},
            {"AM40", {no, no, no, no, no, 7}},
            {"Request This Month", {2, no, 5, no, no, 1}},
            {"Request AllTime", {10, 3, 5, no, no, 10}},
            {"Format", {no, "cd2", "1CD", "CD4", no, no}},
            {"CreationDate", {45000, 45005, 45002, 45001, 45009, no}},
            {"Last Played", {45010, 45001, no, 45000, 45003, 45002}},
            {"Max Play Day", {1, 2, 1, 1, 3, 0}},
            {"Max Play Week", {5, 5, 3, 5, 1, 0}},
            {"Max Month", {20, 20, 20, 10, 1, 0}},
        };
        for (std::size_t row = 0; row < 6; ++row) {
            Fields fields;
            for (const auto& [name, values] : columns)
                if (!values[row].is_null()) fields.emplace_back(name, values[row]);
            add_recording(fields);
        }
    }
};

TEST_F(StoredQueryTest, EachQueryGivesItsRowsInItsOrder) {
    EXPECT_THAT(ids("MOST PLAYED"), ElementsAre(3, 1, 5, 6, 2, 4));
    EXPECT_THAT(ids("BPSort"), ElementsAre(4, 6, 3, 1));
    EXPECT_THAT(ids("RequestThisMonth"), ElementsAre(3, 1, 6));
    EXPECT_THAT(ids("Title Sort"), ElementsAre(2, 4, 6, 3, 1, 5));
    EXPECT_THAT(ids("PopRock"), ElementsAre(2, 4, 1, 5));
    EXPECT_THAT(ids("TopDance"), ElementsAre(2, 4));
    EXPECT_THAT(ids("AdultCon"), ElementsAre(4));
    EXPECT_THAT(ids("Top40"), ElementsAre(6, 3, 4, 2, 5));
    EXPECT_THAT(ids("TopCountry"), ElementsAre(3));
    EXPECT_THAT(ids("Timed Promo"), ElementsAre(3));
    EXPECT_THAT(ids("SRequest"), ElementsAre(2, 6, 3));
    EXPECT_THAT(ids("HotList"), UnorderedElementsAre(2, 3, 4, 5, 6));
    EXPECT_THAT(ids("LeastPlayed"), ElementsAre(4, 6, 1, 3));
    EXPECT_THAT(ids("LastPlay"), ElementsAre(3, 4, 6, 1));
    EXPECT_THAT(ids("NormSel"), UnorderedElementsAre(1, 3, 4, 6));
    EXPECT_THAT(ids("Promo2"), ElementsAre(3));
    EXPECT_THAT(ids("CalcReq"), ElementsAre(3, 1, 6, 2, 4, 5));
    EXPECT_THAT(ids("Special Sort"), ElementsAre(3, 5));
    EXPECT_THAT(ids("Active1"), ElementsAre(6, 5, 4, 3, 1, 2));
    EXPECT_THAT(ids("PLNames"), ElementsAre(3, 4));
    EXPECT_THAT(ids("CRequest"), ElementsAre(2, 6, 3, 4, 1, 5));
    EXPECT_THAT(ids("NewMusic"), ElementsAre(5, 2, 3, 4, 1, 6));
    EXPECT_THAT(ids("FName"), ElementsAre(2, 6, 1, 5, 4, 3));
    EXPECT_THAT(ids("MaxPlys"), ElementsAre(5, 2, 1, 4, 3, 6));
    EXPECT_THAT(ids("CDNow"), ElementsAre(2, 4));

    // Artists tie, so only the sequence of artists is fixed.
    Recordset artists = OpenRecordset(library_, "Artist Sort");
    std::vector<std::string> seen;
    for (; !artists.IsEOF(); artists.MoveNext())
        seen.push_back(artists.Fields("Artist").text());
    EXPECT_THAT(seen, ElementsAre("adams", "Baker", "Baker", "Cole", "Mann", "Mann"));
}

TEST_F(StoredQueryTest, NamesMatchWithoutRegardToCase) {
    EXPECT_THAT(ids("title Sort"), ElementsAre(2, 4, 6, 3, 1, 5));
    EXPECT_THAT(ids("recordings1"), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(StoredQueryTest, ChartHelperTextsTakeTheRowsWithANullSource) {
    // Row 2 has an empty Source, not a Null one, and stays out.
    EXPECT_THAT(ids("SELECT * from Recordings1 where Recordings1.[Source] = null "
                    "ORDER BY Recordings1.[T40]DESC, Recordings1.[Title]"),
                ElementsAre(4, 6, 1));
    EXPECT_THAT(ids("SELECT * from Recordings1 where (Recordings1.[Source] = null and "
                    "(Recordings1.[C40] >0 or Recordings1.[D40] >0 or Recordings1.[T40] >0)) "),
                ElementsAre(4));
}

TEST_F(StoredQueryTest, LikeIgnoresCaseAndKeepsLiteralPercent) {
    EXPECT_THAT(ids("SELECT * from Recordings1 where [Title] Like 'ECH*'"), ElementsAre(1));
    EXPECT_THAT(ids("SELECT * from Recordings1 where [Title] Like '?RAVO'"), ElementsAre(4));
    add_recording({{"Title", "100% Hits"}});
    add_recording({{"Title", "1000 Hits"}});
    EXPECT_THAT(ids("SELECT * from Recordings1 where [Title] Like '*0% H*'"), ElementsAre(7));
}

TEST_F(StoreTest, MakeQrysStoresTheCatalogueInOrder) {
    library_->connection().exec("DROP TABLE \"Stored Queries\"");
    int reset_calls = 0;
    bool max_plys_before_reset = false;
    bool cd_now_before_reset = true;
    Make_Qrys(*library_, kToday, [&] {
        ++reset_calls;
        max_plys_before_reset = library_->stored_query_text("MaxPlys").has_value();
        cd_now_before_reset = library_->stored_query_text("CDNow").has_value();
    });
    EXPECT_EQ(reset_calls, 1);
    EXPECT_TRUE(max_plys_before_reset);
    EXPECT_FALSE(cd_now_before_reset);

    Recordset stored = OpenRecordset(library_, "Stored Queries");
    std::vector<std::string> names;
    for (; !stored.IsEOF(); stored.MoveNext())
        names.push_back(stored.Fields("Name").text());
    EXPECT_THAT(
        names, ElementsAre("MOST PLAYED", "BPSort", "RequestThisMonth", "Title Sort", "Artist Sort",
                           "PopRock", "TopDance", "AdultCon", "Top40", "TopCountry", "Timed Promo",
                           "SRequest", "HotList", "LeastPlayed", "LastPlay", "NormSel", "Promo2",
                           "CalcReq", "Special Sort", "Active1", "PLNames", "CRequest", "NewMusic",
                           "FName", "MaxPlys", "CDNow"));
    EXPECT_EQ(library_->stored_query_text("PopRock"),
              "SELECT * from Recordings1 Where (Recordings1.[Category] Like '*POP*')or "
              "(Recordings1.[Speed]Like'*POP*') or (Recordings1.[Type] Like'*POP*')or "
              "(Recordings1.[Category] Like '*ROCK*')or (Recordings1.[Speed]Like'*ROCK*') or "
              "(Recordings1.[Type] Like'*ROCK*')or (Recordings1.[Category] Like '*Dance*')or "
              "(Recordings1.[Speed]Like'*Dance*') or (Recordings1.[Type] Like'*Dance*')ORDER BY "
              "Recordings1.[Title];");
}

TEST_F(StoredQueryTest, CalcReqBeforeTheFifthPutsAllTimeRequestsFirst) {
    Make_Qrys(*library_, DateSerial(2026, 3, 4) + TimeSerial(23, 59, 0), {});
    EXPECT_THAT(ids("CalcReq"), ElementsAre(1, 6, 3, 2, 4, 5));
    Make_Qrys(*library_, DateSerial(2026, 3, 5), {});
    EXPECT_THAT(ids("CalcReq"), ElementsAre(3, 1, 6, 2, 4, 5));
}

TEST_F(StoreTest, MakeQrysReplacesAChangedTextAndRestoresADroppedOne) {
    Connection& connection = library_->connection();
    ASSERT_TRUE(
        connection.exec("UPDATE \"Stored Queries\" SET \"SQL\" = 'SELECT * from Recordings1' "
                        "WHERE Name = 'Title Sort'"));
    ASSERT_TRUE(connection.exec("DELETE FROM \"Stored Queries\" WHERE Name = 'NormSel'"));
    ASSERT_FALSE(library_->stored_query_text("NormSel"));

    Make_Qrys(*library_, kToday, {});
    EXPECT_EQ(library_->stored_query_text("Title Sort"),
              "SELECT * from Recordings1 ORDER BY Recordings1.[Title];");
    EXPECT_EQ(library_->stored_query_text("NormSel"),
              "SELECT * from Recordings1 Where (Recordings1.[Schedule Select] >0);");
    EXPECT_EQ(connection.scalar("SELECT count(*) FROM \"Stored Queries\"").number(), 26);
}

// Another machine holds the write lock: nothing is rewritten, the reason
// is given, and the CD book-keeping is reset all the same.
TEST_F(StoreTest, MakeQrysOnALockedLibraryKeepsWhatItHasAndSaysWhy) {
    ASSERT_TRUE(
        library_->connection().exec("UPDATE \"Stored Queries\" SET \"SQL\" = 'SELECT * from "
                                    "Recordings1' WHERE Name = 'FName'"));
    Connection other(library_path_, Connection::Mode::OpenExisting);
    ASSERT_TRUE(other.exec("BEGIN IMMEDIATE"));
    int resets = 0;
    const std::string failure = Make_Qrys(*library_, kToday, [&] { ++resets; });
    EXPECT_NE(failure.find("Can't rewrite the stored queries"), std::string::npos) << failure;
    EXPECT_EQ(resets, 1);
    ASSERT_TRUE(other.exec("ROLLBACK"));
    EXPECT_EQ(library_->stored_query_text("FName"), "SELECT * from Recordings1");
    EXPECT_EQ(Make_Qrys(*library_, kToday, {}), "");
    EXPECT_EQ(library_->stored_query_text("FName"),
              "SELECT * from Recordings1 ORDER BY Recordings1.[Long title];");
}

}  // namespace
}  // namespace tavora
