#pragma once

#include <filesystem>
#include <ostream>
#include <string>

#include "command_line.h"
#include "store/library.h"

namespace tavora {

// `tavora --add PATH...`: brings files and folders into the station's
// library by the auto add wizard's rules, printing progress as it goes.
// The stored path of the library that Setup.mdb of `home` names; empty when
// there is none.
std::string active_library(LibraryPool& pool, const std::filesystem::path& home);

int run_add(const CommandLine& line, std::ostream& out, std::ostream& err);

}  // namespace tavora
