#include "catalogue/file_names.h"
#include "catalogue/frm_tavora_db.h"
#include "platform/dialogs.h"
#include "platform/file_ops.h"
#include "runtime/strings.h"

namespace tavora {

namespace {

constexpr const char* kSorry = "Sorry That You Feel That Way";

}  // namespace

void frmTavoraDb::Mnu_Aut_Add_Click() {
    Form_Load();
    services_.dialogs.MsgBox(
        "Select a DRIVE and Folder to autoload from -- NOTE: This allows you to load existing "
        "MP3,ASF,WMA,WAV files already stored on your computer or network. -- If you need to "
        "record or extract a CD to these file types, use the Tavora Live Recorder on the file "
        "menu -- or rip the CD with a CD ripping tool into a folder, then autoload that folder");
    if (Dir1.Text.empty()) Dir1.Text = "c:\\tavora";
    Dir1.ToolTipText = Dir1.Text;
    DFrame.Visible = true;
    Label5.Visible = true;
}

void frmTavoraDb::SrchGo_Click() {
    Wizard.Form_Load();
}

void frmTavoraDb::load_known_files() {
    known_files_.clear();
    DataSearch.DatabaseName = native(station_.Act_Db);
    DataSearch.Refresh();
    auto data = DataSearch.Recordset().library();
    if (!data) return;
    // A set stands for the walk of every row per file: the same answer.
    Statement names = data->connection().prepare("SELECT \"Long title\" FROM Recordings1");
    while (names.step() == Statement::Step::Row)
        known_files_.insert(LCase(names.column_text(0)));
}

int frmTavoraDb::Speed_Load() {
    Wizard.Command1.Visible = false;
    Wizard.Label1.Caption = "Working";
    const Answer mode = services_.dialogs.MsgBox(
        "Would you like to add ALL NEW selections found in this directory?  Note: 1. Only Valid "
        "media types will be loaded.  2. Exact file name duplicates WILL NOT be added if found "
        "in your database",
        Buttons::YesNoCancel, "Auto Add ALL Records");
    const auto cancel = [this] {
        services_.dialogs.MsgBox(kSorry);
        Wizard.Command1.Visible = true;
        Wiz_On = 0;
    };
    if (mode == Answer::Cancel) {
        cancel();
        return 0;
    }
    const bool all_mode = mode == Answer::Yes;
    Wiz_On = 0;
    load_known_files();

    std::string folder = Dir1.Text;
    if (Right(folder, 1) != "\\") folder += "\\";
    const std::string native_folder = native(folder);
    int added = 0;
    for (const char* pattern : kWizardPatterns) {
        for (const std::string& name : files::List(native_folder, pattern)) {
            Wiz_File = folder + name;
            Wizard.Label1.Caption = "Loading... " + Wiz_File;
            if (known_files_.contains(LCase(Wiz_File))) continue;
            Wiz_On = 1;
            MousePointer = 0;
            Answer answer = Answer::Yes;
            if (!all_mode) {
                answer = services_.dialogs.MsgBox(
                    "Would you like to add the NEW selection: " + Wiz_File + " ?",
                    Buttons::YesNoCancel, "Auto Add New Record");
            }
            if (answer == Answer::Cancel) {
                cancel();
                return added;
            }
            if (answer == Answer::Yes) {
                if (is_asx(Wiz_File)) services_.dialogs.MsgBox(kAsxWarning);
                cmdAdd_Click();
                ++added;
            }
            MousePointer = 11;
        }
    }
    MousePointer = 0;
    wizard_done(added);
    return added;
}

void frmTavoraDb::wizard_done(int added) {
    if (Wizard.Visible) {
        services_.dialogs.MsgBox(std::to_string(added) + " Records were ADDED from this Folder");
        Wizard.Label1.Caption = "Autoload WIZARD Complete";
        if (hooks.reload_request) hooks.reload_request();
    }
    if (services_.dialogs.MsgBox("Would you like to add another Folder?", Buttons::YesNo,
                                 "Continue Autoload") == Answer::Yes) {
        Wizard.Command1.Visible = true;
        Wiz_On = 0;
        return;
    }
    if (added > 0) {
        SortNone_Click();
        Data1.Recordset().MoveLast();
        Data1_Reposition();
        show_tab(4);
    }
    Wiz_On = 0;
    Wizard.Label1.Caption = "Complete";
    services_.dialogs.MsgBox(
        "We have moved you to the last record added.\r\nYou can now edit the cue points for "
        "these new selections.\r\nMove the database pointer backward (<) and edit until your "
        "edits are complete.");
}

void frmTavoraDb::Asf_Add() {
    Recordset& row = Data1.Recordset();
    const Value before = row.LastModified();
    cmdAdd_Click();
    const Value added = row.LastModified();
    if (Clone_On != 1 || added.is_null() || added.same(before)) return;
    const Value here = row.Bookmark();
    if (row.SetBookmark(added) && row.Edit()) {
        copy_clone_settings(row);
        row.Update();
    }
    if (!here.is_null()) row.SetBookmark(here);
}

frmTavoraDb::AddOutcome frmTavoraDb::add_new_file(const std::string& dos_file,
                                                  const std::string& tag_title,
                                                  const std::string& tag_artist) {
    if (known_files_.contains(LCase(dos_file))) return {AddOutcome::Duplicate, {}};
    if (hooks.measure_length) {
        std::string error;
        const double seconds = hooks.measure_length(native(dos_file), error);
        if (seconds < 0) return {AddOutcome::NotMedia, error};
        known_length_ = seconds;
    }
    Recordset& row = Data1.Recordset();
    const Value before = row.LastModified();
    Wiz_File = dos_file;
    Wiz_On = 1;
    tag_title_ = tag_title;
    tag_artist_ = tag_artist;
    cmdAdd_Click();
    Wiz_On = 0;
    tag_title_.clear();
    tag_artist_.clear();
    known_length_.reset();
    const Value after = row.LastModified();
    if (after.is_null() || after.same(before)) return {AddOutcome::Failed, "not added"};
    return {AddOutcome::Added, {}};
}

}  // namespace tavora
