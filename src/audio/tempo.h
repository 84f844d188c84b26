#pragma once

#include <cstddef>
#include <memory>
#include <vector>

struct AVFilterGraph;
struct AVFilterContext;
struct AVFrame;

namespace tavora::audio {

// Changes the speed of the engine's format with the pitch kept (FFmpeg's atempo).
// At rate 1 it stays out of the way. One thread at a time (a player's feeder).
class Tempo {
  public:
    Tempo();
    ~Tempo();
    Tempo(const Tempo&) = delete;
    Tempo& operator=(const Tempo&) = delete;

    // Starts a fresh stream at `rate` (0.5 to 2); false if the filter can't be made.
    bool start(double rate);
    bool active() const { return graph_ != nullptr; }

    // Feeds frames in and appends what comes out; `frames` 0 marks the end of the input.
    void process(const float* in, std::size_t frames, std::vector<float>& out);

  private:
    void collect(std::vector<float>& out);

    struct GraphFree {
        void operator()(AVFilterGraph* g) const;
    };
    struct FrameFree {
        void operator()(AVFrame* f) const;
    };
    std::unique_ptr<AVFilterGraph, GraphFree> graph_;
    std::unique_ptr<AVFrame, FrameFree> frame_;
    AVFilterContext* source_ = nullptr;
    AVFilterContext* sink_ = nullptr;
    long long next_pts_ = 0;
};

}  // namespace tavora::audio
