#include "broadcast/enc_rep.h"

#include "platform/dialogs.h"
#include "platform/file_ops.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "runtime/convert.h"

namespace tavora {

namespace {

struct Quality {
    const char* button;
    const char* caption;
    const char* temp;
    const char* asf;
    const char* mp3;
    const char* failure;
};

constexpr const char* kNotInstalled =
    "The Windows media encoder is not installed on this machine! Download it and retry";

constexpr Quality kQuality[EncRep::kQualities] = {
    {"Start28", "28.8K", "c:\\qx288f.asf", "c:\\tavora\\live288f.asd", "c:\\tavora\\mp3288f.asd",
     kNotInstalled},
    {"Command1", "56K", "c:\\qx56kf.asf", "c:\\tavora\\live56kf.asd", "c:\\tavora\\mp356kf.asd",
     "ASD file not loaded."},
    {"StartISDN", "ISDN", "c:\\qxisdf.asf", "c:\\tavora\\liveisdf.asd", "c:\\tavora\\mp3isdf.asd",
     "Recorder Aborted"},
    {"StartLAN", "LAN", "c:\\qxlan.asf", "c:\\tavora\\livelanf.asd", "c:\\tavora\\mp3lanf.asd",
     kNotInstalled},
    {"StartCDQ", "CD Qual", "c:\\qxcdqf.asf", "c:\\tavora\\livecdqf.asd", "c:\\tavora\\mp3cdqf.asd",
     "Recorder Aborted"},
};

// Mixer programs of a Linux desktop, the first that starts wins.
constexpr const char* kVolumeControls[] = {"pavucontrol", "x-terminal-emulator -e alsamixer",
                                           "xterm -e alsamixer"};

}  // namespace

EncRep::EncRep(const Services& services, const Form& viewer, EncoderFactory encoders)
    : Form("EncRep"), services_(services), viewer_(viewer), encoders_(std::move(encoders)) {
    Caption = "Recording Live - Tavora Music System ";
    for (int q = 0; q < kQualities; ++q) {
        buttons()[q]->Caption = kQuality[q].caption;
        on_click(kQuality[q].button, [this, q](int) { Start_Quality(q); });
    }
    Start.Caption = "Custom";
    Stop.Caption = "Stop";
    Option1.Caption = "ASF Format";
    Option1.Value = -1;
    Option2.Caption = "MP3 Format";
    Text1.Text = "0";
    DoReportButton.Caption = "Refresh Report";
    Command2.Caption = "Volume Control";
    Command3.Caption = "Close Recorder";
    all_buttons_face();
    on_click("Start", [this](int) { Start_Click(); });
    on_click("Stop", [this](int) { Stop_Click(); });
    on_click("Option1", [this](int) {
        Option1.Value = -1;
        Option2.Value = 0;
    });
    on_click("Option2", [this](int) {
        Option2.Value = -1;
        Option1.Value = 0;
    });
    on("UpDown1", "Change", [this](int) { UpDown1_Change(); });
    on_click("DoReport", [this](int) { DoReport(); });
    on_click("Command2", [this](int) { V_see(); });
    on_click("Command3", [this](int) { Form_Unload(); });
}

std::string EncRep::native(const std::string& dos) const {
    return services_.paths.ToNative(dos).path;
}

void EncRep::Form_Load() {
    Loaded = true;
    if (!Timer1) {
        Timer1 = services_.loop.CreateTimer([this] { Timer1_Timer(); });
        Timer1->SetInterval(4000);
    }
    Timer1->SetEnabled(true);
}

void EncRep::Form_Unload() {
    if (enc_obj_) {
        enc_obj_->Stop();
        enc_obj_->Visible = false;
        enc_obj_.reset();
    }
    if (Timer1) Timer1->SetEnabled(false);
    all_buttons_face();
    Visible = false;
    Loaded = false;
}

void EncRep::all_buttons_face() {
    for (Control* button : buttons())
        button->BackColor = kButtonFace;
    Start.BackColor = kButtonFace;
}

void EncRep::TQX_Live() {
    Enc_Ok = 0;
    for (Control* button : buttons())
        if (button->BackColor == kGreen) Enc_Ok = 1;
    if (viewer_.Visible) {
        services_.dialogs.MsgBox(
            "WARNING! YOU MUST START RECORDING PRIOR TO RUNNING THE JUKEBOX PLAYERS ON MOST FULL "
            "DUPLEX CARDS.");
        Enc_Ok = 1;
    }
}

bool EncRep::create_object() {
    enc_obj_ = encoders_ ? encoders_(Air_Title) : nullptr;
    if (!enc_obj_) services_.dialogs.MsgBox("Object not loaded.");
    return enc_obj_ != nullptr;
}

void EncRep::check_temp() {
    if (!files::Exists(native(Enc_Temp))) return;
    if (services_.dialogs.MsgBox("There is an existing Temp file! It will be deleted. Is this Ok?",
                                 Buttons::YesNo) != Answer::No)
        files::Kill(native(Enc_Temp));
}

void EncRep::Start_Quality(int quality) {
    const Quality& q = kQuality[quality];
    TQX_Live();
    if (Enc_Ok == 1 || !create_object()) return;
    Enc_Temp = q.temp;
    check_temp();
    const std::string profile = Option1.Value != 0 ? q.asf : q.mp3;
    if (!enc_obj_->LoadASD(native(profile)) || !enc_obj_->Start()) {
        services_.dialogs.MsgBox(q.failure);
        enc_obj_.reset();
        Enc_Temp.clear();
        return;
    }
    started(*buttons()[quality]);
}

void EncRep::Start_Click() {
    TQX_Live();
    if (Enc_Ok == 1) return;
    const std::string chosen =
        services_.dialogs.OpenFile("Tavora Broadcast File Search", "ASD|*.asd", "c:\\tavora");
    if (chosen.empty()) {
        services_.dialogs.MsgBox("No File Loaded");
        return;
    }
    Start_Profile(native(chosen));
}

bool EncRep::Start_Profile(const std::string& native_profile) {
    if (!create_object()) return false;
    Enc_Temp.clear();
    if (!enc_obj_->LoadASD(native_profile) || !enc_obj_->Start()) {
        services_.dialogs.MsgBox("ASD file not loaded.");
        enc_obj_.reset();
        return false;
    }
    started(Start);
    return true;
}

void EncRep::started(Control& button) {
    enc_obj_->Visible = true;
    UpDown1_Change();
    DoReport();
    all_buttons_face();
    button.BackColor = kGreen;
    if (services_.dialogs.MsgBox("Would you like to open the Volume Control to set the "
                                 "recording level?",
                                 Buttons::YesNo, {}, Icon::Question, 2) == Answer::Yes)
        V_see();
    services_.dialogs.MsgBox("You must stop the encode first");
}

void EncRep::Timer1_Timer() {
    if (!enc_obj_ || !enc_obj_->IsRecording()) return;
    Label2.ForeColor = kRed;
    Label2.Caption = "Recording LIVE";
    Label3.Caption = enc_obj_->RecordFileName();
    Label4.Caption = std::to_string(enc_obj_->RecordSize()) + " Bytes";
}

void EncRep::UpDown1_Change() {
    if (enc_obj_) enc_obj_->RecordMaxSize(static_cast<std::int64_t>(Val(Text1.Text) * 1000));
}

void EncRep::Stop_Click() {
    if (enc_obj_) {
        enc_obj_->Stop();
        enc_obj_.reset();
    }
    all_buttons_face();
    Label2.Caption = "Recording has stopped";
    if (Enc_Temp.empty()) return;
    const std::string temp = Enc_Temp;
    Enc_Temp.clear();
    const std::string title =
        services_.dialogs.InputBox("Enter Title for this Recording", "New Selection Title");
    if (title.empty()) return;
    const std::string artist =
        services_.dialogs.InputBox("Enter Artist for this Recording", "New Selection Artist");
    const std::string name = title + " - " + artist;
    const std::string saved =
        services_.dialogs.SaveFile("Tavora Recorded File Save", "ASF|*.asf", "c:\\tavora", name);
    if (saved.empty()) return;
    if (!save_take(temp, saved)) return;
    if (!Asf_Add) return;
    if (services_.dialogs.MsgBox(
            "Would you like to load " + name + " into the program director now?", Buttons::YesNo,
            "Auto PM Load Wizard") != Answer::Yes)
        return;
    Asf_Add(saved);
}

// The rules copy without looking; an operator who loses a take must hear why.
bool EncRep::save_take(const std::string& temp, const std::string& saved) {
    if (!files::Exists(native(temp))) {
        services_.dialogs.MsgBox("The temporary file " + temp +
                                 " was deleted while recording: nothing could be saved.");
        return false;
    }
    if (!files::Copy(native(temp), native(saved))) {
        services_.dialogs.MsgBox("The recording could not be saved as " + saved + "; it stays in " +
                                 temp + ".");
        return false;
    }
    files::Kill(native(temp));
    return true;
}

void EncRep::DoReport() {
    if (!enc_obj_) {
        Report.Text = "Recorder is not Enabled.";
        return;
    }
    const Encoder& e = *enc_obj_;
    auto yes_no = [](bool b) { return std::string(b ? "True" : "False"); };
    auto num = [](auto n) { return std::to_string(n); };
    const std::pair<const char*, std::string> lines[] = {
        {"Description: ", e.Description()},
        {"IP Port: ", num(e.IPPort())},
        {"AllowAudio: ", yes_no(e.AllowAudio())},
        {"DelayBuffer: ", num(e.DelayBuffer())},
        {"AudioFormatTag: ", num(e.AudioFormatTag())},
        {"AudioSource: ", e.AudioSource()},
        {"Bandwidth: ", num(e.Bandwidth())},
        {"InputSourceFile: ", e.InputSourceFile()},
        {"StreamAlias: ", e.StreamAlias()},
        {"NumClients: ", num(e.numclients())},
        {"InputSourceFile: ", e.InputSourceFile()},
        {"RecordDuration: ", num(static_cast<long long>(e.RecordDuration()))},
        {"RecordMaxSize: ", num(e.RecordMaxSize())},
        {"RecordSize: ", num(e.RecordSize())},
        {"RecordFileName: ", e.RecordFileName()},
        {"AllowVideo: ", yes_no(e.AllowVideo())},
        {"ImageWidth: ", num(e.ImageWidth())},
        {"ImageHeight: ", num(e.ImageHeight())},
        {"FramesPerSecond: ", num(e.FramesPerSecond())},
        {"SecondsPerIFrame: ", num(e.SecondsPerIFrame())},
        {"BitsPerPixel: ", num(e.BitsPerPixel())},
    };
    std::string text = "The Recorder has started.\r\n";
    for (const auto& [label, value] : lines)
        text += label + value + "\r\n";
    Report.Text = text;
}

void EncRep::V_see() {
    for (const char* program : kVolumeControls)
        if (services_.launcher.Start(program)) return;
    services_.dialogs.MsgBox("Standard Windows Volume control not found");
}

}  // namespace tavora
