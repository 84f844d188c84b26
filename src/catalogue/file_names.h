#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>

namespace tavora {

// The media patterns the wizard walks a folder with, in its order.
inline constexpr std::array<const char*, 14> kWizardPatterns = {
    "*.wav", "*.mp3", "*.asf", "*.mpg", "*.mpa", "*.mpv", "*.mov",
    "*.enc", "*.m1v", "*.mp2", "*.avi", "*.mid", "*.asx", "*.wma",
};

// The add dialog's filter, which offers more types than the wizard loads.
inline constexpr const char* kAddFilter =
    "Audio files (wav mp3 asf url wma)|*.wav;*.mp3;*.asf;*.url;*.wma|Movie files "
    "(*.asx;*.mpg;*.mpa;*.mpv;*.mov;*.mpeg;*.enc;*.m1v;*.mp2)|*.asx;*.mpg;*.mpa;*.mpv;*.mov;"
    "*.mpeg;*.enc;*.m1v;*.mp2|Video for Windows files (.avi)|*.avi|All files (*.*)|*.*";

inline constexpr const char* kAsxWarning =
    "WARNING, (ASX) files may give undesired results during mixing";

// The name a record is titled from: the path without its ending, cut at
// six backslashes. The ending's length comes from where the first
// backslash stands, so only a path on a drive letter loses exactly ".xxx".
std::string Base_Name(const std::string& file);

// The front and back of a base name at the first " - ": the front keeps
// the blank before the dash; without a dash the front is empty and the back
// loses two characters.
struct NameParts {
    std::string front;
    std::string back;
};
NameParts Split_Name(const std::string& base);

// Only these two spellings warn.
bool is_asx(const std::string& file);

// The file's modification time as a local date, or nothing when the file
// can't be read.
std::optional<double> file_date(const std::filesystem::path& path);

}  // namespace tavora
