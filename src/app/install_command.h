#pragma once

#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "station/demo_library.h"

namespace tavora {

// `tavora --install`: makes the install folder and says what it made.
int run_install(const std::optional<std::string>& home, std::ostream& out, std::ostream& err);

// `tavora --demo`: install, a demo library when the library is empty; the
// caller then runs the station, holding `rest` (the clips still being made)
// for as long as it runs.
int make_demo(const std::optional<std::string>& home, std::ostream& out, std::ostream& err,
              std::unique_ptr<DemoRest>* rest);

}  // namespace tavora
