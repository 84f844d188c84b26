#include "add_command.h"

#include "installed_station.h"

#include "catalogue/bulk_add.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/file_ops.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "platform/real_time_loop.h"
#include "players/probe_player.h"
#include "runtime/random.h"
#include "runtime/strings.h"
#include "store/recordset.h"

namespace tavora {

namespace {

// Nobody answers: every dialog takes its default. Messages are printed, the
// input boxes' questions are not, since their defaults are the rule's own.
class UnattendedDialogs : public Dialogs {
  public:
    explicit UnattendedDialogs(std::ostream& out) : out_(out) {}
    DialogReply Ask(const DialogRequest& request) override {
        const DialogReply reply = DefaultReply(request);
        if (request.kind == DialogKind::Message) out_ << DescribeDialog(request, reply) << "\n";
        return reply;
    }

  private:
    std::ostream& out_;
};

}  // namespace

int run_add(const CommandLine& line, std::ostream& out, std::ostream& err) {
    const auto home = ResolveInstallFolder(line.home);
    if (!station_installed(home, err)) return 2;
    SystemClock clock;
    RealTimeLoop loop;
    UnattendedDialogs dialogs(out);
    PathMap paths(home);
    SystemLauncher launcher;
    Random random;
    const Services services{clock, loop, dialogs, paths, launcher, random};
    LibraryPool pool;
    Station station;
    station.Act_Db = active_library(pool, home);
    station.Run_Mode = LCase(Left(station.Act_Db, 2)) == "c:" ? 0 : 1;
    const auto library = paths.ToNative(station.Act_Db).path;
    if (station.Act_Db.empty() || !files::Exists(library)) {
        err << "tavora: the library " << station.Act_Db << " is missing\n";
        return 1;
    }

    frmTavoraDb db(station, services, pool);
    MediaLengths lengths;
    db.hooks.measure_length = [&lengths](const std::string& path, std::string& error) {
        return lengths.length(path, error);
    };
    db.Form_Load();
    if (!db.Data1.error().empty()) {
        err << "tavora: the library " << library << " can't be opened: " << db.Data1.error()
            << "\n";
        return 1;
    }
    db.Wizard.Form_Load();
    db.Combo6.ListIndex = line.order == "artist-title" ? 1 : 0;

    BulkAddOptions options;
    options.tags = line.tags;
    options.say = [&out](const std::string& said) { out << said << std::endl; };
    const BulkAddReport report = Bulk_Add(db, paths, line.add_paths, options);
    out << report.added << " Records were ADDED to " << station.Act_Db << " (" << report.duplicates
        << " already there, " << report.passed_over << " passed over)" << std::endl;
    return 0;
}

}  // namespace tavora
