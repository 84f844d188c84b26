#pragma once

#include <filesystem>
#include <ostream>
#include <string>

#include "store/library.h"

namespace tavora {

// Whether a station is installed in `home`; when not, says how to make one.
bool station_installed(const std::filesystem::path& home, std::ostream& err);

// The stored path of the library that Setup.mdb of `home` names; empty when
// there is none.
std::string active_library(LibraryPool& pool, const std::filesystem::path& home);

}  // namespace tavora
