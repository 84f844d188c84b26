#include "playback/form1.h"

#include <algorithm>
#include <cmath>

#include "core/log/play_log.h"
#include "core/settings/session_file.h"
#include "core/windows/qx_main.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/path_map.h"
#include "playback/playback.h"
#include "runtime/convert.h"
#include "runtime/strings.h"

namespace tavora {

namespace {

// The fields of a disc's rows, by ordinal.
namespace cd {
constexpr int Title = 1;
constexpr int Artist = 2;
constexpr int Album = 3;
constexpr int LongTitle = 7;
constexpr int MinTime = 11;
constexpr int MaxPlayDay = 13;
constexpr int MaxPlayWeek = 15;
constexpr int MaxMonth = 17;
constexpr int Track = 30;
constexpr int On = 31;
constexpr int Format = 38;
constexpr int MixOut = 40;
constexpr int Length = 58;
}  // namespace cd

constexpr const char* kInUse =
    "The CD is in use, Please unload the program causing the problem and re-start the Tavora";

// Minutes, seconds and frames of an MCI time, "mm:ss:ff" from `at` on.
int msf_sum(const std::string& text, std::size_t at = 1) {
    return static_cast<int>(Val(Mid(text, at, 2)) + Val(Mid(text, at + 3, 2)) +
                            Val(Mid(text, at + 6, 2)));
}

double seconds_of(const std::string& msf) {
    return Val(Mid(msf, 1, 2)) * 60 + Val(Mid(msf, 4, 2));
}

}  // namespace

Form1::Form1(Station& station, const Services& services, LibraryPool& pool, Mci& mci,
             Playback& playback, QXMain& main)
    : Form("Form1"),
      Data1(pool),
      s_(station),
      services_(services),
      mci_(mci),
      playback_(playback),
      main_(main),
      timer1_(services.loop.CreateTimer([this] { Timer1_Timer(); })) {
    Caption = "Tavora CD Player";
    play.Caption = "Play";
    pause.Caption = "Pause";
    stopbtn.Caption = "Stop";
    eject.Caption = "Eject";
    ff.Caption = ">>";
    rew.Caption = "<<";
    ftrack.Caption = ">|";
    btrack.Caption = "|<";
    Seek_Trk.Caption = "Go To Track";
    Speed.Caption = "Speed";
    CmdHide.Caption = "Hide";
    cmdClose.Caption = "Close";
    TrackOn.Caption = "Play this track";
    timer1_->SetInterval(1000);
    on_click("play", [this](int) { play_Click(); });
    on_click("pause", [this](int) { pause_Click(); });
    on_click("stopbtn", [this](int) { stopbtn_Click(); });
    on_click("eject", [this](int) { eject_Click(); });
    on_click("ff", [this](int) { ff_Click(); });
    on_click("rew", [this](int) { rew_Click(); });
    on_click("ftrack", [this](int) { ftrack_Click(); });
    on_click("btrack", [this](int) { btrack_Click(); });
    on_click("Seek_Trk", [this](int) {
        CD_SeekTo = static_cast<int>(Val(TrackNo.Text));
        Seek_Trk_Click();
    });
    on_click("Speed", [this](int) { Speed_Click(); });
    on_click("CmdHide", [this](int) { CmdHide_Click(); });
    on_click("cmdClose", [this](int) { cmdClose_Click(); });
    on_click("DBGrid1", [this](int) { DBGrid1_Click(); });
    on_click("TrackOn", [this](int) { TrackOn_Click(); });
    no_disc();
}

Form1::~Form1() = default;

bool Form1::Mci_Do(const std::string& command, bool report) {
    const int code = mci_.mciSendString(command, reply_);
    if (reply_.size() > 30) reply_.resize(30);
    if (report && code != 0 && code != mci::kDuplicateAlias)
        services_.dialogs.MsgBox(mci::error_text(code));
    return code == 0;
}

void Form1::Form_Load() {
    if (Loaded) return;
    Loaded = true;
    Data1.DatabaseName = services_.paths.ToNative(s_.Act_Db).path;
    if (!Mci_Do("open cdaudio alias cd wait shareable", true)) services_.dialogs.MsgBox(kInUse);
    Mci_Do("set cd time format tmsf wait", false);
    timer1_->SetEnabled(true);
}

void Form1::Form_Unload() {
    Mci_Do("close all", false);
    timer1_->SetEnabled(false);
    CD_Loaded = false;
    Loaded = false;
    Visible = false;
    no_disc();
}

void Form1::Timer1_Timer() {
    if (CD_Wait == 1) {
        CD_Wait = 0;
        ftrack_Click();
    }
    CD_Poll();
}

void Form1::CD_Poll() {
    if (!Mci_Do("status cd media present", false) || reply_ != "true") {
        no_disc();
        return;
    }
    if (!CD_Loaded) {
        enter_disc();
        return;
    }
    later_second();
}

void Form1::no_disc() {
    // A disc taken out under the air gives the air back at once: nothing
    // else would, since the tick stands aside while the CD has it.
    if (s_.CD_Mode == 2) {
        s_.CD_Mode = 3;
        s_.Slot_Started[kCdSlot] = 1;
        s_.Slot_Ready[kCdSlot] = 0;
    } else if (s_.CD_Mode == 1) {
        s_.CD_Mode = 0;
        s_.Slot_Started[kCdSlot] = 1;
        s_.Slot_Ready[kCdSlot] = 0;
    }
    enable_buttons(false);
    timeWindow.Caption.clear();
    tracktime.Caption.clear();
    Label1.Caption.clear();
    Label2.Caption.clear();
    Frame1.Caption.clear();
    DBGrid1.Clear();
    CD_Loaded = false;
    CD_Playing = false;
    CD_Track = 0;
}

void Form1::enable_buttons(bool on) {
    for (Control* button : {&play, &pause, &stopbtn, &eject, &ff, &rew, &ftrack, &btrack, &Seek_Trk,
                            &Speed, &TrackOn})
        button->Enabled = on;
}

void Form1::enter_disc() {
    DBGrid1.Visible = false;
    Mci_Do("status cd number of tracks wait", false);
    CD_Tracks = static_cast<int>(Val(tavora::Left(reply_, 2)));
    eject.Enabled = true;
    // One track: a data disc, or nothing to catalogue.
    if (CD_Tracks <= 1) return;

    Mci_Do("status cd length wait", false);
    const std::string total = reply_;
    Label2.Caption = "Tracks: " + std::to_string(CD_Tracks) + "  Total time: " + total;
    long id = static_cast<long>(msf_sum(total)) * CD_Tracks;
    CD_TrackLen.assign(CD_Tracks + 1, {});
    for (int t = 1; t <= CD_Tracks; ++t) {
        Mci_Do("status cd length track " + std::to_string(t), false);
        CD_TrackLen[t] = reply_;
    }
    id += msf_sum(CD_TrackLen[1]);
    s_.CD_Disc = static_cast<int>(id);
    s_.CD_Id = "CD" + std::to_string(id);
    Label1.Caption = "ID = " + std::to_string(id);

    if (find_disc_rows()) {
        s_.CD_Mode = 1;
    } else {
        catalogue_disc();
        find_disc_rows();
    }
    show_rows();
    DBGrid1.Visible = true;
    enable_buttons(true);
    CD_Loaded = true;
    CD_Track = 0;
    Mci_Do("seek cd to 1", false);
}

bool Form1::find_disc_rows() {
    Data1.RecordSource = "CDNow";
    Data1.Refresh();
    first_row_ = last_row_ = -1;
    int count = 0;
    for (rows().MoveFirst(); !rows().IsEOF(); rows().MoveNext()) {
        if (rows().Fields(cd::Format).text() != s_.CD_Id) continue;
        if (first_row_ < 0) first_row_ = rows().AbsolutePosition();
        last_row_ = rows().AbsolutePosition();
        ++count;
    }
    if (first_row_ < 0) return false;
    rows().MoveFirst();
    rows().Move(first_row_);
    if (count != CD_Tracks) {
        services_.dialogs.MsgBox(
            "Another disc is catalogued under ID = " + std::to_string(s_.CD_Disc) +
                ". Its titles are shown for this disc.",
            Buttons::OKOnly, "Same CD ID");
    }
    return true;
}

void Form1::catalogue_disc() {
    // The tick waits while the operator types; a transport that wasn't
    // running before isn't started by the entry.
    Timer& viewer_timer = playback_.TimerViewer();
    const bool ticking = viewer_timer.Enabled();
    viewer_timer.SetEnabled(false);
    Dialogs& ask = services_.dialogs;
    std::string disc = ask.InputBox("Enter Title For This CD", "Enter Title");
    if (disc.empty()) disc = s_.CD_Id;

    // Every answer is asked before the first row is written, so the rows go
    // in one after another with no question between them.
    struct Names {
        std::string title, artist;
    };
    std::vector<Names> names(CD_Tracks + 1);
    bool skipping = false;
    auto answer = [&](const std::string& prompt, const std::string& title,
                      const std::string& fallback) {
        std::string text = skipping ? std::string() : ask.InputBox(prompt, title);
        if (!text.empty()) return text;
        if (!skipping)
            skipping = ask.MsgBox("Do You Want To Skip entering The rest of the info?",
                                  Buttons::YesNo, "Skip Entry?") == Answer::Yes;
        return fallback;
    };
    for (int t = 1; t <= CD_Tracks; ++t) {
        names[t].title =
            answer("Enter Title For Track#" + std::to_string(t), "Enter Title", "Track" + Str(t));
        names[t].artist =
            answer("Enter Artist For Track#" + std::to_string(t), "Enter Artist", s_.CD_Id);
    }

    for (int t = 1; t <= CD_Tracks; ++t) {
        Recordset& row = rows();
        row.AddNew();
        row.SetField(cd::Title, Value(names[t].title));
        row.SetField(cd::Artist, Value(names[t].artist));
        row.SetField(cd::Album, Value("CD Media - " + disc));
        row.SetField(cd::LongTitle, Value(s_.CD_Id + Str(t)));
        row.SetField(cd::Track, Value(std::to_string(t)));
        row.SetField(cd::On, Value("On"));
        row.SetField(cd::Format, Value(s_.CD_Id));
        row.SetField(cd::MinTime, Value::date(1.0 / 24.0));
        row.SetField(cd::MaxPlayDay, Value(12.0));
        row.SetField(cd::MixOut, Value(9.0));
        row.SetField(cd::MaxPlayWeek, Value(80.0));
        row.SetField(cd::MaxMonth, Value(320.0));
        row.SetField(cd::Length, Value::date(seconds_of(CD_TrackLen[t]) / 86'400.0));
        if (!row.Update()) {
            ask.MsgBox("The CD's titles could not be saved: " + row.error(), Buttons::OKOnly,
                       "Tavora CD Player");
            break;
        }
    }
    if (ticking) viewer_timer.SetEnabled(true);
}

void Form1::show_rows() {
    DBGrid1.Clear();
    if (first_row_ < 0) return;
    Recordset& row = rows();
    row.MoveFirst();
    row.Move(first_row_);
    for (long at = first_row_; at <= last_row_ && !row.IsEOF(); ++at, row.MoveNext()) {
        DBGrid1.AddItem(row.Fields(cd::Track).text() + "  " + row.Fields(cd::Title).text() + " - " +
                        row.Fields(cd::Artist).text() + "  " + row.Fields(cd::On).text());
    }
    row.MoveFirst();
    row.Move(first_row_);
    DBGrid1.ListIndex = 0;
    TrackOn.Value = row.Fields(cd::On).text() == "On" ? 1 : 0;
}

void Form1::DBGrid1_Click() {
    if (first_row_ < 0 || DBGrid1.ListIndex < 0) return;
    rows().MoveFirst();
    rows().Move(first_row_ + DBGrid1.ListIndex);
    TrackOn.Value = rows().Fields(cd::On).text() == "On" ? 1 : 0;
}

void Form1::TrackOn_Click() {
    if (first_row_ < 0 || rows().IsEOF() || rows().Fields(cd::Format).text() != s_.CD_Id) return;
    const int listed = DBGrid1.ListIndex;
    rows().Edit();
    rows().SetField(cd::On, Value(TrackOn.Value == 1 ? "On" : "Off"));
    rows().Update();
    Data1.Refresh();
    show_rows();
    DBGrid1.ListIndex = listed;
    DBGrid1_Click();
}

void Form1::later_second() {
    Mci_Do("status cd position", false);
    const std::string position = reply_;
    const int track = static_cast<int>(Val(tavora::Left(position, 2)));
    if (track != CD_Track && track >= 1 && track <= CD_Tracks) new_track(track);
    if (s_.CD_Mode == 2 || mix_flag_) mix_back();
    Mci_Do("status cd position", false);
    timeWindow.Caption =
        "[" + tavora::Left(reply_, 2) + "] " + Mid(reply_, 4, 2) + ":" + Mid(reply_, 7, 2);
    if (CD_Track >= 1 && CD_Track <= CD_Tracks)
        tracktime.Caption = "Track time: " + CD_TrackLen[CD_Track];
    Mci_Do("status cd mode", false);
    CD_Playing = reply_ == "playing";
}

void Form1::new_track(int track) {
    if (s_.CD_Mode == 2 || s_.CD_Mode == 3) {
        mix_flag_ = true;
        s_.CD_Mode = 1;
        Mci_Do("stop cd wait", false);
        Mci_Do("seek cd to " + std::to_string(track), false);
        CD_Playing = false;
    }
    // The viewer's tick waits while the rows are walked, and goes on after.
    const bool ticking = playback_.TimerViewer().Enabled();
    if (playback_.viewer().Visible) playback_.TimerViewer().SetEnabled(false);
    CD_Track = track;
    DBGrid1.Visible = false;
    Data1.Refresh();
    Recordset& row = rows();
    bool found = false;
    for (row.MoveLast(); !row.IsBOF(); row.MovePrevious()) {
        if (row.Fields(cd::Format).text() == s_.CD_Id &&
            Val(row.Fields(cd::Track).text()) == track) {
            found = true;
            break;
        }
    }
    if (found && first_row_ >= 0) DBGrid1.ListIndex = row.AbsolutePosition() - first_row_;
    DBGrid1.Visible = true;
    const Value& album = found ? row.Fields(cd::Album) : Value();
    const Value& on = found ? row.Fields(cd::On) : Value();
    Frame1.Caption = album.is_null() ? "??" : album.text();
    TrackOn.Value = !on.is_null() && on.text() == "On" ? 1 : 0;
    if (on.is_null() || on.text() == "Off") CD_Wait = 1;
    log_text_ =
        found ? row.Fields(cd::Title).text() + " - " + row.Fields(cd::Artist).text() + " - Tavora"
              : "Track" + Str(track) + " - Tavora";
    Caption = log_text_;
    if (ticking) playback_.TimerViewer().SetEnabled(true);
}

void Form1::mix_back() {
    mix_flag_ = false;
    main_.Caption = Caption;
    if (CD_Track < 1 || CD_Track > CD_Tracks) return;
    Mci_Do("status cd position", false);
    CD_MixLeft = seconds_of(CD_TrackLen[CD_Track]) - seconds_of(Mid(reply_, 4, 5));
    const bool on_row =
        !rows().IsEOF() && !rows().IsBOF() && rows().Fields(cd::Format).text() == s_.CD_Id;
    const double mix_out = on_row ? rows().Fields(cd::MixOut).number() : 9;
    if (CD_MixLeft > mix_out) return;
    if (s_.CD_Mode == 2 && s_.Log_Due == 0) {
        s_.Log_Line = cd_line(services_.clock.Now(), log_text_);
        s_.Log_Due = 1;
    }
    s_.CD_Mode = 3;
    s_.Slot_Started[kCdSlot] = 1;
    s_.Slot_Ready[kCdSlot] = 0;
    Control& line = playback_.viewer().Label1(0);
    line.Caption += " Complete";
    Visible = false;
    if (playback_.viewer().Visible) {
        playback_.viewer().CDButt.Caption = "View CD";
        playback_.viewer().CDButt.BackColor = frmViewer::kOff;
    }
}

void Form1::play_Click() {
    Mci_Do("play cd", true);
}

void Form1::pause_Click() {
    Mci_Do("pause cd", true);
}

void Form1::stopbtn_Click() {
    Mci_Do("stop cd wait", true);
    Mci_Do("seek cd to " + std::to_string(std::max(CD_Track, 1)), true);
    s_.CD_Mode = 1;
    s_.Slot_Started[kCdSlot] = 1;
    s_.Slot_Ready[kCdSlot] = 0;
    StatusText.Caption = "CD Was Stopped";
}

void Form1::eject_Click() {
    Mci_Do("set cd door open", true);
}

void Form1::wind(int direction) {
    Mci_Do("set cd time format milliseconds", true);
    if (Mci_Do("status cd position wait", true)) {
        const double to = std::max(0.0, Val(reply_) + direction * FF_Step * 1000.0);
        Mci_Do("play cd from " + std::to_string(std::lround(to)), true);
    }
    Mci_Do("set cd time format tmsf", true);
}

void Form1::Speed_Click() {
    const std::string answer = services_.dialogs.InputBox(
        "Enter the new speed in seconds", "Fast Forward Speed", std::to_string(FF_Step));
    if (Val(answer) >= 1) FF_Step = static_cast<int>(Val(answer));
}

void Form1::ftrack_Click() {
    if (CD_Track + 1 > CD_Tracks) {
        Mci_Do("seek cd to 1", true);
        return;
    }
    go_to_track(CD_Track + 1);
}

void Form1::btrack_Click() {
    go_to_track(std::max(CD_Track - 1, 1));
}

void Form1::Seek_Trk_Click() {
    go_to_track(CD_SeekTo);
}

void Form1::go_to_track(int track) {
    if (track < 1 || track > CD_Tracks) {
        Mci_Do("seek cd to 1", true);
        return;
    }
    const bool playing = CD_Playing;
    Mci_Do("seek cd to " + std::to_string(track), true);
    if (playing) Mci_Do("play cd from " + std::to_string(track), true);
}

// The CD leaves the bank before the window closes, so closing hands nothing back.
void Form1::cmdClose_Click() {
    s_.CD_Mode = 0;
    s_.Slot_Started[kCdSlot] = 0;
    s_.Slot_Ready[kCdSlot] = 0;
    Form_Unload();
}

bool Form1::CDAutplay() {
    Visible = true;
    if (!Mci_Do("play cd", false)) return false;
    // A track the drive is still reading would hold the air: the bank goes
    // on, and the CD waits for the next set's end.
    Mci_Do("status cd mode", false);
    if (reply_ == "playing") return true;
    Mci_Do("stop cd wait", false);
    return false;
}

void Form1::cd_seek(int track) {
    CD_SeekTo = track;
    Seek_Trk_Click();
}

void Form1::CDButt_Click() {
    frmViewer& viewer = playback_.viewer();
    Control& button = viewer.CDButt;
    if (button.Caption == "View CD") {
        button.Caption = "Hide CD";
        button.BackColor = frmViewer::kOn;
        Form_Load();
        if (const Form* request = playback_.request.form) Top = request->Top;
        Height = 1400;
        Visible = true;
        if (s_.CD_Mode == 0) Ply7_Was = s_.Ply7_On;
        s_.Ply7_On = 0;
        viewer.Cmd7th.Caption = "Ply7 Off";
        viewer.Cmd7th.BackColor = frmViewer::kOff;
        viewer.CmdSc.Visible = false;
        s_.CD_On = true;
    } else {
        button.Caption = "View CD";
        button.BackColor = frmViewer::kOff;
        Visible = false;
        if (s_.CD_Mode == 0 && Ply7_Was == 1) playback_.Cmd7th_Click();
        s_.CD_On = false;
    }
    BP_Ini(s_, services_.paths.install_folder() / "qxbp.ini");
}

}  // namespace tavora
