#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "runtime/dates.h"
#include "sim/simulator.h"
#include "station/demo_library.h"
#include "store/library.h"
#include "store/recordset.h"
#include "test_folder.h"

namespace tavora {

inline const double kStart = DateSerial(2026, 11, 23) + 14.0 / 24.0;

// What a run printed, with its event lines picked out by kind.
struct SimRun {
    int code = 0;
    std::string out;
    std::string err;
    std::vector<std::string> lines(const std::string& kind) const {
        std::vector<std::string> found;
        std::istringstream in(out);
        for (std::string line; std::getline(in, line);)
            if (line.rfind(kind + " ", 0) == 0) found.push_back(line);
        return found;
    }
    long end_count(const std::string& name) const {
        const auto end = lines("END");
        if (end.size() != 1) return -1;
        std::smatch m;
        const std::regex number(" " + name + "=([0-9.]+)");
        return std::regex_search(end[0], m, number) ? std::lround(std::stod(m[1])) : -1;
    }
};

// One demo station of three generated songs grown to 60 rows, made once for
// the suite; every test runs on its own copy, since a run writes to it.
class SimStation : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        master_ = std::make_unique<TestFolder>();
        DemoOptions options;
        options.songs = 3;
        const DemoReport demo = make_demo_library(master_->path(), kStart - 1, options);
        ASSERT_EQ(demo.error, "");
        ASSERT_EQ(grow_demo_library(master_->path(), 60), "");
    }
    static void TearDownTestSuite() { master_.reset(); }

    void SetUp() override {
        std::filesystem::copy(master_->path(), home(), std::filesystem::copy_options::recursive);
    }
    std::filesystem::path home() const { return folder_.path() / "station"; }

    // Whether the station starts its run by itself after start-up.
    void auto_start(bool on) {
        auto setup = Library::open(home() / "Setup.mdb", FileKind::Settings).library;
        Recordset row = OpenRecordset(setup, "Setup");
        row.Edit();
        row.SetField("Use Schedule", Value::boolean(on));
        ASSERT_TRUE(row.Update());
    }

    SimRun simulate(const std::string& duration_minutes, const std::string& script = "",
                    bool probe = true, const std::filesystem::path& mix = {},
                    double start = kStart) {
        SimulationOptions options;
        options.home = home();
        options.start = start;
        options.duration_ms = std::stoll(duration_minutes) * 60'000;
        options.script = script;
        options.probe_players = probe;
        options.mix_out = mix;
        options.cd_image = cd_image_;
        std::ostringstream out, err;
        SimRun run;
        run.code = run_simulation(options, out, err);
        run.out = out.str();
        run.err = err.str();
        return run;
    }

    static inline std::unique_ptr<TestFolder> master_;
    TestFolder folder_;
    std::filesystem::path cd_image_;  // the disc in the CD drive, if any
};

}  // namespace tavora
