#include "install_command.h"

#include "platform/clock.h"
#include "platform/path_map.h"
#include "station/demo_library.h"
#include "station/install.h"

namespace tavora {

int run_install(const std::optional<std::string>& home_option, std::ostream& out,
                std::ostream& err) {
    const auto home = ResolveInstallFolder(home_option);
    const InstallReport report = install_station(home, SystemClock().Now());
    for (const auto& made : report.made)
        out << "made " << made << "\n";
    for (const auto& kept : report.kept)
        out << "kept " << kept << " as it was\n";
    if (!report.error.empty()) {
        err << "tavora: " << report.error << "\n";
        return 1;
    }
    out << "The station is installed in " << home.string()
        << "\nStart it with: tavora --headless --home " << home.string() << "\n";
    return 0;
}

// The Run command plays a library of more than 50 rows only.
constexpr std::size_t kRowsToRun = 51;

int make_demo(const std::optional<std::string>& home_option, std::ostream& out, std::ostream& err,
              std::unique_ptr<DemoRest>* rest) {
    const auto home = ResolveInstallFolder(home_option);
    DemoOptions options;
    // A few songs sound at once; the others are made while they play, and
    // say so on the error stream, between the station's event lines.
    options.first = kRowsToRun;
    options.say = [&out, &err](const std::string& line) {
        if (line.rfind("  ", 0) == 0) {
            err << ("tavora:" + line.substr(1) + "\n") << std::flush;
        } else {
            out << line << std::endl;
        }
    };
    DemoReport report = make_demo_library(home, SystemClock().Now(), options);
    if (!report.error.empty()) {
        err << "tavora: " << report.error << "\n";
        return 1;
    }
    if (rest) *rest = std::move(report.rest);
    return 0;
}

}  // namespace tavora
