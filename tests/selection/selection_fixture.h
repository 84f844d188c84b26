#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/fake_services.h"
#include "core/library_rows.h"
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

// A library and settings file in a fresh install folder, the selection
// windows on a virtual clock, and a station whose look-ahead is zero, so
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

    void set_now(double date) { fake.clock.Set(date); }

    // A normal record that every rule lets through, with the fields given
    // on top; its RecID.
    long add(Fields fields = {}) {
        Recordset table = OpenRecordset(library, "Recordings1");
        table.AddNew();
        const int n = ++added_;
        const Value yes = Value::boolean(true);
        table.SetField("Title", Value("Song " + std::to_string(n)));
        table.SetField("Artist", Value("Artist " + std::to_string(n)));
        table.SetField("Long title", Value("d:\\music\\song" + std::to_string(n) + ".mp3"));
        table.SetField("Category", Value("POP"));
        table.SetField("Min Time Between Plays", Value::date(TimeSerial(1, 0, 0)));
        table.SetField("Last Played", Value::date(kNow - 10));
        for (const char* limit : {"Max Play Day", "Max Play Week", "Max Month"})
            table.SetField(limit, Value(50));
        for (const char* day : {"Valid Monday", "Valid Tuesday", "Valid Wednesday",
                                "Valid Thursday", "Valid Friday", "Valid Saturday", "Valid Sunday"})
            table.SetField(day, yes);
        table.SetField("Schedule Select", Value(1));
        table.SetField("Length", Value::date(TimeSerial(0, 3, 0)));
        table.SetField("FadeIn", Value::boolean(false));
        table.SetField("FadeOut", Value::boolean(false));
        for (const auto& [name, value] : fields)
            EXPECT_TRUE(table.SetField(name, value)) << name;
        EXPECT_TRUE(table.Update()) << table.error();
        return static_cast<long>(table.LastModified().number());
    }

    Recordset row(long rec_id, const char* table = "Recordings1") {
        return keyed_row(library, table, rec_id);
    }
    Value field(long rec_id, const char* name) { return row(rec_id).Fields(name); }
    ::testing::AssertionResult has(long rec_id, const std::map<std::string, double>& want) {
        return holds(row(rec_id), want);
    }

    void set(long rec_id, const char* name, const Value& value, const char* table = "Recordings1") {
        Recordset found = row(rec_id, table);
        found.Edit();
        found.SetField(name, value);
        found.Update();
    }

    // Rows of a table whose column holds a text.
    int rows_with(const char* table_name, const char* column, const std::string& text) {
        int n = 0;
        for (Recordset t = OpenRecordset(library, table_name); !t.IsEOF(); t.MoveNext())
            n += t.Fields(column).text() == text ? 1 : 0;
        return n;
    }

    // Category weights: each category's {weight, count so far}.
    using Weight = std::pair<std::string, std::string>;
    std::map<std::string, Weight> weights() {
        std::map<std::string, Weight> out;
        for (Recordset t = OpenRecordset(library, "DSearch"); !t.IsEOF(); t.MoveNext())
            out[t.Fields("Category").text()] = {t.Fields("ValidFiles").text(),
                                                t.Fields("ExcludeFiles").text()};
        return out;
    }
    void set_weight(const std::string& category, const char* weight, const char* count) {
        for (Recordset t = OpenRecordset(library, "DSearch"); !t.IsEOF(); t.MoveNext()) {
            if (t.Fields("Category").text() != category) continue;
            t.Edit();
            t.SetField("ValidFiles", Value(weight));
            t.SetField("ExcludeFiles", Value(count));
            t.Update();
        }
    }

    static Value hm(int hours, int minutes = 0) {
        return Value::date(TimeSerial(hours, minutes, 0));
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
    std::vector<PickReport> picks;  // every run's report, in order
    int added_ = 0;
};

}  // namespace tavora
