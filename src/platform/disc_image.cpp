#include "platform/disc_image.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <system_error>

#include "platform/mci.h"

namespace tavora {

namespace {

namespace fs = std::filesystem;

// The shortest track a disc may hold.
constexpr long kShortestTrack = 4 * mci::kFramesPerSecond;
// What a data disc reads as: one track, not audio.
constexpr long kDataTrack = 60 * mci::kFramesPerSecond;

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

bool is_audio_file(const fs::path& file) {
    const std::string ext = lower(file.extension().string());
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
    std::vector<fs::path> files, sheets;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (!entry.is_regular_file(error)) continue;
        if (is_audio_file(entry.path())) files.push_back(entry.path());
        if (lower(entry.path().extension().string()) == ".cue") sheets.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    folder_ = folder;
    present_ = true;
    changed_ = true;
    if (!sheets.empty()) {
        read_cue_sheet(*std::min_element(sheets.begin(), sheets.end()), problems);
    } else if (!files.empty()) {
        read_files(files, problems);
    }
    if (entries_.empty()) entries_.push_back({{kDataTrack, false}, {}});
    return problems;
}

long DiscImageDrive::frames_of(const fs::path& file, int track,
                               std::vector<std::string>& problems) {
    std::string why;
    const double seconds = measure_(file.string(), why);
    if (seconds > 0) return std::max(std::lround(seconds * mci::kFramesPerSecond), 1L);
    problems.push_back("Track " + std::to_string(track) + " (" + file.filename().string() +
                       ") can't be read: " + why);
    return 0;
}

void DiscImageDrive::read_files(const std::vector<fs::path>& files,
                                std::vector<std::string>& problems) {
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
        const long frames = frames_of(it->second, static_cast<int>(number), problems);
        if (frames == 0) {
            entries_.push_back({{kShortestTrack, true}, {}});
            continue;
        }
        entries_.push_back({{frames, true}, it->second.string()});
    }
}

// FILE, TRACK and INDEX 01 lines; a track ends where the next one in its
// file begins, the last one in a file at the file's end.
void DiscImageDrive::read_cue_sheet(const fs::path& sheet, std::vector<std::string>& problems) {
    std::ifstream in(sheet);
    fs::path file;
    std::vector<fs::path> files;
    std::vector<long> starts;
    for (std::string line; std::getline(in, line);) {
        std::istringstream words(line);
        std::string word;
        words >> word;
        if (word == "FILE") {
            const std::size_t open = line.find('"'), close = line.rfind('"');
            std::string name;
            if (open != std::string::npos && close > open) {
                name = line.substr(open + 1, close - open - 1);
            } else {
                words >> name;
            }
            file = sheet.parent_path() / name;
        } else if (word == "TRACK") {
            std::string number, kind;
            words >> number >> kind;
            entries_.push_back({{0, kind == "AUDIO"}, file.string()});
            files.push_back(file);
            starts.push_back(-1);
        } else if (word == "INDEX" && !starts.empty()) {
            std::string index, at;
            words >> index >> at;
            int m = 0, sec = 0, f = 0;
            if (index == "01" && std::sscanf(at.c_str(), "%d:%d:%d", &m, &sec, &f) == 3)
                starts.back() = (m * 60L + sec) * mci::kFramesPerSecond + f;
        }
    }
    std::map<fs::path, long> lengths;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        Entry& entry = entries_[i];
        const int number = static_cast<int>(i + 1);
        if (!lengths.count(files[i])) lengths[files[i]] = frames_of(files[i], number, problems);
        const bool last_in_file = i + 1 == entries_.size() || files[i + 1] != files[i];
        const long end = last_in_file ? lengths[files[i]] : starts[i + 1];
        if (starts[i] < 0 || lengths[files[i]] == 0 || end <= starts[i]) {
            if (lengths[files[i]] != 0)
                problems.push_back("Track " + std::to_string(number) +
                                   " has no place in its file in the cue sheet.");
            entry = {{kShortestTrack, true}, {}};
            continue;
        }
        entry.track.frames = end - starts[i];
        entry.start = static_cast<double>(starts[i]) / mci::kFramesPerSecond;
    }
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
    return {Audio::Ready, entry.path, entry.start};
}

}  // namespace tavora
