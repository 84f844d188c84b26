#pragma once

#include <ostream>

#include "command_line.h"

namespace tavora {

// `tavora --simulate`: reads the options and the script file, then runs.
int run_simulate(const CommandLine& line, std::ostream& out, std::ostream& err);

}  // namespace tavora
