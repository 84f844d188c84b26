#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/frm_tavora_db.h"
#include "fake_services.h"
#include "players/probe_player.h"
#include "runtime/dates.h"
#include "store/library_files.h"
#include "store/recordset.h"

namespace tavora {

inline const double kCatalogueDay = DateSerial(2026, 5, 4) + 0.5;

inline std::filesystem::path catalogue_media(const std::string& name) {
    return std::filesystem::path(TAVORA_CATALOGUE_MEDIA) / name;
}

// A fresh station folder with an empty library, and the program director
// on it, measuring lengths with the engine's own measure.
class CatalogueTest : public ::testing::Test {
  protected:
    CatalogueTest() : fake(kCatalogueDay) {}

    void SetUp() override {
        ASSERT_EQ(create_settings_file(home() / "Setup.mdb", kCatalogueDay), "");
        ASSERT_EQ(create_library_file(home() / "qx1.mdb", kCatalogueDay), "");
        station.Act_Db = "c:\\tavora\\qx1.mdb";
        station.Run_Mode = 0;
        db = std::make_unique<frmTavoraDb>(station, fake.services, pool);
        db->hooks.measure_length = [this](const std::string& path, std::string& error) {
            return lengths.length(path, error);
        };
        db->Form_Load();
    }

    std::filesystem::path home() const { return fake.home(); }
    std::string dos(const std::filesystem::path& native) const { return fake.paths.ToDos(native); }

    // A copy of a generated clip under `relative`, below the station folder.
    std::filesystem::path place(const std::string& clip, const std::string& relative) {
        const auto to = home() / relative;
        std::filesystem::create_directories(to.parent_path());
        std::filesystem::copy_file(catalogue_media(clip), to,
                                   std::filesystem::copy_options::overwrite_existing);
        return to;
    }

    // Every row of the library, in the order they were added.
    Recordset rows() {
        Recordset all = OpenRecordset(db->Data1.Recordset().library(),
                                      "SELECT * FROM Recordings1 ORDER BY RecID");
        all.Requery();
        return all;
    }
    long count() { return rows().RecordCount(); }

    long long add_row(const std::string& title, const std::string& path,
                      const std::string& artist = "Band") {
        Recordset table = OpenRecordset(db->Data1.Recordset().library(), "Recordings1");
        table.Requery();
        table.AddNew();
        table.SetField("Title", Value(title));
        table.SetField("Artist", Value(artist));
        table.SetField("Long title", Value(path));
        EXPECT_TRUE(table.Update());
        return static_cast<long long>(table.LastModified().number());
    }

    // Writes fields of the row with this RecID behind the form's back.
    void set_fields(long long recid, std::initializer_list<std::pair<const char*, Value>> fields) {
        Recordset table = OpenRecordset(db->Data1.Recordset().library(), "Recordings1");
        table.Requery();
        ASSERT_TRUE(table.SetBookmark(Value(static_cast<double>(recid))));
        table.Edit();
        for (const auto& [name, value] : fields)
            table.SetField(name, value);
        ASSERT_TRUE(table.Update());
    }
    Value field(long long recid, const char* name) {
        for (Recordset all = rows(); !all.IsEOF(); all.MoveNext())
            if (all.Fields("RecID").number() == recid) return all.Fields(name);
        return {};
    }
    // Fields of the row with this RecID as text, joined by "|".
    std::string fields_of(long long recid, std::initializer_list<const char*> names) {
        std::string joined;
        for (const char* name : names)
            joined += (joined.empty() ? "" : "|") + field(recid, name).text();
        return joined;
    }
    // Data1 on the row with this RecID.
    void go_to(long long recid) {
        db->Data1.Refresh();
        ASSERT_TRUE(db->Data1.Recordset().SetBookmark(Value(static_cast<double>(recid))));
        db->Data1_Reposition();
    }

    // Adds a file through the Add button's file dialog.
    void add_file(const std::string& dos_path) {
        fake.dialogs.QueueText(dos_path);
        db->cmdAdd_Click();
    }
    // Answers for the next questions, in turn.
    void answer(std::initializer_list<Answer> answers) {
        for (Answer one : answers)
            fake.dialogs.Queue(one);
    }

    // The words of every dialog shown so far.
    std::vector<std::string> texts() const {
        std::vector<std::string> all;
        for (const auto& shown : fake.dialogs.shown())
            all.push_back(shown.request.text);
        return all;
    }
    bool shown(const std::string& text) const {
        const auto all = texts();
        return std::find(all.begin(), all.end(), text) != all.end();
    }

    FakeServices fake;
    MediaLengths lengths;
    Station station;
    LibraryPool pool;
    std::unique_ptr<frmTavoraDb> db;
};

}  // namespace tavora
