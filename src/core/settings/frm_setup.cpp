#include "core/settings/frm_setup.h"

#include <array>

#include "core/settings/session_file.h"
#include "core/version.h"
#include "platform/dialogs.h"
#include "platform/file_ops.h"
#include "platform/path_map.h"
#include "runtime/convert.h"
#include "runtime/date_text.h"
#include "store/library.h"

namespace tavora {

namespace {

struct BoundBox {
    int index;
    const char* field;
    const char* caption;
};

constexpr std::array<BoundBox, 6> kBoxes = {{
    {1, "Use Playlist", "Network Remote (Close & Restart Pgm when Changed)"},
    {6, "Use Schedule", "Automatically Run JukeBox On Startup"},
    {7, "MorS", "Activate Power Play Feature"},
    {9, "Use Time Filter", "Ad Browser"},
    {10, "Use Weekday Filter", "7th Player Option enabled"},
    {11, "Use Max Plays", "Live QX Pop Up enabled"},
}};

struct BoundText {
    const char* control;
    const char* field;
    bool is_date;
};

constexpr std::array<BoundText, 5> kTexts = {{
    {"txtActive", "Active Database", false},
    {"txtNewDay", "Time For New Day", true},
    {"txtDay", "Current Day", true},
    {"txtWeek", "Current Week", true},
    {"txtMonth", "Current Month", true},
}};

constexpr const char* kRemoteTitle = "TQXMS - Change Database First!";
constexpr const char* kBackupFilter = "TQX Backup Files|QXL*.mdb;qxl*.mdb;qxb*.mdb";
constexpr const char* kLibraryFilter = "QX Databases|QX1*.mdb;QX *.mdb";

void fill_numbers(Control& combo, int from, int to) {
    combo.Clear();
    for (int n = from; n <= to; ++n)
        combo.AddItem(std::to_string(n));
}

std::string antiskip_message(int mode) {
    switch (mode) {
        case 0:
            return "Antiskip mode is off";
        case 1:
        case 2:
            return "Antiskip mode has Set Reload delay of: " + std::to_string(mode) + " Sec";
        case 3:
            return "Antiskip mode (3) is Set For ASF operation. Set Antiskip to zero if poor sound "
                   "quality";
        case 4:
            return "Antiskip mode (4) is Set For ASF operation and 1 sec load advance on mix. Set "
                   "Antiskip to zero if poor sound quality";
        default:
            return {};
    }
}

}  // namespace

frmSetup::frmSetup(Station& station, const Services& services, LibraryPool& pool)
    : Form("frmSetup"),
      datPrimaryRS(pool, FileKind::Settings),
      Data1(pool, FileKind::Settings),
      station_(station),
      services_(services),
      pool_(pool) {
    Caption = "Setup";
    Command1.Caption = "Save And Close";
    Command2.Caption = "Change";
    Command2.ToolTipText = "Change Active Database";
    CmdRestore.Caption = "Restore";
    Command7.Caption = "New";
    Command7.ToolTipText = "Create A New Database";
    Command8.Caption = "Clear";
    Command8.ToolTipText = "REMOVE all records in the current database";
    Command4.Caption = "MFilter Off";
    Command4.ToolTipText = "Forces Same Format Files in a Set";
    Command5.Caption = "Add";
    Command6.Caption = "Del";
    Command9.Caption = "Info";
    Command9.ToolTipText = "Anti Skip Info";
    for (const BoundBox& box : kBoxes)
        add_check("chkFields", box.index).Caption = box.caption;
    add_check("BPCkeck", 0).Caption = "Two Songs/Same Artist all day Tuesday";
    add_check("BPCkeck", 1).Caption = "This resets at the end of each day";
    add_check("BPCkeck", 2).Caption = "Log Status This Session Only";
    for (int number = 4; number <= 10; ++number)
        add_list("Combo" + std::to_string(number));

    on_click("Command1", [this](int) { Command1_Click(); });
    on_click("Command2", [this](int) { Command2_Click(); });
    on_click("CmdRestore", [this](int) { CmdRestore_Click(); });
    on_click("Command7", [this](int) { Command7_Click(); });
    on_click("Command8", [this](int) { Command8_Click(); });
    on_click("Command4", [this](int) { Command4_Click(); });
    on_click("Command5", [this](int) { Command5_Click(); });
    on_click("Command6", [this](int) { Command6_Click(); });
    on_click("Command9", [this](int) { Command9_Click(); });
    on_click("chkFields", [this](int index) { chkFields_Click(index); });
    on_click("BPCkeck", [this](int index) { BPCkeck_Click(index); });
    on("BPCkeck", "LostFocus", [this](int index) { BPCkeck_LostFocus(index); });
    bind_lists();
}

std::filesystem::path frmSetup::home() const {
    return services_.paths.install_folder();
}

void frmSetup::bind_lists() {
    // Each list takes effect at Click and at Scroll alike.
    struct Binding {
        int combo;
        std::function<void(int)> apply;
    };
    const Binding bindings[] = {
        {4,
         [this](int v) {
             station_.Ply7_Mix = v;
             station_.Ply7_MixOut = v;
         }},
        {5, [this](int v) { station_.Antiskip = v; }},
        {6, [this](int v) { station_.BP_Block = v; }},
        {7, [this](int v) { station_.BP_Chars = v; }},
        {8, [this](int v) { station_.Power_Every = v; }},
        {9, [this](int v) { station_.Least_Every = v; }},
        {10, [this](int v) { station_.Snip_Max = v; }},
    };
    for (const Binding& binding : bindings) {
        const std::string name = "Combo" + std::to_string(binding.combo);
        auto apply = [this, name, set = binding.apply](int) {
            set(CInt(Val(find(name)->selected_text())));
        };
        on_click(name, apply);
        on(name, "Scroll", apply);
    }
    fill_numbers(Combo(4), 1, 30);
    fill_numbers(Combo(5), 0, 4);
    fill_numbers(Combo(6), 1, 10);
    fill_numbers(Combo(7), 1, 20);
    fill_numbers(Combo(8), 1, 20);
    fill_numbers(Combo(9), 1, 50);
    fill_numbers(Combo(10), 1, 10);
}

void frmSetup::Form_Load() {
    Loaded = true;
    const std::string settings = (home() / "Setup.mdb").string();
    datPrimaryRS.DatabaseName = settings;
    datPrimaryRS.RecordSource = "select * from [Setup]";
    datPrimaryRS.Refresh();
    Data1.DatabaseName = settings;
    Data1.RecordSource = "DriveLookup";
    Data1.Refresh();

    Combo(4).Text = std::to_string(station_.Ply7_MixOut);
    Combo(5).Text = std::to_string(station_.Antiskip);
    Combo(6).Text = std::to_string(station_.BP_Block);
    Combo(7).Text = std::to_string(station_.BP_Chars);
    Combo(8).Text = std::to_string(station_.Power_Every);
    Combo(9).Text = std::to_string(station_.Least_Every);
    Combo(10).Text = std::to_string(station_.Snip_Max);
    BPCkeck(0).Value = station_.BP_Tuesday ? 1 : 0;
    BPCkeck(1).Value = station_.BP_On ? 1 : 0;
    BPCkeck(2).Value = station_.Log_Due == 0 ? 1 : 0;
    Command4.Caption = station_.MFilter == 1 ? "MFilter ON" : "MFilter Off";
    lblVersion.Caption = std::string("Version ") + kVersion;

    read_row_into_boxes();
    read_extensions_into_boxes();
    datPrimaryRS.Recordset().Edit();
}

void frmSetup::read_row_into_boxes() {
    Recordset& row = datPrimaryRS.Recordset();
    row.MoveFirst();
    // Filling the boxes refreshes the switches they carry but never the
    // mode: start-up decided it, and a library on another drive is remote
    // whatever the box says.
    for (const BoundBox& box : kBoxes)
        chkFields(box.index).Value = row.Fields(box.field).truthy() ? 1 : 0;
    refresh_switches();
    for (const BoundText& text : kTexts) {
        const Value value = row.Fields(text.field);
        const bool time_only = text.is_date && !value.is_null() && value.number() < 1;
        find(text.control)->Text = time_only ? Format(value.number(), "hh:mm:ss") : value.text();
    }
    Combo(8).Text = row.Fields("Default Mix Out").text();
    Recordset& alias = Data1.Recordset();
    txtAlias.Text = alias.Fields("AliasDrive").text();
    txtDrive.Text = alias.Fields("Drive").text();
}

void frmSetup::write_boxes_into_row() {
    Recordset& row = datPrimaryRS.Recordset();
    if (!row.is_editing()) row.Edit();
    for (const BoundBox& box : kBoxes) {
        row.SetField(box.field, Value::boolean(chkFields(box.index).Value == 1));
    }
    for (const BoundText& text : kTexts) {
        const std::string& shown = find(text.control)->Text;
        if (!text.is_date) {
            row.SetField(text.field, Value(shown));
        } else if (shown.empty()) {
            row.SetField(text.field, Value());
        } else if (auto date = parse_date_text(shown)) {
            row.SetField(text.field, Value::date(*date));
        }
    }
    row.SetField("Default Mix Out", Value(CInt(Val(Combo(8).selected_text()))));
}

void frmSetup::Form_Unload() {
    BP_Ini(station_, home() / "qxbp.ini");
    Visible = false;
    Loaded = false;
}

void frmSetup::Command1_Click() {
    save_extensions();
    write_boxes_into_row();
    datPrimaryRS.Recordset().Update();
    Recordset& alias = Data1.Recordset();
    if (alias.is_editing()) {
        alias.SetField("AliasDrive", Value(txtAlias.Text));
        alias.SetField("Drive", Value(txtDrive.Text));
        alias.Update();
    }
    Form_Unload();
}

void frmSetup::chkFields_Click(int index) {
    const bool remote = chkFields(1).Value == 1;
    if (index == 1 && Visible) {
        if (remote) {
            station_.Run_Mode = 1;
            services_.dialogs.MsgBox(
                "Remote Use active, You will be able to edit a master database (Playing on another "
                "machine) from this PC. You can also request music selections from this PC. "
                "Re-enter this program to apply remote operation after changing Database.",
                Buttons::OKOnly, kRemoteTitle);
        } else {
            station_.Run_Mode = 0;
            services_.dialogs.MsgBox("Re-enter this program to remove remote operation.",
                                     Buttons::OKOnly, kRemoteTitle);
        }
        Command2_Click();
    } else {
        station_.Run_Mode = remote ? 1 : 0;
    }
    refresh_switches();
}

void frmSetup::refresh_switches() {
    station_.Power_On = chkFields(7).Value == 1 ? 1 : 0;
    station_.Ply7_On = chkFields(10).Value == 1 ? 1 : 0;
    station_.Live_Pop = chkFields(11).Value == 1 ? 1 : 0;
}

void frmSetup::BPCkeck_Click(int index) {
    if (index == 1) station_.BP_On = BPCkeck(1).Value == 1;
    if (index == 2) station_.Log_Due = BPCkeck(2).Value == 1 ? 0 : 2;
}

void frmSetup::BPCkeck_LostFocus(int index) {
    if (index == 0) station_.BP_Tuesday = BPCkeck(0).Value == 1;
}

void frmSetup::Command4_Click() {
    station_.MFilter = station_.MFilter == 1 ? 0 : 1;
    Command4.Caption = station_.MFilter == 1 ? "MFilter ON" : "MFilter Off";
}

void frmSetup::Command9_Click() {
    const std::string message = antiskip_message(station_.Antiskip);
    if (!message.empty()) services_.dialogs.MsgBox(message);
}

void frmSetup::Command5_Click() {
    Data1.Recordset().AddNew();
    txtAlias.Text.clear();
    txtDrive.Text.clear();
}

void frmSetup::Command6_Click() {
    Recordset& alias = Data1.Recordset();
    if (alias.is_editing()) alias.CancelUpdate();
    alias.Delete();
    Data1.Refresh();
    alias.MoveFirst();
    txtAlias.Text = alias.Fields("AliasDrive").text();
    txtDrive.Text = alias.Fields("Drive").text();
}

void frmSetup::say_and_end(const std::string& text, const std::string& title) {
    services_.dialogs.MsgBox(text, Buttons::OKOnly, title);
    if (End_Program) End_Program();
}

void frmSetup::CmdRestore_Click() {
    if (station_.Run_Mode == 1) {
        services_.dialogs.MsgBox("Not Available in REMOTE mode");
        return;
    }
    const std::string chosen = services_.dialogs.OpenFile(
        "Tavora DB RESTORE", std::string(kBackupFilter) + "|" + kLibraryFilter, "c:\\tavora");
    const bool sure =
        !chosen.empty() && services_.dialogs.MsgBox(
                               "WARNING! This will replace your existing ACTIVE database with "
                               "the archive you selected -- Are you sure?",
                               Buttons::YesNo, "TQXMS DATABASE RESTORE WARNING") == Answer::Yes;
    if (!sure) {
        services_.dialogs.MsgBox("Restore Aborted");
        return;
    }
    files::Copy(services_.paths.ToNative(chosen).path, home() / "qxrestore.mdb");
    say_and_end(
        "RESTORE SUCCESSFUL! The Program will now EXIT. The restored database will be applied "
        "the next time you run The Tavora Music System",
        "New Database DETECTED");
}

void frmSetup::Command2_Click() {
    const std::string filter = station_.Run_Mode == 1
                                   ? std::string(kBackupFilter) + "|" + kLibraryFilter
                                   : std::string(kLibraryFilter) + "|" + kBackupFilter;
    const std::string chosen = services_.dialogs.OpenFile("Tavora DB Search", filter, "c:\\tavora");
    if (chosen.empty()) return;
    Recordset& row = datPrimaryRS.Recordset();
    if (!row.is_editing()) row.Edit();
    row.SetField("Active Database", Value(chosen));
    row.Update();
    say_and_end(
        "The Program will now EXIT. The new database will be applied the next time you run The "
        "Tavora Music System",
        "New Database DETECTED");
}

void frmSetup::Command7_Click() {
    if (services_.dialogs.MsgBox(
            "This will create a copy of current music database. Are You Sure you want to do this?",
            Buttons::OKCancel, {}, Icon::None, 2) != Answer::OK) {
        return;
    }
    Library::open(services_.paths.ToNative(station_.Act_Db).path, FileKind::Library);
    int n = 2;
    while (files::Exists(home() / ("qx" + std::to_string(n) + ".mdb")))
        ++n;
    const std::string copy = "c:\\tavora\\qx" + std::to_string(n) + ".mdb";
    // The copy is of the last compaction, not of the running library; a
    // missing qxlast.mdb fails in silence and the next start asks for a library.
    files::Copy(home() / "qxlast.mdb", services_.paths.ToNative(copy).path);
    station_.Act_Db = copy;
    Recordset& row = datPrimaryRS.Recordset();
    if (!row.is_editing()) row.Edit();
    row.SetField("Active Database", Value(copy));
    row.Update();
    say_and_end("All records have been copied to " + copy +
                    ", Changes will be applied when The Tavora is restarted",
                "Program Restart needed");
}

void frmSetup::Command8_Click() {
    if (services_.dialogs.MsgBox("This will erase ALL records in the current music database! Are "
                                 "You Sure you want to do this? Note: This does NOT delete the "
                                 "actual sound file.",
                                 Buttons::OKCancel, "Mass Data Delete WARNING", Icon::None,
                                 2) != Answer::OK) {
        return;
    }
    auto opened = pool_.open(services_.paths.ToNative(station_.Act_Db).path, FileKind::Library);
    if (opened.library) {
        Recordset search;
        if (search.Open(opened.library, "Recordings1")) {
            Transaction batch = opened.library->transaction();
            // One row always remains: the screens need a row to bind to.
            search.MoveLast();
            search.MoveFirst();
            search.MoveNext();
            while (search.RecordCount() >= 2 && search.Delete())
                search.MoveLast();
            batch.commit();
        }
    }
    say_and_end(
        "All Records have been cleared, Changes will be applied when The Tavora is restarted",
        "Program Restart needed");
}

}  // namespace tavora
