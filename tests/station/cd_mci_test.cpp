// The MCI stand-in on real pieces: disc images written here, the probe
// player on virtual time behind the deck.
#include <gtest/gtest.h>

#include "disc_images.h"
#include "fake_services.h"
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

    // The reply, "ok" when empty, or "error N".
    std::string send(const std::string& command) {
        std::string reply;
        const int code = mci.mciSendString(command, reply);
        if (code != 0) return "error " + std::to_string(code);
        return reply.empty() ? "ok" : reply;
    }
    // The replies to `commands`, joined by "|"; "+N" lets N seconds pass.
    std::string replies(const std::vector<std::string>& commands) {
        std::string joined;
        for (const std::string& command : commands) {
            if (command[0] == '+') {
                fake.loop.run_for(std::stoi(command.substr(1)) * 1000);
                continue;
            }
            joined += (joined.empty() ? "" : "|") + send(command);
        }
        return joined;
    }
    void open_tmsf() {
        ASSERT_EQ(replies({"open cdaudio alias cd wait shareable", "set cd time format tmsf wait"}),
                  "ok|ok");
    }
    void insert_three_tracks() {
        EXPECT_TRUE(image.insert(make_disc(fake.home() / "disc", kThreeTracks)).empty());
    }

    FakeServices fake;
    PlayerDeck deck;
    DiscImageDrive image;
    MciCdAudio mci;
};

TEST_F(CdMci, ADiscReadsAndPlaysAsADriveAtSeventyFiveFramesASecondUntilTakenOut) {
    insert_three_tracks();
    open_tmsf();
    EXPECT_EQ(replies({"status cd media present", "status cd number of tracks wait",
                       "status cd length wait", "status cd length track 1",
                       "status cd length track 3", "status cd position", "status cd mode"}),
              "true|3|04:00:24|01:10:21|02:00:03|01:00:00:00|stopped");
    EXPECT_EQ(replies({"play cd", "+10", "status cd mode", "status cd position", "pause cd", "+5",
                       "status cd mode", "status cd position"}),
              "ok|playing|01:00:10:00|ok|paused|01:00:10:00");
    // Milliseconds count from the disc's start, as ff and rew read them, and
    // the disc plays on into the next track.
    EXPECT_EQ(replies({"set cd time format milliseconds", "status cd position wait",
                       "play cd from 69000", "set cd time format tmsf", "+3", "status cd mode"}),
              "ok|10000|ok|ok|playing");
    EXPECT_EQ(send("status cd position").substr(0, 6), "02:00:");
    // Past the last track the drive stops at the disc's end.
    EXPECT_EQ(replies({"stop cd wait", "seek cd to 3", "status cd position", "play cd from 3:01:59",
                       "+3", "status cd mode", "status cd position"}),
              "ok|ok|03:00:00:00|ok|stopped|03:02:00:03");
    // A disc taken out while playing stops the sound.
    ASSERT_EQ(replies({"play cd", "+2"}), "ok");
    ASSERT_TRUE(deck.playing());
    image.eject();
    EXPECT_EQ(send("status cd media present"), "false");
    EXPECT_FALSE(deck.playing());
    EXPECT_EQ(replies({"status cd mode", "set cd door open"}), "not ready|ok");
}

TEST_F(CdMci, FailuresGetTheCodesOfMci) {
    EXPECT_EQ(send("status cd mode"), "error 263");  // not open yet
    open_tmsf();
    EXPECT_EQ(replies({"open cdaudio alias cd wait shareable", "status cd media present",
                       "status cd mode", "status cd number of tracks wait", "play cd", "spin cd"}),
              "error 289|false|not ready|error 276|error 276|error 261");
    insert_three_tracks();
    EXPECT_EQ(replies({"status cd length track 4", "status cd length track x", "seek cd to 9",
                       "set cd speed fast"}),
              "error 282|error 270|error 282|error 259");

    // A folder without audio is a data disc: one track that won't play. One
    // look finds the tray open between the two discs.
    fake.folder.Write("data/readme.txt", "not audio");
    EXPECT_TRUE(image.insert(fake.home() / "data").empty());
    EXPECT_EQ(replies({"status cd media present", "status cd number of tracks", "play cd"}),
              "false|1|error 512");
    EXPECT_EQ(mci::error_text(512), "The disc in the drive is not an audio CD.");

    EXPECT_EQ(image.insert(fake.home() / "nowhere").size(), 1u);
    EXPECT_EQ(replies({"status cd media present", "close all", "status cd media present"}),
              "false|ok|error 263");
}

TEST_F(CdMci, AMissingOrDamagedTrackIsSkippedAsADriveSkipsWhatItCantRead) {
    const auto folder = fake.folder.Write("worn/04 Fourth.flac", "this is no flac").parent_path();
    write_track(folder / "01 First.wav", 30 * 75);
    write_track(folder / "03 Third.wav", 30 * 75);
    const auto problems = image.insert(folder);
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_EQ(problems[0], "Track 2 is missing from the disc image.");
    EXPECT_EQ(problems[1].rfind("Track 4 (04 Fourth.flac) can't be read: ", 0), 0u) << problems[1];

    open_tmsf();
    EXPECT_EQ(replies({"status cd number of tracks", "status cd length track 2", "play cd from 2",
                       "+1", "status cd position", "play cd from 3:00:29", "+2", "status cd mode"}),
              "4|00:04:00|ok|03:00:01:00|ok|stopped");
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
    EXPECT_EQ(replies({"status cd number of tracks", "status cd length track 2",
                       "status cd length track 3", "play cd from 1:00:28", "+3",
                       "status cd position", "play cd from 3", "+2", "status cd position",
                       "play cd from 3:00:38", "+3", "status cd mode", "status cd position"}),
              "3|00:20:03|00:39:72|ok|02:00:01:00|ok|03:00:02:00|ok|stopped|03:00:39:72");
}

// Lengths past an hour stay in minutes, as a disc's do.
TEST(CdText, MinutesNeverRollOverIntoHours) {
    EXPECT_EQ(mci::tmsf_text(12, 74 * 60 * 75 + 74), "12:74:00:74");
}

}  // namespace
}  // namespace tavora
