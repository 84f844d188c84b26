// An afternoon of the whole station as its manager would check it: a
// jukebox request, a web request and a break ordered by the station manager,
// then the event lines, the library, the play log and the status file.
#include <cmath>

#include "core/settings/session_file.h"
#include "core/station.h"
#include "sim/event_log.h"
#include "sim_station.h"

namespace tavora {
namespace {

// "2026-11-23 hh:mm:ss.fff" of a clock time of the run's day.
std::string at(int hours, int minutes, double seconds = 0) {
    return event_time(DateSerial(2026, 11, 23) + (hours * 3600 + minutes * 60 + seconds) / 86400);
}

// The first pick for a slot of the bank at or after a moment: the seventh
// player's slot takes no request.
std::string first_bank_pick(const std::vector<std::string>& picks, const std::string& from) {
    for (const auto& pick : picks)
        if (field(pick, "slot") != "14" && time_of(pick) >= from) return pick;
    return "";
}

const char* const kRequested =
    "SELECT RecID FROM Recordings1 WHERE [Request AllTime] > 0 ORDER BY RecID";

using StationDay = SimStation;

TEST_F(StationDay, RequestsAndABreakAirAsTheRulesSayAndTheFilesHoldWhatAired) {
    // The web interface checks every minute; the play log is on.
    std::ofstream(home() / "tqxiis.ini") << "True\nTrue\n1\nTQXMS Direct\nc:\\tavora\\newreq.tqf\n"
                                            "None\nNone\nNone\nNone\nNone\n0\n0\n0\n";
    std::ofstream(home() / "newreq.tqf") << "None\n";
    Station session;
    session.Snip_Max = 3;
    session.Log_Due = 0;
    ASSERT_TRUE(BP_Ini(session, home() / "qxbp.ini"));
    const auto titled = query("SELECT RecID FROM Recordings1 WHERE Title = 'Silver Fire 4'");
    ASSERT_EQ(titled.size(), 1u);
    const std::string web = titled[0];
    ASSERT_EQ(query(kRequested), std::vector<std::string>{});

    const SimRun run =
        simulate("90",
                 "00:05:00 append newreq.tqf Silver Fire 4\n"
                 "00:08:00 click Request.RB(1)\n"
                 "00:50:00 write qxsm.ini \"Exit\",False,\"Exit2\",False,\"Show\",x,y,\"Start\","
                 "#2:52:00 PM#,\"End\",#2:58:00 PM#,z,#11/23/2026#,\"BP\",True,3,\"CD\",False,"
                 "\"Skip\",False,\"Spare\",w,\"Play\",False\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.lines("DIALOG"), std::vector<std::string>{});
    const auto aired = run.lines("AIR");
    const auto picks = run.lines("PICK");
    ASSERT_GE(aired.size(), 20u) << run.out;
    expect_aired_what_was_picked(run);
    EXPECT_EQ(run.end("aired"), aired.size());
    EXPECT_EQ(run.end("picks"), picks.size());
    EXPECT_EQ(time_of(run.lines("END")[0]), at(15, 30));
    const auto column = [&](const std::string& recid, const std::string& name) {
        const auto found = query("SELECT [" + name + "] FROM Recordings1 WHERE RecID = ?", {recid});
        return found.size() == 1 ? found[0] : "missing";
    };

    // Only the two requested records were counted as requests.
    const auto both = query(kRequested);
    ASSERT_EQ(both.size(), 2u);
    ASSERT_NE(std::find(both.begin(), both.end(), web), both.end());
    const std::string jukebox = both[0] == web ? both[1] : both[0];

    // The press is the next bank slot's pick; each request airs after its pick.
    const std::string pressed = first_bank_pick(picks, at(14, 8));
    EXPECT_EQ(field(pressed, "recid"), jukebox) << pressed;
    EXPECT_EQ(field(pressed, "source"), "SRequest") << pressed;
    EXPECT_EQ(column(jukebox, "AccessDate"), "");  // the jukebox starts no wait
    for (const std::string& recid : {jukebox, web}) {
        const auto picked = with_recid(picks, recid);
        const auto on_air = with_recid(aired, recid);
        ASSERT_FALSE(picked.empty() || on_air.empty()) << recid;
        EXPECT_GT(time_of(on_air[0]), time_of(picked[0])) << recid;
    }

    // The web title is taken at the check after it came, then waits half an
    // hour from that moment before it can be picked.
    const double checked = std::stod(column(web, "AccessDate"));
    EXPECT_GE(event_time(checked), at(14, 5));
    EXPECT_LE(event_time(checked), at(14, 6, 10));
    const std::string waited = first_bank_pick(picks, event_time(checked + 30.0 / 1440));
    EXPECT_EQ(field(waited, "recid"), web) << waited;
    EXPECT_EQ(field(waited, "source"), "SRequest") << waited;
    EXPECT_EQ(with_recid(picks, web).back(), waited) << "picked before its wait was over";

    // The break: the song on the air plays out, nothing starts until a
    // second after its end.
    EXPECT_FALSE(std::filesystem::exists(home() / "qxsm.ini"));
    const auto resumed = std::find_if(
        aired.begin(), aired.end(), [](const std::string& e) { return time_of(e) >= at(14, 52); });
    ASSERT_TRUE(resumed != aired.end() && resumed != aired.begin());
    EXPECT_GE(time_of(*resumed), at(14, 58, 1));
    EXPECT_LT(time_of(*resumed), at(14, 58, 3));
    const std::vector<std::string> session_after = file("qxbp.ini");
    ASSERT_GE(session_after.size(), 3u);
    EXPECT_EQ(session_after[0], "1");  // the order's block party, 3 a block
    EXPECT_EQ(session_after[2], "3");

    // The play log has a line for each song that ended, in the order they
    // aired; the silence of the break runs from the end of the song on the
    // air to the resume.
    const std::vector<std::string> log = play_log();
    ASSERT_EQ(log.size() + 1, aired.size());
    const std::regex complete(R"(^Complete at:(\d+:\d\d:\d\d [AP]M)- (QX\d|QX [67]) > (.*)$)");
    double break_silence_from = 0;
    for (std::size_t i = 0; i < log.size(); ++i) {
        std::smatch m;
        ASSERT_TRUE(std::regex_match(log[i], m, complete)) << log[i];
        const std::string player = field(aired[i], "player");
        EXPECT_EQ(m[2], (player >= "6" ? "QX " : "QX") + player) << log[i];
        EXPECT_EQ(m[3], title_of(aired[i])) << log[i];
        const double ended = seconds_of_clock(m[1]);
        EXPECT_GE(ended, std::floor(seconds_of(aired[i]))) << log[i];
        if (aired.begin() + static_cast<long>(i) + 1 == resumed) break_silence_from = ended;
    }
    EXPECT_GT(break_silence_from, seconds_of(at(14, 52)));
    EXPECT_NEAR(run.end("dead_air_s"), seconds_of(*resumed) - break_silence_from, 1.5);

    // The status file: the block party line, the song now playing in line 12,
    // and a history of songs that aired, in their order.
    const std::vector<std::string> status = file("tqxstat.txt");
    ASSERT_EQ(status.size(), 14u);
    EXPECT_NE(status[0].find("Block Party playing  3 in a row"), std::string::npos) << status[0];
    // Written when a song completes: a run that ends inside the last mix
    // still names the song before the last to go on the air.
    EXPECT_TRUE(status[11] == title_of(aired.back()) ||
                status[11] == title_of(aired[aired.size() - 2]))
        << status[11];
    std::size_t next = 0;
    for (std::size_t line = 1; line < 11; ++line) {
        // The seventh player's song carries the time it was written.
        const std::string title =
            std::regex_replace(status[line], std::regex(R"( - \d+:\d\d:\d\d [AP]M$)"), "");
        while (next < aired.size() && title_of(aired[next]) != title)
            ++next;
        EXPECT_LT(next, aired.size()) << "not aired, or out of order: " << status[line];
    }
}

// A week of the whole demo on probe players. The demo's library is small for
// its play limits, so the rules often starve and the seventh player's slot
// falls to the fallback: kept to songs, it bridges every set change.
class DemoWeek : public SimStation {
  protected:
    // The probe players only time the files: one quick format will do.
    static void SetUpTestSuite() { make_master(DemoOptions{}.songs, 0, ".flac", 8000); }
};

TEST_F(DemoWeek, TheSeventhPlayerBridgesEverySetChangeWithoutDeadAir) {
    const SimRun run = simulate(std::to_string(7 * 24 * 60));
    EXPECT_EQ(run.end("dead_air_s"), 0) << run.lines("END")[0];
    EXPECT_GT(run.end("fallbacks"), 0) << "the week must starve the rules to test anything";

    const auto leads = query("SELECT RecID FROM Recordings1 WHERE Source = 'Top40'");
    ASSERT_EQ(leads.size(), 10u);
    const auto bridges = holding(run.lines("AIR"), " slot=14 player=7 ");
    EXPECT_GT(bridges.size(), 7u * 50);
    for (const std::string& line : bridges)
        EXPECT_EQ(std::count(leads.begin(), leads.end(), field(line, "recid")), 0) << line;
}

}  // namespace
}  // namespace tavora
