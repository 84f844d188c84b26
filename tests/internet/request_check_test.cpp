#include "internet_fixture.h"
#include "runtime/date_text.h"

namespace tavora {
namespace {

class RequestCheck : public InternetFixture {
  protected:
    void SetUp() override {
        for (const char* title :
             {"Able", "Baker", "Charlie", "Dog", "Easy", "Fox", "Song", "zhot request"})
            ids[title] = add(title);
        mail.Form_Load();
    }
    double sel(const char* title) { return field(ids[title], "Sel").number(); }
    void advance_minutes(int minutes) { fake.clock.Advance(minutes * 60'000LL); }

    std::map<std::string, long long> ids;
};

TEST_F(RequestCheck, SixTitlesAreTakenFiveThenOne) {
    write_items({"Able", "Baker", "Charlie", "Dog", "Easy", "Fox"});
    mail.Check_File();
    EXPECT_EQ(sel("Easy"), 1);
    EXPECT_EQ(sel("Fox"), 0);
    EXPECT_EQ(mail.Label12.Caption, "5");
    EXPECT_EQ(field(ids["Able"], "AccessDate").number(), kNow);
    EXPECT_EQ(field(ids["Able"], "Request AllTime").number(), 1);
    EXPECT_EQ(mail.Label4.Caption, "Complete with Upload");
    EXPECT_EQ(mail.Result(5).Caption, "Easy - " + date_text(kNow));
    mail.Check_File();
    EXPECT_EQ(sel("Fox"), 1);
    EXPECT_EQ(mail.Label14.Caption, "6");
    EXPECT_EQ(mail.IIS_Saved, 6);
    EXPECT_EQ(lines(fake.home() / "tqxiis.ini")[11], "6");
    EXPECT_EQ(mail.List1.List.back(), "Fox Artist - Fox - " + date_text(kNow));
}

TEST_F(RequestCheck, DuplicatesWithinAQuarterHour) {
    // The second A gives its place back: all six are read in one check.
    write_items({"Able", "Able", "Baker", "Charlie", "Dog", "Easy"});
    mail.Check_File();
    EXPECT_EQ(sel("Able"), 1);
    EXPECT_EQ(sel("Easy"), 1);
    EXPECT_EQ(mail.List1.List[1], "Processing: Able-- DUPLICATE");

    advance_minutes(10);
    write_items({"Able"}, true);
    mail.Check_File();
    EXPECT_EQ(sel("Able"), 1);
    EXPECT_EQ(mail.Result(5).Caption, "Duplicate - NOT FOUND - " + date_text(fake.clock.Now()));

    advance_minutes(16);
    write_items({"Able"}, true);
    mail.Check_File();
    EXPECT_EQ(sel("Able"), 2);
    EXPECT_EQ(field(ids["Able"], "AccessDate").number(), kNow);  // set only as the count opens
}

TEST_F(RequestCheck, HotRequestMakesTheNextFivePriority) {
    write_items({"zhot request", "Able", "Baker", "Charlie", "Dog", "Easy", "Fox"});
    mail.Check_File();
    EXPECT_EQ(sel("zhot request"), 50);
    EXPECT_EQ(sel("Dog"), 50);
    EXPECT_TRUE(field(ids["Able"], "AccessDate").is_null());
    EXPECT_EQ(mail.Result(5).Caption, "Dog - " + date_text(kNow) + "HOT REQUEST");
    mail.Check_File();
    EXPECT_EQ(sel("Easy"), 50);
    EXPECT_EQ(sel("Fox"), 1);
    EXPECT_EQ(mail.Hot_Left, 0);
}

TEST_F(RequestCheck, LongListAsksForAClearAndStartsAgain) {
    std::vector<std::string> items(255, "None");
    items.push_back("Song");
    write_items(items);
    mail.Check_File();
    EXPECT_EQ(sel("Song"), 1);
    EXPECT_EQ(lines(fake.home() / "reqclear.tqf"), std::vector<std::string>{"need"});
    mail.Check_File();
    EXPECT_EQ(lines(fake.home() / "reqclear.tqf"), std::vector<std::string>{"need"});

    TextWriter answer(fake.home() / "reqclear.tqf", TextWriter::Mode::Create);
    answer.write_line("clear");
    answer.close();
    mail.Check_File();
    EXPECT_EQ(lines(newreq()), std::vector<std::string>{"None"});
    EXPECT_FALSE(std::filesystem::exists(fake.home() / "reqclear.tqf"));
    EXPECT_EQ(mail.Label12.Caption, "0");
    write_items({"Song"}, true);
    advance_minutes(16);
    mail.Check_File();
    EXPECT_EQ(sel("Song"), 2);
    EXPECT_EQ(mail.Label12.Caption, "2");
}

TEST_F(RequestCheck, TitlesAreMatchedExactlyAndNeverAsSql) {
    const long long sql = add("x'); DELETE FROM Recordings1; --");
    const long long quoted = add("Say \"Hi\"; ok");
    write_items({"song", "x'); DELETE FROM Recordings1; --", "Say \"Hi\"; ok", "Hello, World"});
    mail.Check_File();
    EXPECT_EQ(sel("Song"), 0);
    EXPECT_EQ(field(sql, "Sel").number(), 1);
    EXPECT_EQ(field(quoted, "Sel").number(), 1);
    EXPECT_EQ(OpenRecordset(library, "Recordings1").RecordCount(), 10);
    // A comma splits the title: two items, each not found.
    EXPECT_EQ(mail.Label12.Caption, "5");
    EXPECT_EQ(mail.Result(5).Caption, "World - NOT FOUND - " + date_text(kNow));
    EXPECT_NE(mail.Report.Text.find("song - NOT FOUND"), std::string::npos);
}

TEST_F(RequestCheck, ListBuildingEndsTheCheckByItsErrorPath) {
    station.PL_Build = 10;
    station.PL_Next = 3;
    write_items({"Able", "Baker"});
    mail.Check_File();
    EXPECT_EQ(sel("Able"), 3);
    EXPECT_EQ(sel("Baker"), 0);
    EXPECT_EQ(station.PL_Next, 4);
    EXPECT_EQ(mail.Label4.Caption, "ERROR: Problem with data file - Correcting next load");
    EXPECT_EQ(mail.Label12.Caption, "1");
    mail.Check_File();
    EXPECT_EQ(sel("Baker"), 4);
}

}  // namespace
}  // namespace tavora
