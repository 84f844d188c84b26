// Damaged exchange files from the web and the station manager, and damaged
// settings: thousands of generated files, none of which may crash a reader,
// change what it must not touch, or count a request the file did not hold.
#include <fstream>
#include <random>
#include <tuple>

#include "internet/mailfrm.h"
#include "internet/station_manager.h"
#include "internet_fixture.h"
#include "runtime/convert.h"
#include "store/statement.h"

namespace tavora {
namespace {

constexpr int kFiles = 10'000;

// Text built from pieces the real files hold, broken at random.
std::string junk(std::mt19937& rng, const std::vector<std::string>& words) {
    const auto pick = [&rng](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(rng);
    };
    std::string out;
    for (int pieces = pick(0, 40); pieces > 0; --pieces) {
        const int kind = pick(0, 9);
        if (kind == 0) out += pick(0, 1) ? "\"" : ",";
        if (kind == 1) out += pick(0, 1) ? "\r\n" : "\n";
        if (kind == 2) out += std::string(static_cast<std::size_t>(pick(1, 3000)), 'x');
        for (int b = kind == 3 ? pick(1, 20) : 0; b > 0; --b)
            out += static_cast<char>(pick(0, 255));
        if (kind == 4)
            out += "#" + std::to_string(pick(0, 30)) + ":" + std::to_string(pick(0, 70)) + ":00 " +
                   (pick(0, 1) ? "PM#" : "AM#");
        if (kind == 5) out += std::to_string(pick(-70000, 70000));
        if (kind > 5) out += words[static_cast<std::size_t>(pick(0, int(words.size()) - 1))];
    }
    return out;
}

using Fuzz = InternetFixture;

TEST_F(Fuzz, NewreqChecksCountOnlyTitlesTheFileHolds) {
    for (const char* title : {"Song", "Hello", "zhot request"})
        add(title);
    // Thousands of matched requests: the file needn't reach the disk each time.
    library->connection().exec("PRAGMA synchronous = OFF");
    library->connection().exec("PRAGMA journal_mode = MEMORY");
    // Each row's title, the fields a request never touches, and its count.
    const auto rows = [this] {
        std::vector<std::tuple<std::string, std::string, double>> out;
        Statement read = library->connection().prepare(
            "SELECT Title, Artist || '|' || CreationDate || '|' || [Total Request], "
            "[Request AllTime] FROM Recordings1 ORDER BY RecID");
        while (read.step() == Statement::Step::Row)
            out.emplace_back(read.column_text(0), read.column_text(1),
                             std::stod(read.column_text(2)));
        return out;
    };
    mail.Form_Load();
    std::mt19937 rng(7);
    const std::vector<std::string> words = {
        "None", "none", "Song", "Hello", "zhot request", "'; DROP TABLE Recordings1; --",
        "True", ""};
    auto before = rows();
    for (int i = 0; i < kFiles; ++i) {
        const std::string file = junk(rng, words);
        fake.folder.Write("newreq.tqf", file);
        if (i % 3 == 0) fake.folder.Write("reqclear.tqf", i % 2 ? "clear" : junk(rng, words));
        mail.Label12.Caption = std::to_string(i % 300);
        const double accepted = Val(mail.Label14.Caption);
        mail.Check_File();
        const auto after = rows();
        ASSERT_EQ(after.size(), 3u);
        double counted = 0;
        for (std::size_t r = 0; r < 3; ++r) {
            const auto& [title, fixed, requests] = after[r];
            ASSERT_EQ(fixed, std::get<1>(before[r])) << i;
            const double added = requests - std::get<2>(before[r]);
            ASSERT_GE(added, 0) << i;
            if (added > 0) {
                ASSERT_NE(file.find(title), std::string::npos) << i << " " << title;
            }
            counted += added;
        }
        ASSERT_EQ(counted, Val(mail.Label14.Caption) - accepted) << i;
        before = after;
        fake.clock.Advance(60'000);
    }
    EXPECT_GT(std::get<2>(before[1]), 0);  // some checks did match
}

TEST_F(Fuzz, BreakOrdersAreReadOnlyWhenNoneIsArmed) {
    StationManagerLink link(station, fake.services);
    std::mt19937 rng(11);
    const std::vector<std::string> words = {
        "True", "False", "#3/11/2026#", "#13/45/2026#", "\"Exit\"", "4", ""};
    const auto order = [this] {
        const Station& s = station;
        return std::tuple(s.Break_Start, s.Break_End, s.Break_Date, s.Brk_Exit1, s.Brk_Exit2,
                          s.Brk_BP, s.Brk_BPSongs, s.Brk_CD, s.Brk_Skip, s.Brk_Play);
    };
    for (int i = 0; i < kFiles; ++i) {
        const bool armed = i % 4 == 0;
        station.SM_State = armed ? 1 : 0;
        station.Live_Mode = 0;
        fake.folder.Write("qxsm.ini", junk(rng, words));
        const auto before = order();
        link.SM_Check();
        ASSERT_EQ(std::filesystem::exists(fake.home() / "qxsm.ini"), armed) << i;
        ASSERT_EQ(station.Live_Mode, armed ? 0 : 1) << i;
        if (armed) {
            ASSERT_EQ(order(), before) << i;
        }
    }
}

// Whatever a damaged tqxiis.ini gave, saving it writes a file that reads
// back to the very same settings.
TEST_F(Fuzz, SettingsReadFromADamagedFileSaveAndReadBackUnchanged) {
    std::mt19937 rng(13);
    const std::vector<std::string> words = {"True", "False", "0", "-1", "\"c:\\tavora\"", "5", ""};
    const auto saved = [this](const char* name) {
        mail.TQXi_Sav(fake.home() / name);
        std::ifstream in(fake.home() / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    for (int i = 0; i < kFiles; ++i) {
        fake.folder.Write("tqxiis.ini", junk(rng, words));
        read_tqxiis_switches(station, fake.home() / "tqxiis.ini");
        mail.TQXi_ini();
        const std::string first = saved("first.ini");
        fake.folder.Write("tqxiis.ini", first);
        mail.TQXi_ini();
        ASSERT_EQ(saved("second.ini"), first) << i;
    }
}

}  // namespace
}  // namespace tavora
