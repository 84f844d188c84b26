#pragma once

#include <string>
#include <vector>

#include "core/station.h"

namespace tavora {

// One row of DriveLookup: the letter of a volume as the master PC sees it,
// and the letter under which this PC reaches it.
struct DriveAlias {
    std::string AliasDrive;
    std::string Drive;
};

// `Net_File`: makes a path chosen on a remote PC valid on the master
// (`Rev_Drive` 0) or a library path valid on this PC (`Rev_Drive` 1). Only in
// remote use; playlist markers pass untouched. Every row is looked at and the
// last match wins.
std::string Net_File(const Station& station, const std::vector<DriveAlias>& aliases,
                     const std::string& Net_Name);

}  // namespace tavora
