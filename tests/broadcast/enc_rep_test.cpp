#include <gtest/gtest.h>

#include <filesystem>

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
    rep_.set("Text1", -1, "0");
    rep_.fire("UpDown1", -1, "Change");
    EXPECT_EQ(rep_.Enc_Obj()->RecordMaxSize(), 0);
    rep_.set("Text1", -1, "7");
    EXPECT_EQ(rep_.Enc_Obj()->RecordMaxSize(), 0);  // typing alone changes nothing
    rep_.fire("UpDown1", -1, "Change");
    EXPECT_EQ(rep_.Enc_Obj()->RecordMaxSize(), 7'000);
    rep_.set("Text1", -1, "0");
    rep_.fire("UpDown1", -1, "Change");

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
    const std::string& report = rep_.Report.Text;
    EXPECT_EQ(
        report.rfind("The Recorder has started.\r\nDescription: LAN, MP3\r\nIP Port: 0\r\n", 0), 0u)
        << report;
    const char* labels[] = {"AllowAudio: True",
                            "AudioFormatTag: 85",
                            "Bandwidth: 128000",
                            "StreamAlias: \r\n",
                            "NumClients: 0",
                            "RecordMaxSize: 0",
                            "RecordFileName: c:\\qxlan.asf",
                            "AllowVideo: False",
                            "ImageWidth: 0",
                            "BitsPerPixel: 0\r\n"};
    std::size_t at = 0;
    for (const char* label : labels) {
        const std::size_t found = report.find(label, at);
        ASSERT_NE(found, std::string::npos) << label << " after " << at << " in\n" << report;
        at = found;
    }
}

TEST_F(Recorder, WhileThePlayersRunOrWithABadProfileNothingStarts) {
    viewer_.Visible = true;
    rep_.click("StartCDQ");
    EXPECT_EQ(rep_.Enc_Obj(), nullptr);
    ASSERT_EQ(dialog_texts().size(), 1u);
    EXPECT_EQ(dialog_texts()[0],
              "WARNING! YOU MUST START RECORDING PRIOR TO RUNNING THE JUKEBOX PLAYERS ON MOST "
              "FULL DUPLEX CARDS.");

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

TEST_F(Recorder, StopWithAnEmptyTitleKeepsTheTempFileAndAsksNothingMore) {
    rep_.click("Start28");
    ASSERT_NE(rep_.Enc_Obj(), nullptr) << log_;
    render(3);
    const std::size_t before = dialogs_.shown().size();
    dialogs_.Queue(Answer::Cancel);
    rep_.click("Stop");
    EXPECT_EQ(rep_.Label2.Caption, "Recording has stopped");
    EXPECT_EQ(rep_.Start28.BackColor, EncRep::kButtonFace);
    ASSERT_EQ(dialogs_.shown().size(), before + 1);
    EXPECT_EQ(dialogs_.shown().back().request.text, "Enter Title for this Recording");
    EXPECT_EQ(dialogs_.shown().back().request.title, "New Selection Title");
    EXPECT_TRUE(std::filesystem::exists(temp("qx288f.asf")));
    EXPECT_GT(std::filesystem::file_size(temp("qx288f.asf")), 1000u);
}

TEST_F(Recorder, StopNamesSavesAndHandsTheRecordingToTheLibrary) {
    std::string added;
    rep_.Asf_Add = [&](const std::string& file) { added = file; };
    rep_.click("StartISDN");
    render(3);
    dialogs_.QueueText("Morning Show");
    dialogs_.QueueText("Tavora FM");
    dialogs_.QueueText("c:\\tavora\\Morning Show - Tavora FM.asf");
    dialogs_.Queue(Answer::Yes);
    rep_.click("Stop");
    const auto& shown = dialogs_.shown();
    ASSERT_GE(shown.size(), 4u);
    const auto& save = shown[shown.size() - 2].request;
    EXPECT_EQ(save.kind, DialogKind::Save);
    EXPECT_EQ(save.title, "Tavora Recorded File Save");
    EXPECT_EQ(save.filter, "ASF|*.asf");
    EXPECT_EQ(save.default_text, "Morning Show - Tavora FM");
    EXPECT_EQ(shown.back().request.text,
              "Would you like to load Morning Show - Tavora FM into the program director now?");
    EXPECT_EQ(shown.back().request.title, "Auto PM Load Wizard");
    EXPECT_EQ(added, "c:\\tavora\\Morning Show - Tavora FM.asf");
    EXPECT_FALSE(std::filesystem::exists(temp("qxisdf.asf")));
    EXPECT_GT(std::filesystem::file_size(home() / "Morning Show - Tavora FM.asf"), 1000u);
}

// A take whose temporary file went while it recorded, or that can't be copied where
// the operator chose, is told, and a copy that failed keeps the take where it was.
TEST_F(Recorder, ATakeThatCantBeSavedIsToldAndKeptWhereItCanBe) {
    rep_.click("Start28");
    render(3);
    dialogs_.QueueText("Lost Take");
    dialogs_.QueueText("Tavora FM");
    dialogs_.QueueText("c:\\tavora\\no\\such\\folder\\Lost Take - Tavora FM.asf");
    rep_.click("Stop");
    EXPECT_EQ(dialog_texts().back(),
              "The recording could not be saved as c:\\tavora\\no\\such\\folder\\Lost Take - "
              "Tavora FM.asf; it stays in c:\\qx288f.asf.");
    EXPECT_GT(std::filesystem::file_size(temp("qx288f.asf")), 1000u);

    bool handed = false;
    rep_.Asf_Add = [&](const std::string&) { handed = true; };
    dialogs_.Queue(Answer::Yes);  // the kept take goes
    rep_.click("Start28");
    ASSERT_NE(rep_.Enc_Obj(), nullptr) << log_;
    render(3);
    std::filesystem::remove(temp("qx288f.asf"));
    render(3);
    dialogs_.QueueText("Gone Take");
    dialogs_.QueueText("Tavora FM");
    dialogs_.QueueText("c:\\tavora\\Gone Take - Tavora FM.asf");
    rep_.click("Stop");
    EXPECT_EQ(dialog_texts().back(),
              "The temporary file c:\\qx288f.asf was deleted while recording: nothing could be "
              "saved.");
    EXPECT_FALSE(std::filesystem::exists(home() / "Gone Take - Tavora FM.asf"));
    EXPECT_FALSE(handed);
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
