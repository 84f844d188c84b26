#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tavora {

// A fresh folder under the system's temporary folder, removed with its
// contents when the test ends.
class TestFolder {
  public:
    TestFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "tavora-XXXXXX").string();
        path_ = mkdtemp(name.data());
    }
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

    // Writes `text` to a file below the folder, making its folders.
    std::filesystem::path Write(const std::string& relative, const std::string& text = "x") const {
        const auto file = path_ / relative;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
        return file;
    }

    // The whole of a file below the folder (or anywhere, given a full
    // path); empty when it can't be read.
    std::string Read(const std::filesystem::path& file) const {
        std::ifstream in(path_ / file, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

  private:
    std::filesystem::path path_;
};

}  // namespace tavora
