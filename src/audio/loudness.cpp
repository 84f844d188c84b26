#include "audio/loudness.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "audio/decoder.h"
#include "audio/format.h"

namespace tavora::audio {

namespace {

struct StateFree {
    void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
};
using State = std::unique_ptr<ebur128_state, StateFree>;

constexpr std::size_t kChunk = 16384;  // frames decoded at a time

std::optional<Loudness> measure_span(const std::string& path, std::int64_t from, std::int64_t to,
                                     std::string& error, const std::atomic<bool>* abort) {
    if (path.rfind("http", 0) == 0) {
        error = "a stream has no loudness of its own";
        return std::nullopt;
    }
    Decoder decoder;
    const OpenResult opened = decoder.open(path, abort);
    if (opened.status != OpenStatus::Succeeded) {
        error = opened.error.empty() ? "the file could not be opened" : opened.error;
        return std::nullopt;
    }
    if (from > 0 && !decoder.seek(from)) {
        error = "the file ends before the stretch to measure";
        return std::nullopt;
    }
    State state(ebur128_init(kChannels, kRate, EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK));
    if (!state) {
        error = "no memory for the measurement";
        return std::nullopt;
    }
    std::vector<float> buffer(kChunk * kChannels);
    std::int64_t frames = 0;
    for (std::size_t got; (got = decoder.read(buffer.data(), kChunk)) > 0;) {
        if (abort && abort->load()) {
            error = "stopped";
            return std::nullopt;
        }
        if (to >= 0)
            got = static_cast<std::size_t>(
                std::clamp<std::int64_t>(to - from - frames, 0, static_cast<std::int64_t>(got)));
        if (got == 0) break;
        ebur128_add_frames_float(state.get(), buffer.data(), got);
        frames += static_cast<std::int64_t>(got);
    }
    Loudness loudness;
    loudness.seconds = seconds_of_frames(frames);
    if (ebur128_loudness_global(state.get(), &loudness.integrated_lufs) != EBUR128_SUCCESS ||
        !std::isfinite(loudness.integrated_lufs)) {
        // Under 0.4 s, or nothing above the absolute gate: no loudness to match.
        error = "too short or too quiet to measure";
        return std::nullopt;
    }
    double peak = 0;
    for (unsigned channel = 0; channel < kChannels; ++channel) {
        double channel_peak = 0;
        ebur128_true_peak(state.get(), channel, &channel_peak);
        peak = std::max(peak, channel_peak);
    }
    loudness.true_peak_dbtp = peak > 0 ? 20.0 * std::log10(peak) : -HUGE_VAL;
    return loudness;
}

}  // namespace

std::optional<Loudness> measure_loudness(const std::string& path, std::string& error,
                                         const std::atomic<bool>* abort) {
    return measure_span(path, 0, -1, error, abort);
}

std::optional<Loudness> measure_loudness(const std::string& path, double from, double to,
                                         std::string& error) {
    return measure_span(path, frames_of_seconds(from), frames_of_seconds(to), error, nullptr);
}

}  // namespace tavora::audio
