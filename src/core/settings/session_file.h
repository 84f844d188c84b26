#pragma once

#include <filesystem>

#include "core/station.h"

namespace tavora {

// qxbp.ini: the session's settings, one value a line, by line number.

// `BP_Ini`: writes the eighteen lines from the station's state.
bool BP_Ini(const Station& station, const std::filesystem::path& file);

// Reads the file into the station as start-up does. A failure on line 1 or 2
// is passed over; from line 3 on, the first failure ends the reading and the
// rest keep what they hold. Line 6 is read and dropped: the seventh player
// view always starts on. False when the file can't be opened.
bool Read_BP(Station& station, const std::filesystem::path& file);

}  // namespace tavora
