#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "audio/decoder.h"
#include "audio/format.h"
#include "offline_station.h"

namespace tavora::audio {
namespace {

// Cut short, bytes flipped, runs overwritten, or all of those.
std::string damage(std::string bytes, std::mt19937& random) {
    auto pick = [&random](std::size_t below) {
        return std::uniform_int_distribution<std::size_t>(0, below - 1)(random);
    };
    const std::size_t kind = pick(4);
    if (kind == 0 || kind == 3) bytes.resize(pick(bytes.size()));
    if (bytes.empty()) return bytes;
    if (kind == 1 || kind == 3) {
        for (std::size_t n = 1 + pick(16); n > 0; --n)
            bytes[pick(bytes.size())] ^= char(1 << pick(8));
    }
    if (kind == 2 || kind == 3) {
        const std::size_t at = pick(bytes.size());
        const std::size_t run = std::min(bytes.size() - at, 1 + pick(256));
        for (std::size_t i = 0; i < run; ++i)
            bytes[at + i] = static_cast<char>(pick(256));
    }
    return bytes;
}

// Ten thousand damaged copies of real files go through open, read and seek. Each one
// either opens and decodes finite samples, or fails with a message; none crashes, and
// ctest's time limit catches a hang.
TEST(Fuzz, DamagedFilesNeverCrashOrHang) {
    const std::vector<std::string> kinds = {"wav", "mp3", "ogg", "opus", "flac",
                                            "m4a", "wma", "mp2", "avi"};
    std::vector<std::string> seeds;
    for (const auto& kind : kinds)
        seeds.push_back(test::file_bytes(test::media("fuzz." + kind)));
    std::mt19937 random(20261123);
    std::vector<float> buffer(4096 * kChannels);
    int opened = 0;
    int failed = 0;
    for (int i = 0; i < 10000; ++i) {
        const std::size_t which = static_cast<std::size_t>(i) % kinds.size();
        const std::string path = test::media("fuzz-case." + kinds[which]);
        std::ofstream(path, std::ios::binary | std::ios::trunc) << damage(seeds[which], random);
        Decoder decoder;
        const OpenResult result = decoder.open(path);
        if (result.status != OpenStatus::Succeeded) {
            ASSERT_FALSE(result.error.empty()) << "case " << i;
            ++failed;
            continue;
        }
        ++opened;
        std::size_t got = decoder.read(buffer.data(), 4096);
        if (decoder.seek(decoder.length() / 2)) got = decoder.read(buffer.data(), 4096);
        ASSERT_LE(got, 4096u);
        for (std::size_t s = 0; s < got * kChannels; ++s) {
            ASSERT_TRUE(std::isfinite(buffer[s])) << "case " << i;
        }
    }
    EXPECT_GT(opened, 1000);
    EXPECT_GT(failed, 100);
}

}  // namespace
}  // namespace tavora::audio
