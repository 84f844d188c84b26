#include "catalogue/file_names.h"
#include "catalogue/frm_tavora_db.h"
#include "platform/dialogs.h"
#include "platform/file_ops.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "runtime/strings.h"
#include "runtime/text_file.h"

namespace tavora {

namespace {

constexpr const char* kBadLinks = "c:\\tavora\\badlinks.txt";

bool has_content(const Value& value) {
    return !value.is_null() && !value.text().empty();
}

// The folder an installer left in linstall.txt: the last line, or the one
// before, whichever has a drive letter.
std::string installed_folder(const std::filesystem::path& list) {
    TextReader in(list);
    std::string last, before;
    for (ReadResult line = in.read_line(); line.ok(); line = in.read_line()) {
        before = std::move(last);
        last = std::move(line.text);
    }
    if (Mid(last, 2, 1) == ":") return last;
    if (Mid(before, 2, 1) == ":") return before;
    return {};
}

// Why an import file can't be taken in, empty when it can: it must hold the
// library's fields in the library's order.
std::string import_problem(Recordset& from, Recordset& into) {
    if (!from.is_open()) return from.error().empty() ? "it is not a library" : from.error();
    if (from.field_count() != into.field_count()) return "its records have other fields";
    for (int i = 0; i < into.field_count(); ++i) {
        if (LCase(from.field_name(i)) != LCase(into.field_name(i)))
            return "its records have other fields";
    }
    return {};
}

}  // namespace

void frmTavoraDb::QX_Imp() {
    const auto list = services_.paths.install_folder() / "linstall.txt";
    if (!files::Exists(list)) return;
    std::string folder = installed_folder(list);
    if (folder.empty()) return;
    if (Right(folder, 1) == "\\") folder.pop_back();
    const std::string path = folder + "\\qximp.mdb";
    const std::string native_path = native(path);
    if (!files::Exists(native_path)) return;

    const auto back_to_library = [this] {
        DataSearch.DatabaseName = native(station_.Act_Db);
        DataSearch.Refresh();
    };
    DataSearch.DatabaseName = native_path;
    DataSearch.RecordSource = "Recordings1";
    DataSearch.Refresh();
    Recordset& from = DataSearch.Recordset();
    Recordset& into = Data1.Recordset();
    if (const std::string problem = import_problem(from, into); !problem.empty()) {
        back_to_library();
        services_.dialogs.MsgBox("The Database at (" + path + ") can't be imported: " + problem +
                                 ". It was left where it is.");
        return;
    }
    const Answer answer = services_.dialogs.MsgBox(
        "We have detected that you installed a new Database at (" + path +
            ")\r\nThese can be auto loaded into your system. \r\nWARNING: This import function "
            "DOES NOT check for duplicates\r\nDo you want to import them now?",
        Buttons::YesNo);
    MousePointer = 11;
    int count = 0;
    if (answer == Answer::Yes) {
        for (from.MoveFirst(); !from.IsEOF(); from.MoveNext()) {
            if (!into.AddNew()) break;
            for (int ordinal = 1; ordinal <= 62; ++ordinal) {
                const Value& field = from.Fields(ordinal);
                if (has_content(field)) into.SetField(ordinal, field);
            }
            if (into.Update()) ++count;
        }
    } else {
        back_to_library();
        if (services_.dialogs.MsgBox(
                "Do you want to save the new Database at (" + path + ") for import later?",
                Buttons::YesNo) == Answer::Yes) {
            MousePointer = 0;
            return;
        }
        services_.dialogs.MsgBox("You will have to manually add the selections at (" + path + ")");
    }
    back_to_library();
    files::Kill(native_path);
    files::Kill(list);
    SortNone_Click();
    Data1.Recordset().MoveLast();
    Data1_Reposition();
    MousePointer = 0;
    services_.dialogs.MsgBox(std::to_string(count) +
                             " Records were ADDED from this database\r\nWe have moved you to the "
                             "last record added.\r\nYou can now edit these new selections if "
                             "needed.\r\nMove the database pointer backward (<) and edit until "
                             "your edits are complete.");
}

void frmTavoraDb::ValidFilesBtn_Click() {
    Command5_Click();
    if (services_.dialogs.MsgBox("We will now check your database for invalid files and links "
                                 "\r\nThis may take a while! Do You want to continue?",
                                 Buttons::YesNo) != Answer::Yes) {
        return;
    }
    const std::string letter = LCase(tavora::Left(
        services_.dialogs.InputBox(
            "Cancel will search all drives!\r\nEnter The Drive letter To report on (DRIVE LETTER "
            "ONLY): "),
        1));
    const std::string report_path = native(kBadLinks);
    files::Kill(report_path);
    TextWriter report(report_path, TextWriter::Mode::Create);
    report.write_line("---- Database link Errors ----");
    report.write_line(" For: " + station_.Act_Db);

    MousePointer = 11;
    long searched = 0, errors = 0;
    Recordset& rows = Data1.Recordset();
    for (rows.MoveFirst(); !rows.IsEOF(); rows.MoveNext()) {
        std::string name = rows.Fields("Long title").text();
        if (!letter.empty() && LCase(tavora::Left(name, 1)) != letter) continue;
        ++searched;
        if (station_.Run_Mode == 1) name = net_file(name, 1);
        // URLs and playlist markers have no drive, so they pass.
        if (Mid(name, 2, 2) != ":\\" || files::Exists(native(name))) continue;
        report.write_line("---");
        report.write_line(rows.Fields("Long title").text());
        report.write_line(rows.Fields("Title").text());
        report.write_line(rows.Fields("Artist").text());
        ++errors;
    }
    report.write_line("======");
    report.write_line("Searched: " + std::to_string(searched));
    report.write_line("Total Errors: " + std::to_string(errors));
    report.close();
    MousePointer = 0;
    services_.dialogs.MsgBox(std::string("Now Loading the log file at: ") + kBadLinks);
    services_.launcher.OpenTextFile(report_path);
}

void frmTavoraDb::CmdRepAll_Click() {
    if (station_.Run_Mode == 1) {
        services_.dialogs.MsgBox("Sorry, Not available in remote mode");
        return;
    }
    if (services_.dialogs.MsgBox("WARNING! This will replace a selected drive letter in your "
                                 "database with a new drive. Continue?",
                                 Buttons::YesNo, "Continue drive change?") != Answer::Yes) {
        return;
    }
    const std::string old_letter = tavora::Left(
        services_.dialogs.InputBox(
            "Enter The Existing Drive letter (The one to be replaced -- 1 LETTER ONLY)",
            "Existing Drive Selection"),
        1);
    const std::string new_letter = tavora::Left(
        services_.dialogs.InputBox("Enter The NEW Drive letter (The one to be inserted",
                                   "NEW Drive Selection"),
        1);
    if (services_.dialogs.MsgBox("Drive (" + old_letter + ") will be replaced with drive (" +
                                     new_letter + ")-- Continue?",
                                 Buttons::YesNo) != Answer::Yes) {
        return;
    }
    long replaced = 0;
    walk_search([&](Recordset& rows) {
        const std::string name = rows.Fields("Long title").text();
        if (LCase(tavora::Left(name, 1)) != LCase(old_letter)) return;
        rows.Edit();
        rows.SetField("Long title",
                      Value(tavora::Left(LCase(new_letter) + ":" + Mid(name, 3), 240)));
        if (rows.Update()) ++replaced;
    });
    Data1.Refresh();
    services_.dialogs.MsgBox("COMPLETE! Drive (" + old_letter + ") has been replaced with drive (" +
                             new_letter + ")\r\n" + std::to_string(replaced) +
                             " Records were replaced");
}

void frmTavoraDb::walk_search(const std::function<void(Recordset&)>& each) {
    DataSearch.Refresh();
    Recordset& rows = DataSearch.Recordset();
    const auto data = rows.library();
    if (!data) return;
    MousePointer = 11;
    // One commit for the walk: a failure part-way leaves the library as it was.
    Transaction batch = data->transaction();
    rows.MoveLast();
    for (rows.MoveFirst(); !rows.IsEOF(); rows.MoveNext())
        each(rows);
    batch.commit();
    MousePointer = 0;
}

void frmTavoraDb::cmdRefresh_Click() {
    Recordset& row = Data1.Recordset();
    const std::string title = row.Fields("Title").text();
    const std::string choice = services_.dialogs.OpenFile(
        "Title Repair Search", "Title (" + title + "*)|" + title + "*.*|" + std::string(kAddFilter),
        {});
    Url_Chk(choice);
    if (Url_Check != "Good" || choice.empty()) return;
    row.Edit();
    row.SetField("Long title", Value(net_file(choice, 0)));
    row.Update();
}

}  // namespace tavora
