#pragma once

#include <filesystem>

#include "core/forms/form.h"
#include "core/station.h"

namespace tavora {

// The internet request interface. Its settings survive restarts in
// tqxiis.ini.
class Mailfrm : public Form {
  public:
    explicit Mailfrm(Station& station);

    // `TQXi_Sav`: writes the thirteen lines of tqxiis.ini.
    bool TQXi_Sav(const std::filesystem::path& file) const;

  private:
    Station& station_;
};

// The eleven lines a missing tqxiis.ini starts with.
bool write_default_tqxiis(const std::filesystem::path& file);

// The first two lines as start-up reads them: IIS_On and IIS_AutoLoad. A
// line that can't be read as a boolean leaves its variable as it was.
void read_tqxiis_switches(Station& station, const std::filesystem::path& file);

}  // namespace tavora
