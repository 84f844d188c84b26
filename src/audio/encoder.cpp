#include "audio/encoder.h"

#include "audio/codec_feed.h"
#include "audio/ffmpeg_once.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
}

namespace tavora::audio {
namespace {

struct Kind {
    const char* extension;
    const char* codec;
    const char* container;
    int bit_rate;                  // 0: the codec's own
    int compression = -1;          // the codec's speed for quality, where it has one
    const char* option = nullptr;  // one more of the codec's own, "name=value"
};

// Middling quality at a light cost: the demo's songs are made while a
// newcomer waits. Rates are for one channel; stereo takes twice as much.
constexpr std::array<Kind, 6> kKinds{{
    {".mp3", "libmp3lame", "mp3", 80'000, 7},
    {".ogg", "libvorbis", "ogg", 64'000},
    {".flac", "flac", "flac", 0, 1},
    {".m4a", "aac", "ipod", 80'000, -1, "aac_coder=fast"},
    {".opus", "libopus", "opus", 64'000, 3},
    {".wav", "pcm_s16le", "wav", 0},
}};

const Kind* kind_of(const std::string& extension) {
    for (const Kind& kind : kKinds)
        if (extension == kind.extension) return &kind;
    return nullptr;
}

// Interleaved float where the codec takes it, else its first format: the
// samples are converted by hand, a plain copy per channel.
AVSampleFormat format_for(const AVCodec* codec) {
    if (codec->sample_fmts == nullptr) return AV_SAMPLE_FMT_FLT;
    for (const AVSampleFormat* f = codec->sample_fmts; *f != AV_SAMPLE_FMT_NONE; ++f)
        if (*f == AV_SAMPLE_FMT_FLT || *f == AV_SAMPLE_FMT_FLTP) return *f;
    for (const AVSampleFormat* f = codec->sample_fmts; *f != AV_SAMPLE_FMT_NONE; ++f)
        if (*f == AV_SAMPLE_FMT_S16 || *f == AV_SAMPLE_FMT_S16P) return *f;
    return codec->sample_fmts[0];
}

int rate_for(const AVCodec* codec, int wanted) {
    if (codec->supported_samplerates == nullptr) return wanted;
    int best = codec->supported_samplerates[0];
    for (const int* r = codec->supported_samplerates; *r != 0; ++r) {
        if (*r == wanted) return wanted;
        if (*r > best) best = *r;
    }
    return best;
}

}  // namespace

struct Encoder::Output {
    AVFormatContext* format = nullptr;
    AVCodecContext* codec = nullptr;
    AVStream* stream = nullptr;
    std::unique_ptr<CodecFeed> feed;
    int channels = 2;
    bool header = false;

    ~Output() {
        feed.reset();
        avcodec_free_context(&codec);
        if (format) {
            if (format->pb) avio_closep(&format->pb);
            avformat_free_context(format);
        }
    }
};

Encoder::Encoder() = default;
Encoder::~Encoder() = default;

bool Encoder::knows(const std::string& extension) {
    return kind_of(extension) != nullptr;
}

int Encoder::sample_rate() const {
    return out_ ? out_->codec->sample_rate : 0;
}

std::string Encoder::open(const std::filesystem::path& file, const std::string& extension, int rate,
                          int channels) {
    out_.reset();
    quiet_ffmpeg_once();
    const Kind* kind = kind_of(extension);
    if (kind == nullptr) return "no encoder for " + extension + " files";
    const AVCodec* codec = avcodec_find_encoder_by_name(kind->codec);
    if (codec == nullptr) return "this FFmpeg has no " + std::string(kind->codec) + " encoder";
    auto out = std::make_unique<Output>();
    out->channels = channels;
    int code = avformat_alloc_output_context2(&out->format, nullptr, kind->container,
                                              file.string().c_str());
    if (code < 0) return "can't make a " + extension + " file: " + ffmpeg_error(code);
    out->codec = avcodec_alloc_context3(codec);
    out->codec->sample_fmt = format_for(codec);
    out->codec->sample_rate = rate_for(codec, rate);
    av_channel_layout_default(&out->codec->ch_layout, channels);
    if (kind->bit_rate > 0)
        out->codec->bit_rate = static_cast<std::int64_t>(kind->bit_rate) * channels;
    if (kind->compression >= 0) out->codec->compression_level = kind->compression;
    out->codec->time_base = AVRational{1, out->codec->sample_rate};
    if (out->format->oformat->flags & AVFMT_GLOBALHEADER)
        out->codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    AVDictionary* options = nullptr;
    if (kind->option) av_dict_parse_string(&options, kind->option, "=", ",", 0);
    code = avcodec_open2(out->codec, codec, &options);
    av_dict_free(&options);
    if (code < 0)
        return std::string("can't open the ") + kind->codec + " encoder: " + ffmpeg_error(code);
    out->stream = avformat_new_stream(out->format, nullptr);
    avcodec_parameters_from_context(out->stream->codecpar, out->codec);
    out->stream->time_base = out->codec->time_base;
    if ((code = avio_open(&out->format->pb, file.string().c_str(), AVIO_FLAG_WRITE)) < 0)
        return "can't write " + file.string() + ": " + ffmpeg_error(code);
    if ((code = avformat_write_header(out->format, nullptr)) < 0)
        return "can't write " + file.string() + ": " + ffmpeg_error(code);
    out->header = true;
    out->feed = std::make_unique<CodecFeed>(out->codec);
    out_ = std::move(out);
    return {};
}

std::string Encoder::write(const float* samples, std::size_t frames) {
    if (!out_) return "the encoder is not open";
    Output& o = *out_;
    // Converted into the codec's layout, in the fifo's own buffers.
    const int count = static_cast<int>(frames);
    std::array<std::vector<std::uint8_t>, 8> planes;
    std::array<void*, 8> pointers{};
    const bool planar = av_sample_fmt_is_planar(o.codec->sample_fmt);
    const int bytes = av_get_bytes_per_sample(o.codec->sample_fmt);
    const int lines = planar ? o.channels : 1;
    for (int p = 0; p < lines; ++p) {
        planes[p].resize(static_cast<std::size_t>(count) * bytes * (planar ? 1 : o.channels));
        pointers[p] = planes[p].data();
    }
    const bool integer =
        o.codec->sample_fmt == AV_SAMPLE_FMT_S16 || o.codec->sample_fmt == AV_SAMPLE_FMT_S16P;
    for (int i = 0; i < count; ++i) {
        for (int c = 0; c < o.channels; ++c) {
            const float v = samples[static_cast<std::size_t>(i) * o.channels + c];
            const std::size_t at = planar ? i : static_cast<std::size_t>(i) * o.channels + c;
            void* line = pointers[planar ? c : 0];
            if (integer) {
                static_cast<std::int16_t*>(line)[at] =
                    static_cast<std::int16_t>(std::clamp(v, -1.0f, 1.0f) * 32767.0f);
            } else {
                static_cast<float*>(line)[at] = v;
            }
        }
    }
    if (!o.feed->queue(pointers.data(), count)) return "out of memory while encoding";
    return drain(false);
}

std::string Encoder::drain(bool flush) {
    Output& o = *out_;
    std::string why;
    const std::string lost = o.feed->encode(flush, [&o, &why](AVPacket* packet) {
        av_packet_rescale_ts(packet, o.codec->time_base, o.stream->time_base);
        packet->stream_index = o.stream->index;
        const int code = av_interleaved_write_frame(o.format, packet);
        if (code < 0 && why.empty()) why = "can't write the file: " + ffmpeg_error(code);
        return code >= 0;
    });
    return why.empty() ? lost : why;
}

std::string Encoder::finish() {
    if (!out_) return "the encoder is not open";
    std::string error = drain(true);
    if (error.empty()) {
        if (const int code = av_write_trailer(out_->format); code < 0)
            error = "can't finish the file: " + ffmpeg_error(code);
    }
    out_.reset();
    return error;
}

}  // namespace tavora::audio
