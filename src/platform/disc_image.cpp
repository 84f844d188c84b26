#include "platform/disc_image.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>
#include <system_error>

#include "platform/mci.h"

namespace tavora {

namespace {

namespace fs = std::filesystem;

// The shortest track a disc may hold.
constexpr long kShortestTrack = 4 * mci::kFramesPerSecond;
// What a data disc reads as: one track, not audio.
constexpr long kDataTrack = 60 * mci::kFramesPerSecond;

bool is_audio_file(const fs::path& file) {
    std::string ext = file.extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ext == ".wav" || ext == ".flac";
}

// The number a file name starts with, or -1.
long leading_number(const std::string& name) {
    long number = -1;
    for (char c : name) {
        if (!std::isdigit(static_cast<unsigned char>(c)) || number > 9999) break;
        number = (number < 0 ? 0 : number * 10) + (c - '0');
    }
    return number;
}

}  // namespace

DiscImageDrive::DiscImageDrive(Measure measure) : measure_(std::move(measure)) {}

std::vector<std::string> DiscImageDrive::insert(const fs::path& folder) {
    eject();
    std::vector<std::string> problems;
    std::error_code error;
    if (!fs::is_directory(folder, error)) {
        problems.push_back("There is no disc image folder " + folder.string() + ".");
        return problems;
    }
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder, error))
        if (entry.is_regular_file(error) && is_audio_file(entry.path()))
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    folder_ = folder;
    present_ = true;
    changed_ = true;
    if (files.empty()) {
        entries_.push_back({{kDataTrack, false}, {}});
        return problems;
    }

    // Numbered names say where a track is missing; otherwise the name order.
    std::map<long, fs::path> numbered;
    for (const auto& file : files) {
        const long number = leading_number(file.filename().string());
        if (number < 1 || !numbered.emplace(number, file).second) {
            numbered.clear();
            break;
        }
    }
    if (numbered.empty()) {
        for (std::size_t i = 0; i < files.size(); ++i)
            numbered.emplace(static_cast<long>(i + 1), files[i]);
    }
    const long last = numbered.rbegin()->first;
    for (long number = 1; number <= last && number <= 99; ++number) {
        const auto it = numbered.find(number);
        if (it == numbered.end()) {
            problems.push_back("Track " + std::to_string(number) +
                               " is missing from the disc image.");
            entries_.push_back({{kShortestTrack, true}, {}});
            continue;
        }
        std::string why;
        const double seconds = measure_(it->second.string(), why);
        if (seconds <= 0) {
            problems.push_back("Track " + std::to_string(number) + " (" +
                               it->second.filename().string() + ") can't be read: " + why);
            entries_.push_back({{kShortestTrack, true}, {}});
            continue;
        }
        const long frames = std::lround(seconds * mci::kFramesPerSecond);
        entries_.push_back({{std::max(frames, 1L), true}, it->second.string()});
    }
    return problems;
}

std::vector<CdDrive::Track> DiscImageDrive::tracks() {
    std::vector<Track> toc;
    if (!present_) return toc;
    for (const auto& entry : entries_)
        toc.push_back(entry.track);
    return toc;
}

void DiscImageDrive::eject() {
    changed_ = changed_ || present_;
    present_ = false;
    entries_.clear();
    folder_.clear();
}

CdDrive::TrackAudio DiscImageDrive::audio(int track) {
    if (!present_ || track < 1 || track > static_cast<int>(entries_.size())) return {};
    const Entry& entry = entries_[track - 1];
    if (!entry.track.audio || entry.path.empty()) return {};
    std::error_code error;
    // A file that went away after the disc went in is a scratch.
    if (!fs::exists(entry.path, error)) return {};
    return {Audio::Ready, entry.path};
}

}  // namespace tavora
