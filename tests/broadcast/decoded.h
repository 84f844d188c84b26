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

// Decodes at most `max_seconds` of the first audio stream of `url`.
inline Decoded decode(const std::string& url, double max_seconds = 1e9) {
    Decoded d;
    AVFormatContext* format = nullptr;
    if (avformat_open_input(&format, url.c_str(), nullptr, nullptr) < 0) return d;
    if (avformat_find_stream_info(format, nullptr) < 0) {
        avformat_close_input(&format);
        return d;
    }
    const int index = av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
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
            const int channels = frame->ch_layout.nb_channels;
            for (int c = 0; c < channels; ++c) {
                for (int i = 0; i < frame->nb_samples; ++i) {
                    double v = 0;
                    switch (frame->format) {
                        case AV_SAMPLE_FMT_FLTP:
                            v = reinterpret_cast<const float*>(frame->extended_data[c])[i];
                            break;
                        case AV_SAMPLE_FMT_FLT:
                            v = reinterpret_cast<const float*>(frame->data[0])[i * channels + c];
                            break;
                        case AV_SAMPLE_FMT_S16P:
                            v = reinterpret_cast<const short*>(frame->extended_data[c])[i] /
                                32768.0;
                            break;
                        case AV_SAMPLE_FMT_S16:
                            v = reinterpret_cast<const short*>(frame->data[0])[i * channels + c] /
                                32768.0;
                            break;
                        default:
                            break;
                    }
                    sum += v * v;
                    ++samples;
                }
            }
        }
    };
    while (av_read_frame(format, packet) >= 0 &&
           static_cast<double>(frames) / ctx->sample_rate < max_seconds) {
        if (packet->stream_index == index) {
            avcodec_send_packet(ctx, packet);
            take();
        }
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
