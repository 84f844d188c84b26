#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "bank_fixture.h"
#include "selection/selection_fixture.h"

namespace tavora {
namespace {

// The bank on the real selection and a library of sixty playable records,
// each an hour apart at the least.
class WithSelection : public SelectionTest {
  protected:
    void SetUp() override {
        SelectionTest::SetUp();
        fake.paths.SetDrive('d', test::media_folder());
        for (int i = 0; i < 60; ++i) {
            const int seconds = 150 + 15 * (i % 8);
            songs.push_back(
                add({{"Long title", Value("d:\\song" + std::to_string(seconds) + ".mp3")},
                     {"Mix Out", Value(4)},
                     {"Length", Value::date(TimeSerial(0, 0, 7))}}));
        }
        station.Run_Mode = 0;
        data1.DatabaseName = (fake.home() / "qx1.mdb").string();
        playback = std::make_unique<Playback>(
            station, fake.services, PlaybackScreens{main, loading, viewer}, data1,
            probe_players(fake.clock, fake.loop),
            SelectionPort{[this] { selection.auto_run(); }, [this] { schedule.Check_Sched(); }});
        playback->observer = &air;
    }

    std::vector<long> songs;
    frmViewer viewer;
    DataControl data1{pool};
    test::AirLog air{fake.clock};
    std::unique_ptr<Playback> playback;
};

TEST_F(WithSelection, TwoHoursAirWhatSelectionStamped) {
    playback->Run();
    fake.loop.run_for(2 * 3600 * 1000);
    EXPECT_TRUE(air.stops.empty());
    EXPECT_GE(air.starts(1).size(), 5u);
    for (const auto& [at, length] : air.silences(air.seconds()))
        EXPECT_LT(length, 4.5) << "at " << at;

    // Every aired record was stamped when chosen.
    std::set<long> aired;
    for (int slot = 1; slot <= 6; ++slot)
        if (station.Slot_Ready[slot] == 3) aired.insert(station.Slot_RecID[slot]);
    ASSERT_FALSE(aired.empty());
    for (long id : aired)
        EXPECT_GT(field(id, "Last Played").number(), kNow) << id;
}

TEST_F(WithSelection, ALibraryOfCdTracksOnlyStopsTheRunAtOnceAndLogsWhy) {
    for (long id : songs)
        set(id, "Long title", Value("CD Media - Track " + std::to_string(id)));
    // The first set of an earlier run, still in its slots.
    for (int slot = 1; slot <= 6; ++slot) {
        station.Slot_File[slot] = "d:\\song150.mp3";
        station.Slot_Ready[slot] = 3;
    }
    station.Log_Name = "c:\\tavora\\starved.log";
    station.Log_Due = 0;
    playback->Run();
    EXPECT_TRUE(playback->run_stopped());
    EXPECT_EQ(air.stops, std::vector<std::string>{Playback::kNothingPlayable});
    fake.loop.run_for(1000);
    EXPECT_TRUE(air.changes.empty()) << "the old set does not air";
    EXPECT_EQ(fake.folder.Read(fake.home() / "starved.log"),
              std::string(Playback::kNothingPlayable) + "\r\n");
}

}  // namespace
}  // namespace tavora
