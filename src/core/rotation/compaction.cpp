#include "core/rotation/compaction.h"

#include "platform/file_ops.h"
#include "store/connection.h"
#include "store/library.h"

namespace tavora {

namespace {

bool intact(Connection& connection) {
    return connection.scalar("PRAGMA quick_check").text() == "ok";
}

}  // namespace

bool compact_library(const std::filesystem::path& from, const std::filesystem::path& to) {
    {
        Library::Opened source = Library::open(from, FileKind::Library);
        if (!source.library || !intact(source.library->connection())) return false;
        Statement vacuum = source.library->connection().prepare("VACUUM INTO ?");
        vacuum.bind_text(1, to.string());
        if (vacuum.step() != Statement::Step::Done) {
            files::Kill(to);
            return false;
        }
    }
    Library::Opened copy = Library::open(to, FileKind::Library);
    const bool good = copy.library && intact(copy.library->connection());
    copy.library.reset();
    if (!good) files::Kill(to);
    return good;
}

}  // namespace tavora
