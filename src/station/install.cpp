#include "station/install.h"

#include <system_error>

#include "broadcast/profile.h"
#include "station/manual_pages.h"
#include "store/library_files.h"

namespace tavora {

namespace {

void ensure_folder(const std::filesystem::path& folder, InstallReport& report) {
    std::error_code error;
    if (std::filesystem::is_directory(folder, error)) {
        report.kept.push_back(folder.string());
        return;
    }
    if (!std::filesystem::create_directories(folder, error) || error) {
        report.error = "cannot make the folder " + folder.string() + ": " + error.message();
        return;
    }
    report.made.push_back(folder.string());
}

template <typename Create>
void ensure_file(const std::filesystem::path& file, Create create, InstallReport& report) {
    std::error_code error;
    if (std::filesystem::exists(file, error)) {
        report.kept.push_back(file.string());
        return;
    }
    if (const std::string why = create(file); !why.empty()) {
        report.error = "cannot make " + file.string() + ": " + why;
        return;
    }
    report.made.push_back(file.string());
}

}  // namespace

InstallReport install_station(const std::filesystem::path& home, double now) {
    InstallReport report;
    for (const auto& folder : {home, home / "web", home / "manual"}) {
        ensure_folder(folder, report);
        if (!report.error.empty()) return report;
    }
    ensure_file(
        home / "Setup.mdb", [now](const auto& path) { return create_settings_file(path, now); },
        report);
    if (!report.error.empty()) return report;
    ensure_file(
        home / "qx1.mdb", [now](const auto& path) { return create_library_file(path, now); },
        report);
    for (const auto& [name, profile] : StandardProfiles()) {
        if (!report.error.empty()) return report;
        ensure_file(
            home / name, [&profile](const auto& path) { return WriteProfile(path, profile); },
            report);
    }
    if (!report.error.empty()) return report;
    ensure_file(home / "manual" / "tqxops.htm", write_quick_help, report);
    if (!report.error.empty()) return report;
    ensure_file(home / "manual" / "legal.txt", write_legal_text, report);
    return report;
}

}  // namespace tavora
