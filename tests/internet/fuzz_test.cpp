// Damaged exchange files from the web and the station manager: each reader
// meets thousands of generated files and must neither crash nor hang, and
// the library must keep its records whatever the files hold.
#include <random>

#include "internet/station_manager.h"
#include "internet_fixture.h"

namespace tavora {
namespace {

constexpr int kFiles = 10'000;

// Text built from pieces the real files hold, broken at random.
class Junk {
  public:
    explicit Junk(unsigned seed) : rng_(seed) {}

    std::string file(const std::vector<std::string>& words) {
        std::string out;
        const int pieces = pick(0, 40);
        for (int i = 0; i < pieces; ++i) {
            switch (pick(0, 9)) {
                case 0:
                    out += '"';
                    break;
                case 1:
                    out += ',';
                    break;
                case 2:
                    out += pick(0, 1) ? "\r\n" : "\n";
                    break;
                case 3:
                    out += std::string(static_cast<std::size_t>(pick(1, 3000)), 'x');
                    break;
                case 4:
                    for (int b = pick(1, 20); b > 0; --b)
                        out += static_cast<char>(pick(0, 255));
                    break;
                case 5:
                    out += "#" + std::to_string(pick(0, 30)) + ":" + std::to_string(pick(0, 70)) +
                           ":00 " + (pick(0, 1) ? "PM#" : "AM#");
                    break;
                case 6:
                    out += std::to_string(pick(-70000, 70000));
                    break;
                default:
                    out += words[static_cast<std::size_t>(pick(0, int(words.size()) - 1))];
                    break;
            }
        }
        return out;
    }

  private:
    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng_); }
    std::mt19937 rng_;
};

using Fuzz = InternetFixture;

TEST_F(Fuzz, NewreqChecksPassOverDamagedItems) {
    for (const char* title : {"Song", "Hello", "zhot request"})
        add(title);
    // Thousands of matched requests: the file needn't reach the disk each time.
    library->connection().exec("PRAGMA synchronous = OFF");
    library->connection().exec("PRAGMA journal_mode = MEMORY");
    mail.Form_Load();
    Junk junk(7);
    const std::vector<std::string> words = {
        "None", "none", "Song", "Hello", "zhot request", "'; DROP TABLE Recordings1; --",
        "True", ""};
    for (int i = 0; i < kFiles; ++i) {
        fake.folder.Write("newreq.tqf", junk.file(words));
        if (i % 3 == 0) fake.folder.Write("reqclear.tqf", i % 2 ? "clear" : junk.file(words));
        mail.Label12.Caption = std::to_string(i % 300);
        mail.Check_File();
        fake.clock.Advance(60'000);
    }
    Recordset rows = OpenRecordset(library, "Title Sort");
    ASSERT_EQ(rows.RecordCount(), 3);
    EXPECT_EQ(rows.Fields("Title").text(), "Hello");
    EXPECT_GT(rows.Fields("Request AllTime").number(), 0);
}

TEST_F(Fuzz, BreakOrdersNeverStopTheStation) {
    StationManagerLink link(station, fake.services);
    Junk junk(11);
    const std::vector<std::string> words = {
        "True", "False", "#3/11/2026#", "#13/45/2026#", "\"Exit\"", "4", ""};
    for (int i = 0; i < kFiles; ++i) {
        station.SM_State = i % 4 == 0 ? 1 : 0;
        fake.folder.Write("qxsm.ini", junk.file(words));
        link.SM_Check();
        ASSERT_EQ(std::filesystem::exists(fake.home() / "qxsm.ini"), i % 4 == 0) << i;
        ASSERT_GE(station.Break_Start, 0.0);
        ASSERT_LT(station.Break_Start, 1.0);
    }
}

TEST_F(Fuzz, SettingsFilesAreReadAsFarAsTheyGo) {
    Junk junk(13);
    const std::vector<std::string> words = {"True", "False", "10", "None", "TQXMS Direct", ""};
    for (int i = 0; i < kFiles; ++i) {
        fake.folder.Write("tqxiis.ini", junk.file(words));
        mail.TQXi_ini();
        read_tqxiis_switches(station, fake.home() / "tqxiis.ini");
        ASSERT_GE(station.IIS_Minutes, -32768);
        ASSERT_LE(station.IIS_Line, 32767);
    }
}

}  // namespace
}  // namespace tavora
