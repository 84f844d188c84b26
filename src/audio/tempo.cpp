#include "audio/tempo.h"

#include <cstring>
#include <string>

extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/frame.h>
}

#include "audio/format.h"

namespace tavora::audio {

void Tempo::GraphFree::operator()(AVFilterGraph* g) const {
    avfilter_graph_free(&g);
}
void Tempo::FrameFree::operator()(AVFrame* f) const {
    av_frame_free(&f);
}

Tempo::Tempo() : frame_(av_frame_alloc()) {}
Tempo::~Tempo() = default;

bool Tempo::start(double rate) {
    graph_.reset();
    source_ = sink_ = nullptr;
    next_pts_ = 0;
    if (rate == 1.0) return true;
    graph_.reset(avfilter_graph_alloc());
    if (!graph_) return false;
    graph_->nb_threads = 1;
    const std::string source_args = "sample_rate=" + std::to_string(kRate) +
                                    ":sample_fmt=flt:channel_layout=stereo:time_base=1/" +
                                    std::to_string(kRate);
    const std::string tempo_args = "tempo=" + std::to_string(rate);
    AVFilterContext* tempo = nullptr;
    const bool made =
        avfilter_graph_create_filter(&source_, avfilter_get_by_name("abuffer"), "in",
                                     source_args.c_str(), nullptr, graph_.get()) >= 0 &&
        avfilter_graph_create_filter(&tempo, avfilter_get_by_name("atempo"), "tempo",
                                     tempo_args.c_str(), nullptr, graph_.get()) >= 0 &&
        avfilter_graph_create_filter(&sink_, avfilter_get_by_name("abuffersink"), "out", nullptr,
                                     nullptr, graph_.get()) >= 0 &&
        avfilter_link(source_, 0, tempo, 0) == 0 && avfilter_link(tempo, 0, sink_, 0) == 0 &&
        avfilter_graph_config(graph_.get(), nullptr) >= 0;
    if (!made) {
        graph_.reset();
        source_ = sink_ = nullptr;
    }
    return made;
}

void Tempo::process(const float* in, std::size_t frames, std::vector<float>& out) {
    if (!graph_) {
        out.insert(out.end(), in, in + frames * kChannels);
        return;
    }
    if (frames == 0) {
        if (av_buffersrc_add_frame(source_, nullptr) >= 0) collect(out);
        return;
    }
    AVFrame* f = frame_.get();
    f->format = AV_SAMPLE_FMT_FLT;
    f->sample_rate = kRate;
    const AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
    av_channel_layout_copy(&f->ch_layout, &stereo);
    f->nb_samples = static_cast<int>(frames);
    f->pts = next_pts_;
    next_pts_ += static_cast<long long>(frames);
    if (av_frame_get_buffer(f, 0) < 0) return;
    std::memcpy(f->data[0], in, frames * kChannels * sizeof(float));
    const bool added = av_buffersrc_add_frame(source_, f) >= 0;  // takes the buffers
    av_frame_unref(f);
    if (added) collect(out);
}

void Tempo::collect(std::vector<float>& out) {
    AVFrame* f = frame_.get();
    while (av_buffersink_get_frame(sink_, f) >= 0) {
        const auto* samples = reinterpret_cast<const float*>(f->data[0]);
        out.insert(out.end(), samples,
                   samples + static_cast<std::size_t>(f->nb_samples) * kChannels);
        av_frame_unref(f);
    }
}

}  // namespace tavora::audio
