#include "analyse_command.h"

#include <chrono>
#include <cstdio>

#include "catalogue/loudness_book.h"
#include "catalogue/loudness_worker.h"
#include "installed_station.h"
#include "platform/file_ops.h"
#include "platform/path_map.h"
#include "station/station_app.h"

namespace tavora {

int run_analyse(const CommandLine& line, std::ostream& out, std::ostream& err) {
    const auto home = ResolveInstallFolder(line.home);
    if (!station_installed(home, err)) return 2;
    LibraryPool pool;
    const PathMap paths(home);
    const std::string stored = active_library(pool, home);
    const std::string library = paths.ToNative(stored).path;
    LoudnessBook book(library);
    if (stored.empty() || !book.ok()) {
        err << "tavora: the library " << (stored.empty() ? "of Setup.mdb" : stored)
            << " can't be opened\n";
        return 2;
    }
    const auto began = std::chrono::steady_clock::now();
    const LibraryAnalysis done = measure_library(
        book, measure_file, native_files(paths), nullptr, [&out](const LibraryProgress& step) {
            out << "\rMeasured " << step.done << " of " << step.total << ": "
                << std::filesystem::path(step.file).filename().string() << "\x1b[K" << std::flush;
        });
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
    char took[32];
    std::snprintf(took, sizeof took, "%.1f", seconds);
    out << "\n"
        << done.measured << " measured, " << done.current << " already measured, "
        << done.unmeasurable << " can't be measured (they play at their own level), "
        << done.missing << " without a file, in " << took << " s\n";
    return 0;
}

}  // namespace tavora
