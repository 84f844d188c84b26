#include "selection_fixture.h"

namespace tavora {
namespace {

class BlockPartyTest : public SelectionTest {
  protected:
    void SetUp() override {
        SelectionTest::SetUp();
        station.BP_On = true;
        station.BP_Chars = 5;
        station.BP_Block = 3;
    }
    long song(const char* artist, const char* title) {
        return add({{"Artist", Value(artist)}, {"Title", Value(title)}});
    }
    std::string source() const { return picks.back().record_source; }
};

TEST_F(BlockPartyTest, FirstSongComesFromTheRotationAndTheBlockGoesOnByItsPrefix) {
    const long id = song("Bruce Springsteen", "Born");
    EXPECT_EQ(pick(), id);
    EXPECT_EQ(source(), "NormSel");
    EXPECT_EQ(selection.BP_Artist, "Bruce");
    EXPECT_EQ(selection.BP_Count, 1);
    EXPECT_EQ(selection.BP_Artists[4], "a");
    EXPECT_EQ(selection.BP_Titles[4], "Born");

    // The same prefix goes on, but not with a recent title.
    song("Abba", "Waterloo");
    song("Bruce Hornsby", "Mandolin Rain");
    const long next = song("Bruce Hornsby", "The Way It Is");
    song("Cher", "Believe");
    selection.BP_Titles[3] = "Mando";
    EXPECT_EQ(pick(), next);
    EXPECT_EQ(source(), "BPSort");
    EXPECT_EQ(selection.BP_Count, 2);
    EXPECT_EQ(selection.BP_Titles[4], "The W");
}

TEST_F(BlockPartyTest, ArtistOfARecentBlockEndsTheScan) {
    song("Abba", "Waterloo");
    song("Bruce Hornsby", "Mandolin Rain");
    selection.BP_Artist = "Bruce";
    selection.BP_Artists[0] = "Bruce";
    selection.BP_Count = 1;
    pick();
    // The rotation has no artist separation: either song may open the next block.
    EXPECT_EQ(source(), "NormSel");
    EXPECT_EQ(selection.BP_Artists[4], "Bruce");
    EXPECT_EQ(selection.BP_Count, 1);
}

TEST_F(BlockPartyTest, TuesdayBlockEndsAtTwoSongs) {
    song("Abba", "Waterloo");
    song("Bruce Hornsby", "Mandolin Rain");
    set_now(kNow - 1);  // Tuesday
    station.BP_Tuesday = true;
    station.BP_Block = 5;
    selection.BP_Artist = "Bruce";
    selection.BP_Count = 2;
    pick();
    EXPECT_EQ(source(), "NormSel");
    EXPECT_EQ(selection.BP_Count, 1);
}

}  // namespace
}  // namespace tavora
