#include "simulate_command.h"

#include <fstream>
#include <sstream>

#include "platform/path_map.h"
#include "runtime/date_text.h"
#include "sim/script.h"
#include "sim/simulator.h"

namespace tavora {

int run_simulate(const CommandLine& line, std::ostream& out, std::ostream& err) {
    SimulationOptions options;
    options.home = ResolveInstallFolder(line.home);
    const auto start = parse_date_text(line.start);
    if (!start) {
        err << "tavora: --start needs \"YYYY-MM-DD HH:MM:SS\", not \"" << line.start << "\"\n";
        return 2;
    }
    options.start = *start;
    const auto duration = parse_duration(line.duration);
    if (!duration) {
        err << "tavora: --for needs a duration such as 90s, 45m, 6h or 2d, not \"" << line.duration
            << "\"\n";
        return 2;
    }
    options.duration_ms = *duration;
    if (!line.script.empty()) {
        std::ifstream file(line.script, std::ios::binary);
        if (!file) {
            err << "tavora: cannot read the script " << line.script << "\n";
            return 2;
        }
        std::ostringstream text;
        text << file.rdbuf();
        options.script = text.str();
    }
    options.probe_players = line.players == "probe";
    options.cd_image = line.cd_image;
    options.mix_out = line.mix_out;
    options.trace_selection = line.trace_selection;
    options.web = line.web;
    return run_simulation(options, out, err);
}

}  // namespace tavora
