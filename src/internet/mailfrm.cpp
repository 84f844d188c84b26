#include "internet/mailfrm.h"

#include <optional>
#include <string>

#include "platform/dialogs.h"
#include "platform/path_map.h"
#include "runtime/convert.h"
#include "runtime/strings.h"
#include "runtime/text_file.h"

namespace tavora {

namespace {

constexpr const char* kMinutes[] = {"1", "2", "3", "5", "10", "15", "20", "30", "45", "60"};

std::string bool_text(bool on) {
    return on ? "True" : "False";
}

std::optional<bool> read_switch(TextReader& in) {
    const ReadResult item = in.read_item();
    return item.ok() ? parse_boolean(item.text) : std::nullopt;
}

// An item read into a 16-bit number: an empty item is 0, anything that
// isn't a number in range is a failed read.
std::optional<int> read_integer(TextReader& in) {
    const ReadResult item = in.read_item();
    if (!item.ok()) return std::nullopt;
    if (Trim(item.text).empty()) return 0;
    if (!IsNumeric(item.text)) return std::nullopt;
    const double number = Val(item.text);
    if (number < -32768.5 || number > 32767.5) return std::nullopt;
    return CInt(number);
}

std::optional<std::string> read_text(TextReader& in) {
    ReadResult item = in.read_item();
    if (!item.ok()) return std::nullopt;
    return std::move(item.text);
}

}  // namespace

Mailfrm::Mailfrm(Station& station, const Services& services, LibraryPool& pool)
    : Form("Mailfrm"), DataReq(pool), station_(station), services_(services) {
    Caption = "Tavora Internet Request Interface";
    for (int number = 5; number <= 9; ++number)
        add("Label" + std::to_string(number)).Caption = "None";
    Label12.Caption = "0";
    Label14.Caption = "0";
    Report.Text = "Request Errors\r\n";
    Frame2.Visible = false;
    Check1.Caption = "Enabled";
    Check2.Caption = "Auto Load";
    for (const char* minutes : kMinutes)
        Combo2.AddItem(minutes);
    Command1.Caption = "Update";
    Command1.ToolTipText = "Update For New Requests Now";
    Command2.Caption = "View Errors";
    Command3.Caption = "Save";
    Command4.Caption = "View Requests";
    Command5.Caption = "&Toggle History";
    Command6.Caption = "Reset";

    on_click("Check1", [this](int) {
        station_.IIS_On = Check1.Value == 1;
        TimerMail->SetEnabled(station_.IIS_On);
    });
    on_click("Check2", [this](int) { station_.IIS_AutoLoad = Check2.Value == 1; });
    on_click("Combo2", [this](int) {
        IIS_Minutes = CInt(Val(Combo2.selected_text()));
        IIS_MinLeft = IIS_Minutes;
    });
    on_click("Command1", [this](int) {
        IIS_MinLeft = 0;
        IIS_Tick = 0;
    });
    on_click("Command3", [this](int) { TQXi_Sav(); });
    on_click("Command6", [this](int) {
        if (services_.dialogs.MsgBox("This will reset the current request counts to (0). NOTE: "
                                     "Request counts are for your information only - Continue?",
                                     Buttons::YesNo) == Answer::Yes) {
            Label14.Caption = "0";
        }
    });
    on_click("Command2", [this](int) {
        Frame2.Visible = true;
        Frame1.Visible = false;
    });
    on_click("Command4", [this](int) {
        Frame1.Visible = true;
        Frame2.Visible = false;
    });
    on_click("Command5", [this](int) { List1.Visible = !List1.Visible; });

    TimerMail = services_.loop.CreateTimer([this] { TimerMail_Timer(); });
    TimerMail->SetInterval(10000);
}

std::filesystem::path Mailfrm::native(const std::string& dos) const {
    return services_.paths.ToNative(dos).path;
}

std::filesystem::path Mailfrm::ini_file() const {
    return native("c:\\tavora\\tqxiis.ini");
}

void Mailfrm::Form_Load() {
    Station& s = station_;
    DataReq.DatabaseName = native(s.Act_Db).string();
    DataReq.RecordSource = "Title Sort";
    Label4.Caption = "StandBy";
    if (IIS_Minutes < 1) IIS_Minutes = 5;
    TQXi_ini();
    if (!TimerMail->Enabled()) IIS_MinLeft = IIS_Minutes;
    TimerMail->SetEnabled(s.IIS_On);
    Check1.Value = s.IIS_On ? 1 : 0;
    Check2.Value = s.IIS_AutoLoad ? 1 : 0;
    s.IIS_Name = "TQXMS Direct";
    Combo2.Text = std::to_string(IIS_Minutes);
    IIS_Line = 0;
    Label12.Caption = std::to_string(IIS_Saved);
    Loaded = true;
    Visible = true;
}

void Mailfrm::Form_Unload() {
    TQXi_Sav();
    services_.dialogs.MsgBox("Auto updating will be disabled until you load this form again.");
    TimerMail->SetEnabled(false);
    Loaded = false;
    Visible = false;
}

bool Mailfrm::TQXi_Sav(const std::filesystem::path& file) const {
    TextWriter out(file, TextWriter::Mode::Create);
    out.write_line(bool_text(station_.IIS_On));
    out.write_line(bool_text(station_.IIS_AutoLoad));
    out.write_line(std::to_string(IIS_Minutes));
    out.write_line(station_.IIS_Name);
    out.write_line(IIS_File);
    for (int number = 5; number <= 9; ++number) {
        out.write_line(find("Label" + std::to_string(number))->Caption);
    }
    out.write_line(std::to_string(IIS_Line));
    out.write_line(std::to_string(IIS_Saved));
    out.write_line(Label14.Caption);
    return out.close();
}

void Mailfrm::TQXi_ini() {
    Station& s = station_;
    TextReader in(ini_file());
    if (!in.is_open()) return;
    // Read as input items, so a caption holding a comma shifts the rest:
    // the failed conversion that follows ends the reading, and what was
    // read stands.
    const auto flag = [&in](bool& to) {
        const auto value = read_switch(in);
        if (value) to = *value;
        return value.has_value();
    };
    const auto number = [&in](int& to) {
        const auto value = read_integer(in);
        if (value) to = *value;
        return value.has_value();
    };
    const auto text = [&in](std::string& to) {
        auto value = read_text(in);
        if (value) to = std::move(*value);
        return value.has_value();
    };
    bool ok = flag(s.IIS_On) && flag(s.IIS_AutoLoad) && number(IIS_Minutes) && text(s.IIS_Name) &&
              text(IIS_File);
    for (int n = 5; ok && n <= 9; ++n)
        ok = text(Result(n).Caption);
    ok = ok && number(IIS_Line) && number(IIS_Saved);
    if (ok) text(Label14.Caption);
}

void Mailfrm::TimerMail_Timer() {
    const std::string words = "Min Left till next update = ";
    --IIS_Tick;
    if (IIS_Tick == 6) {
        Label4.Caption = words + Str(static_cast<double>(IIS_MinLeft)) + ":59";
    } else {
        Label4.Caption = words + Str(static_cast<double>(IIS_MinLeft)) + ":" +
                         LTrim(Str(static_cast<double>(IIS_Tick))) + "0";
    }
    if (IIS_Tick > 0) return;
    IIS_Tick = 7;
    --IIS_MinLeft;
    Label4.Caption = words + Str(static_cast<double>(IIS_MinLeft));
    if (IIS_MinLeft > 0) return;
    Check_File();
}

bool write_default_tqxiis(const std::filesystem::path& file) {
    TextWriter out(file, TextWriter::Mode::Create);
    for (const char* line : {"False", "False", "10", "TQXMS Direct", "Mymail.mbx", "None", "None",
                             "None", "None", "None", "0"}) {
        out.write_line(line);
    }
    return out.close();
}

void read_tqxiis_switches(Station& station, const std::filesystem::path& file) {
    TextReader in(file);
    if (!in.is_open()) return;
    if (auto on = read_switch(in)) station.IIS_On = *on;
    if (auto auto_load = read_switch(in)) station.IIS_AutoLoad = *auto_load;
}

}  // namespace tavora
