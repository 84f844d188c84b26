// A break ordered by the station manager's file, carried out by the bank on
// virtual time.
#include "internet/wiring.h"
#include "playback/bank_fixture.h"
#include "runtime/date_text.h"
#include "runtime/text_file.h"

namespace tavora::test {
namespace {

class BreakOrder : public BankTest {
  protected:
    void write_order(double start, double end) {
        const auto mark = [](const std::string& text) { return "#" + text + "#"; };
        TextWriter out(fake.home() / "qxsm.ini", TextWriter::Mode::Create);
        out.write_line("\"Exit\",False,\"Exit2\",False,\"Show\",x,y");
        out.write_line("\"Start\"," + mark(Format(start, "h:mm:ss AMPM")) + ",\"End\"," +
                       mark(Format(end, "h:mm:ss AMPM")) + ",z," + mark(Format(end, "short date")));
        out.write_line("\"BP\",True,3,\"CD\",False,\"Skip\",False,\"Spare\",w,\"Play\",False");
        out.close();
    }
    bool plays(int n) { return playback->Players(n).PlayState() == MediaPlayer::kPlaying; }
    bool order_waiting() { return std::filesystem::exists(fake.home() / "qxsm.ini"); }

    void wire() {
        station.Act_Db = "c:\\tavora\\qx1.mdb";
        make_probe();
        wire_request_window(station, main, screen, mail, link, *playback, viewer);
        screen.Form_Load();
    }

    StationManagerLink link{station, fake.services};
    Request screen{station, fake.services, pool};
    Mailfrm mail{station, fake.services, pool};
};

TEST_F(BreakOrder, AnOrderArmsStartsAndEndsABreak) {
    wire();
    run();
    ASSERT_TRUE(wait_until([&] { return station.Slot_Ready[1] == 3; }, 10));
    const double begun = now();
    write_order(fake.clock.Now() + 60.0 / 86400, fake.clock.Now() + 400.0 / 86400);

    // The transport looks for the file every 45 seconds.
    ASSERT_TRUE(wait_until([&] { return !order_waiting(); }, 50));
    EXPECT_EQ(station.SM_State, 1);
    EXPECT_EQ(station.Live_Mode, 1);
    EXPECT_TRUE(station.Brk_BP);

    ASSERT_TRUE(wait_until([&] { return station.Live_Mode == 2; }, 60));
    EXPECT_NEAR(now() - begun, 60, 2);
    EXPECT_TRUE(station.BP_On);
    EXPECT_EQ(station.BP_Block, 3);
    EXPECT_EQ(screen.Command7.Caption, "Resume");

    // The first song plays out; the second waits for the end of the break.
    ASSERT_TRUE(wait_until([&] { return plays(2); }, 600));
    EXPECT_NEAR(now() - begun, 400, 3);
    EXPECT_EQ(station.Live_Mode, 0);
    EXPECT_EQ(screen.Command7.Caption, "Break");
}

TEST_F(BreakOrder, TheRequestWindowSeesThePlayers) {
    wire();
    run();
    ASSERT_TRUE(wait_until([&] { return station.Slot_Ready[1] == 3; }, 10));
    wait(20);
    screen.Label15.Caption = "Select A Song";
    screen.Stat_Write();
    TextReader status(fake.home() / "tqxstat.txt");
    for (int line = 1; line < 12; ++line)
        status.read_line();
    EXPECT_EQ(status.read_line().text, station.Slot_Title[1]);
    screen.click("Command7");
    EXPECT_EQ(station.Pause_At, 2);
}

}  // namespace
}  // namespace tavora::test
