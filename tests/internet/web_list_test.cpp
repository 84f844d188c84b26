#include "internet/web_list.h"

#include "internet_fixture.h"

namespace tavora {
namespace {

class WebListTest : public RequestFixture {
  protected:
    WebListTest() : web(*request, station, fake.services) {}
    std::vector<std::string> exported() { return lines(fake.home() / "web" / "qxstat.txt"); }
    WebList web;
};

TEST_F(WebListTest, ColumnsOfEachRecordOnceTheStationManagersHeadIsThere) {
    add("Both", {{"C40", Value(5)}, {"T40", Value(3)}, {"AM40", Value(9)}});
    add("Edge", {{"T40", Value(200)},
                 {"Category", Value("Rock")},
                 {"Type", Value("Pop")},
                 {"Speed", Value("Rock")}});
    add("Over", {{"T40", Value(201)}, {"C40", Value(50)}, {"Category", Value("Jazz ")}});
    add("Dance, Floor", {{"D40", Value(7)},
                         {"CreationDate", Value::date(kNow - 3)},
                         {"Category", Value("Club")},
                         {"Speed", Value("Fast ")}});
    add("Promo", {{"Source", Value("Timed Promo")}});
    request->Form_Load();
    // Without the station manager's head nothing is written.
    station.Auto_PL = 0;
    web.wiz_it();
    EXPECT_EQ(request->Label15.Caption, "AutoWeb Update Aborted");
    EXPECT_TRUE(fake.dialogs.shown().empty());
    station.Auto_PL = 1;
    request->click("Command13");
    EXPECT_EQ(fake.dialogs.shown().back().request.text,
              "You must run the station manager while connected to the internet first");
    EXPECT_FALSE(std::filesystem::exists(fake.home() / "web" / "qxstat.txt"));

    fake.folder.Write("web/tqxshdr.htm", "<head>");
    web.wiz_it();
    const std::vector<std::string> records = {
        "3,9,Both,Both Artist,Misc,FALSE",
        "2007,0,Dance, Floor,Dance, Floor Artist,NEW-Club-Fast,FALSE",
        "200,0,Edge,Edge Artist,Rock-Pop,FALSE",
        "0,0,Over,Over Artist,Jazz,FALSE",
    };
    // No requests this month: that sort falls back on "title Sort" and the
    // list comes out twice.
    std::vector<std::string> expected = {"Top40:INT,Position:INT,Symbol,FullName,Period,Group"};
    for (int pass = 0; pass < 2; ++pass)
        expected.insert(expected.end(), records.begin(), records.end());
    EXPECT_EQ(exported(), expected);
    EXPECT_TRUE(std::filesystem::exists(fake.home() / "web" / "cstats.htm"));
    EXPECT_EQ(fake.dialogs.shown().back().request.text,
              "Your Web Page list has Been Created! Tavora Music System Station Manager will "
              "automatically update in a few minutes");
    EXPECT_EQ(station.Web_Run, 0);
    EXPECT_TRUE(request->Command13.Visible);
}

}  // namespace
}  // namespace tavora
