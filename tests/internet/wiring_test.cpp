#include "internet/wiring.h"

#include "internet_fixture.h"

namespace tavora {
namespace {

class Menus : public InternetFixture {
  protected:
    Menus() : web(*request, station, fake.services), manager(station, fake.services) {
        wire_request_menus(main, *request, mail, web, manager);
    }
    QXMain main{station};
    WebList web;
    StationManagerLink manager;
};

TEST_F(Menus, EntriesReachTheirWindows) {
    add("Song");
    main.click("Request_list");
    EXPECT_TRUE(request->Visible);
    EXPECT_EQ(request->RB(1).Caption, "Song");
    main.click("Request_list");
    EXPECT_FALSE(request->Visible);

    main.click("Get_Email");
    EXPECT_TRUE(mail.Loaded);
    EXPECT_EQ(mail.Label4.Caption, "StandBy");

    main.click("WebR_Wiz");
    EXPECT_EQ(fake.dialogs.shown().front().request.text,
              "This will create data for your web request pages (Published by the station "
              "manager).\r\nNOTE -- The System automatically performs this task between 12am "
              "and 1am each day if the Tavora is running");

    main.click("Stn_Mgr");
    ASSERT_EQ(fake.launcher.started.size(), 1u);
    EXPECT_EQ(fake.launcher.started[0], "\"" + (fake.home() / "tqxst.exe").string() + "\"");
    fake.launcher.succeed = false;
    main.click("Stn_Mgr");
    EXPECT_EQ(fake.dialogs.shown().back().request.text,
              "Tavora Station Manager Not Found! Please Got to our web site and install.");
}

}  // namespace
}  // namespace tavora
