#pragma once

// What a station's library meets in the field, put on song rows of a demo
// library: a file of noise bytes under a music name, one damaged in its
// middle, one cut short, one that isn't there, one silent throughout and one
// silent for 40 seconds in its middle. The rows keep their titles and
// lengths, as a library does when its files go bad behind its back.
#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "audio/decoder.h"
#include "audio/encoder.h"
#include "audio/format.h"
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

namespace broken_files {

namespace fs = std::filesystem;

inline std::string bytes_of(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void put_bytes(const fs::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
}

inline void scramble(std::string& bytes, std::size_t from, std::size_t to, std::mt19937& noise) {
    for (std::size_t i = from; i < std::min(to, bytes.size()); ++i)
        bytes[i] = static_cast<char>(noise());
}

// `from` decoded and written again as FLAC, quiet from `quiet_from` to
// `quiet_to` seconds (the whole file when both are 0); empty or why not.
inline std::string silenced(const fs::path& from, const fs::path& to, double quiet_from,
                            double quiet_to) {
    audio::Decoder decoder;
    const audio::OpenResult opened = decoder.open(from.string());
    if (opened.status != audio::OpenStatus::Succeeded) return opened.error;
    audio::Encoder encoder;
    std::string error = encoder.open(to, ".flac", audio::kRate, audio::kChannels);
    if (!error.empty()) return error;
    const bool all = quiet_from == 0 && quiet_to == 0;
    const std::int64_t first = audio::frames_of_seconds(quiet_from);
    const std::int64_t last = audio::frames_of_seconds(quiet_to);
    std::vector<float> block(4096 * audio::kChannels);
    std::int64_t at = 0;
    while (error.empty()) {
        const std::size_t got = decoder.read(block.data(), 4096);
        if (got == 0) break;
        for (std::size_t i = 0; i < got; ++i, ++at) {
            if (all || (at >= first && at < last)) {
                block[i * audio::kChannels] = 0;
                block[i * audio::kChannels + 1] = 0;
            }
        }
        error = encoder.write(block.data(), got);
    }
    const std::string finished = encoder.finish();
    return error.empty() ? finished : error;
}

// The file that stands for `kind`, made from the song `song` of `seconds`.
inline std::string make(Breakage kind, const fs::path& song, double seconds, const fs::path& file,
                        std::mt19937& noise) {
    std::string bytes =
        kind == Breakage::Missing || kind == Breakage::Silent || kind == Breakage::SilentMiddle
            ? std::string()
            : bytes_of(song);
    switch (kind) {
        case Breakage::Garbage:
            scramble(bytes, 0, bytes.size(), noise);
            break;
        case Breakage::Damaged:
            scramble(bytes, bytes.size() * 2 / 5, bytes.size() * 3 / 5, noise);
            break;
        case Breakage::Truncated:
            bytes.resize(bytes.size() / 3);
            break;
        case Breakage::Missing:
            return {};
        case Breakage::Silent:
            return silenced(song, file, 0, 0);
        case Breakage::SilentMiddle:
            return silenced(song, file, seconds / 2 - 20, seconds / 2 + 20);
    }
    if (bytes.empty()) return "the song " + song.string() + " could not be read";
    put_bytes(file, bytes);
    return {};
}

inline const char* name_of(Breakage kind) {
    constexpr std::array names = {"garbage", "damaged", "truncated",
                                  "missing", "silent",  "silent middle"};
    return names[static_cast<std::size_t>(kind)];
}

}  // namespace broken_files

// Breaks `rounds` song rows of each kind, spread evenly over the library's
// songs of at least 100 seconds (so that a silence can sit in the middle).
inline BrokenRows break_songs(const std::filesystem::path& home, std::size_t rounds) {
    namespace fs = std::filesystem;
    BrokenRows broken;
    const auto opened = Library::open(home / "qx1.mdb", FileKind::Library);
    if (!opened.library) return {{}, opened.error};
    struct Song {
        long long rec_id;
        std::string file;
        double seconds;
    };
    std::vector<Song> songs;
    Statement list = opened.library->connection().prepare(
        "SELECT RecID, [Long title], [End Pos] FROM Recordings1 "
        "WHERE Source IS NULL AND [End Pos] >= ?1 ORDER BY RecID");
    list.bind_int64(1, 100);
    while (list.step() == Statement::Step::Row)
        songs.push_back(
            {list.column_int64(0), list.column_text(1), std::stod(list.column_text(2))});
    const std::size_t wanted = rounds * kBreakages.size();
    if (songs.size() < wanted) return {{}, "the library has too few songs to break"};
    const PathMap paths(home);
    std::mt19937 noise(20261124);
    Statement point = opened.library->connection().prepare(
        "UPDATE Recordings1 SET [Long title] = ?1 WHERE RecID = ?2");
    for (std::size_t n = 0; n < wanted; ++n) {
        const Song& song = songs[n * songs.size() / wanted];
        const Breakage kind = kBreakages[n % kBreakages.size()];
        const fs::path native = paths.ToNative(song.file).path;
        const bool silent = kind == Breakage::Silent || kind == Breakage::SilentMiddle;
        const fs::path file = home / "music" /
                              (std::string(broken_files::name_of(kind)) + " " + std::to_string(n) +
                               (silent ? ".flac" : native.extension().string()));
        if (std::string error = broken_files::make(kind, native, song.seconds, file, noise);
            !error.empty()) {
            return {{}, error};
        }
        point.reset();
        point.bind_text(1, paths.ToDos(file));
        point.bind_int64(2, song.rec_id);
        if (point.step() != Statement::Step::Done) return {{}, point.error()};
        broken.rec_ids.push_back(song.rec_id);
    }
    return broken;
}

}  // namespace tavora
