#include <fstream>

#include "catalogue/file_names.h"
#include "catalogue/frm_tavora_db.h"
#include "platform/dialogs.h"
#include "platform/path_map.h"
#include "runtime/strings.h"

namespace tavora {

namespace {

bool empty_field(const Value& value) {
    return value.is_null() || value.text().empty();
}

// Fields the clone copies from its master, by ordinal.
constexpr int kCloneFields[] = {4,  5,  6,  11, 13, 15, 17, 19, 20, 21, 22,
                                23, 24, 25, 26, 27, 28, 29, 38, 39, 51, 52};

}  // namespace

void frmTavoraDb::cmdAdd_Click() {
    Recordset& row = Data1.Recordset();
    row.MoveLast();
    std::string file;
    if (Wiz_On == 0) {
        file = services_.dialogs.OpenFile("Add New File to QX DataBase", kAddFilter, {});
        if (file.empty()) return file_error();
        Url_Chk(file);
        if (Url_Check != "Good") return file_error();
    } else {
        file = Wiz_File;
    }
    if (file.empty()) return;
    const std::string base = Base_Name(file);
    const std::string native_file = native(file);
    const auto created = file_date(native_file);
    if (!created || !row.AddNew()) return file_error();

    if (is_asx(file)) services_.dialogs.MsgBox(kAsxWarning);
    std::string long_title = net_file(file, 0);
    name_fields(row, base);
    row.SetField("CreationDate", Value::date(*created));
    if (Right(file, 3) == "url") long_title = Url_Target;
    row.SetField("Long title", Value(long_title));

    if (empty_field(row.Fields("Title"))) {
        row.SetField("Artist", Value(base));
        // Tags stand in for the answers an operator would give.
        std::string title = tag_title_.empty() ? base : tag_title_;
        std::string artist = tag_artist_.empty() ? base : tag_artist_;
        if (tag_title_.empty() && tag_artist_.empty()) {
            title = services_.dialogs.InputBox(
                "File name format not recognized -- Please Enter Title For This Selection",
                "Enter Title", base);
            artist = services_.dialogs.InputBox(
                "NOTE: Next Time use the format: title - artist.xxx for your files -- Please "
                "Enter The Artist For This Selection",
                "Enter Artist", base);
        }
        row.SetField("Title", title.empty() ? Value("Unknown") : Value(title));
        row.SetField("Artist", Value(artist.empty() ? base : artist));
    }
    if (empty_field(row.Fields("Artist"))) row.SetField("Artist", Value("Unknown"));
    row.SetField("Size", Value(txtFields(9).Text));
    row.SetField("Mix Out", Value(txtFields(18).Text));
    if (Clone_On == 1) copy_clone_settings(row);
    if (wizard_feeding()) Wizard.apply_to(row);
    std::optional<double> seconds = known_length_;
    if (!seconds && hooks.measure_length) {
        std::string error;
        seconds = hooks.measure_length(native(long_title), error);
    }
    if (seconds && *seconds >= 0) row.SetField("Length", Value::date(*seconds / 86400.0));
    if (!row.Update()) {
        row.CancelUpdate();
        return file_error();
    }
    record_added(row, long_title);
    row.MoveLast();
}

void frmTavoraDb::name_fields(Recordset& row, const std::string& base) {
    const NameParts parts = Split_Name(base);
    const bool title_first = Combo6.selected_text() == "Title";
    Label9.Caption = title_first ? "Title - Artist" : "Artist - Title";
    const std::string& title = title_first ? parts.front : parts.back;
    const std::string& artist = title_first ? parts.back : parts.front;
    if (!title.empty()) row.SetField("Title", Value(title));
    if (!artist.empty()) row.SetField("Artist", Value(artist));
}

void frmTavoraDb::copy_clone_settings(Recordset& row) {
    Recordset& master = DataSearch.Recordset();
    for (int ordinal : kCloneFields)
        row.SetField(ordinal, master.Fields(ordinal));
}

void frmTavoraDb::record_added(Recordset& row, const std::string& dos_file) {
    known_files_.insert(LCase(dos_file));
    if (hooks.record_added)
        hooks.record_added(static_cast<long long>(row.LastModified().number()), native(dos_file));
}

void frmTavoraDb::file_error() {
    Data1.Recordset().CancelUpdate();
    if (wizard_feeding()) {
        services_.dialogs.MsgBox(
            "File Load error. Please fix the problem on the Add Wizard and retry", Buttons::OKOnly,
            "File Load Error");
    } else {
        services_.dialogs.MsgBox("File open error.", Buttons::OKOnly, "File Load Error");
    }
}

void frmTavoraDb::Url_Chk(const std::string& file) {
    Url_Check = "Good";
    if (Right(file, 3) != "url") return;
    std::ifstream in(native(file), std::ios::binary);
    std::string first, link;
    std::getline(in, first);
    std::getline(in, link);
    if (!link.empty() && link.back() == '\r') link.pop_back();
    Url_Target = Mid(link, 5, 250);
    Url_Check = Right(Url_Target, 3);
    const bool playable = Url_Check == "mov" || Url_Check == "wav" || Url_Check == "asf" ||
                          Url_Check == "avi" || tavora::Left(Url_Check, 2) == "mp";
    if (!playable) {
        services_.dialogs.MsgBox("Invalid File Type Referenced! " + Url_Check);
        return;
    }
    Url_Check = "Good";
    services_.dialogs.MsgBox(
        "WARNING: URL links may cause the Tavora System to lock up when a URL is not found or if "
        "your system is not connected to the internet/intranet. If you have trouble with URLs "
        "delete them from your database");
}

}  // namespace tavora
