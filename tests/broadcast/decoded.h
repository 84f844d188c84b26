#pragma once

#include <cmath>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace tavora::test {

// What a file or stream decodes to, by FFmpeg's own decoders.
struct Decoded {
    bool opened = false;
    std::string codec;
    double seconds = 0;  // of decoded audio
    double rms = 0;      // over every sample of every channel
};

// One sample of a float frame, planar or packed. The decoders of every codec
// the encoder writes give floats; anything else reads as silence and fails.
inline double sample_of(const AVFrame& frame, int channel, int i) {
    const auto format = static_cast<AVSampleFormat>(frame.format);
    const bool planar = av_sample_fmt_is_planar(format);
    const int at = planar ? i : i * frame.ch_layout.nb_channels + channel;
    const uint8_t* data = frame.extended_data[planar ? channel : 0];
    if (av_get_packed_sample_fmt(format) != AV_SAMPLE_FMT_FLT) return 0;
    return reinterpret_cast<const float*>(data)[at];
}

// Decodes at most `max_seconds` of the first audio stream of `url`.
inline Decoded decode(const std::string& url, double max_seconds = 1e9) {
    Decoded d;
    AVFormatContext* format = nullptr;
    if (avformat_open_input(&format, url.c_str(), nullptr, nullptr) < 0) return d;
    const int index = avformat_find_stream_info(format, nullptr) < 0
                          ? -1
                          : av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (index < 0) {
        avformat_close_input(&format);
        return d;
    }
    const AVCodecParameters* par = format->streams[index]->codecpar;
    const AVCodec* codec = avcodec_find_decoder(par->codec_id);
    AVCodecContext* ctx = avcodec_alloc_context3(codec);
    avcodec_parameters_to_context(ctx, par);
    avcodec_open2(ctx, codec, nullptr);
    d.opened = true;
    d.codec = avcodec_get_name(par->codec_id);
    AVPacket* packet = av_packet_alloc();
    AVFrame* frame = av_frame_alloc();
    double sum = 0;
    long long samples = 0, frames = 0;
    auto take = [&] {
        while (avcodec_receive_frame(ctx, frame) == 0) {
            frames += frame->nb_samples;
            for (int c = 0; c < frame->ch_layout.nb_channels; ++c)
                for (int i = 0; i < frame->nb_samples; ++i, ++samples)
                    sum += std::pow(sample_of(*frame, c, i), 2);
        }
    };
    while (av_read_frame(format, packet) >= 0 &&
           static_cast<double>(frames) / ctx->sample_rate < max_seconds) {
        if (packet->stream_index == index && avcodec_send_packet(ctx, packet) == 0) take();
        av_packet_unref(packet);
    }
    avcodec_send_packet(ctx, nullptr);
    take();
    d.seconds = static_cast<double>(frames) / ctx->sample_rate;
    d.rms = samples > 0 ? std::sqrt(sum / static_cast<double>(samples)) : 0;
    av_frame_free(&frame);
    av_packet_free(&packet);
    avcodec_free_context(&ctx);
    avformat_close_input(&format);
    return d;
}

}  // namespace tavora::test
