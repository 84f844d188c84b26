#pragma once

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <string>

namespace tavora {

struct SimulationOptions {
    std::filesystem::path home;  // install folder
    double start = 0;            // date double on the virtual clock
    std::int64_t duration_ms = 0;
    std::string script;          // the script's text; empty for none
    bool probe_players = false;  // players that only read lengths
    std::filesystem::path mix_out;
    bool trace_selection = false;
    std::filesystem::path cd_image;  // the disc in the CD drive at start
    std::string web;                 // --web [ADDR:]PORT; empty leaves it to web.ini
};

// Runs the station on the virtual clock: start-up at `start`, the script's
// actions at their times, every timer in between, then the shutdown path.
// Writes one line an event to `out`; returns the process's exit code. A bad
// script line is reported on `err` with its number and nothing runs.
int run_simulation(const SimulationOptions& options, std::ostream& out, std::ostream& err);

}  // namespace tavora
