#include <algorithm>
#include <vector>

#include "runtime/convert.h"
#include "runtime/random.h"
#include "selection/query_screen.h"
#include "selection_fixture.h"

namespace tavora {
namespace {

class DriverTest : public SelectionTest {
  protected:
    // Moves the clock on, so a row just played is past a zero minimum time.
    void later() { fake.clock.Advance(1000); }

    void add_cd_tracks(int count) {
        Transaction batch = library->transaction();
        Recordset table = OpenRecordset(library, "Recordings1");
        for (int i = 0; i < count; ++i) {
            table.AddNew();
            table.SetField("Long title", Value("CD Media - Track " + std::to_string(i)));
            ASSERT_TRUE(table.Update()) << table.error();
        }
        ASSERT_TRUE(batch.commit());
    }

    // Runs the query choice with the least-played counter at a value.
    std::string query(int least_counter) {
        selection.Least_Ctr = least_counter;
        selection.GetQry();
        return selection.Data3.RecordSource;
    }
};

TEST_F(DriverTest, RandomStartShiftsByTheClockSecondsButTwoRowsStartAtOne) {
    add();
    add();
    selection.Sel_State = 3;
    set_now(kNow + TimeSerial(0, 0, 5));
    for (int run = 0; run < 3; ++run) {
        selection.GetQry();
        EXPECT_EQ(selection.Rnd_Start, 1);
    }
    for (int i = 0; i < 98; ++i)
        add();
    set_now(kNow + TimeSerial(0, 0, 30));
    Random same = fake.random;  // the station's generator, before its next draw
    const int draw = static_cast<int>(Int(99 * same.next() + 1));
    selection.GetQry();
    EXPECT_EQ(selection.Data3.RecordSource, "NormSel");
    EXPECT_EQ(selection.Rnd_Start, draw + 30 > 99 ? draw - 30 : draw + 30);
}

TEST_F(DriverTest, SecondRequestInTheListPlaysFirst) {
    const long top = add({{"Sel", Value(5)}, {"Min Time Between Plays", Value::date(0)}});
    const long second = add({{"Sel", Value(2)}, {"Min Time Between Plays", Value::date(0)}});
    EXPECT_EQ(pick(), second);
    EXPECT_EQ(main.Panel(8).Text, "1");
    later();
    EXPECT_EQ(pick(), second);  // still second: Sel 1 sorts below 5
    later();
    EXPECT_EQ(pick(), top);  // the only one open
    EXPECT_EQ(station.Req_Open, 1);
}

TEST_F(DriverTest, LongRequestListSkipsEveryThirdRequestPass) {
    for (int i = 0; i < 11; ++i)
        add({{"Sel", Value(9)},
             {"Schedule Select", Value(0)},
             {"Min Time Between Plays", Value::date(0)}});
    add({{"Min Time Between Plays", Value::date(0)}});
    station.Req_Open = 11;
    for (int run = 0; run < 3; ++run) {
        pick();
        later();
    }
    ASSERT_EQ(picks.size(), 3u);
    EXPECT_EQ(picks[0].record_source + picks[1].record_source, "SRequestSRequest");
    EXPECT_EQ(picks[2].record_source, "NormSel");
    EXPECT_EQ(selection.Req_Skip, 0);
}

TEST_F(DriverTest, HeldRequestsWaitWhateverTheirPriority) {
    add({{"Sel", Value(1005)}, {"Schedule Select", Value(0)}});
    const long normal = add();
    station.Req_Hold = 1;
    EXPECT_EQ(pick(), normal);
}

TEST_F(DriverTest, LeastPlayedQueriesTakeTurnsWithTheirCaptions) {
    add();
    add();
    station.Least_Every = 3;
    selection.Sel_State = 3;
    EXPECT_EQ(query(3), "NormSel");
    EXPECT_EQ(query(4), "LastPlay");
    EXPECT_EQ(loading.Label1.Caption, "Search Least Frequent Play");
    EXPECT_EQ(selection.Least_Ctr, 0);
    EXPECT_EQ(selection.Rnd_Start, 0);
    EXPECT_EQ(query(4), "LeastPlayed");
    EXPECT_EQ(loading.Label1.Caption, "Searching Least Played");
}

TEST_F(DriverTest, FallbackTakesAnyRowButRowZeroAndCountsIt) {
    const long first = add({{"Schedule Select", Value(0)}});
    add({{"Schedule Select", Value(0)}});
    add({{"Schedule Select", Value(0)}});
    const long got = pick();
    EXPECT_EQ(picks.at(0).way, PickReport::Way::Fallback);
    EXPECT_NE(got, first);
    EXPECT_TRUE(has(got, {{"How Many Today", 1}}));
    EXPECT_EQ(main.Panel(7).Text, "1");
    EXPECT_EQ(station.Fall_Used, -1);
    EXPECT_EQ(selection.Fall_Count, 1);
    EXPECT_EQ(selection.Sel_State, 4);
    EXPECT_EQ(station.Slot_Ready[3], 1);
}

TEST_F(DriverTest, FallbackNeverTakesACdTrackAndFindsALoneRowInBoundedDraws) {
    pick();
    EXPECT_EQ(station.Sel_Starved, 1);  // empty library
    const long cd = add({{"Long title", Value("CD Media - Disc")}});
    add({{"Long title", Value("CD Media - Disc")}});
    station.Cue_File = "kept";
    pick();
    EXPECT_EQ(station.Sel_Starved, 1);
    EXPECT_EQ(station.Slot_Ready[3], 0);
    EXPECT_EQ(station.Cue_File, "kept");
    EXPECT_TRUE(has(cd, {{"How Many Today", 0}}));
    EXPECT_EQ(main.Panel(7).Text, "");
    EXPECT_EQ(picks.at(1).way, PickReport::Way::Starved);

    // One row that may be taken, at position 1000 of 2000: the fixed
    // sequence of draws would need 485 tries or more to land on it.
    add_cd_tracks(998);
    const long only = add({{"Schedule Select", Value(0)}});
    add_cd_tracks(999);
    Random before = fake.random;
    EXPECT_EQ(pick(), only);
    EXPECT_EQ(station.Sel_Starved, 0);
    EXPECT_EQ(picks.back().way, PickReport::Way::Fallback);
    const double following = fake.random.next();
    int drawn = 0;
    while (before.next() != following && drawn <= 2000)
        ++drawn;
    EXPECT_LE(drawn, 2 * 300 + 10) << "two draws a try, at most 300 tries";
}

// Every row out of the schedule, so that each pick is the fallback's: the
// seventh player's, left to the rules, lands on short clips too; kept to
// songs it never does while there is one, and takes a clip when there isn't.
TEST_F(DriverTest, SeventhPlayerFallbackKeepsToSongsWhileTheLibraryHasOne) {
    station.Ply7_On = 1;
    const Fields clip{{"Schedule Select", Value(0)}, {"Length", Value::date(TimeSerial(0, 0, 7))}};
    std::vector<long> clips;
    for (int i = 0; i < 6; ++i)
        clips.push_back(add(clip));
    const long song = add({{"Schedule Select", Value(0)}});
    const long faded = add({{"Schedule Select", Value(0)}, {"FadeOut", Value::boolean(true)}});
    auto fallback_picks = [&](int count) {
        std::vector<long> got;
        for (int i = 0; i < count; ++i) {
            got.push_back(pick(14));
            later();
        }
        return got;
    };
    const std::vector<long> by_rules = fallback_picks(12);
    EXPECT_TRUE(std::any_of(by_rules.begin(), by_rules.end(), [&](long id) {
        return std::find(clips.begin(), clips.end(), id) != clips.end();
    }));

    selection.bridge_songs_only = true;
    for (const long got : fallback_picks(12))
        EXPECT_EQ(got, song) << "not the faded row " << faded << " nor a clip";
    EXPECT_EQ(picks.back().way, PickReport::Way::Fallback);

    set(song, "Length", Value::date(TimeSerial(0, 0, 20)));
    EXPECT_NE(pick(14), 0);
    EXPECT_EQ(station.Sel_Starved, 0);
    EXPECT_EQ(picks.back().way, PickReport::Way::Fallback);
}

TEST_F(DriverTest, DueHotListPlaysAChartedSongOnceAndRewindsTheCountdown) {
    add();
    const long charted = add({{"T40", Value(3)}});
    add();
    station.Power_On = 1;
    station.Power_Every = 4;
    station.Power_Ctr = 0;
    EXPECT_EQ(pick(), charted);
    EXPECT_EQ(picks.back().record_source, "HotList");
    EXPECT_EQ(station.Power_Ctr, 4);
    EXPECT_EQ(main.Panel(6).Text, "1");

    later();
    EXPECT_NE(pick(), charted);
    EXPECT_EQ(picks.back().record_source, "NormSel");
    EXPECT_EQ(station.Power_Ctr, 3);
    EXPECT_EQ(loading.Label1.Caption, "Count = 3");

    // Due again, but the one charted song is within its minimum time: the
    // hot list is tried once and the rotation, not the fallback, answers.
    station.Power_Ctr = 0;
    later();
    EXPECT_NE(pick(), charted);
    EXPECT_EQ(picks.back().way, PickReport::Way::Rules);
    EXPECT_EQ(picks.back().record_source, "NormSel");
}

TEST_F(DriverTest, EditorSortThatIsEmptyFallsBackToTitleSort) {
    add({{"Title", Value("Zebra")}});
    const long charted = add({{"Title", Value("Apple")}, {"T40", Value(1)}});
    DataControl data1{pool};
    Form editor("frmEdit");
    data1.Tag = "Charts";
    GetQryScrn(data1, library, editor);
    EXPECT_EQ(data1.Tag, "Charts");
    EXPECT_EQ(data1.Recordset().RecordCount(), 1);
    EXPECT_EQ(data1.Recordset().Fields("RecID").number(), charted);

    set(charted, "T40", Value(0));
    GetQryScrn(data1, library, editor);
    EXPECT_EQ(data1.Tag, "Title Sort");
    ASSERT_EQ(data1.Recordset().RecordCount(), 2);
    EXPECT_EQ(data1.Recordset().Fields("Title").text(), "Apple");
    EXPECT_EQ(editor.MousePointer, 0);
}

TEST_F(DriverTest, SeventhPlayerTakesNoPromoNoShortClipAndNoFade) {
    station.Ply7_On = 1;
    add({{"Source", Value("Timed Promo")}, {"Schedule Select", Value(0)}});
    add({{"Source", Value("Snipit")}, {"Length", Value::date(TimeSerial(0, 0, 20))}});
    add({{"FadeIn", Value::boolean(true)}});
    const long plain = add();
    EXPECT_EQ(pick(14), plain);
    EXPECT_EQ(picks.back().record_source, "NormSel");
}

TEST_F(DriverTest, TraceTellsWhyEachEarlierRowWasPassedOver) {
    const long good = add();
    add({{"Valid Start time", Value::date(TimeSerial(6, 0, 0))},
         {"Valid End Time", Value::date(TimeSerial(7, 0, 0))},
         {"Valid Start Time2", Value::date(TimeSerial(6, 0, 0))},
         {"Valid End Time2", Value::date(TimeSerial(7, 0, 0))}});
    std::vector<std::string> lines;
    selection.hooks.trace = [&](const std::string& line) { lines.push_back(line); };
    EXPECT_EQ(pick(), good);
    const std::vector<std::string> expected = {
        "GetNew for slot 3",
        "source Timed Promo: no rows",
        "source SRequest: no rows",
        "source NormSel (state 3): 2 rows, sweep from 1",
        "  row 2 at 1 \"Song 2 - Artist 2\": outside both time windows",
        "  row 2 at 1 \"Song 2 - Artist 2\": outside both time windows",
        "  row 1 at 0 \"Song 1 - Artist 1\": accepted",
    };
    EXPECT_EQ(lines, expected);
}

}  // namespace
}  // namespace tavora
