#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace tavora::testing {

// A fresh folder under the system's temp folder, removed with its contents.
class TempFolder {
  public:
    TempFolder() {
        std::string tmpl = (std::filesystem::temp_directory_path() / "tavora-XXXXXX").string();
        path_ = mkdtemp(tmpl.data());
    }
    ~TempFolder() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

    // Writes `text` to a file below the folder, making its folders.
    std::filesystem::path Write(const std::string& relative, const std::string& text = "x") const {
        const auto file = path_ / relative;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << text;
        return file;
    }

  private:
    std::filesystem::path path_;
};

}  // namespace tavora::testing
