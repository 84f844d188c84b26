#pragma once

#include <optional>
#include <string>

namespace tavora {

// True when a desktop session is there to show windows on (or Qt was told
// which platform to use).
bool display_available();

// Runs the station with its windows until the operator exits. Plays to the
// sound card, or to nowhere when `output` is "null". Serves the web page
// and API as the headless station does (`web` as --web gives it, "" leaves
// it to web.ini). With a `screenshots` folder it runs a minute and saves a
// picture of each main window there.
int run_desktop(int argc, char** argv, const std::optional<std::string>& home,
                const std::string& output, const std::string& web,
                const std::string& screenshots = {});

}  // namespace tavora
