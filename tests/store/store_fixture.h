#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "runtime/dates.h"
#include "store/library.h"
#include "store/library_files.h"
#include "store/recordset.h"
#include "test_folder.h"

namespace tavora {

using Fields = std::vector<std::pair<const char*, Value>>;

// A new library in a folder of its own, removed after the test.
class StoreTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(create_library_file(library_path_, kToday), "");
        library_ = open_library(library_path_);
        ASSERT_NE(library_, nullptr);
    }

    static std::shared_ptr<Library> open_library(const std::filesystem::path& path) {
        Library::Opened opened = Library::open(path, FileKind::Library);
        EXPECT_EQ(opened.error, "");
        return opened.library;
    }

    // Adds a row to Recordings1 (of this library unless told) and gives its RecID.
    long long add_recording(const Fields& fields, std::shared_ptr<Library> library = nullptr) {
        Recordset table = OpenRecordset(library ? library : library_, "Recordings1");
        EXPECT_TRUE(table.AddNew());
        for (const auto& [name, value] : fields)
            EXPECT_TRUE(table.SetField(name, value)) << name;
        EXPECT_TRUE(table.Update()) << table.error();
        return static_cast<long long>(table.LastModified().number());
    }

    // The RecIDs of a source's rows in order.
    std::vector<long long> ids(const std::string& source,
                               std::shared_ptr<Library> library = nullptr) {
        Recordset rows = OpenRecordset(library ? library : library_, source);
        EXPECT_EQ(rows.error(), "") << source;
        std::vector<long long> out;
        for (; !rows.IsEOF(); rows.MoveNext())
            out.push_back(static_cast<long long>(rows.Fields("RecID").number()));
        return out;
    }

    // 2026-03-10, a day from the fifth on.
    static constexpr double kToday = 46091.0;

    TestFolder folder;  // outlives the library
    const std::filesystem::path folder_ = folder.path();
    const std::filesystem::path library_path_ = folder_ / "qx1.mdb";
    std::shared_ptr<Library> library_;
};

// Five scheduled rows whose titles sort apart from their RecIDs.
class TitledRowsTest : public StoreTest {
  protected:
    void SetUp() override {
        StoreTest::SetUp();
        if (HasFatalFailure()) return;
        for (const char* title : {"d", "b", "e", "a", "c"})
            add_recording({{"Title", title}, {"Schedule Select", 1}});
    }
};

}  // namespace tavora
