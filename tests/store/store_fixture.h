#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "runtime/dates.h"
#include "store/library.h"
#include "store/library_files.h"
#include "store/recordset.h"

namespace tavora {

using Fields = std::initializer_list<std::pair<const char*, Value>>;

// A new library in a folder of its own, removed after the test.
class StoreTest : public ::testing::Test {
  protected:
    void SetUp() override {
        std::random_device seed;
        folder_ = std::filesystem::temp_directory_path() /
                  ("tavora-store-" + std::to_string(seed()) + std::to_string(seed()));
        std::filesystem::create_directories(folder_);
        library_path_ = folder_ / "qx1.mdb";
        ASSERT_EQ(create_library_file(library_path_, kToday), "");
        library_ = open_library(library_path_);
        ASSERT_NE(library_, nullptr);
    }
    void TearDown() override {
        library_.reset();
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    static std::shared_ptr<Library> open_library(const std::filesystem::path& path) {
        Library::Opened opened = Library::open(path, FileKind::Library);
        EXPECT_EQ(opened.error, "");
        return opened.library;
    }

    // Adds a row to Recordings1 and gives its RecID.
    long long add_recording(Fields fields) {
        Recordset table = OpenRecordset(library_, "Recordings1");
        EXPECT_TRUE(table.AddNew());
        for (const auto& [name, value] : fields)
            EXPECT_TRUE(table.SetField(name, value)) << name;
        EXPECT_TRUE(table.Update()) << table.error();
        return static_cast<long long>(table.LastModified().number());
    }

    // The RecIDs of a source's rows in order.
    std::vector<long long> ids(const std::string& source) {
        Recordset rows = OpenRecordset(library_, source);
        EXPECT_EQ(rows.error(), "") << source;
        std::vector<long long> out;
        for (; !rows.IsEOF(); rows.MoveNext()) {
            out.push_back(static_cast<long long>(rows.Fields("RecID").number()));
        }
        return out;
    }

    // 2026-03-10, a day from the fifth on.
    static constexpr double kToday = 46091.0;

    std::filesystem::path folder_;
    std::filesystem::path library_path_;
    std::shared_ptr<Library> library_;
};

}  // namespace tavora
