// The catalogue at a large station's size: a library of 100,000 rows and a
// folder of 10,000 short real media files, added as `tavora --add` adds them.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "catalogue/bulk_add.h"
#include "platform/clock.h"
#include "platform/dialog_stand_ins.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "platform/virtual_scheduler.h"
#include "players/probe_player.h"
#include "runtime/random.h"
#include "store/library_files.h"
#include "store/recordset.h"

namespace tavora {
namespace {

namespace fs = std::filesystem;

constexpr double kToday = 46091.0;
constexpr int kLibraryRows = 100000;
constexpr int kFolderFiles = 10000;

// Made once per run and removed at its end: the 100k library and the folder.
class Fixture {
  public:
    Fixture() {
        fs::create_directories(home_ / "new");
        make_library(home_ / "big.mdb");
        const auto clip = home_ / "clip.mp3";
        const std::string make =
            "ffmpeg -nostdin -hide_banner -loglevel error -y -f lavfi -i "
            "sine=frequency=440:sample_rate=8000:duration=1 -ac 1 -c:a libmp3lame -b:a 8k "
            "-metadata title=Tagged -metadata artist=Someone " +
            clip.string();
        ok_ = std::system(make.c_str()) == 0;
        for (int i = 0; ok_ && i < kFolderFiles; ++i)
            fs::copy_file(clip, home_ / "new" / ("track" + std::to_string(i) + ".mp3"));
        create_settings_file(home_ / "Setup.mdb", kToday);
    }
    ~Fixture() {
        std::error_code ignored;
        fs::remove_all(home_, ignored);
    }

    bool ok() const { return ok_; }
    const fs::path& home() const { return home_; }
    // A fresh copy of the big library as the station's qx1.mdb.
    void fresh_library() const {
        fs::copy_file(home_ / "big.mdb", home_ / "qx1.mdb", fs::copy_options::overwrite_existing);
    }

  private:
    static void make_library(const fs::path& path) {
        create_library_file(path, kToday);
        auto library = Library::open(path, FileKind::Library).library;
        Transaction batch = library->transaction();
        Statement insert = library->connection().prepare(
            "INSERT INTO Recordings1 (Title, Artist, [Long title], Category, Length) VALUES (?, ?, "
            "?, 'Always', ?)");
        for (int i = 0; i < kLibraryRows; ++i) {
            insert.bind(1, Value("Song " + std::to_string(i) + " "));
            insert.bind(2, Value("Artist " + std::to_string(i % 997)));
            insert.bind(3, Value("d:\\music\\Song " + std::to_string(i) + ".mp3"));
            insert.bind(4, Value::date(210.0 / 86400));
            insert.step();
            insert.reset();
        }
        batch.commit();
    }

    fs::path home_ = fs::temp_directory_path() / ("tavora-cat-bench-" + std::to_string(getpid()));
    bool ok_ = false;
};

const Fixture& fixture() {
    static Fixture instance;
    return instance;
}

// The program director on the station folder, as `tavora --add` sets it up.
struct Director {
    Director()
        : clock(kToday), loop(clock), paths(fixture().home()), services{clock, loop,     dialogs,
                                                                        paths, launcher, random} {
        station.Act_Db = "c:\\tavora\\qx1.mdb";
        station.Run_Mode = 0;
        db = std::make_unique<frmTavoraDb>(station, services, pool);
        db->hooks.measure_length = [this](const std::string& path, std::string& error) {
            return lengths.length(path, error);
        };
        db->Form_Load();
        db->Wizard.Form_Load();
    }

    VirtualClock clock;
    VirtualScheduler loop;
    ScriptedDialogs dialogs;
    PathMap paths;
    RecordingLauncher launcher;
    Random random;
    Services services;
    MediaLengths lengths;
    Station station;
    LibraryPool pool;
    std::unique_ptr<frmTavoraDb> db;
};

void BM_AddFolder(benchmark::State& state) {
    if (!fixture().ok()) return state.SkipWithError("ffmpeg could not make the clip");
    long added = 0;
    for (auto _ : state) {
        state.PauseTiming();
        fixture().fresh_library();
        auto director = std::make_unique<Director>();
        BulkAddOptions options;
        options.tags = state.range(0) != 0;
        state.ResumeTiming();
        added =
            Bulk_Add(*director->db, director->paths, {(fixture().home() / "new").string()}, options)
                .added;
        state.PauseTiming();
        director.reset();
        state.ResumeTiming();
    }
    if (added != kFolderFiles) state.SkipWithError("not every file was added");
    state.SetItemsProcessed(state.iterations() * kFolderFiles);
    state.counters["files"] = static_cast<double>(added);
}
BENCHMARK(BM_AddFolder)->Arg(0)->Arg(1)->ArgName("tags")->Iterations(1)->Unit(benchmark::kSecond);

// The duplicate test alone: the library's paths read once, then every file
// of the folder looked up, all of them already there.
void BM_DuplicateTest(benchmark::State& state) {
    fixture().fresh_library();
    Director director;
    std::vector<std::string> names;
    for (int i = 0; i < kFolderFiles; ++i)
        names.push_back("D:\\MUSIC\\song " + std::to_string(i * 7) + ".mp3");
    long duplicates = 0;
    for (auto _ : state) {
        director.db->load_known_files();
        duplicates = 0;
        for (const std::string& name : names)
            duplicates +=
                director.db->add_new_file(name).kind == frmTavoraDb::AddOutcome::Duplicate;
    }
    if (duplicates != kFolderFiles) state.SkipWithError("a duplicate was missed");
    state.SetItemsProcessed(state.iterations() * kFolderFiles);
}
BENCHMARK(BM_DuplicateTest)->Unit(benchmark::kMillisecond);

// One move of the record editor's pointer on the big library.
void BM_Data1_Reposition(benchmark::State& state) {
    fixture().fresh_library();
    Director director;
    Recordset& rows = director.db->Data1.Recordset();
    rows.MoveLast();
    const long last = rows.AbsolutePosition();
    long at = 0;
    for (auto _ : state) {
        at = (at + 7919) % last;  // a stride that wanders over the whole library
        rows.MoveFirst();
        rows.Move(at);
        director.db->Data1_Reposition();
    }
    if (director.db->Data1Caption.Caption != "Record: " + std::to_string(at + 1))
        state.SkipWithError("the caption doesn't follow the pointer");
}
BENCHMARK(BM_Data1_Reposition)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tavora
