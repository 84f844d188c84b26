#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <tuple>

#include "audio/mix_tap.h"
#include "broadcast/enc_rep.h"
#include "broadcast/encoding/live_encoder.h"
#include "broadcast/profile.h"
#include "offline_station.h"
#include "platform/clock.h"
#include "platform/dialog_stand_ins.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "platform/virtual_scheduler.h"
#include "runtime/random.h"
#include "test_folder.h"

namespace tavora {
namespace {

constexpr double kDay = 46000.5;
constexpr double kMsPerDay = 86'400'000.0;

// The recorder window over a real encoder on an offline engine, with the profiles
// an install writes; the temporary files land beside the install folder (c:).
class Recorder : public ::testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::create_directories(home());
        for (const auto& [name, profile] : StandardProfiles())
            ASSERT_EQ(WriteProfile(home() / name, profile), "");
    }
    std::filesystem::path home() const { return folder_.path() / "tavora"; }
    std::filesystem::path temp(const std::string& name) const { return folder_.path() / name; }
    void render(double seconds) {
        station_.render(static_cast<std::size_t>(seconds * audio::kRate));
    }
    void tick(double seconds) { loop_.run_until(clock_.Now() + seconds * 1000 / kMsPerDay); }
    // The answers to Stop's questions: the title, the station, where to save.
    void name_take(const std::string& title, const std::string& save_as) {
        dialogs_.QueueText(title);
        dialogs_.QueueText("Tavora FM");
        dialogs_.QueueText(save_as);
    }
    // Starts a take with the button and records three seconds of it.
    void take(const char* button) {
        rep_.click(button);
        ASSERT_NE(rep_.Enc_Obj(), nullptr) << log_;
        render(3);
    }
    // The text and title of the last question.
    std::pair<std::string, std::string> asked() const {
        return {dialogs_.shown().back().request.text, dialogs_.shown().back().request.title};
    }
    std::vector<std::string> dialog_texts() const {
        std::vector<std::string> texts;
        for (const auto& shown : dialogs_.shown())
            texts.push_back(shown.request.text);
        return texts;
    }

    TestFolder folder_;
    VirtualClock clock_{kDay};
    VirtualScheduler loop_{clock_};
    ScriptedDialogs dialogs_;
    PathMap paths_{home()};
    RecordingLauncher launcher_;
    Random random_;
    Services services_{clock_, loop_, dialogs_, paths_, launcher_, random_};
    Form viewer_{"frmViewer"};
    audio::test::OfflineStation station_;
    audio::MixTap tap_{station_.engine()};
    std::string log_;
    EncRep rep_{services_, viewer_,
                live_encoders(tap_, paths_, [this](const std::string& l) { log_ += l + "\n"; })};
};

TEST_F(Recorder, AButtonAsksAboutAnOldTempFileRecordsAndShowsItsLabels) {
    folder_.Write("qxlan.asf", "an old take");
    rep_.Form_Load();
    rep_.Option2.Value = -1;  // MP3
    rep_.Option1.Value = 0;
    rep_.set("Text1", -1, "50");
    dialogs_.Queue(Answer::Yes);  // delete the old temp file
    ASSERT_TRUE(rep_.click("StartLAN"));
    ASSERT_NE(rep_.Enc_Obj(), nullptr) << log_;
    EXPECT_EQ(dialog_texts(),
              (std::vector<std::string>{
                  "There is an existing Temp file! It will be deleted. Is this Ok?",
                  "Would you like to open the Volume Control to set the recording level?",
                  "You must stop the encode first"}));
    EXPECT_EQ(rep_.StartLAN.BackColor, EncRep::kGreen);
    EXPECT_EQ(rep_.Start28.BackColor, EncRep::kButtonFace);
    EXPECT_EQ(rep_.Enc_Obj()->RecordFileName(), "c:\\qxlan.asf");
    EXPECT_EQ(rep_.Enc_Obj()->RecordMaxSize(), 50'000);  // the box as it stood at the start
    // Typing alone changes nothing; the arrows take the box as it stands.
    const std::tuple<const char*, bool, int> steps[] = {
        {"0", true, 0}, {"7", false, 0}, {"7", true, 7'000}, {"0", true, 0}};
    for (const auto& [text, arrows, size] : steps) {
        rep_.set("Text1", -1, text);
        if (arrows) rep_.fire("UpDown1", -1, "Change");
        EXPECT_EQ(rep_.Enc_Obj()->RecordMaxSize(), size) << text << arrows;
    }

    render(5);
    tick(4.5);
    EXPECT_EQ(rep_.Label2.Caption, "Recording LIVE");
    EXPECT_EQ(rep_.Label2.ForeColor, EncRep::kRed);
    EXPECT_EQ(rep_.Label3.Caption, "c:\\qxlan.asf");
    EXPECT_EQ(rep_.Label4.Caption, std::to_string(rep_.Enc_Obj()->RecordSize()) + " Bytes");
    EXPECT_GT(rep_.Enc_Obj()->RecordSize(), 11);  // more than the old take

    // A second press while one is green leaves the first recording alone.
    Encoder* first = rep_.Enc_Obj();
    ASSERT_TRUE(rep_.click("Command1"));
    EXPECT_EQ(rep_.Enc_Obj(), first);
    EXPECT_EQ(rep_.Enc_Ok, 1);
    EXPECT_EQ(rep_.StartLAN.BackColor, EncRep::kGreen);
    EXPECT_EQ(rep_.Command1.BackColor, EncRep::kButtonFace);

    rep_.DoReport();
    const std::regex varying("(DelayBuffer|RecordDuration|RecordSize): [0-9]+");
    EXPECT_EQ(std::regex_replace(rep_.Report.Text, varying, "$1: #"),
              "The Recorder has started.\r\nDescription: LAN, MP3\r\nIP Port: 0\r\n"
              "AllowAudio: True\r\nDelayBuffer: #\r\nAudioFormatTag: 85\r\n"
              "AudioSource: Tavora mix\r\nBandwidth: 128000\r\nInputSourceFile: \r\n"
              "StreamAlias: \r\nNumClients: 0\r\nInputSourceFile: \r\nRecordDuration: #\r\n"
              "RecordMaxSize: 0\r\nRecordSize: #\r\nRecordFileName: c:\\qxlan.asf\r\n"
              "AllowVideo: False\r\nImageWidth: 0\r\nImageHeight: 0\r\nFramesPerSecond: 0\r\n"
              "SecondsPerIFrame: 0\r\nBitsPerPixel: 0\r\n");
}

TEST_F(Recorder, WhileThePlayersRunOrWithABadProfileNothingStarts) {
    viewer_.Visible = true;
    rep_.click("StartCDQ");
    EXPECT_EQ(rep_.Enc_Obj(), nullptr);
    EXPECT_EQ(dialog_texts(),
              std::vector<std::string>{"WARNING! YOU MUST START RECORDING PRIOR TO RUNNING THE "
                                       "JUKEBOX PLAYERS ON MOST FULL DUPLEX CARDS."});

    viewer_.Visible = false;
    std::filesystem::remove(home() / "liveisdf.asd");
    rep_.click("StartISDN");
    EXPECT_EQ(dialog_texts().back(), "Recorder Aborted");
    std::ofstream(home() / "live56kf.asd") << "codec = wma\nbitrate = 128\nvolume = 11\n";
    rep_.click("Command1");
    EXPECT_EQ(dialog_texts().back(), "ASD file not loaded.");
    EXPECT_EQ(rep_.Enc_Obj(), nullptr);
    EXPECT_EQ(rep_.Command1.BackColor, EncRep::kButtonFace);
    EXPECT_NE(log_.find("unknown key \"volume\""), std::string::npos) << log_;

    dialogs_.Queue(Answer::Cancel);  // the Custom file dialog
    rep_.click("Start");
    EXPECT_EQ(dialog_texts().back(), "No File Loaded");
    EXPECT_EQ(dialogs_.shown().back().request.title, "");
    EXPECT_EQ(dialogs_.shown()[dialogs_.shown().size() - 2].request.title,
              "Tavora Broadcast File Search");

    EncRep no_encoder{services_, viewer_, {}};
    no_encoder.click("StartLAN");
    EXPECT_EQ(dialog_texts().back(), "Object not loaded.");
    no_encoder.DoReport();
    EXPECT_EQ(no_encoder.Report.Text, "Recorder is not Enabled.");
}

// Stop asks for a title: none keeps the temporary file; a name saves the take where
// the operator chose and offers it to the library. A take that can't be copied
// there stays where it was; one whose temporary file went is told of, and not handed.
TEST_F(Recorder, StopNamesAndSavesTheTakeOrKeepsItOrSaysItIsGone) {
    take("Start28");
    dialogs_.Queue(Answer::Cancel);
    rep_.click("Stop");
    EXPECT_EQ(rep_.Label2.Caption, "Recording has stopped");
    EXPECT_EQ(rep_.Start28.BackColor, EncRep::kButtonFace);
    // The last question: an empty title asks nothing more.
    EXPECT_EQ(asked(), (std::pair<std::string, std::string>("Enter Title for this Recording",
                                                            "New Selection Title")));
    EXPECT_GT(std::filesystem::file_size(temp("qx288f.asf")), 1000u);

    dialogs_.Queue(Answer::Yes);  // the kept take goes
    take("Start28");
    name_take("Lost Take", "c:\\tavora\\no\\such\\folder\\Lost Take - Tavora FM.asf");
    rep_.click("Stop");
    EXPECT_EQ(dialog_texts().back(),
              "The recording could not be saved as c:\\tavora\\no\\such\\folder\\Lost Take - "
              "Tavora FM.asf; it stays in c:\\qx288f.asf.");
    EXPECT_GT(std::filesystem::file_size(temp("qx288f.asf")), 1000u);

    std::vector<std::string> added;
    rep_.Asf_Add = [&](const std::string& file) { added.push_back(file); };
    take("StartISDN");
    name_take("Morning Show", "c:\\tavora\\Morning Show - Tavora FM.asf");
    dialogs_.Queue(Answer::Yes);
    rep_.click("Stop");
    const auto& save = dialogs_.shown()[dialogs_.shown().size() - 2].request;
    EXPECT_EQ(std::tie(save.kind, save.title, save.filter, save.default_text),
              std::make_tuple(DialogKind::Save, "Tavora Recorded File Save", "ASF|*.asf",
                              "Morning Show - Tavora FM"));
    EXPECT_EQ(asked(), (std::pair<std::string, std::string>(
                           "Would you like to load Morning Show - Tavora FM into the program "
                           "director now?",
                           "Auto PM Load Wizard")));
    EXPECT_EQ(added, std::vector<std::string>{"c:\\tavora\\Morning Show - Tavora FM.asf"});
    EXPECT_FALSE(std::filesystem::exists(temp("qxisdf.asf")));
    EXPECT_GT(std::filesystem::file_size(home() / "Morning Show - Tavora FM.asf"), 1000u);

    dialogs_.Queue(Answer::Yes);  // the kept take goes
    take("Start28");
    std::filesystem::remove(temp("qx288f.asf"));
    render(3);
    name_take("Gone Take", "c:\\tavora\\Gone Take - Tavora FM.asf");
    rep_.click("Stop");
    EXPECT_EQ(dialog_texts().back(),
              "The temporary file c:\\qx288f.asf was deleted while recording: nothing could be "
              "saved.");
    EXPECT_FALSE(std::filesystem::exists(home() / "Gone Take - Tavora FM.asf"));
    EXPECT_EQ(added.size(), 1u);
}

TEST_F(Recorder, TheVolumeControlIsTheDesktopsMixerOrThePartsMessage) {
    rep_.click("Command2");
    ASSERT_FALSE(launcher_.started.empty());
    EXPECT_EQ(launcher_.started[0], "pavucontrol");
    launcher_.succeed = false;
    rep_.click("Command2");
    EXPECT_EQ(dialog_texts().back(), "Standard Windows Volume control not found");
}

}  // namespace
}  // namespace tavora
