#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace tavora {

// A fresh folder under the system's temporary folder, removed with its
// contents when the test ends.
class TestFolder {
  public:
    TestFolder() {
        std::random_device seed;
        path_ = std::filesystem::temp_directory_path() /
                ("tavora-test-" + std::to_string(seed()) + std::to_string(seed()));
        std::filesystem::create_directories(path_);
    }
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

}  // namespace tavora
