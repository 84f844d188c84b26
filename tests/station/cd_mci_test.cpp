// The MCI stand-in on real pieces: disc images written here, the probe
// player on virtual time behind the deck.
#include <gtest/gtest.h>

#include "disc_images.h"
#include "fake_services.h"
#include "platform/cdio_drive.h"
#include "platform/disc_image.h"
#include "platform/mci_cd_audio.h"
#include "playback/cd_deck.h"
#include "players/probe_player.h"

namespace tavora {
namespace {

class CdMci : public ::testing::Test {
  protected:
    CdMci()
        : fake(46000.5),
          deck(std::make_unique<ProbePlayer>(fake.clock, fake.loop)),
          image([lengths = std::make_shared<MediaLengths>()](const std::string& path,
                                                             std::string& error) {
              return lengths->length(path, error);
          }),
          mci(image, deck) {}

    // The reply, or "error N".
    std::string send(const std::string& command) {
        std::string reply;
        const int code = mci.mciSendString(command, reply);
        return code == 0 ? reply : "error " + std::to_string(code);
    }
    void open_tmsf() {
        ASSERT_EQ(send("open cdaudio alias cd wait shareable"), "");
        ASSERT_EQ(send("set cd time format tmsf wait"), "");
    }
    void seconds(double s) { fake.loop.run_for(static_cast<std::int64_t>(s * 1000)); }

    FakeServices fake;
    PlayerDeck deck;
    DiscImageDrive image;
    MciCdAudio mci;
};

TEST_F(CdMci, ADiscReadsAndPlaysAsADriveAtSeventyFiveFramesASecond) {
    EXPECT_TRUE(image.insert(make_disc(fake.home() / "disc", kThreeTracks)).empty());
    open_tmsf();
    EXPECT_EQ(send("status cd media present"), "true");
    EXPECT_EQ(send("status cd number of tracks wait"), "3");
    EXPECT_EQ(send("status cd length wait"), "04:00:24");
    EXPECT_EQ(send("status cd length track 1"), "01:10:21");
    EXPECT_EQ(send("status cd length track 3"), "02:00:03");
    EXPECT_EQ(send("status cd position"), "01:00:00:00");
    EXPECT_EQ(send("status cd mode"), "stopped");

    EXPECT_EQ(send("play cd"), "");
    seconds(10);
    EXPECT_EQ(send("status cd mode"), "playing");
    EXPECT_EQ(send("status cd position"), "01:00:10:00");
    EXPECT_EQ(send("pause cd"), "");
    seconds(5);
    EXPECT_EQ(send("status cd mode"), "paused");
    EXPECT_EQ(send("status cd position"), "01:00:10:00");

    // Milliseconds count from the disc's start, as ff and rew read them.
    EXPECT_EQ(send("set cd time format milliseconds"), "");
    EXPECT_EQ(send("status cd position wait"), "10000");
    EXPECT_EQ(send("play cd from 69000"), "");
    EXPECT_EQ(send("set cd time format tmsf"), "");
    seconds(3);
    // The disc plays on into the next track.
    EXPECT_EQ(send("status cd position").substr(0, 6), "02:00:");
    EXPECT_EQ(send("status cd mode"), "playing");

    EXPECT_EQ(send("stop cd wait"), "");
    EXPECT_EQ(send("seek cd to 3"), "");
    EXPECT_EQ(send("status cd position"), "03:00:00:00");
    EXPECT_EQ(send("play cd from 3:01:59"), "");
    seconds(3);
    // Past the last track the drive stops at the disc's end.
    EXPECT_EQ(send("status cd mode"), "stopped");
    EXPECT_EQ(send("status cd position"), "03:02:00:03");
}

TEST_F(CdMci, FailuresGetTheCodesOfMci) {
    EXPECT_EQ(send("status cd mode"), "error 263");  // not open yet
    open_tmsf();
    EXPECT_EQ(send("open cdaudio alias cd wait shareable"), "error 289");
    EXPECT_EQ(send("status cd media present"), "false");
    EXPECT_EQ(send("status cd mode"), "not ready");
    EXPECT_EQ(send("status cd number of tracks wait"), "error 276");
    EXPECT_EQ(send("play cd"), "error 276");
    EXPECT_EQ(send("spin cd"), "error 261");

    image.insert(make_disc(fake.home() / "disc", kThreeTracks));
    EXPECT_EQ(send("status cd length track 4"), "error 282");
    EXPECT_EQ(send("status cd length track x"), "error 270");
    EXPECT_EQ(send("seek cd to 9"), "error 282");
    EXPECT_EQ(send("set cd speed fast"), "error 259");

    // A folder without audio is a data disc: one track that won't play.
    std::filesystem::create_directories(fake.home() / "data");
    std::ofstream(fake.home() / "data" / "readme.txt") << "not audio";
    EXPECT_TRUE(image.insert(fake.home() / "data").empty());
    // One look finds the tray open between the two discs.
    EXPECT_EQ(send("status cd media present"), "false");
    EXPECT_EQ(send("status cd number of tracks"), "1");
    EXPECT_EQ(send("play cd"), "error 512");
    EXPECT_EQ(mci::error_text(512), "The disc in the drive is not an audio CD.");

    EXPECT_EQ(image.insert(fake.home() / "nowhere").size(), 1u);
    EXPECT_EQ(send("status cd media present"), "false");
    EXPECT_EQ(send("close all"), "");
    EXPECT_EQ(send("status cd media present"), "error 263");
}

TEST_F(CdMci, AMissingOrDamagedTrackIsSkippedAsADriveSkipsWhatItCantRead) {
    const auto folder = fake.home() / "worn";
    std::filesystem::create_directories(folder);
    write_track(folder / "01 First.wav", 30 * 75);
    write_track(folder / "03 Third.wav", 30 * 75);
    std::ofstream(folder / "04 Fourth.flac") << "this is no flac";
    const auto problems = image.insert(folder);
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_EQ(problems[0], "Track 2 is missing from the disc image.");
    EXPECT_EQ(problems[1].rfind("Track 4 (04 Fourth.flac) can't be read: ", 0), 0u) << problems[1];

    open_tmsf();
    EXPECT_EQ(send("status cd number of tracks"), "4");
    EXPECT_EQ(send("status cd length track 2"), "00:04:00");
    EXPECT_EQ(send("play cd from 2"), "");
    seconds(1);
    EXPECT_EQ(send("status cd position"), "03:00:01:00");
    EXPECT_EQ(send("play cd from 3:00:29"), "");
    seconds(2);
    EXPECT_EQ(send("status cd mode"), "stopped");
}

TEST_F(CdMci, ACueSheetPutsSeveralTracksInOneFile) {
    const auto folder = fake.home() / "cued";
    std::filesystem::create_directories(folder);
    write_track(folder / "Whole Disc.wav", 90 * 75);
    std::ofstream(folder / "disc.cue") << "FILE \"Whole Disc.wav\" WAVE\r\n"
                                          "  TRACK 01 AUDIO\r\n    INDEX 01 00:00:00\r\n"
                                          "  TRACK 02 AUDIO\r\n    INDEX 00 00:28:00\r\n"
                                          "    INDEX 01 00:30:00\r\n"
                                          "  TRACK 03 AUDIO\r\n    INDEX 01 00:50:03\r\n";
    EXPECT_TRUE(image.insert(folder).empty());
    open_tmsf();
    EXPECT_EQ(send("status cd number of tracks"), "3");
    EXPECT_EQ(send("status cd length track 2"), "00:20:03");
    EXPECT_EQ(send("status cd length track 3"), "00:39:72");
    EXPECT_EQ(send("play cd from 1:00:28"), "");
    seconds(3);
    EXPECT_EQ(send("status cd position"), "02:00:01:00");
    EXPECT_EQ(send("play cd from 3"), "");
    seconds(2);
    EXPECT_EQ(send("status cd position"), "03:00:02:00");
    EXPECT_EQ(send("play cd from 3:00:38"), "");
    seconds(3);
    EXPECT_EQ(send("status cd mode"), "stopped");
    EXPECT_EQ(send("status cd position"), "03:00:39:72");
}

TEST_F(CdMci, ADiscTakenOutWhilePlayingStopsTheSound) {
    image.insert(make_disc(fake.home() / "disc", kThreeTracks));
    open_tmsf();
    ASSERT_EQ(send("play cd"), "");
    seconds(2);
    ASSERT_TRUE(deck.playing());
    image.eject();
    EXPECT_EQ(send("status cd media present"), "false");
    EXPECT_FALSE(deck.playing());
    EXPECT_EQ(send("status cd mode"), "not ready");
    EXPECT_EQ(send("set cd door open"), "");
}

TEST(CdText, TimesAreTwoDigitsAPartWithColons) {
    EXPECT_EQ(mci::msf_text(18024), "04:00:24");
    EXPECT_EQ(mci::msf_text(0), "00:00:00");
    EXPECT_EQ(mci::tmsf_text(2, 75), "02:00:01:00");
    EXPECT_EQ(mci::tmsf_text(12, 74 * 60 * 75 + 74), "12:74:00:74");
}

TEST(CdioDrive, NoDriveIsACodeNotACrash) {
    TestFolder folder;
    FakeServices fake(46000.5);
    PlayerDeck deck(std::make_unique<ProbePlayer>(fake.clock, fake.loop));
    CdioDrive drive("/nonexistent/cdrom", folder.path() / "cache");
    MciCdAudio mci(drive, deck);
    std::string reply;
    EXPECT_EQ(mci.mciSendString("open cdaudio alias cd wait shareable", reply), 266);
    EXPECT_EQ(mci::error_text(266),
              "There is no CD drive on this machine, or it cannot be opened.");
    EXPECT_EQ(mci.mciSendString("status cd media present", reply), 263);
}

}  // namespace
}  // namespace tavora
