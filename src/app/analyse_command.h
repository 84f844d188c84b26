#pragma once

#include <ostream>

#include "command_line.h"

namespace tavora {

// `tavora --analyse`: measures the loudness of every record of the station's
// library not yet measured as its file is now, with a line of progress.
int run_analyse(const CommandLine& line, std::ostream& out, std::ostream& err);

}  // namespace tavora
