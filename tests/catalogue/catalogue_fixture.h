#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
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

    // The words of every dialog shown so far.
    std::vector<std::string> texts() const {
        std::vector<std::string> all;
        for (const auto& shown : fake.dialogs.shown())
            all.push_back(shown.request.text);
        return all;
    }
    bool shown(const std::string& text) const {
        for (const auto& one : texts())
            if (one == text) return true;
        return false;
    }

    FakeServices fake;
    MediaLengths lengths;
    Station station;
    LibraryPool pool;
    std::unique_ptr<frmTavoraDb> db;
};

}  // namespace tavora
