// An afternoon of the whole station as its manager would check it: a
// jukebox request, a web request and a break ordered by the station manager,
// then the library, the play log and the status file.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "core/settings/session_file.h"
#include "core/station.h"
#include "sim/event_log.h"
#include "sim_station.h"
#include "store/library.h"
#include "store/statement.h"

namespace tavora {
namespace {

// One AIR or PICK line.
struct Event {
    std::string time;  // "yyyy-mm-dd hh:mm:ss.fff"
    int slot = 0;
    int player = 0;
    long recid = 0;
    std::string source;  // PICK
    std::string title;   // AIR
};

std::vector<Event> events(const SimRun& run, const std::string& kind) {
    const std::regex air(R"re(^AIR (\S+ \S+) slot=(\d+) player=(\d) recid=(\d+) "(.*)"$)re");
    const std::regex pick(R"(^PICK (\S+ \S+) slot=(\d+) recid=(\d+) source=(.+)$)");
    std::vector<Event> found;
    for (const std::string& line : run.lines(kind)) {
        std::smatch m;
        if (kind == "AIR" && std::regex_match(line, m, air)) {
            found.push_back({m[1], std::stoi(m[2]), std::stoi(m[3]), std::stol(m[4]), "", m[5]});
        } else if (kind == "PICK" && std::regex_match(line, m, pick)) {
            found.push_back({m[1], std::stoi(m[2]), 0, std::stol(m[3]), m[4], ""});
        } else {
            ADD_FAILURE() << "unreadable line: " << line;
        }
    }
    return found;
}

// "2026-11-23 hh:mm:ss.fff" of a clock time of the run's day.
std::string at(int hours, int minutes, double seconds = 0) {
    return event_time(DateSerial(2026, 11, 23) + (hours * 3600 + minutes * 60 + seconds) / 86400);
}

// Seconds of the day of an event time, and of a log's "h:mm:ss PM".
double seconds_of(const std::string& time) {
    return std::stoi(time.substr(11, 2)) * 3600 + std::stoi(time.substr(14, 2)) * 60 +
           std::stod(time.substr(17));
}
double seconds_of_clock(const std::string& text) {
    int h = 0, m = 0, s = 0;
    char half[3] = {};
    EXPECT_EQ(std::sscanf(text.c_str(), "%d:%d:%d %2s", &h, &m, &s, half), 4) << text;
    return (h % 12 + (std::string(half) == "PM" ? 12 : 0)) * 3600 + m * 60 + s;
}

// The slot that airs after another: the seventh player's between two sets.
int next_slot(int slot) {
    return slot == 14 ? 1 : slot == 6 ? 14 : slot + 1;
}

// The first pick for a slot of the bank at or after a moment: the seventh
// player's slot takes no request.
std::optional<Event> first_bank_pick(const std::vector<Event>& picks, const std::string& from) {
    for (const Event& pick : picks)
        if (pick.slot != 14 && pick.time >= from) return pick;
    return std::nullopt;
}

class StationDay : public SimStation {
  protected:
    std::vector<std::string> lines(const std::string& file) const {
        std::vector<std::string> out;
        std::ifstream in(home() / file);
        for (std::string line; std::getline(in, line);)
            out.push_back(line.substr(0, line.find_last_not_of('\r') + 1));
        return out;
    }

    // A column of one record, as text ("" for Null).
    std::string column(long recid, const std::string& name) const {
        auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
        Statement row =
            library->connection().prepare("SELECT [" + name + "] FROM Recordings1 WHERE RecID = ?");
        row.bind_int64(1, recid);
        return row.step() == Statement::Step::Row ? row.column_text(0) : "missing";
    }
    long record_titled(const std::string& title) const {
        auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
        Statement row =
            library->connection().prepare("SELECT RecID FROM Recordings1 WHERE Title = ?");
        row.bind_text(1, title);
        return row.step() == Statement::Step::Row ? static_cast<long>(row.column_int64(0)) : 0;
    }
    std::vector<long> requested() const {
        auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
        Statement rows = library->connection().prepare(
            "SELECT RecID FROM Recordings1 WHERE [Request AllTime] > 0 ORDER BY RecID");
        std::vector<long> found;
        while (rows.step() == Statement::Step::Row)
            found.push_back(static_cast<long>(rows.column_int64(0)));
        return found;
    }
};

TEST_F(StationDay, RequestsAndABreakAirAsTheRulesSayAndTheFilesHoldWhatAired) {
    // The web interface checks every minute; the play log is on.
    std::ofstream(home() / "tqxiis.ini") << "True\nTrue\n1\nTQXMS Direct\nc:\\tavora\\newreq.tqf\n"
                                            "None\nNone\nNone\nNone\nNone\n0\n0\n0\n";
    std::ofstream(home() / "newreq.tqf") << "None\n";
    Station session;
    session.Snip_Max = 3;
    session.Log_Due = 0;
    ASSERT_TRUE(BP_Ini(session, home() / "qxbp.ini"));
    const long web = record_titled("Silver Fire 4");
    ASSERT_NE(web, 0);
    ASSERT_EQ(requested(), std::vector<long>{});

    const SimRun run =
        simulate("90",
                 "00:05:00 append newreq.tqf Silver Fire 4\n"
                 "00:08:00 click Request.RB(1)\n"
                 "00:50:00 write qxsm.ini \"Exit\",False,\"Exit2\",False,\"Show\",x,y,\"Start\","
                 "#2:52:00 PM#,\"End\",#2:58:00 PM#,z,#11/23/2026#,\"BP\",True,3,\"CD\",False,"
                 "\"Skip\",False,\"Spare\",w,\"Play\",False\n");
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.lines("DIALOG"), std::vector<std::string>{});
    const std::vector<Event> aired = events(run, "AIR");
    const std::vector<Event> picks = events(run, "PICK");
    ASSERT_GE(aired.size(), 20u) << run.out;
    const auto aired_at = [&](long recid) {
        const auto it = std::find_if(aired.begin(), aired.end(),
                                     [&](const Event& e) { return e.recid == recid; });
        return it == aired.end() ? std::string("never") : it->time;
    };
    const auto last_pick = [&](long recid) {
        std::string last = "never";
        for (const Event& pick : picks)
            if (pick.recid == recid) last = pick.time;
        return last;
    };

    // Only the two requested records were counted as requests.
    const std::vector<long> both = requested();
    ASSERT_EQ(both.size(), 2u);
    ASSERT_NE(std::find(both.begin(), both.end(), web), both.end());
    const long jukebox = both[0] == web ? both[1] : both[0];

    // The press is the next bank slot's pick, and airs.
    const auto pressed = first_bank_pick(picks, at(14, 8));
    ASSERT_TRUE(pressed);
    EXPECT_EQ(pressed->recid, jukebox);
    EXPECT_EQ(pressed->source, "SRequest");
    EXPECT_GT(aired_at(jukebox), pressed->time);
    EXPECT_NE(aired_at(jukebox), "never");
    EXPECT_EQ(column(jukebox, "AccessDate"), "");  // the jukebox starts no wait
    for (long recid : {jukebox, web}) {
        EXPECT_EQ(column(recid, "Sel"), "0") << recid;
        EXPECT_EQ(column(recid, "Request AllTime"), "1") << recid;
        EXPECT_EQ(column(recid, "RTW"), "1") << recid;
        const auto played = std::count_if(picks.begin(), picks.end(),
                                          [&](const Event& e) { return e.recid == recid; });
        EXPECT_EQ(column(recid, "Total Request"), std::to_string(played)) << recid;
        EXPECT_EQ(event_time(std::stod(column(recid, "Last Played"))), last_pick(recid)) << recid;
    }

    // The web title is taken at the check after it came, then waits half an
    // hour from that moment before it can be picked.
    const std::string checked = event_time(std::stod(column(web, "AccessDate")));
    EXPECT_GE(checked, at(14, 5));
    EXPECT_LE(checked, at(14, 6, 10));
    const std::string due = event_time(std::stod(column(web, "AccessDate")) + 30.0 / 1440);
    const auto waited = first_bank_pick(picks, due);
    ASSERT_TRUE(waited);
    EXPECT_EQ(waited->recid, web);
    EXPECT_EQ(waited->source, "SRequest");
    EXPECT_EQ(last_pick(web), waited->time) << "picked before its wait was over";
    EXPECT_NE(aired_at(web), "never");
    const std::vector<std::string> settings = lines("tqxiis.ini");
    ASSERT_EQ(settings.size(), 13u);
    EXPECT_EQ(settings[5].substr(0, 16), "Silver Fire 4 - ");
    EXPECT_EQ(settings[10], "2");  // "None", then the title
    EXPECT_EQ(settings[12], "1");

    // The break: the song on the air plays out, nothing starts until a
    // second after its end, then the next slot goes on.
    EXPECT_FALSE(std::filesystem::exists(home() / "qxsm.ini"));
    const auto resumed = std::find_if(aired.begin(), aired.end(),
                                      [](const Event& e) { return e.time >= at(14, 52); });
    ASSERT_TRUE(resumed != aired.end() && resumed != aired.begin());
    EXPECT_GE(resumed->time, at(14, 58, 1));
    EXPECT_LT(resumed->time, at(14, 58, 3));
    EXPECT_EQ(resumed->slot, next_slot(std::prev(resumed)->slot));
    const std::vector<std::string> session_after = lines("qxbp.ini");
    ASSERT_GE(session_after.size(), 3u);
    EXPECT_EQ(session_after[0], "1");  // the order's block party, 3 a block
    EXPECT_EQ(session_after[2], "3");

    // The play log has a line for each song that ended, in the order they
    // aired; the silence of the break runs from the end of the song on the
    // air to the resume.
    const std::vector<std::string> log = lines("qxl1123.log");
    ASSERT_EQ(log.size() + 1, aired.size());
    const std::regex complete(R"(^Complete at:(\d+:\d\d:\d\d [AP]M)- (QX\d|QX [67]) > (.*)$)");
    double break_silence_from = 0;
    for (std::size_t i = 0; i < log.size(); ++i) {
        std::smatch m;
        ASSERT_TRUE(std::regex_match(log[i], m, complete)) << log[i];
        const Event& song = aired[i];
        const std::string qx = song.player >= 6 ? "QX " + std::to_string(song.player)
                                                : "QX" + std::to_string(song.player);
        EXPECT_EQ(m[2], qx) << log[i];
        EXPECT_EQ(m[3], song.title) << log[i];
        const double ended = seconds_of_clock(m[1]);
        EXPECT_GE(ended, std::floor(seconds_of(song.time))) << log[i];
        if (&song == &*std::prev(resumed)) break_silence_from = ended;
    }
    EXPECT_GT(break_silence_from, seconds_of(at(14, 52)));
    EXPECT_NEAR(run.end_count("dead_air_s"), seconds_of(resumed->time) - break_silence_from, 1.5);

    // The status file: the block party line, the song now playing in line 12,
    // and a history of songs that aired, in their order.
    const std::vector<std::string> status = lines("tqxstat.txt");
    ASSERT_EQ(status.size(), 14u);
    EXPECT_NE(status[0].find("Block Party playing  3 in a row"), std::string::npos) << status[0];
    // Written when a song completes: a run that ends inside the last mix
    // still names the song before the last to go on the air.
    ASSERT_GE(aired.size(), 2u);
    EXPECT_TRUE(status[11] == aired.back().title || status[11] == aired[aired.size() - 2].title)
        << status[11];
    std::size_t next = 0;
    for (std::size_t line = 1; line < 11; ++line) {
        // The seventh player's song carries the time it was written.
        const std::string title =
            std::regex_replace(status[line], std::regex(R"( - \d+:\d\d:\d\d [AP]M$)"), "");
        while (next < aired.size() && aired[next].title != title)
            ++next;
        EXPECT_LT(next, aired.size()) << "not aired, or out of order: " << status[line];
    }
}

}  // namespace
}  // namespace tavora
