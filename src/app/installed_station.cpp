#include "installed_station.h"

#include "platform/file_ops.h"
#include "store/recordset.h"

namespace tavora {

bool station_installed(const std::filesystem::path& home, std::ostream& err) {
    if (files::Exists(home / "Setup.mdb")) return true;
    err << "tavora: no station is installed in " << home.string()
        << "\nMake one with: tavora --install --home " << home.string() << "\n";
    return false;
}

std::string active_library(LibraryPool& pool, const std::filesystem::path& home) {
    const auto settings = pool.open(home / "Setup.mdb", FileKind::Settings);
    if (!settings.library) return {};
    Recordset row = OpenRecordset(settings.library, "Setup");
    row.Requery();
    return row.Fields("Active Database").text();
}

}  // namespace tavora
