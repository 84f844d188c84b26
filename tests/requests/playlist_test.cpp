#include "request_fixture.h"
#include "runtime/date_text.h"

namespace tavora {
namespace {

struct Member {
    double id, order;
    bool operator==(const Member&) const = default;
};

class PlaylistTest : public RequestFixture {
  protected:
    explicit PlaylistTest(double now = kNow) : RequestFixture(now) {}

    long long marker(const std::string& title) {
        Recordset rows = OpenRecordset(library, "PLNames");
        for (; !rows.IsEOF(); rows.MoveNext()) {
            if (rows.Fields("Title").text() == title)
                return static_cast<long long>(rows.Fields("RecID").number());
        }
        return 0;
    }

    std::vector<Member> members(long long list) {
        std::vector<Member> out;
        Recordset rows = OpenRecordset(library, "Playlist");
        for (; !rows.IsEOF(); rows.MoveNext()) {
            if (rows.Fields(2).number() == static_cast<double>(list))
                out.push_back({rows.Fields(1).number(), rows.Fields(6).number()});
        }
        return out;
    }
};

TEST_F(PlaylistTest, ManualListIsBuiltByPressesSavedAndEditedAgain) {
    const long long a = add("A Song");
    add("B Song");
    const long long c = add("C Song", {{"Sel", Value(2)}});  // an open request is cleared
    request->Form_Load();

    fake.dialogs.Queue(Answer::Yes);
    fake.dialogs.QueueText("Party");
    request->click("BtnSrt", 10);
    EXPECT_EQ(station.PL_Build, 10);
    EXPECT_EQ(station.Req_Hold, 1);
    EXPECT_FALSE(request->TimerMar->Enabled());
    EXPECT_EQ(request->BtnSrt(11).Caption, "Save Playlist");
    EXPECT_EQ(request->Label17.Caption, "Playlist Mode is On");
    EXPECT_EQ(request->datPrimaryRS.RecordSource, "CRequest");
    EXPECT_EQ(field(c, "Sel").number(), 0);

    request->click("RB", row_of("C Song"));
    request->click("RB", row_of("A Song"));
    request->click("BtnSrt", 11);
    const long long list = marker("Party");
    ASSERT_NE(list, 0);
    EXPECT_EQ(field(list, "Long title").text(), "QXPLRandom");
    EXPECT_EQ(field(list, "Artist").text(), "TQXMS PlayList");
    EXPECT_EQ(members(list), (std::vector<Member>{{double(a), 2}, {double(c), 1}}));
    EXPECT_EQ(field(a, "Sel").number(), 0);
    EXPECT_EQ(station.PL_Build, 0);
    EXPECT_EQ(station.Req_Hold, 0);
    EXPECT_EQ(request->BtnSrt(11).Caption, "Playlist");
    EXPECT_TRUE(request->TimerMar->Enabled());
    EXPECT_EQ(fake.dialogs.shown().back().request.text,
              "Thankyou! Your List Is Saved! You Can Edit its' Play schedule and frequency in "
              "the Program director");

    // Edit: pick the marker by requesting it, then the saved numbers return.
    fake.dialogs.Queue(Answer::No);
    request->click("BtnSrt", 10);
    EXPECT_EQ(request->BtnSrt(11).Caption, "PlyLst Select");
    request->click("RB", row_of("Party"));
    request->click("BtnSrt", 11);
    EXPECT_EQ(request->PL_Id, list);
    EXPECT_TRUE(has(a, {{"Sel", 2}}));
    EXPECT_TRUE(has(c, {{"Sel", 1}}));
    EXPECT_EQ(station.PL_Next, 3);
    EXPECT_EQ(field(list, "RTW").number(), 0);  // the picking press is taken back
    request->click("BtnSrt", 11);
    EXPECT_EQ(members(list), (std::vector<Member>{{double(a), 2}, {double(c), 1}}));
}

// The daily run at 00:45 on 4 March 2026.
class DailyRun : public PlaylistTest {
  protected:
    DailyRun() : PlaylistTest(DateSerial(2026, 3, 4) + TimeSerial(0, 45, 0)) {}
};

TEST_F(DailyRun, TopRequestTakesPlacesUpTo75ThenUpTo30OnTheFifth) {
    std::vector<long long> ids;
    for (int place : {30, 50, 75, 80})
        ids.push_back(add("Requested " + std::to_string(place), {{"AM40", Value(place)}}));
    add("Spot", {{"AM40", Value(10)}, {"Source", Value("Snipit")}});
    add("Dancer", {{"D40", Value(4)}});
    int exports = 0;
    request->wiz_it = [&exports] { ++exports; };
    request->Form_Load();
    station.Auto_PL = 0;
    request->Auto_PL_First = 0;
    request->TimerMar_Timer();
    EXPECT_EQ(exports, 1);
    EXPECT_EQ(station.Auto_PL, 1);
    EXPECT_EQ(station.PL_Build, 0);
    const long long top = marker("TopRequest");
    ASSERT_NE(top, 0);
    EXPECT_EQ(members(top),
              (std::vector<Member>{
                  {double(ids[0]), 1030}, {double(ids[1]), 1050}, {double(ids[2]), 1075}}));
    EXPECT_EQ(field(ids[0], "Sel").number(), 0);
    EXPECT_EQ(field(top, "Artist").text(), "TQXMS Automatic PlayList");
    EXPECT_TRUE(has(top, {{"Max Play Week", 7}}));

    const long long country = marker("TopCountry");
    ASSERT_NE(country, 0);
    EXPECT_EQ(Format(field(country, "Valid End Time").number(), "hh:mm"), "08:00");
    EXPECT_EQ(Format(field(country, "Valid Start Time2").number(), "hh:mm"), "08:15");
    EXPECT_EQ(field(country, "Source").text(), "Timed Promo");
    EXPECT_FALSE(field(country, "Valid Monday").truthy());
    EXPECT_TRUE(field(country, "Valid Sunday").truthy());
    EXPECT_NE(marker("Top40 "), 0);
    EXPECT_EQ(members(marker("TopDance")).size(), 1u);
    EXPECT_EQ(request->Label16.Caption, "Sorted By TITLE Only");

    // The next day's run finds the markers and rewrites their rows; on the
    // fifth it takes places up to 30 only.
    fake.clock.Advance(24 * 3'600'000LL);
    station.Auto_PL = 0;
    request->TimerMar_Timer();
    EXPECT_EQ(exports, 2);
    EXPECT_EQ(marker("TopRequest"), top);
    EXPECT_EQ(members(top), (std::vector<Member>{{double(ids[0]), 1030}}));
}

}  // namespace
}  // namespace tavora
