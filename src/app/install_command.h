#pragma once

#include <optional>
#include <ostream>
#include <string>

namespace tavora {

// `tavora --install`: makes the install folder and says what it made.
int run_install(const std::optional<std::string>& home, std::ostream& out, std::ostream& err);

// `tavora --demo`: install, a demo library when the library is empty; the
// caller then runs the station.
int make_demo(const std::optional<std::string>& home, std::ostream& out, std::ostream& err);

}  // namespace tavora
