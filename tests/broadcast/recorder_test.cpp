#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <mutex>
#include <regex>
#include <thread>
#include <tuple>

#include "audio/mix_tap.h"
#include "broadcast/enc_rep.h"
#include "broadcast/encoding/live_encoder.h"
#include "broadcast/encoding/server_stats.h"
#include "broadcast/profile.h"
#include "decoded.h"
#include "icecast_server.h"
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

using namespace std::chrono_literals;

// A station folder, an engine with the given output, and live encoders on its tap
// that log here.
class Encoding : public ::testing::Test {
  protected:
    explicit Encoding(audio::OutputKind output = audio::OutputKind::Offline) : station_(output) {}

    std::filesystem::path home() const { return folder_.path() / "tavora"; }
    std::unique_ptr<LiveEncoder> encoder_for(const std::string& profile_text, bool loads = true) {
        const auto profile = folder_.Write("tavora/test.asd", profile_text);
        auto encoder = std::make_unique<LiveEncoder>(tap_, paths_, titles_, logger());
        EXPECT_EQ(encoder->LoadASD(profile.string()), loads) << log();
        return encoder;
    }
    EncoderLog logger() {
        return [this](const std::string& l) {
            std::lock_guard lock(mutex_);
            log_ += l + "\n";
        };
    }
    // Renders `seconds` of the mix in the sizes a simulator step gives.
    void render(double seconds) {
        const auto frames = static_cast<std::size_t>(seconds * audio::kRate);
        for (std::size_t done = 0; done < frames; done += 4800)
            station_.render(std::min<std::size_t>(4800, frames - done));
    }
    void play(const std::string& media) {
        player_ = station_.open(media);
        player_->play();
    }
    std::string log() {
        std::lock_guard lock(mutex_);
        return log_;
    }
    std::size_t count_in_log(const std::string& words) {
        const std::string text = log();
        std::size_t n = 0;
        for (auto at = text.find(words); at != std::string::npos; at = text.find(words, at + 1))
            ++n;
        return n;
    }

    TestFolder folder_;
    PathMap paths_{home()};
    audio::test::OfflineStation station_;
    audio::MixTap tap_{station_.engine()};
    AirTitle titles_;
    std::shared_ptr<audio::Player> player_;
    std::mutex mutex_;
    std::string log_;
};

// The ten-minute programme on an offline engine.
class Recording : public Encoding {
  protected:
    void SetUp() override { play("ten_minutes.flac"); }
};

struct Kind {
    const char* codec;
    int bitrate, rate, channels;
    const char* decoded_as;
    int frame;  // the codec's largest block of samples
};

std::string kind_name(const ::testing::TestParamInfo<Kind>& kind) {
    return std::string(kind.param.codec) + std::to_string(kind.param.bitrate);
}

class RecordingKinds : public Recording, public ::testing::WithParamInterface<Kind> {};

// Ten minutes of the air, encoded and decoded back by FFmpeg's own decoders: the
// codec the profile asked for, the length to within a codec block and a tap block,
// the programme's level, and the size the encoder reported.
TEST_P(RecordingKinds, TenMinutesOfTheAirDecodeBackWhole) {
    const Kind k = GetParam();
    auto encoder = encoder_for(
        "codec = " + std::string(k.codec) + "\nbitrate = " + std::to_string(k.bitrate) +
        "\nsample_rate = " + std::to_string(k.rate) + "\nchannels = " + std::to_string(k.channels) +
        "\nfile = c:\\tavora\\air.rec\n");
    ASSERT_TRUE(encoder->Start()) << log();
    EXPECT_TRUE(encoder->IsRecording());
    render(600);
    encoder->Stop();
    EXPECT_FALSE(encoder->IsStarted());

    const auto file = home() / "air.rec";
    EXPECT_EQ(encoder->RecordSize(), static_cast<std::int64_t>(std::filesystem::file_size(file)));
    EXPECT_NEAR(encoder->RecordDuration(), 600.0, 0.1);
    const test::Decoded d = test::decode(file.string());
    ASSERT_TRUE(d.opened);
    EXPECT_EQ(d.codec, k.decoded_as);
    const double block = static_cast<double>(k.frame) / k.rate +
                         static_cast<double>(audio::MixRing::kBlockFrames) / audio::kRate;
    EXPECT_NEAR(d.seconds, 600.0, block);
    // Two tones at 0.4 peak: 0.28 RMS; lossy codecs at low rates lose a little.
    EXPECT_GT(d.rms, 0.2);
    EXPECT_LT(d.rms, 0.35);
    EXPECT_EQ(encoder->dropped_frames(), 0);
}

INSTANTIATE_TEST_SUITE_P(EveryCodec, RecordingKinds,
                         ::testing::Values(Kind{"wma", 128, 44100, 2, "wmav2", 2048},
                                           Kind{"mp3", 128, 44100, 2, "mp3", 1152},
                                           Kind{"mp3", 24, 22050, 1, "mp3", 576},
                                           Kind{"vorbis", 128, 44100, 2, "vorbis", 2048},
                                           Kind{"opus", 96, 48000, 2, "opus", 960}),
                         kind_name);

TEST_F(Recording, TheMaximumSizeEndsTheFileWhereItStandsAndItStillPlays) {
    auto encoder = encoder_for("codec = mp3\nbitrate = 128\nfile = c:\\tavora\\max.asf\n");
    encoder->RecordMaxSize(200'000);
    ASSERT_TRUE(encoder->Start());
    render(60);  // 960 kB at 128 kb/s, were there no limit
    EXPECT_FALSE(encoder->IsRecording());
    const auto size = std::filesystem::file_size(home() / "max.asf");
    EXPECT_GE(size, 200'000u);
    EXPECT_LT(size, 200'000u + 16'384u);  // at most a packet and the muxer's buffer over
    encoder->Stop();
    const test::Decoded d = test::decode((home() / "max.asf").string());
    EXPECT_NEAR(d.seconds, 200'000 * 8 / 128'000.0, 1.2);
    EXPECT_GT(d.rms, 0.2);
    EXPECT_EQ(count_in_log("reached its maximum size"), 1u) << log();
}

TEST_F(Recording, ACodecThatRefusesTheBitrateOrAMissingFolderStartsNothing) {
    auto refused = encoder_for("codec = wma\nbitrate = 20\nfile = c:\\tavora\\x.asf\n", false);
    EXPECT_FALSE(refused->Start());
    EXPECT_GE(count_in_log("wma refuses 20 kb/s at 44100 Hz, 2 channel(s)"), 1u) << log();
    auto away = encoder_for("codec = mp3\nfile = c:\\tavora\\no\\such\\x.asf\n");
    EXPECT_FALSE(away->Start());
    EXPECT_FALSE(away->IsStarted());
}

// /dev/full fails every write as a full disk does: the recording ends with its
// line in the log, and the air it was taking goes on.
TEST_F(Recording, AFullDiskEndsTheRecordingWithALineAndTheAirGoesOn) {
    auto encoder = encoder_for("codec = mp3\nbitrate = 128\nfile = z:\\dev\\full\n");
    ASSERT_TRUE(encoder->Start()) << log();
    render(20);
    EXPECT_FALSE(encoder->IsRecording());
    EXPECT_TRUE(encoder->IsStarted());
    EXPECT_EQ(count_in_log("failed (is the disk full?); the recording ends here, the air goes on"),
              1u)
        << log();
    const double heard = player_->CurrentPosition();
    render(5);
    EXPECT_NEAR(player_->CurrentPosition() - heard, 5.0, 0.1);
    encoder->Stop();
}

// The mixer's side of the hand-over never waits on air: what doesn't fit is counted.
// Offline, where there is no air, it waits for the consumer and loses nothing.
TEST(MixRing, OnAirAFullRingDropsAndCountsOfflineItWaits) {
    constexpr std::size_t kBlock = audio::MixRing::kBlockFrames;
    std::vector<float> block(kBlock * audio::kChannels, 0.25f);
    audio::MixRing live(4, false);
    for (int i = 0; i < 6; ++i)
        live.push(block.data(), kBlock);
    EXPECT_EQ(live.take_dropped(), 2 * static_cast<std::int64_t>(kBlock));
    EXPECT_EQ(live.take_dropped(), 0);

    audio::MixRing offline(4, true);
    std::size_t taken = 0;
    std::thread consumer([&] {
        for (; taken < 20 * kBlock; std::this_thread::yield()) {
            if (auto* b = offline.front()) {
                taken += b->frames;
                offline.release();
            }
        }
    });
    for (int i = 0; i < 20; ++i)
        offline.push(block.data(), kBlock);
    consumer.join();
    EXPECT_EQ(taken, 20 * kBlock);
    EXPECT_EQ(offline.take_dropped(), 0);
}

// Waits on `done` for at most `limit`: a generous limit, as it only counts when
// something is wrong.
bool eventually(const std::function<bool()>& done, std::chrono::seconds limit = 20s) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

// A real-time engine playing a tone on a loop, an encoder on its tap, and a real
// Icecast server on the loopback address.
class Streaming : public Encoding {
  protected:
    Streaming() : Encoding(audio::OutputKind::Null) {}
    void SetUp() override {
        ASSERT_TRUE(server_.start()) << "icecast2 did not start";
        play("tone.flac");
    }
    void TearDown() override {
        if (encoder_) encoder_->Stop();
    }

    void start(const std::string& codec, const std::string& mount,
               const std::string& password = test::IcecastServer::kPassword) {
        encoder_ =
            encoder_for("codec = " + codec +
                        "\nbitrate = 128\nsample_rate = 44100\nfile = c:\\tavora\\s.rec\n"
                        "icecast_host = 127.0.0.1\nicecast_port = " +
                        std::to_string(server_.port()) + "\nicecast_mount = " + mount +
                        "\nicecast_password = " + password + "\nicecast_name = Tavora test\n");
        ASSERT_TRUE(encoder_->Start()) << log();
        EXPECT_TRUE(encoder_->IsNetEnabled());
        EXPECT_EQ(encoder_->IPPort(), server_.port());
        EXPECT_EQ(encoder_->StreamAlias(), mount);
    }
    bool title_shows(const std::string& mount, const std::string& title) {
        return eventually([&] { return TitleOf(server_.status(), mount) == title; });
    }

    test::IcecastServer server_{folder_.path() / "icecast"};
    std::unique_ptr<LiveEncoder> encoder_;
};

class Streams : public Streaming, public ::testing::WithParamInterface<const char*> {};

// MP3 carries the titles beside the stream, Ogg in its own comments.
TEST_P(Streams, AListenerHearsTheAirWithItsTitlesAndAServerRestartIsSurvived) {
    const std::string codec = GetParam();
    const std::string mount = codec == "mp3" ? "/tavora.mp3" : "/tavora.ogg";
    titles_.set("First Song - The Band");
    start(codec, mount);
    ASSERT_TRUE(title_shows(mount, "First Song - The Band")) << log() << server_.status();

    // A listener for longer than the encoder's poll of the server's listener count.
    auto listener =
        std::async(std::launch::async, [&] { return test::decode(server_.url(mount), 8.0); });
    EXPECT_TRUE(eventually([&] { return encoder_->numclients() == 1; })) << log();
    const test::Decoded heard = listener.get();
    ASSERT_TRUE(heard.opened);
    EXPECT_EQ(heard.codec, codec);
    EXPECT_GE(heard.seconds, 7.9);
    EXPECT_GT(heard.rms, 0.2);  // the tone at 0.28 RMS, not silence

    titles_.set("Second Song - Other Band");
    EXPECT_TRUE(title_shows(mount, "Second Song - Other Band")) << log();

    server_.stop();
    EXPECT_TRUE(eventually([&] { return count_in_log("lost") == 1; })) << log();
    ASSERT_TRUE(server_.start());
    EXPECT_TRUE(eventually([&] { return count_in_log("stream: connected") == 2; })) << log();
    EXPECT_TRUE(title_shows(mount, "Second Song - Other Band")) << log();
    const test::Decoded again = test::decode(server_.url(mount), 2.0);
    ASSERT_TRUE(again.opened) << log();
    EXPECT_GE(again.seconds, 1.9);
    EXPECT_GT(again.rms, 0.2);
    EXPECT_TRUE(encoder_->IsRecording());  // the file went on all along
}

INSTANTIATE_TEST_SUITE_P(MetadataKinds, Streams, ::testing::Values("mp3", "vorbis"));

TEST_F(Streaming, AWrongPasswordIsLoggedAndRetriedWhileTheRecordingGoesOn) {
    start("mp3", "/tavora.mp3", "not-the-password");
    ASSERT_TRUE(eventually([&] { return count_in_log("refused the login") >= 2; })) << log();
    EXPECT_EQ(count_in_log(
                  "stream: attempt 1 to reach http://127.0.0.1:" + std::to_string(server_.port()) +
                  "/tavora.mp3 failed: the server refused the login of user \"source\""),
              1u)
        << log();
    EXPECT_EQ(count_in_log("next attempt in 1 s"), 1u) << log();
    EXPECT_EQ(count_in_log("next attempt in 2 s"), 1u) << log();
    EXPECT_TRUE(encoder_->IsRecording());
    EXPECT_GT(encoder_->RecordSize(), 10'000);
    EXPECT_EQ(ListenersOf(server_.status(), "/tavora.mp3"), -1);  // no such mount
}

// A server that stops answering mid-stream holds up neither the air, nor the
// recording, nor the operator's Stop, whatever call the stream was in.
TEST_F(Streaming, AHungServerHoldsUpNeitherTheRecordingNorTheStop) {
    titles_.set("Before - The Band");
    start("mp3", "/tavora.mp3");
    ASSERT_TRUE(title_shows("/tavora.mp3", "Before - The Band")) << log();

    server_.freeze();
    titles_.set("While Hung - The Band");  // a title update waits on the server's answer
    const std::int64_t size = encoder_->RecordSize();
    EXPECT_TRUE(eventually([&] { return encoder_->RecordSize() > size + 20'000; })) << log();
    EXPECT_TRUE(encoder_->IsRecording());

    // Stop gives up on a hung stream after a couple of seconds; waiting far longer
    // tells a slow machine from a Stop that hangs.
    auto stopped = std::async(std::launch::async, [this] { encoder_->Stop(); });
    EXPECT_EQ(stopped.wait_for(20s), std::future_status::ready) << log();
    server_.thaw();
    stopped.wait();
    EXPECT_FALSE(encoder_->IsStarted());
}

constexpr double kDay = 46000.5;
constexpr double kMsPerDay = 86'400'000.0;

// The recorder window over a real encoder on an offline engine, with the profiles
// an install writes; the temporary files land beside the install folder (c:).
class Recorder : public Encoding {
  protected:
    void SetUp() override {
        std::filesystem::create_directories(home());
        for (const auto& [name, profile] : StandardProfiles())
            ASSERT_EQ(WriteProfile(home() / name, profile), "");
    }
    std::filesystem::path temp(const std::string& name) const { return folder_.path() / name; }
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
        ASSERT_NE(rep_.Enc_Obj(), nullptr) << log();
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

    VirtualClock clock_{kDay};
    VirtualScheduler loop_{clock_};
    ScriptedDialogs dialogs_;
    RecordingLauncher launcher_;
    Random random_;
    Services services_{clock_, loop_, dialogs_, paths_, launcher_, random_};
    Form viewer_{"frmViewer"};
    EncRep rep_{services_, viewer_, live_encoders(tap_, paths_, logger())};
};

TEST_F(Recorder, AButtonAsksAboutAnOldTempFileRecordsAndShowsItsLabels) {
    folder_.Write("qxlan.asf", "an old take");
    rep_.Form_Load();
    rep_.Option2.Value = -1;  // MP3
    rep_.Option1.Value = 0;
    rep_.set("Text1", -1, "50");
    dialogs_.Queue(Answer::Yes);  // delete the old temp file
    ASSERT_TRUE(rep_.click("StartLAN"));
    ASSERT_NE(rep_.Enc_Obj(), nullptr) << log();
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
    EXPECT_NE(log().find("liveisdf.asd: cannot read "), std::string::npos) << log();
    std::ofstream(home() / "live56kf.asd") << "codec = wma\nbitrate = 128\nvolume = 11\n";
    rep_.click("Command1");
    EXPECT_EQ(dialog_texts().back(), "ASD file not loaded.");
    EXPECT_EQ(rep_.Enc_Obj(), nullptr);
    EXPECT_EQ(rep_.Command1.BackColor, EncRep::kButtonFace);
    EXPECT_NE(log().find("unknown key \"volume\""), std::string::npos) << log();

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
