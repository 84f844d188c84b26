#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/fake_services.h"
#include "core/library_rows.h"
#include "core/station.h"
#include "requests/request_form.h"
#include "runtime/dates.h"
#include "runtime/text_file.h"
#include "store/library.h"
#include "store/library_files.h"
#include "store/recordset.h"

namespace tavora {

using Fields = std::vector<std::pair<const char*, Value>>;

// A station on a virtual clock with a fresh library in its install folder
// and the request window over it.
class RequestFixture : public ::testing::Test {
  protected:
    // 2026-03-10 10:00.
    static constexpr double kNow = 46091.0 + 10.0 / 24;

    explicit RequestFixture(double now = kNow) : fake(now) {
        const std::filesystem::path file = fake.home() / "qx1.mdb";
        EXPECT_EQ(create_library_file(file, now), "");
        library = pool.open(file, FileKind::Library).library;
        station.Act_Db = "c:\\tavora\\qx1.mdb";
        station.Run_Mode = 0;
        request = std::make_unique<Request>(station, fake.services, pool);
    }

    // Adds a record, old enough not to count as new, and gives its RecID.
    long long add(const std::string& title, Fields fields = {}) {
        Recordset table = OpenRecordset(library, "Recordings1");
        EXPECT_TRUE(table.AddNew());
        table.SetField("Title", Value(title));
        table.SetField("Artist", Value(title + " Artist"));
        table.SetField("CreationDate", Value::date(kNow - 400));
        for (const auto& [name, value] : fields)
            EXPECT_TRUE(table.SetField(name, value)) << name;
        EXPECT_TRUE(table.Update()) << table.error();
        return static_cast<long long>(table.LastModified().number());
    }

    Value field(long long id, const char* name) {
        return keyed_row(library, "Recordings1", static_cast<double>(id)).Fields(name);
    }
    ::testing::AssertionResult has(long long id, const std::map<std::string, double>& want) {
        return holds(keyed_row(library, "Recordings1", static_cast<double>(id)), want);
    }

    // The row showing a title on the page, 0 when none does.
    int row_of(const std::string& title) {
        for (int i = 1; i <= kRows; ++i) {
            if (request->RB(i).Visible && request->RB(i).Caption == title) return i;
        }
        return 0;
    }

    std::vector<std::string> captions() {
        std::vector<std::string> out;
        for (int i = 1; i <= kRows && request->RB(i).Visible; ++i)
            out.push_back(request->RB(i).Caption);
        return out;
    }

    std::vector<std::string> lines(const std::filesystem::path& file) {
        std::vector<std::string> out;
        TextReader in(file);
        for (ReadResult line = in.read_line(); line.ok(); line = in.read_line())
            out.push_back(line.text);
        return out;
    }

    FakeServices fake;
    Station station;
    LibraryPool pool;
    std::shared_ptr<Library> library;
    std::unique_ptr<Request> request;
};

}  // namespace tavora
