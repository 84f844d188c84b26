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

int make_demo(const std::optional<std::string>& home_option, std::ostream& out, std::ostream& err) {
    const auto home = ResolveInstallFolder(home_option);
    DemoOptions options;
    options.say = [&out](const std::string& line) { out << line << std::endl; };
    const DemoReport report = make_demo_library(home, SystemClock().Now(), options);
    if (!report.error.empty()) {
        err << "tavora: " << report.error << "\n";
        return 1;
    }
    return 0;
}

}  // namespace tavora
