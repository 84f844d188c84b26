#include "selection_fixture.h"

namespace tavora {
namespace {

class CommitTest : public SelectionTest {
  protected:
    // A chart lead; leads are never picked by the rotation themselves.
    long add_lead(const char* source, const char* chart, int position,
                  const char* path = "d:\\leads\\lead.mp3") {
        return add({{"Source", Value(source)},
                    {chart, Value(position)},
                    {"Long title", Value(path)},
                    {"Title", Value(std::string("Lead ") + chart)},
                    {"Schedule Select", Value(0)}});
    }
    // "Special Sort" never looks at its last row.
    void add_last_special() { add({{"Source", Value("Zz")}, {"Schedule Select", Value(0)}}); }
};

TEST_F(CommitTest, PickIsStampedAndCopiedIntoItsSlot) {
    const long id = add({{"How Many Today", Value(2)},
                         {"Total Request", Value(7)},
                         {"Size", Value(4)},
                         {"Mix Out", Value(5)},
                         {"StartVol", Value(-300)}});
    station.Look_Sched = 0.01;
    EXPECT_EQ(pick(), id);
    EXPECT_TRUE(has(id, {{"Last Played", kNow}, {"How Many Today", 3}}));
    EXPECT_TRUE(has(id, {{"How Many This Week", 1}, {"Total Request", 8}}));
    EXPECT_EQ(station.Slot_File[3], "d:\\music\\song1.mp3");
    EXPECT_EQ(station.Slot_Title[3], "Song 1 - Artist 1");
    EXPECT_EQ(station.Slot_MixIn[3], 4);
    EXPECT_EQ(station.Slot_MixOut[3], 5);
    EXPECT_EQ(station.Slot_Vol[3], -300);
    EXPECT_DOUBLE_EQ(station.Slot_Length[3], TimeSerial(0, 3, 0));
    EXPECT_DOUBLE_EQ(station.Look_Sched, 0.01 + TimeSerial(0, 3, 0));
    EXPECT_EQ(station.Slot_Ready[3], 1);
    EXPECT_EQ(station.Slot_Started[3], 0);
    EXPECT_EQ(station.Slot_Special[3], 0);
    EXPECT_EQ(main.Panel(5).Text, "1");
}

TEST_F(CommitTest, PlaylistMarkerTurnsItsMembersIntoPriorityRequests) {
    const long marker = add({{"Long title", Value("QXPLRandom")}});
    const long first = add({{"Schedule Select", Value(0)}});
    const long second = add({{"Schedule Select", Value(0)}});
    Recordset links = OpenRecordset(library, "Playlist");
    for (const auto& [member, order] : {std::pair{first, 1}, std::pair{second, 2}}) {
        links.AddNew();
        links.SetField("Selection", Value(member));
        links.SetField("List Number", Value(marker));
        links.SetField("List Order", Value(order));
        links.Update();
    }
    pick();
    EXPECT_EQ(station.PL_Marker, 1);
    EXPECT_EQ(selection.PL_Random, 1);
    EXPECT_EQ(station.Slot_Ready[3], 0);
    EXPECT_TRUE(has(first, {{"Sel", 1001}}));
    EXPECT_TRUE(has(second, {{"Sel", 1002}}));
    EXPECT_TRUE(has(marker, {{"Sel", 0}}));
}

TEST_F(CommitTest, ChartedSongWaitsInTheHoldSlotBehindItsLead) {
    const long song = add({{"T40", Value(5)}, {"StartVol", Value(80)}});
    const long lead = add_lead("Top40", "T40", 5);
    add_last_special();
    EXPECT_EQ(pick(), lead);
    EXPECT_EQ(station.Slot_Special[3], 1);
    EXPECT_EQ(station.Slot_File[3], "d:\\leads\\lead.mp3");
    EXPECT_EQ(station.Slot_RecID[13], song);
    EXPECT_EQ(station.Slot_Ready[13], 1);
    EXPECT_EQ(station.Slot_Vol[13], 0);
    EXPECT_EQ(selection.Lead_Pos, 9999);
    EXPECT_TRUE(
        has(lead, {{"AccessDate", kNow - 10}, {"Last Played", kNow}, {"How Many Today", 0}}));
}

TEST_F(CommitTest, NoLeadForAnotherFormatTheSeventhPlayerOrAMissingPosition) {
    const long song = add({{"D40", Value(3)}, {"T40", Value(7)}});
    add_lead("TopDance", "D40", 3, "d:\\leads\\lead.wav");
    add_last_special();
    station.MFilter = 1;
    EXPECT_EQ(pick(1), song);  // slot 1 opens an mp3 set
    EXPECT_EQ(selection.Lead_Type, "TopDance");
    EXPECT_EQ(selection.Lead_Pos, 3);
    station.MFilter = 0;
    station.Ply7_On = 1;
    set(song, "Last Played", Value::date(kNow - 1));
    EXPECT_EQ(pick(14), song);
    EXPECT_EQ(selection.Lead_Pos, 3);
    set(song, "Last Played", Value::date(kNow - 1));
    set(song, "D40", Value(0));
    EXPECT_EQ(pick(), song);  // Top 40 position 7 has no lead
    EXPECT_EQ(selection.Lead_Pos, 7);
    EXPECT_EQ(station.Slot_Ready[13], 0);
}

TEST_F(CommitTest, TieBetweenChartsKeepsTheEarlierOne) {
    add({{"T40", Value(5)}, {"C40", Value(5)}});
    pick();
    EXPECT_EQ(selection.Lead_Type, "TopAC");
    EXPECT_EQ(selection.Lead_Field, rec::C40);
}

TEST_F(CommitTest, SpecialRowCountsTowardsTheRunAndGetsNoLead) {
    add({{"Source", Value("Snipit")}, {"T40", Value(2)}});
    add_lead("Top40", "T40", 2);
    add_last_special();
    station.Snip_Max = 3;
    selection.Snip_Run = 1;
    selection.Lead_Pos = 0;
    pick();
    EXPECT_EQ(station.Slot_Special[3], 1);
    EXPECT_EQ(selection.Snip_Run, 2);
    EXPECT_EQ(selection.Lead_Pos, 0);
}

TEST_F(CommitTest, AcceptedPickCountsAgainstItsWeightedCategories) {
    add({{"Category", Value("POP")}, {"Speed", Value("ROCK")}, {"Type", Value("AM")}});
    auto counts = weights();
    set_weight("POP", counts["POP"].first.c_str(), "4");
    set_weight("ROCK", counts["ROCK"].first.c_str(), "99");
    pick();
    counts = weights();
    EXPECT_EQ(counts["POP"].second + " " + counts["ROCK"].second + " " + counts["AM"].second,
              "5 99 99");
}

}  // namespace
}  // namespace tavora
