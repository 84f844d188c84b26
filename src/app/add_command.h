#pragma once

#include <ostream>

#include "command_line.h"

namespace tavora {

// `tavora --add PATH...`: brings files and folders into the station's
// library by the auto add wizard's rules, printing progress as it goes.
int run_add(const CommandLine& line, std::ostream& out, std::ostream& err);

}  // namespace tavora
