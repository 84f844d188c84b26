#pragma once

// What a station's library meets in the field, put on song rows of a demo
// library: a file of noise bytes under a music name, one damaged in its
// middle, one cut short, one that isn't there, one silent throughout and one
// silent for 40 seconds in its middle. The rows keep their titles and
// lengths, as a library does when its files go bad behind its back.
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "platform/path_map.h"
#include "store/library.h"
#include "store/statement.h"

namespace tavora {

enum class Breakage { Garbage, Damaged, Truncated, Missing, Silent, SilentMiddle };
inline constexpr std::array kBreakages = {Breakage::Garbage,   Breakage::Damaged,
                                          Breakage::Truncated, Breakage::Missing,
                                          Breakage::Silent,    Breakage::SilentMiddle};

struct BrokenRows {
    std::vector<long long> rec_ids;  // in the order of kBreakages, round after round
    std::string error;               // empty when every row was broken
};

// `ffmpeg` writing `to` from `args`; whether it did.
inline bool ffmpeg(const std::string& args, const std::filesystem::path& to) {
    return std::system(("ffmpeg -nostdin -hide_banner -loglevel error -y " + args + " \"" +
                        to.string() + "\"")
                           .c_str()) == 0;
}

namespace broken_files {

inline const char* name_of(Breakage kind) {
    constexpr std::array names = {"garbage", "damaged", "truncated",
                                  "missing", "silent",  "silent middle"};
    return names[static_cast<std::size_t>(kind)];
}

// The file that stands for `kind`, made from the song `song` of `seconds`;
// empty or why not.
inline std::string make(Breakage kind, const std::filesystem::path& song, double seconds,
                        const std::filesystem::path& file, std::mt19937& noise) {
    if (kind == Breakage::Missing) return {};
    if (kind == Breakage::Silent || kind == Breakage::SilentMiddle) {
        const std::string quiet = kind == Breakage::Silent
                                      ? "volume=0"
                                      : "volume=0:enable='between(t," +
                                            std::to_string(seconds / 2 - 20) + "," +
                                            std::to_string(seconds / 2 + 20) + ")'";
        const bool done = ffmpeg("-i \"" + song.string() + "\" -af \"" + quiet + "\"", file);
        return done ? "" : "could not silence " + song.string();
    }
    std::ifstream in(song, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), {}};
    if (bytes.empty()) return "the song " + song.string() + " could not be read";
    const std::size_t size = bytes.size();
    if (kind == Breakage::Truncated) bytes.resize(size / 3);
    // Noise over all of a garbage file, over the middle fifth of a damaged one.
    const std::size_t from = kind == Breakage::Damaged ? size * 2 / 5 : 0;
    const std::size_t to = kind == Breakage::Damaged   ? size * 3 / 5
                           : kind == Breakage::Garbage ? size
                                                       : 0;
    for (std::size_t i = from; i < to; ++i)
        bytes[i] = static_cast<char>(noise());
    std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
    return {};
}

}  // namespace broken_files

// Breaks `rounds` song rows of each kind, spread evenly over the library's
// songs of at least 100 seconds (so that a silence can sit in the middle).
inline BrokenRows break_songs(const std::filesystem::path& home, std::size_t rounds) {
    namespace fs = std::filesystem;
    const auto opened = Library::open(home / "qx1.mdb", FileKind::Library);
    if (!opened.library) return {{}, opened.error};
    std::vector<std::tuple<long long, std::string, double>> songs;
    Statement list = opened.library->connection().prepare(
        "SELECT RecID, [Long title], [End Pos] FROM Recordings1 "
        "WHERE Source IS NULL AND [End Pos] >= 100 ORDER BY RecID");
    while (list.step() == Statement::Step::Row)
        songs.emplace_back(list.column_int64(0), list.column_text(1),
                           std::stod(list.column_text(2)));
    const std::size_t wanted = rounds * kBreakages.size();
    if (songs.size() < wanted) return {{}, "the library has too few songs to break"};
    const PathMap paths(home);
    std::mt19937 noise(20261124);
    Statement point = opened.library->connection().prepare(
        "UPDATE Recordings1 SET [Long title] = ?1 WHERE RecID = ?2");
    BrokenRows broken;
    for (std::size_t n = 0; n < wanted; ++n) {
        const auto& [rec_id, song, seconds] = songs[n * songs.size() / wanted];
        const Breakage kind = kBreakages[n % kBreakages.size()];
        const fs::path native = paths.ToNative(song).path;
        const bool silent = kind == Breakage::Silent || kind == Breakage::SilentMiddle;
        const fs::path file = home / "music" /
                              (std::string(broken_files::name_of(kind)) + " " + std::to_string(n) +
                               (silent ? ".flac" : native.extension().string()));
        if (std::string error = broken_files::make(kind, native, seconds, file, noise);
            !error.empty()) {
            return {{}, error};
        }
        point.reset();
        point.bind_text(1, paths.ToDos(file));
        point.bind_int64(2, rec_id);
        if (point.step() != Statement::Step::Done) return {{}, point.error()};
        broken.rec_ids.push_back(rec_id);
    }
    return broken;
}

}  // namespace tavora
