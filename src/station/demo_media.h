#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tavora {

// A generated piece of "music": a chord over a beat, with a quiet intro up
// to the mix-in point and a fade over the mix-out.
struct DemoClip {
    std::filesystem::path file;  // the extension picks the format
    double seconds = 0;
    double intro = 0;  // seconds until the music proper
    double outro = 0;  // seconds of fade at the end
    double root_hz = 220;
    double beats_per_second = 2;
};

// Makes the clips whose files aren't there yet with the ffmpeg program,
// two at a time, calling `progress` after each. Empty on success, else why.
std::string make_demo_media(
    const std::vector<DemoClip>& clips,
    const std::function<void(std::size_t done, std::size_t total)>& progress);

}  // namespace tavora
