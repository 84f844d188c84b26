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
// the second sort key.
class StoredQueryTest : public StoreTest {
  protected:
    void SetUp() override {
        StoreTest::SetUp();
        if (HasFatalFailure()) return;
        add_recording({{"Title", "Echo"},
                       {"Artist", "Mann"},
                       {"Category", "Pop"},
                       {"Long title", "d:\\m\\echo.mp3"},
                       {"Sel", 0},
                       {"Total Request", 5},
                       {"Schedule Select", 1},
                       {"Request This Month", 2},
                       {"Request AllTime", 10},
                       {"CreationDate", Value::date(45000)},
                       {"Last Played", Value::date(45010)},
                       {"Max Play Day", 1},
                       {"Max Play Week", 5},
                       {"Max Month", 20}});
        add_recording({{"Title", "alpha"},
                       {"Artist", "adams"},
                       {"Category", "Rock"},
                       {"Speed", "Dance"},
                       {"Long title", "d:\\m\\alpha.mp3"},
                       {"Sel", 3},
                       {"Total Request", 1},
                       {"Schedule Select", 0},
                       {"Source", ""},
                       {"T40", 2},
                       {"Request AllTime", 3},
                       {"Format", "cd2"},
                       {"CreationDate", Value::date(45005)},
                       {"Last Played", Value::date(45001)},
                       {"Max Play Day", 2},
                       {"Max Play Week", 5},
                       {"Max Month", 20}});
        add_recording({{"Title", "delta"},
                       {"Artist", "Mann"},
                       {"Category", "Country"},
                       {"Type", "Xmas"},
                       {"Long title", "QXPLRand Mix"},
                       {"Sel", 1},
                       {"Total Request", 9},
                       {"Schedule Select", 2},
                       {"Source", "Timed Promo"},
                       {"C40", 1},
                       {"Request This Month", 5},
                       {"Request AllTime", 5},
                       {"Format", "1CD"},
                       {"CreationDate", Value::date(45002)},
                       {"Max Play Day", 1},
                       {"Max Play Week", 3},
                       {"Max Month", 20}});
        add_recording({{"Title", "Bravo"},
                       {"Artist", "Baker"},
                       {"Category", "am gold"},
                       {"Speed", "dancehall"},
                       {"Type", "Holiday"},
                       {"Long title", "qxp lower"},
                       {"Total Request", 0},
                       {"Schedule Select", 1},
                       {"T40", 1},
                       {"D40", 4},
                       {"Format", "CD4"},
                       {"CreationDate", Value::date(45001)},
                       {"Last Played", Value::date(45000)},
                       {"Max Play Day", 1},
                       {"Max Play Week", 5},
                       {"Max Month", 10}});
        add_recording({{"Title", "foxtrot"},
                       {"Artist", "Cole"},
                       {"Type", "POP rock"},
                       {"Long title", "d:\\m\\fox.mp3"},
                       {"Total Request", 5},
                       {"Schedule Select", 0},
                       {"Source", "Top40"},
                       {"T40", 3},
                       {"CreationDate", Value::date(45009)},
                       {"Last Played", Value::date(45003)},
                       {"Max Play Day", 3},
                       {"Max Play Week", 1},
                       {"Max Month", 1}});
        add_recording({{"Title", "Charlie"},
                       {"Artist", "Baker"},
                       {"Long title", "D:\\m\\charlie.mp3"},
                       {"Sel", 2},
                       {"Total Request", 2},
                       {"Schedule Select", 1},
                       {"AM40", 7},
                       {"Request This Month", 1},
                       {"Request AllTime", 10},
                       {"Last Played", Value::date(45002)},
                       {"Max Play Day", 0},
                       {"Max Play Week", 0},
                       {"Max Month", 0}});
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
    Statement change = connection.prepare(
        "UPDATE \"Stored Queries\" SET \"SQL\" = 'SELECT * from Recordings1' WHERE Name = ?");
    change.bind_text(1, "Title Sort");
    ASSERT_EQ(change.step(), Statement::Step::Done);
    Statement drop = connection.prepare("DELETE FROM \"Stored Queries\" WHERE Name = ?");
    drop.bind_text(1, "NormSel");
    ASSERT_EQ(drop.step(), Statement::Step::Done);
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
