#include "station/demo_synth.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tavora {

namespace {

constexpr double kTwoPi = 6.283185307179586;

// One cycle of a wave from a table: a library call per oscillator per
// sample would cost most of the time a newcomer waits for the demo.
class WaveTable {
  public:
    explicit WaveTable(const std::array<float, 3>& harmonics) {
        for (std::size_t i = 0; i <= kSize; ++i) {
            double v = 0;
            for (std::size_t h = 0; h < harmonics.size(); ++h)
                v += harmonics[h] * std::sin(kTwoPi * (h + 1) * i / kSize);
            table_[i] = static_cast<float>(v);
        }
    }
    // `phase` in cycles, kept within [0, 1) by the caller.
    float operator()(double phase) const {
        const double at = phase * kSize;
        const auto i = static_cast<std::size_t>(at);
        const float frac = static_cast<float>(at - static_cast<double>(i));
        return table_[i] + (table_[i + 1] - table_[i]) * frac;
    }

  private:
    static constexpr std::size_t kSize = 2048;
    std::array<float, kSize + 1> table_;
};

const WaveTable& pad_wave() {
    static const WaveTable wave({1.0f, 0.25f, 0.1f});
    return wave;
}
const WaveTable& bass_wave() {
    static const WaveTable wave({1.0f, 0.3f, 0.0f});
    return wave;
}
const WaveTable& bell_wave() {
    static const WaveTable wave({1.0f, 0.0f, 0.35f});
    return wave;
}

double semitones(double hz, int steps) {
    return hz * std::pow(2.0, steps / 12.0);
}

void advance(double& phase, double step) {
    phase += step;
    if (phase >= 1) phase -= 1;
}

// Two familiar progressions, as (root step, minor) pairs.
struct Chord {
    int step;
    bool minor;
};
constexpr std::array<std::array<Chord, 4>, 2> kProgressions{{
    {{{0, false}, {7, false}, {9, true}, {5, false}}},  // I V vi IV
    {{{0, false}, {9, true}, {5, false}, {7, false}}},  // I vi IV V
}};

}  // namespace

DemoSynth::DemoSynth(const DemoClip& clip, int rate, std::vector<float> words, int words_rate)
    : clip_(clip),
      rate_(rate),
      words_(std::move(words)),
      words_rate_(words_rate),
      length_(static_cast<std::int64_t>(std::llround(clip.seconds * rate))),
      beat_(std::max<std::int64_t>(1, std::llround(rate / clip.beats_per_second))),
      intro_(static_cast<std::int64_t>(std::llround(clip.intro * rate))),
      progression_(static_cast<int>(std::lround(clip.root_hz)) % 2) {
    const auto size = static_cast<std::size_t>(beat_);
    kick_.resize(size);
    clap_.resize(size);
    hat_.resize(size);
    bass_decay_.resize(size);
    double kick_phase = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const double t = static_cast<double>(i) / rate;
        // Kick: a falling thump; clap and hats: shapes for the noise.
        kick_phase += (45 + 75 * std::exp(-t * 30)) / rate;
        kick_[i] =
            t < 0.3 ? static_cast<float>(0.45 * std::exp(-t * 14) * std::sin(kTwoPi * kick_phase))
                    : 0.0f;
        clap_[i] = t < 0.2 ? static_cast<float>(0.16 * std::exp(-t * 25)) : 0.0f;
        hat_[i] = t < 0.06 ? static_cast<float>(0.07 * std::exp(-t * 70)) : 0.0f;
        bass_decay_[i] = static_cast<float>(0.22 * std::exp(-t * 4));
    }
}

void DemoSynth::start_chord(std::int64_t chord) {
    chord_ = chord;
    const Chord c = kProgressions[progression_][static_cast<std::size_t>(chord % 4)];
    const double root = semitones(clip_.root_hz * 2, c.step);
    const double voices[3] = {root, semitones(root, c.minor ? 3 : 4), semitones(root, 7)};
    for (int v = 0; v < 3; ++v)
        pad_step_[v] = voices[v] / rate_;
    bass_step_ = semitones(clip_.root_hz / 2, c.step) / rate_;
}

float DemoSynth::pad(std::int64_t in_chord) {
    const WaveTable& wave = pad_wave();
    float sum = 0;
    for (int v = 0; v < 3; ++v) {
        sum += wave(pad_phase_[v]);
        advance(pad_phase_[v], pad_step_[v]);
    }
    const float swell = std::min(1.0f, static_cast<float>(in_chord) / (0.08f * rate_));
    return 0.07f * sum * swell;
}

float DemoSynth::drums(std::int64_t in_beat, int beat_number) {
    const auto i = static_cast<std::size_t>(in_beat);
    noise_ ^= noise_ << 13;
    noise_ ^= noise_ >> 17;
    noise_ ^= noise_ << 5;
    const float white = static_cast<float>(noise_) / 2147483648.0f - 1.0f;
    const float high = white - last_white_;  // the noise's highs, for the hats
    last_white_ = white;
    float out = beat_number % 2 == 0 ? kick_[i] : clap_[i] * white;
    out += hat_[(i + static_cast<std::size_t>(beat_ / 2)) % hat_.size()] * high;
    out += bass_decay_[i] * bass_wave()(bass_phase_);
    return out;
}

// Three rising notes, for a clip with words where nobody can speak them.
float DemoSynth::chime(double t) {
    float out = 0;
    for (int note = 0; note < 3; ++note) {
        const double start = 0.2 + 0.25 * note;
        if (t < start) break;
        const double hz = semitones(clip_.root_hz * 2, note * 4 - (note == 2 ? 1 : 0));
        const double age = t - start;
        const double phase = hz * age - std::floor(hz * age);
        out += 0.3f * static_cast<float>(std::exp(-age * 2.5)) * bell_wave()(phase);
    }
    return out;
}

float DemoSynth::voice(double t) const {
    const double at = t * words_rate_;
    const auto i = static_cast<std::size_t>(at);
    if (i + 1 >= words_.size()) return 0;
    const float frac = static_cast<float>(at - static_cast<double>(i));
    return words_[i] + (words_[i + 1] - words_[i]) * frac;
}

// A short rise at the start, the fade of the mix-out, and a clean stop.
float DemoSynth::envelope(std::int64_t at) const {
    const double t = static_cast<double>(at) / rate_;
    double level = std::min(1.0, t / 0.02);
    const double left = clip_.seconds - t;
    if (clip_.outro > 0 && left < clip_.outro) level *= std::max(0.0, left / clip_.outro);
    return static_cast<float>(level * std::min(1.0, left / 0.02));
}

std::size_t DemoSynth::render(float* out, std::size_t frames) {
    const auto count = static_cast<std::size_t>(std::clamp<std::int64_t>(length_ - at_, 0, frames));
    const std::int64_t chord_length = 8 * beat_;
    for (std::size_t n = 0; n < count; ++n, ++at_) {
        const std::int64_t chord = at_ / chord_length;
        if (chord != chord_) start_chord(chord);
        float v = pad(at_ - chord * chord_length);
        if (!clip_.words.empty()) {
            const double t = static_cast<double>(at_) / rate_;
            v = 0.35f * v + 0.8f * (words_.empty() ? chime(t) : voice(t));
        } else if (at_ < intro_) {
            v *= 0.4f + 0.6f * static_cast<float>(at_) / static_cast<float>(intro_);
        } else {
            v += drums(at_ % beat_, static_cast<int>((at_ / beat_) % 4));
        }
        advance(bass_phase_, bass_step_);
        out[n] = v * envelope(at_);
    }
    return count;
}

}  // namespace tavora
