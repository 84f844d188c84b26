#include "core/rotation/rotate_db.h"

#include "core/rotation/compaction.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/file_ops.h"
#include "platform/path_map.h"
#include "runtime/dates.h"
#include "store/library.h"

namespace tavora {

namespace {

constexpr int kSunday = 1;
constexpr int kFriday = 6;  // the copy's name says Thursday; Friday it has always been

}  // namespace

bool Rotate_Db(Station& station, const Services& services) {
    const std::filesystem::path home = services.paths.install_folder();
    const std::filesystem::path library = services.paths.ToNative(station.Act_Db).path;
    const std::filesystem::path work = home / "qxbk.mdb";

    if (files::Exists(home / "qxrestore.mdb")) {
        files::Copy(home / "qxrestore.mdb", library);
        files::Kill(home / "qxrestore.mdb");
    }
    if (files::Exists(work)) files::Kill(work);
    compact_library(library, work);

    if (!files::Exists(work)) {
        services.dialogs.MsgBox("The Database " + station.Act_Db +
                                " could not be compacted! Please replace " + station.Act_Db +
                                " with one of the (qxlast.mdb) backup files from your c:\\tavora "
                                "folder");
        station.Cmp_Fail = 1;
        return false;
    }

    if (files::Exists(home / "qxlast1.mdb"))
        files::Copy(home / "qxlast1.mdb", home / "qxlast2.mdb");
    if (files::Exists(home / "qxlast.mdb")) files::Copy(home / "qxlast.mdb", home / "qxlast1.mdb");
    files::Copy(work, home / "qxlast.mdb");

    files::Kill(library);
    files::Name(work, library);

    const int weekday = Weekday(services.clock.Now());
    if (weekday == kSunday) files::Copy(library, home / "qxbaksun.mdb");
    if (weekday == kFriday) files::Copy(library, home / "qxbakthu.mdb");
    return true;
}

}  // namespace tavora
