#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/fake_services.h"
#include "core/station.h"
#include "core/windows/frm_loding.h"
#include "core/windows/qx_main.h"
#include "runtime/dates.h"
#include "selection/fields.h"
#include "selection/frm_schedule1.h"
#include "selection/selection.h"
#include "selection/type_lookup.h"
#include "store/data_control.h"
#include "store/library.h"
#include "store/library_files.h"
#include "store/recordset.h"

namespace tavora {

using Fields = std::vector<std::pair<const char*, Value>>;

// Fresh library and settings files, a virtual clock and no look-ahead, so
// the rules judge the clock's own moment.
class SelectionTest : public ::testing::Test {
  protected:
    // Wednesday 2026-03-11 14:00:00, on a whole minute so that the clock's
    // seconds add nothing to the random start.
    static constexpr double kNow = 46092.0 + 14.0 / 24.0;

    SelectionTest() : fake(kNow) {}

    void SetUp() override {
        ASSERT_EQ(create_library_file(fake.home() / "qx1.mdb", kNow), "");
        ASSERT_EQ(create_settings_file(fake.home() / "Setup.mdb", kNow), "");
        library = pool.open(fake.home() / "qx1.mdb", FileKind::Library).library;
        ASSERT_NE(library, nullptr);
        setup.DatabaseName = (fake.home() / "Setup.mdb").string();
        setup.RecordSource = "Setup";
        setup.Refresh();
        station.Act_Db = "c:\\tavora\\qx1.mdb";
        station.Look_Play = station.Look_Sched = 0;
        station.Clock_Play = station.Clock_Sched = kNow;
        types.Form_Initialize();
        schedule.Form_Load();
        selection.hooks.on_pick = [this](const PickReport& report) { picks.push_back(report); };
    }

    static Value at(int hour, int minute = 0) { return Value::date(TimeSerial(hour, minute, 0)); }
    void set_now(double date) { fake.clock.Set(date); }

    // A record every rule lets through, with the fields given on top.
    long add(Fields fields = {}) {
        Recordset table = OpenRecordset(library, "Recordings1");
        table.AddNew();
        const std::string n = std::to_string(++added_);
        const Value no = Value::boolean(false);
        const Fields normal = {{"Title", Value("Song " + n)},
                               {"Artist", Value("Artist " + n)},
                               {"Long title", Value("d:\\music\\song" + n + ".mp3")},
                               {"Category", Value("POP")},
                               {"Min Time Between Plays", at(1)},
                               {"Last Played", Value::date(kNow - 10)},
                               {"Max Play Day", Value(50)},
                               {"Max Play Week", Value(50)},
                               {"Max Month", Value(50)},
                               {"Schedule Select", Value(1)},
                               {"Length", at(0, 3)},
                               {"FadeIn", no}};
        for (const auto& [name, value] : normal)
            table.SetField(name, value);
        for (const char* day : {"Valid Monday", "Valid Tuesday", "Valid Wednesday",
                                "Valid Thursday", "Valid Friday", "Valid Saturday", "Valid Sunday"})
            table.SetField(day, Value::boolean(true));
        for (const auto& [name, value] : fields)
            EXPECT_TRUE(table.SetField(name, value)) << name;
        EXPECT_TRUE(table.Update()) << table.error();
        return static_cast<long>(table.LastModified().number());
    }

    Recordset row(long rec_id) {
        Recordset table = OpenRecordset(library, "Recordings1");
        while (!table.IsEOF() && table.Fields("RecID").number() != rec_id)
            table.MoveNext();
        return table;
    }
    Value field(long rec_id, const char* name) {
        Recordset table = row(rec_id);
        return table.IsEOF() ? Value() : table.Fields(name);
    }
    void set(long rec_id, const char* name, const Value& value) {
        Recordset table = row(rec_id);
        ASSERT_FALSE(table.IsEOF());
        table.Edit();
        table.SetField(name, value);
        EXPECT_TRUE(table.Update());
    }

    // A category's weight row: its count, and its weight when given.
    void set_weight(const std::string& category, const char* count, const char* weight = nullptr) {
        Recordset table = OpenRecordset(library, "DSearch");
        for (; !table.IsEOF(); table.MoveNext()) {
            if (table.Fields("Category").text() != category) continue;
            table.Edit();
            if (weight) table.SetField("ValidFiles", Value(weight));
            table.SetField("ExcludeFiles", Value(count));
            table.Update();
        }
    }
    std::string weight_count(const std::string& category) {
        Recordset table = OpenRecordset(library, "DSearch");
        for (; !table.IsEOF(); table.MoveNext()) {
            if (table.Fields("Category").text() == category)
                return table.Fields("ExcludeFiles").text();
        }
        return "";
    }

    // Fills a slot as the player side does and gives the RecID it got.
    long pick(int slot = 3) {
        station.Cue_Slot = slot;
        selection.auto_run();
        return station.Slot_RecID[slot];
    }

    FakeServices fake;
    LibraryPool pool;
    std::shared_ptr<Library> library;
    DataControl setup{pool, FileKind::Settings};
    Station station;
    QXMain main{station};
    frmLoding loading;
    frmTypeLookup types{station, fake.services, pool};
    Selection selection{station, fake.services, pool, main, loading, types};
    frmSchedule1 schedule{station, fake.services, pool, main, types, setup};
    std::vector<PickReport> picks;
    int added_ = 0;
};

}  // namespace tavora
