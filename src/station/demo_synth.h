#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "station/demo_media.h"

namespace tavora {

// The sound of one demo clip, rendered a block at a time: mono float at
// `rate`. A song is four chords of two bars each, round and round, with
// bass, kick, clap and hats; a spoken clip is a quiet chord under its words
// (or a chime when there are none to say).
class DemoSynth {
  public:
    // `words`: mono samples at `words_rate`.
    DemoSynth(const DemoClip& clip, int rate, std::vector<float> words = {}, int words_rate = 0);

    // Up to `frames` samples into `out`; 0 once the clip has ended.
    std::size_t render(float* out, std::size_t frames);
    std::int64_t length() const { return length_; }

  private:
    void start_chord(std::int64_t chord);
    float pad(std::int64_t in_chord);
    float drums(std::int64_t in_beat, int beat_number);
    float chime(double t);
    float voice(double t) const;
    float envelope(std::int64_t at) const;

    DemoClip clip_;
    int rate_;
    std::vector<float> words_;
    int words_rate_;
    std::int64_t length_;
    std::int64_t at_ = 0;
    std::int64_t beat_ = 1;  // samples a beat
    std::int64_t intro_ = 0;
    std::int64_t chord_ = -1;
    double pad_phase_[3] = {};
    double pad_step_[3] = {};
    double bass_phase_ = 0;
    double bass_step_ = 0;
    int progression_ = 0;
    // One beat of each drum's shape, from the beat's start.
    std::vector<float> kick_, clap_, hat_, bass_decay_;
    std::uint32_t noise_ = 0x9E3779B9u;
    float last_white_ = 0;
};

}  // namespace tavora
