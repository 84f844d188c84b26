#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fake_services.h"
#include "runtime/dates.h"
#include "station/install.h"
#include "station/station_app.h"
#include "store/recordset.h"

namespace tavora {

inline const double kMonday = DateSerial(2026, 3, 9) + 0.5;

// A station freshly installed, the outside world faked on virtual time.
class StationTest : public ::testing::Test {
  protected:
    StationTest() : fake(kMonday) {}

    void SetUp() override { ASSERT_EQ(install_station(home(), kMonday).error, ""); }

    // A new station, started as the program starts it; false when it stopped.
    bool start() {
        app = std::make_unique<StationApp>(fake.services);
        return app->Sub_Main();
    }
    void seconds(double s) { fake.loop.run_for(static_cast<std::int64_t>(s * 1000)); }
    std::filesystem::path home() const { return fake.home(); }

    std::string read_file(const char* name) const { return fake.folder.Read(name); }
    // Every dialog shown so far, as "title: text".
    std::vector<std::string> asked() const {
        std::vector<std::string> words;
        for (const auto& shown : fake.dialogs.shown())
            words.push_back(shown.request.title + ": " + shown.request.text);
        return words;
    }

    static std::shared_ptr<Library> open(const std::filesystem::path& file) {
        const bool settings = file.filename() == "Setup.mdb";
        return Library::open(file, settings ? FileKind::Settings : FileKind::Library).library;
    }
    // The `columns` of each row of `source` in the library, joined by "|".
    std::vector<std::string> rows(const std::string& source,
                                  const std::vector<std::string>& columns) const {
        Recordset rs = OpenRecordset(open(home() / "qx1.mdb"), source);
        std::vector<std::string> found;
        for (; !rs.IsEOF(); rs.MoveNext()) {
            std::string row = rs.Fields(columns[0]).text();
            for (std::size_t c = 1; c < columns.size(); ++c)
                row += "|" + rs.Fields(columns[c]).text();
            found.push_back(row);
        }
        return found;
    }
    using Fields = std::vector<std::pair<std::string, Value>>;
    // Sets `fields` on every row of `table` in the install folder's `file`.
    void edit_rows(const char* file, const char* table, const Fields& fields) {
        Recordset rs = OpenRecordset(open(home() / file), table);
        for (; !rs.IsEOF(); rs.MoveNext()) {
            rs.Edit();
            set(rs, fields);
        }
    }
    void add_row(const char* table, const Fields& fields) {
        Recordset rs = OpenRecordset(open(home() / "qx1.mdb"), table);
        rs.AddNew();
        set(rs, fields);
    }
    static void set(Recordset& rs, const Fields& fields) {
        for (const auto& [name, value] : fields)
            rs.SetField(name, value);
        ASSERT_TRUE(rs.Update()) << rs.error();
    }

    FakeServices fake;
    std::unique_ptr<StationApp> app;
};

}  // namespace tavora
