// The web's own parts without the server: what a listener's text becomes,
// the request gate's limits, and the control API's checks and break order.
#include <map>

#include "internet/control_api.h"
#include "internet/request_gate.h"
#include "internet/station_manager.h"
#include "internet/web_settings.h"
#include "internet/web_text.h"
#include "internet_fixture.h"

namespace tavora {
namespace {

TEST(WebText, ListenerTextNeverSplitsALineOrBreaksUtf8AndIsCutAt255Characters) {
    EXPECT_EQ(clean_web_text("  Song\r\nEvil\tB  "), "Song  Evil B");
    EXPECT_EQ(clean_web_text("Caf\xc3\xa9"), "Caf\xc3\xa9");
    // A lone continuation byte, an overlong slash, a surrogate, a cut-off tail.
    EXPECT_EQ(clean_web_text("a\x80"
                             "b\xc0\xaf"
                             "c\xed\xa0\x80"
                             "d\xe2\x82"),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD\xEF\xBF\xBD"
              "c\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"
              "d\xEF\xBF\xBD\xEF\xBF\xBD");
    std::string long_title;
    for (int i = 0; i < 300; ++i)
        long_title += "\xc3\xa9";  // two bytes, one character
    const std::string cut = clean_web_text(long_title);
    EXPECT_EQ(cut.size(), 510u);
    EXPECT_EQ(clean_web_text(std::string(1000, 'x')).size(), 255u);

    EXPECT_EQ(json_string("a\"b\\c\n</script>\x01"), "\"a\\\"b\\\\c\\n\\u003c/script>\\u0001\"");
    EXPECT_EQ(json_string("\xff"), "\"\xEF\xBF\xBD\"");
}

TEST(RequestGate, OneAddressGetsItsHourlyShareAndATitleWaitsAQuarterHour) {
    double now = 1000;
    std::vector<std::string> file;
    RequestGate::Ports ports;
    ports.requests_on = [] { return true; };
    ports.known = [](const std::string& t) { return t.rfind("Song", 0) == 0 || t == "A, B"; };
    ports.append = [&file](const std::string& item) {
        file.push_back(item);
        return true;
    };
    ports.seconds = [&now] { return now; };
    RequestGate gate(ports, 3);
    using R = GateAnswer::Result;

    EXPECT_EQ(gate.request("10.0.0.1", "Song 1").result, R::Requested);
    EXPECT_EQ(gate.request("10.0.0.2", "Song 1").result, R::Recent);
    EXPECT_EQ(gate.request("10.0.0.1", "Nothing Like It").result, R::Unknown);
    EXPECT_EQ(gate.request("10.0.0.1", "Song 2").result, R::Requested);
    EXPECT_EQ(gate.request("10.0.0.1", "A, B").result, R::Requested);
    EXPECT_EQ(gate.request("10.0.0.1", "Song 3").result, R::Limit);
    EXPECT_EQ(gate.request("10.0.0.2", "Song 3").result, R::Requested);
    now += 15 * 60;
    EXPECT_EQ(gate.request("10.0.0.2", "Song 1").result, R::Requested);
    now += 45 * 60 - 1;
    EXPECT_EQ(gate.request("10.0.0.1", "Song 4").result, R::Limit);
    now += 1;
    EXPECT_EQ(gate.request("10.0.0.1", "Song 4").result, R::Requested);
    // A comma would make two items of the file: the title goes in quotes.
    EXPECT_EQ(file, (std::vector<std::string>{"Song 1", "Song 2", "\"A, B\"", "Song 3", "Song 1",
                                              "Song 4"}));

    RequestGate::Ports off = ports;
    off.requests_on = [] { return false; };
    RequestGate closed(off, 3);
    EXPECT_EQ(closed.request("10.0.0.1", "Song 9").result, R::Off);
    EXPECT_EQ(exchange_item("Say \"Hi\", Bye"), "");
}

TEST(ControlApi, TokenAndAddressChecks) {
    EXPECT_FALSE(token_matches("", ""));
    EXPECT_FALSE(token_matches("anything", ""));
    EXPECT_FALSE(token_matches("secret", "secreT"));
    EXPECT_FALSE(token_matches("secre", "secret"));
    EXPECT_FALSE(token_matches("secret!", "secret"));
    EXPECT_TRUE(token_matches("secret", "secret"));

    EXPECT_TRUE(control_allowed("127.0.0.1", "0.0.0.0"));
    EXPECT_TRUE(control_allowed("127.3.2.1", "127.0.0.1"));
    EXPECT_FALSE(control_allowed("192.168.1.20", "0.0.0.0"));
    EXPECT_TRUE(control_allowed("192.168.1.20", "192.168.1.20"));
    EXPECT_FALSE(control_allowed("192.168.1.21", "192.168.1.20"));
    EXPECT_FALSE(control_allowed("::1", "127.0.0.1"));

    EXPECT_EQ(parse_web_address("8080")->port, 8080);
    EXPECT_EQ(parse_web_address("8080")->address, "127.0.0.1");
    EXPECT_EQ(parse_web_address("0.0.0.0:80")->address, "0.0.0.0");
    EXPECT_FALSE(parse_web_address("example.com:80"));
    EXPECT_FALSE(parse_web_address("127.0.0.1:70000"));
    EXPECT_FALSE(parse_web_address("80x"));
}

class BreakOrders : public InternetFixture {
  protected:
    StationManagerLink link{station, fake.services};
};

TEST_F(BreakOrders, AnOrderFromTheApiIsReadByTheStationManagersPath) {
    const BreakParse parsed = parse_break_order({{"start", "21:30"},
                                                 {"end", "22:15:30"},
                                                 {"date", "2026-03-11"},
                                                 {"exit2", "yes"},
                                                 {"block_party", "true"},
                                                 {"block_songs", "4"},
                                                 {"play", "1"}});
    ASSERT_TRUE(parsed.order) << parsed.error;
    fake.folder.Write("qxsm.ini", break_order_file(*parsed.order));
    link.SM_Check();
    EXPECT_EQ(station.SM_State, 1);
    EXPECT_DOUBLE_EQ(station.Break_Start, TimeSerial(21, 30, 0));
    EXPECT_DOUBLE_EQ(station.Break_End, TimeSerial(22, 15, 30));
    EXPECT_DOUBLE_EQ(station.Break_Date, DateSerial(2026, 3, 11));
    EXPECT_FALSE(station.Brk_Exit1);
    EXPECT_TRUE(station.Brk_Exit2);
    EXPECT_TRUE(station.Brk_BP);
    EXPECT_EQ(station.Brk_BPSongs, 4);
    EXPECT_FALSE(station.Brk_CD);
    EXPECT_FALSE(station.Brk_Skip);
    EXPECT_TRUE(station.Brk_Play);

    for (const std::map<std::string, std::string>& bad :
         {std::map<std::string, std::string>{{"start", "21:30"}},
          {{"start", "24:00"}, {"end", "22:00"}},
          {{"start", "21:30"}, {"end", "22:00"}, {"date", "2026-02-29"}},
          {{"start", "21:30"}, {"end", "22:00"}, {"skip", "maybe"}},
          {{"start", "21:30"}, {"end", "22:00"}, {"block_songs", "-1"}}}) {
        const BreakParse refused =
            parse_break_order(std::multimap<std::string, std::string>(bad.begin(), bad.end()));
        EXPECT_FALSE(refused.order);
        EXPECT_NE(refused.error, "");
    }
}

}  // namespace
}  // namespace tavora
