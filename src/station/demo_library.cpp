#include "station/demo_library.h"

#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <map>
#include <random>
#include <vector>

#include "core/settings/session_file.h"
#include "core/station.h"
#include "platform/path_map.h"
#include "runtime/dates.h"
#include "station/demo_media.h"
#include "station/install.h"
#include "store/library.h"
#include "store/recordset.h"
#include "store/statement.h"

namespace tavora {

namespace {

constexpr std::array kTitleWords = {"Amber",  "Silver",   "Midnight", "Golden",  "Paper",  "Velvet",
                                    "Summer", "Electric", "Hollow",   "Crystal", "Lonely", "Neon",
                                    "Wild",   "Quiet",    "Broken",   "Distant"};
constexpr std::array kTitleNouns = {"Skyline", "River",  "Heart",  "Highway", "Morning", "Dancer",
                                    "Rain",    "Fire",   "Harbor", "Letters", "Lights",  "Road",
                                    "Dream",   "Garden", "Signal", "Echo"};
constexpr std::array kArtists = {
    "The Northern Lights", "Mara Quinn",     "Static Parade", "Jonah Reyes",
    "Blue Harbor",         "Lena Holt",      "The Wanderers", "Kite Machine",
    "Rosa Delgado",        "Iron Meadow",    "Sam Okafor",    "Polar Club",
    "Hattie Lane",         "Velvet Engines", "Cody Marsh",    "Nova Bloom"};
constexpr std::array kGenres = {"POP", "ROCK", "Dance", "Country"};
constexpr std::array kFormats = {".mp3", ".ogg", ".mp3", ".flac", ".m4a", ".mp3", ".opus", ".ogg"};

// One row to be: the clip to make and what the library says about it.
struct DemoRow {
    DemoClip clip;
    std::string title;
    std::string artist;
    std::string genre;
    std::string source;  // empty for a song
    int chart_field = 0;
    int chart_position = 0;
    bool lead_in = false;  // played only in front of its charted song
    double min_between_hours = 2;
    int max_day = 4;
};

std::vector<DemoRow> plan_rows(const std::filesystem::path& music, std::size_t songs) {
    std::mt19937 pick(20261123);  // the same demo on every machine
    auto between = [&pick](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(pick);
    };
    std::vector<DemoRow> rows;
    for (std::size_t i = 0; i < songs; ++i) {
        DemoRow row;
        row.title = std::string(kTitleWords[i % kTitleWords.size()]) + " " +
                    kTitleNouns[(i * 7 + i / kTitleNouns.size()) % kTitleNouns.size()];
        row.artist = kArtists[(i * 5 + 3) % kArtists.size()];
        row.genre = kGenres[i % kGenres.size()];
        const double seconds = std::round(between(120, 300));
        row.clip = {music / (row.title + " - " + row.artist + kFormats[i % kFormats.size()]),
                    seconds,
                    std::round(between(0, 8)),
                    6,
                    110.0 * std::pow(2.0, std::floor(between(0, 12)) / 12.0),
                    between(1.6, 2.4),
                    {},
                    kDemoRate};
        if (i < 10) {  // the Top 40's first ten
            row.chart_field = 41;
            row.chart_position = static_cast<int>(i) + 1;
        }
        rows.push_back(row);
    }
    auto special = [&](std::string title, std::string source, double seconds, std::string words) {
        DemoRow row;
        row.title = std::move(title);
        row.artist = "Tavora";
        row.genre = "POP";
        row.source = std::move(source);
        row.clip = {music / (row.title + " - " + row.artist + ".mp3"),
                    seconds,
                    0,
                    1,
                    110.0 * std::pow(2.0, static_cast<double>(rows.size() % 12) / 12.0),
                    2.0,
                    std::move(words),
                    kDemoRate};
        return row;
    };
    for (int position = 1; position <= 10; ++position) {
        DemoRow lead = special("Top 40 Number " + std::to_string(position), "Top40", 7,
                               "At number " + std::to_string(position) + " on the Top 40");
        lead.chart_field = 41;
        lead.chart_position = position;
        lead.lead_in = true;
        rows.push_back(lead);
    }
    constexpr std::array kSnipits = {
        "You are listening to Tavora", "Tavora. The music never stops",
        "More music, all day long",    "Your requests, right here on Tavora",
        "Stay tuned, more hits ahead", "Tavora. Your station, your songs"};
    for (std::size_t i = 0; i < kSnipits.size(); ++i) {
        rows.push_back(special("Station Snipit " + std::to_string(i + 1), "Snipit",
                               9 + static_cast<double>(i), kSnipits[i]));
    }
    DemoRow promo = special("Top Of The Hour Promo", "Timed Promo", 20,
                            "It is the top of the hour. This is Tavora, playing the best "
                            "music all day and all night");
    promo.clip.file.replace_extension(".wav");  // the one format the songs leave out
    promo.min_between_hours = 1;
    promo.max_day = 24;
    rows.push_back(promo);
    return rows;
}

Value time_of_day(int hour, int minute, int second) {
    return Value::date(TimeSerial(hour, minute, second));
}

bool add_row(Recordset& table, const DemoRow& row, const PathMap& paths, double now) {
    const Value yes = Value::boolean(true);
    const Value no = Value::boolean(false);
    const double yesterday = DateValueOf(now) - 1;
    table.AddNew();
    table.SetField("Title", row.title);
    table.SetField("Artist", row.artist);
    table.SetField("Category", row.genre);
    table.SetField("Speed", "Always");
    table.SetField("Type", row.genre);
    table.SetField("Long title", paths.ToDos(row.clip.file));
    table.SetField("Sel", 0);
    table.SetField("Total Request", 0);
    table.SetField("Min Time Between Plays", Value::date(row.min_between_hours / 24.0));
    table.SetField("Last Played", Value::date(now - 2));
    table.SetField("Max Play Day", row.max_day);
    table.SetField("How Many Today", 0);
    table.SetField("Max Play Week", row.max_day * 5);
    table.SetField("How Many This Week", 0);
    table.SetField("Max Month", row.max_day * 20);
    table.SetField("How Many This Month", 0);
    table.SetField("Valid Start time", time_of_day(0, 0, 0));
    table.SetField("Valid End Time", time_of_day(23, 59, 59));
    table.SetField("Valid Start Time2", time_of_day(0, 0, 0));
    table.SetField("Valid End Time2", time_of_day(23, 59, 59));
    for (const char* day : {"Valid Monday", "Valid Tuesday", "Valid Wednesday", "Valid Thursday",
                            "Valid Friday", "Valid Saturday", "Valid Sunday"}) {
        table.SetField(day, row.lead_in ? no : yes);
    }
    table.SetField("CreationDate", Value::date(now - 30));
    table.SetField("Size", row.clip.intro);
    table.SetField("Mix Out", row.clip.outro);
    table.SetField("Source", row.source.empty() ? Value() : Value(row.source));
    for (const char* chart :
         {"T40", "C40", "D40", "AM40", "RTW", "Request This Month", "Request AllTime"}) {
        table.SetField(chart, 0);
    }
    if (row.chart_field > 0) table.SetField(row.chart_field, row.chart_position);
    table.SetField("StartVol", 0);
    table.SetField("Start Pos", 0);
    table.SetField("End Pos", row.clip.seconds);
    table.SetField("FadeIn", no);
    table.SetField("FadeOut", no);
    table.SetField("Schedule Select", 0);
    table.SetField("Daily Reset", Value::date(yesterday));
    table.SetField("Weekly Reset", Value::date(yesterday));
    table.SetField("Monthly Reset", Value::date(yesterday));
    table.SetField("Length", Value::date(row.clip.seconds / 86400.0));
    return table.Update();
}

// A demo shows the play log: its first session file has logging on, as an
// operator would set it. An existing session file is the operator's.
void keep_a_play_log(const std::filesystem::path& home) {
    const auto file = home / "qxbp.ini";
    if (std::filesystem::exists(file)) return;
    Station defaults;
    defaults.Snip_Max = 3;
    defaults.Log_Due = 0;
    BP_Ini(defaults, file);
}

// The copy of every column of a song, with the title and artist made its own
// by the copy's number `n.i`.
std::string copy_song_sql(Library& library) {
    std::string columns, values;
    Statement names = library.connection().prepare(
        "SELECT name FROM pragma_table_info('Recordings1') WHERE name <> 'RecID'");
    while (names.step() == Statement::Step::Row) {
        const std::string name = names.column_text(0);
        columns += (columns.empty() ? "[" : ", [") + name + "]";
        std::string value = "[" + name + "]";
        if (name == "Title") value = "Title || ' ' || n.i";
        if (name == "Artist") value = "Artist || ' ' || (n.i % 97)";
        if (name == "T40") value = "0";
        values += (values.empty() ? "" : ", ") + value;
    }
    return "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT ?1) "
           "INSERT INTO Recordings1 (" +
           columns + ") SELECT " + values +
           " FROM n, Recordings1 WHERE Source IS NULL AND Category IN ('POP', 'ROCK', 'Dance', "
           "'Country') LIMIT ?1";
}

// Auto start and the seventh player, so the demo plays as soon as it opens.
std::string switch_on_demo_settings(const std::filesystem::path& home) {
    const auto opened = Library::open(home / "Setup.mdb", FileKind::Settings);
    if (!opened.library) return opened.error;
    Recordset setup = OpenRecordset(opened.library, "Setup");
    if (setup.IsEOF()) return "the settings file has no Setup row";
    setup.Edit();
    setup.SetField("Use Schedule", Value::boolean(true));
    setup.SetField("Use Weekday Filter", Value::boolean(true));
    return setup.Update() ? std::string() : setup.error();
}

}  // namespace

struct DemoRest::Work {
    std::filesystem::path home;
    double now = 0;
    std::vector<DemoRow> rows;
    std::function<void(const std::string&)> say;
};

namespace {

// The time a clip takes to make, relative: its length by its encoder's
// cost per second, as the demo media benchmark measures them.
double making_cost(const DemoRow& row) {
    static const std::map<std::string, double> per_second{
        {".wav", 0.5}, {".flac", 1}, {".mp3", 2}, {".opus", 3.4}, {".ogg", 4.2}, {".m4a", 8}};
    const auto cost = per_second.find(row.clip.file.extension().string());
    return row.clip.seconds * (cost == per_second.end() ? 8 : cost->second);
}

// The rows made before the station starts come first: the spots, then the
// songs quickest to make. With `as_flac` those songs are FLAC files, which
// cost less than half of what MP3 costs to make: on a busy machine, where
// the clip maker gets a share of a core, that is what the first song waits
// for. Made the same way on every start, so a second start finds them.
void put_first(std::vector<DemoRow>& rows, std::size_t first, bool as_flac) {
    const auto songs = std::stable_partition(
        rows.begin(), rows.end(), [](const DemoRow& row) { return !row.source.empty(); });
    std::stable_sort(songs, rows.end(), [](const DemoRow& a, const DemoRow& b) {
        return making_cost(a) < making_cost(b);
    });
    if (!as_flac) return;
    const auto early = rows.begin() + static_cast<std::ptrdiff_t>(std::min(first, rows.size()));
    for (auto row = songs; row < early; ++row)
        row->clip.file.replace_extension(".flac");
}

// Left in the install folder until every clip of the demo is made.
std::filesystem::path unfinished_mark(const std::filesystem::path& home) {
    return home / "music" / "demo-unfinished.txt";
}

bool in_library(Library& library, const std::string& long_title) {
    Statement row =
        library.connection().prepare("SELECT 1 FROM Recordings1 WHERE [Long title] = ?1");
    row.bind(1, Value(long_title));
    return row.step() == Statement::Step::Row;
}

std::vector<DemoClip> clips_of(const std::vector<DemoRow>& rows) {
    std::vector<DemoClip> clips;
    for (const auto& row : rows)
        clips.push_back(row.clip);
    return clips;
}

// Makes the clips of `rows` and adds each row once its file is whole.
std::string make_and_add(const DemoRest::Work& work, const std::atomic<bool>* stop,
                         const std::function<void(std::size_t made, std::size_t total)>& progress) {
    const PathMap paths(work.home);
    std::string failure;
    // Clips made by an earlier run that ended before their rows were written.
    std::vector<bool> ready(work.rows.size());
    for (std::size_t i = 0; i < work.rows.size(); ++i) {
        std::error_code error;
        ready[i] = std::filesystem::exists(work.rows[i].clip.file, error);
    }
    std::size_t next_row = 0;
    // The library is opened anew for each write: the station's start-up
    // compaction replaces the file under a connection held from before.
    auto add_ready_rows = [&] {
        if (next_row == ready.size() || !ready[next_row]) return;
        const auto opened = Library::open(work.home / "qx1.mdb", FileKind::Library);
        if (!opened.library) {
            if (failure.empty()) failure = opened.error;
            return;
        }
        Recordset table = OpenRecordset(opened.library, "Recordings1");
        for (; next_row < ready.size() && ready[next_row]; ++next_row) {
            if (!add_row(table, work.rows[next_row], paths, work.now) && failure.empty())
                failure = "a demo row could not be written: " + table.error();
        }
    };
    add_ready_rows();
    // Rows go in in their planned order whichever clip is made first, so the
    // same demo has the same library on every machine.
    const std::string made = make_demo_media(
        clips_of(work.rows),
        [&](const DemoClip& clip, const std::string& error, std::size_t done, std::size_t total) {
            if (!error.empty()) return;
            for (std::size_t i = 0; i < work.rows.size(); ++i)
                if (work.rows[i].clip.file == clip.file) ready[i] = true;
            add_ready_rows();
            if (progress) progress(done, total);
        },
        stop);
    return failure.empty() ? made : failure;
}

}  // namespace

DemoRest::DemoRest(std::unique_ptr<Work> work) : work_(std::move(work)) {
    thread_ = std::thread([this] {
        setpriority(PRIO_PROCESS, 0, 19);  // this thread only: the air comes first
        error_ = make_and_add(*work_, &stop_, [this](std::size_t done, std::size_t total) {
            if (work_->say && (done % 10 == 0 || done == total)) {
                work_->say("  " + std::to_string(done) + " of " + std::to_string(total) +
                           " more demo clips made");
            }
        });
        std::error_code ignored;
        if (error_.empty()) std::filesystem::remove(unfinished_mark(work_->home), ignored);
    });
}

DemoRest::~DemoRest() {
    stop_ = true;
    if (thread_.joinable()) thread_.join();
}

std::string DemoRest::wait() {
    if (thread_.joinable()) thread_.join();
    return error_;
}

DemoReport make_demo_library(const std::filesystem::path& home, double now,
                             const DemoOptions& options) {
    DemoReport report;
    auto say = [&options](const std::string& line) {
        if (options.say) options.say(line);
    };
    const InstallReport install = install_station(home, now);
    if (!install.error.empty()) {
        report.error = install.error;
        return report;
    }
    const PathMap paths(home);
    bool resuming = false;
    std::vector<DemoRow> planned;
    {
        const auto opened = Library::open(home / "qx1.mdb", FileKind::Library);
        if (!opened.library) {
            report.error =
                "the library " + (home / "qx1.mdb").string() + " can't be opened: " + opened.error;
            return report;
        }
        resuming = OpenRecordset(opened.library, "Recordings1").RecordCount() > 0;
        if (resuming && !std::filesystem::exists(unfinished_mark(home))) return report;
        std::vector<DemoRow> rows = plan_rows(home / "music", options.songs);
        for (auto& row : rows) {
            if (!options.format.empty()) row.clip.file.replace_extension(options.format);
            if (options.rate > 0) row.clip.rate = options.rate;
        }
        if (options.first > 0) put_first(rows, options.first, options.format.empty());
        for (auto& row : rows) {
            if (!resuming || !in_library(*opened.library, paths.ToDos(row.clip.file)))
                planned.push_back(std::move(row));
        }
    }
    std::error_code made_folder;
    std::filesystem::create_directories(home / "music", made_folder);
    std::ofstream(unfinished_mark(home)) << "The demo's clips are still being made.\n";

    // The spots and the cheapest songs sound at once, as many as the Run
    // command wants; the rest follow. A second start goes on with what the
    // first left to make.
    auto first = std::make_unique<DemoRest::Work>(DemoRest::Work{home, now, {}, options.say});
    auto rest = std::make_unique<DemoRest::Work>(DemoRest::Work{home, now, {}, options.say});
    for (auto& row : planned) {
        const bool early = options.first == 0 || (!resuming && first->rows.size() < options.first);
        (early ? first : rest)->rows.push_back(std::move(row));
    }
    if (!resuming) {
        say("Making " + std::to_string(first->rows.size()) + " demo clips in " +
            (home / "music").string());
        report.error = make_and_add(*first, nullptr, [&say](std::size_t done, std::size_t total) {
            if (done % 10 == 0 || done == total) {
                say("  " + std::to_string(done) + " of " + std::to_string(total) + " made");
            }
        });
        if (!report.error.empty()) return report;
        report.error = switch_on_demo_settings(home);
        if (report.error.empty()) keep_a_play_log(home);
        report.made = report.error.empty();
        report.rows = first->rows.size();
    }
    const std::string more = std::to_string(rest->rows.size()) + " more are made while it plays";
    if (resuming) {
        say("The demo is not finished: " + more);
    } else if (report.made) {
        say("The demo library holds " + std::to_string(report.rows) + " recordings" +
            (rest->rows.empty() ? std::string() : "; " + more));
    }
    std::error_code ignored;
    if (rest->rows.empty()) std::filesystem::remove(unfinished_mark(home), ignored);
    if ((resuming || report.made) && !rest->rows.empty())
        report.rest = std::make_unique<DemoRest>(std::move(rest));
    return report;
}

std::string grow_demo_library(const std::filesystem::path& home, std::size_t rows) {
    const auto opened = Library::open(home / "qx1.mdb", FileKind::Library);
    if (!opened.library) return opened.error;
    Statement count = opened.library->connection().prepare("SELECT count(*) FROM Recordings1");
    if (count.step() != Statement::Step::Row) return count.error();
    const long long have = count.column_int64(0);
    if (static_cast<long long>(rows) <= have) return {};
    Statement grow = opened.library->connection().prepare(copy_song_sql(*opened.library));
    grow.bind_int64(1, static_cast<long long>(rows) - have);
    return grow.step() == Statement::Step::Error ? grow.error() : std::string();
}

}  // namespace tavora
