#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "broken_files.h"
#include "runtime/dates.h"
#include "sim/simulator.h"
#include "station/demo_library.h"
#include "store/library.h"
#include "store/recordset.h"
#include "store/statement.h"
#include "test_folder.h"

namespace tavora {

inline const double kStart = DateSerial(2026, 11, 23) + 14.0 / 24.0;

// The lines of `in` that start with `start`, without their carriage returns.
inline std::vector<std::string> lines_of(std::istream&& in, const std::string& start = "") {
    std::vector<std::string> found;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.rfind(start, 0) == 0) found.push_back(line);
    }
    return found;
}

// The lines that hold `part`.
inline std::vector<std::string> holding(const std::vector<std::string>& lines,
                                        const std::string& part) {
    std::vector<std::string> found;
    for (const auto& line : lines)
        if (line.find(part) != std::string::npos) found.push_back(line);
    return found;
}

// The word after " name=" in an event line; "" when it has none.
inline std::string field(const std::string& line, const std::string& name) {
    const auto at = line.find(" " + name + "=");
    if (at == std::string::npos) return "";
    const auto from = at + name.size() + 2;
    return line.substr(from, line.find(' ', from) - from);
}

// The time of an event line, "yyyy-mm-dd hh:mm:ss.fff".
inline std::string time_of(const std::string& line) {
    return line.substr(line.find(' ') + 1, 23);
}

// The title an event line quotes at its end.
inline std::string title_of(const std::string& line) {
    const auto quote = line.find('"');
    return quote == std::string::npos ? "" : line.substr(quote + 1, line.size() - quote - 2);
}

// The event lines of one record.
inline std::vector<std::string> with_recid(const std::vector<std::string>& lines,
                                           const std::string& recid) {
    return holding(lines, " recid=" + recid + " ");
}

// Seconds into the day of the first "hh:mm:ss.fff" of an event line or time.
inline double seconds_of(const std::string& text) {
    std::smatch m;
    if (!std::regex_search(text, m, std::regex(R"((\d\d):(\d\d):(\d\d\.\d+))"))) return -1;
    return std::stod(m[1]) * 3600 + std::stod(m[2]) * 60 + std::stod(m[3]);
}

// Seconds into the day of the first "h:mm:ss AM" of a play log line.
inline double seconds_of_clock(const std::string& text) {
    std::smatch m;
    if (!std::regex_search(text, m, std::regex(R"((\d+):(\d\d):(\d\d) ([AP]M))"))) return -1;
    return (std::stoi(m[1]) % 12 + (m[4] == "PM" ? 12 : 0)) * 3600 + std::stoi(m[2]) * 60 +
           std::stoi(m[3]);
}

// What a run printed, with its event lines picked out by kind.
struct SimRun {
    int code = 0;
    std::string out;
    std::string err;
    std::vector<std::string> lines(const std::string& kind) const {
        return lines_of(std::istringstream(out), kind + " ");
    }
    // A count of the END line; -1 when there is none.
    double end(const std::string& name) const {
        const auto end = lines("END");
        const std::string value = end.size() == 1 ? field(end[0], name) : "";
        return value.empty() ? -1 : std::stod(value);
    }
};

// One demo station of three generated songs grown to 60 rows, made once for
// the suite; every test runs on its own copy, since a run writes to it.
class SimStation : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { make_master(3, 60); }
    // A demo of `songs` made whole before the call returns, then grown to
    // `rows` if above 0; its clips in `format` at `rate`, or the demo's own.
    static void make_master(std::size_t songs, std::size_t rows, const std::string& format = "",
                            int rate = 0) {
        master_ = std::make_unique<TestFolder>();
        DemoOptions options;
        options.songs = songs;
        options.format = format;
        options.rate = rate;
        const DemoReport demo = make_demo_library(master_->path(), kStart - 1, options);
        ASSERT_EQ(demo.error, "");
        ASSERT_EQ(demo.rest, nullptr);
        if (rows > 0) {
            ASSERT_EQ(grow_demo_library(master_->path(), rows), "");
        }
    }
    static void TearDownTestSuite() { master_.reset(); }

    void SetUp() override {
        std::filesystem::copy(master_->path(), home(), std::filesystem::copy_options::recursive);
    }
    // A fresh copy of the station, for a second run from the same start.
    void restart() {
        std::filesystem::remove_all(home());
        SetUp();
    }
    std::filesystem::path home() const { return folder_.path() / "station"; }

    std::vector<std::string> file(const std::string& name, const std::string& start = "") const {
        return lines_of(std::ifstream(home() / name), start);
    }
    // The play log of the run's day.
    std::vector<std::string> play_log(const std::string& start = "") const {
        return file("qxl1123.log", start);
    }

    // The first column of each row `sql` gives on the library, its
    // parameters bound as text.
    std::vector<std::string> query(const std::string& sql,
                                   std::initializer_list<std::string> args = {}) const {
        auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
        Statement rows = library->connection().prepare(sql);
        int n = 0;
        for (const auto& arg : args)
            rows.bind_text(++n, arg);
        std::vector<std::string> found;
        Statement::Step step;
        while ((step = rows.step()) == Statement::Step::Row)
            found.push_back(rows.column_text(0));
        EXPECT_EQ(step, Statement::Step::Done) << sql << ": " << rows.error();
        return found;
    }

    // Songs air only after selection committed them, each pick once, and in
    // time order; only the station's own clips (leads, promos, snipits) come
    // another way.
    void expect_aired_what_was_picked(const SimRun& run) const {
        const auto clips = query("SELECT RecID FROM Recordings1 WHERE Source IS NOT NULL");
        const std::regex pick(R"(^PICK \S+ \S+ slot=\d+ recid=(\d+) source=\S+$)");
        const std::regex air(R"(^AIR \S+ (\S+) slot=\d+ player=[1-7] recid=(\d+) ".+"$)");
        std::multiset<std::string> waiting;
        std::string last_time;
        for (const std::string& line : lines_of(std::istringstream(run.out))) {
            std::smatch m;
            if (std::regex_match(line, m, pick)) {
                waiting.insert(m[1]);
            } else if (line.rfind("AIR ", 0) == 0) {
                ASSERT_TRUE(std::regex_match(line, m, air)) << line;
                EXPECT_GE(m[1].str(), last_time) << line;
                last_time = m[1];
                if (const auto picked = waiting.find(m[2]); picked != waiting.end())
                    waiting.erase(picked);
                else
                    EXPECT_NE(std::find(clips.begin(), clips.end(), m[2]), clips.end())
                        << "aired without a pick: " << line;
            }
        }
    }

    // Whether the station starts its run by itself after start-up.
    void auto_start(bool on) {
        auto setup = Library::open(home() / "Setup.mdb", FileKind::Settings).library;
        Recordset row = OpenRecordset(setup, "Setup");
        row.Edit();
        row.SetField("Use Schedule", Value::boolean(on));
        ASSERT_TRUE(row.Update());
    }

    SimRun simulate(const std::string& minutes, const std::string& script = "", bool probe = true,
                    const std::filesystem::path& mix = {}, double start = kStart) {
        SimulationOptions options;
        options.home = home();
        options.start = start;
        options.duration_ms = std::stoll(minutes) * 60'000;
        options.script = script;
        options.probe_players = probe;
        options.mix_out = mix;
        options.cd_image = cd_image_;
        std::ostringstream out, err;
        const int code = run_simulation(options, out, err);
        EXPECT_EQ(code, expected_code_) << err.str();
        return {code, out.str(), err.str()};
    }

    static inline std::unique_ptr<TestFolder> master_;
    TestFolder folder_;
    std::filesystem::path cd_image_;  // the disc in the CD drive, if any
    int expected_code_ = 0;           // what each run must exit with
};

}  // namespace tavora
