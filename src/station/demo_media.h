#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tavora {

// Clips are mono at a modest rate: the same sound goes to both sides, and
// the encoder's work, most of the cost, grows with every sample.
inline constexpr int kDemoRate = 32000;

// A generated piece of "music": a chord progression over bass and drums in
// its own key and tempo, a pad alone up to the mix-in point, a fade over the
// mix-out. With `words` it is a spoken clip over a soft chord instead.
struct DemoClip {
    std::filesystem::path file;  // the extension picks the format
    double seconds = 0;
    double intro = 0;  // seconds until the music proper
    double outro = 0;  // seconds of fade at the end
    double root_hz = 220;
    double beats_per_second = 2;
    std::string words;  // spoken with espeak-ng where it is installed, else a chime
    int rate = kDemoRate;
};

// Makes the clips whose files aren't there yet, in this process, on as many
// threads as there are cores, calling `done` (from those threads, one at a
// time) after each with the clip and an error or empty. A set `stop` ends
// the work between blocks; a clip cut short leaves no file. Empty on
// success, else the first error.
std::string make_demo_media(const std::vector<DemoClip>& clips,
                            const std::function<void(const DemoClip&, const std::string& error,
                                                     std::size_t made, std::size_t total)>& done,
                            const std::atomic<bool>* stop = nullptr);

}  // namespace tavora
