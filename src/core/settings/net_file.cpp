#include "core/settings/net_file.h"

#include "runtime/strings.h"

namespace tavora {

std::string Net_File(const Station& station, const std::vector<DriveAlias>& aliases,
                     const std::string& Net_Name) {
    if (station.Run_Mode == 0) return Net_Name;
    if (Left(Net_Name, 2) == "QX" || Net_Name.empty()) return Net_Name;

    const std::string letter = LCase(Left(Net_Name, 1));
    std::string mapped = Left(Net_Name, 1);
    for (const DriveAlias& row : aliases) {
        const std::string& from = station.Rev_Drive == 1 ? row.AliasDrive : row.Drive;
        const std::string& to = station.Rev_Drive == 1 ? row.Drive : row.AliasDrive;
        if (!from.empty() && LCase(Left(from, 1)) == letter) mapped = LCase(Left(to, 1));
    }
    return Left(mapped + ":" + Mid(Net_Name, 3), 240);
}

}  // namespace tavora
