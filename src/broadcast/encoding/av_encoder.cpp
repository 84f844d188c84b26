#include "broadcast/encoding/av_encoder.h"

#include <algorithm>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include "audio/codec_feed.h"
#include "audio/ffmpeg_once.h"
#include "audio/format.h"

namespace tavora {

namespace {

struct CodecChoice {
    const char* codec;
    const char* encoder;
    const char* file_muxer;
    const char* stream_muxer;
    int format_tag;  // the wave format tag a Windows encoder reports
};

constexpr CodecChoice kChoices[] = {
    {"wma", "wmav2", "asf", nullptr, 0x0161},
    {"mp3", "libmp3lame", "mp3", "mp3", 0x0055},
    {"vorbis", "libvorbis", "ogg", "ogg", 0x674F},
    {"opus", "libopus", "ogg", "ogg", 0x704F},
};

const CodecChoice* choice_of(const std::string& codec) {
    for (const CodecChoice& c : kChoices)
        if (codec == c.codec) return &c;
    return nullptr;
}

// The first sample format of the codec's list; planar float when it lists none.
AVSampleFormat sample_format_of(const AVCodec* codec) {
    if (codec->sample_fmts == nullptr) return AV_SAMPLE_FMT_FLTP;
    for (const AVSampleFormat* f = codec->sample_fmts; *f != AV_SAMPLE_FMT_NONE; ++f)
        if (*f == AV_SAMPLE_FMT_FLTP || *f == AV_SAMPLE_FMT_FLT) return *f;
    return codec->sample_fmts[0];
}

int write_to_sink(void* opaque, const std::uint8_t* data, int size) {
    auto* sink = static_cast<AvEncoder::ByteSink*>(opaque);
    (*sink)(data, static_cast<std::size_t>(size));
    return size;
}

// FFmpeg's write callback is declared without const before version 61.
#if LIBAVFORMAT_VERSION_MAJOR < 61
int write_to_sink_mutable(void* opaque, std::uint8_t* data, int size) {
    return write_to_sink(opaque, data, size);
}
#define TAVORA_SINK_WRITER write_to_sink_mutable
#else
#define TAVORA_SINK_WRITER write_to_sink
#endif

AVFormatContext* new_muxer(const char* format, const char* file_name, AVCodecContext* codec,
                           const std::string& title) {
    AVFormatContext* ctx = nullptr;
    if (avformat_alloc_output_context2(&ctx, nullptr, format, file_name) < 0) return nullptr;
    AVStream* stream = avformat_new_stream(ctx, nullptr);
    if (stream == nullptr || avcodec_parameters_from_context(stream->codecpar, codec) < 0) {
        avformat_free_context(ctx);
        return nullptr;
    }
    stream->time_base = codec->time_base;
    if (!title.empty()) av_dict_set(&stream->metadata, "title", title.c_str(), 0);
    return ctx;
}

}  // namespace

std::unique_ptr<AvEncoder> AvEncoder::open(const Profile& profile, std::string& why) {
    const CodecChoice* choice = choice_of(profile.codec);
    const AVCodec* codec = choice ? avcodec_find_encoder_by_name(choice->encoder) : nullptr;
    if (codec == nullptr) {
        why = "no encoder for " + profile.codec + " on this machine";
        return nullptr;
    }
    std::unique_ptr<AvEncoder> e(new AvEncoder);
    e->profile_ = profile;
    e->codec_ = avcodec_alloc_context3(codec);
    AVCodecContext* c = e->codec_;
    c->sample_rate = profile.sample_rate;
    c->sample_fmt = sample_format_of(codec);
    av_channel_layout_default(&c->ch_layout, profile.channels);
    c->bit_rate = static_cast<std::int64_t>(profile.bitrate_kbps) * 1000;
    c->time_base = AVRational{1, profile.sample_rate};
    // Ogg and ASF keep the codec's set-up packets in the header.
    c->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    if (const int err = avcodec_open2(c, codec, nullptr); err < 0) {
        why = profile.codec + " refuses " + std::to_string(profile.bitrate_kbps) + " kb/s at " +
              std::to_string(profile.sample_rate) + " Hz, " + std::to_string(profile.channels) +
              " channel(s): " + audio::ffmpeg_error(err);
        return nullptr;
    }
    AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
    if (swr_alloc_set_opts2(&e->swr_, &c->ch_layout, c->sample_fmt, c->sample_rate, &stereo,
                            AV_SAMPLE_FMT_FLT, audio::kRate, 0, nullptr) < 0 ||
        swr_init(e->swr_) < 0) {
        why = "cannot convert the mix to " + std::to_string(profile.sample_rate) + " Hz";
        return nullptr;
    }
    e->feed_ = std::make_unique<audio::CodecFeed>(c);
    return e;
}

AvEncoder::~AvEncoder() {
    close_file();
    close_stream();
    feed_.reset();
    swr_free(&swr_);
    avcodec_free_context(&codec_);
}

bool AvEncoder::open_file(const std::string& path, std::string& why) {
    const CodecChoice* choice = choice_of(profile_.codec);
    AVFormatContext* ctx = new_muxer(choice->file_muxer, path.c_str(), codec_, {});
    if (ctx == nullptr) {
        why = "cannot make a " + std::string(choice->file_muxer) + " file";
        return false;
    }
    if (profile_.codec == "mp3") av_opt_set_int(ctx->priv_data, "id3v2_version", 0, 0);
    if (const int err = avio_open(&ctx->pb, path.c_str(), AVIO_FLAG_WRITE); err < 0) {
        why = "cannot write " + path + ": " + audio::ffmpeg_error(err);
        avformat_free_context(ctx);
        return false;
    }
    if (const int err = avformat_write_header(ctx, nullptr); err < 0) {
        why = "cannot start " + path + ": " + audio::ffmpeg_error(err);
        avio_closep(&ctx->pb);
        avformat_free_context(ctx);
        return false;
    }
    avio_flush(ctx->pb);
    file_ = ctx;
    file_bytes_ = avio_tell(ctx->pb);
    return true;
}

void AvEncoder::close_file() {
    if (file_ == nullptr) return;
    av_write_trailer(file_);
    avio_flush(file_->pb);
    // ASF goes back to its header to finish it, so the end is the size, not the place.
    file_bytes_ = std::max(avio_tell(file_->pb), avio_size(file_->pb));
    avio_closep(&file_->pb);
    avformat_free_context(file_);
    file_ = nullptr;
}

bool AvEncoder::open_stream(ByteSink sink, const std::string& title) {
    close_stream();
    const CodecChoice* choice = choice_of(profile_.codec);
    if (choice->stream_muxer == nullptr) return false;
    sink_ = std::move(sink);
    AVFormatContext* ctx = new_muxer(choice->stream_muxer, nullptr, codec_, title);
    if (ctx == nullptr) return false;
    if (profile_.codec == "mp3") {
        av_opt_set_int(ctx->priv_data, "id3v2_version", 0, 0);
        av_opt_set_int(ctx->priv_data, "write_xing", 0, 0);
    }
    constexpr int kBuffer = 4096;
    auto* buffer = static_cast<unsigned char*>(av_malloc(kBuffer));
    ctx->pb = avio_alloc_context(buffer, kBuffer, 1, &sink_, nullptr, TAVORA_SINK_WRITER, nullptr);
    ctx->flags |= AVFMT_FLAG_FLUSH_PACKETS;
    if (avformat_write_header(ctx, nullptr) < 0) {
        avio_context_free(&ctx->pb);
        avformat_free_context(ctx);
        return false;
    }
    avio_flush(ctx->pb);
    stream_ = ctx;
    stream_pts_base_ = -1;
    return true;
}

void AvEncoder::close_stream() {
    if (stream_ == nullptr) return;
    av_write_trailer(stream_);
    avio_flush(stream_->pb);
    av_freep(&stream_->pb->buffer);
    avio_context_free(&stream_->pb);
    avformat_free_context(stream_);
    stream_ = nullptr;
}

bool AvEncoder::encode(const float* frames, std::size_t count) {
    const int in = static_cast<int>(count);
    const int room = swr_get_out_samples(swr_, in);
    std::vector<std::uint8_t*> planes(profile_.channels, nullptr);
    int linesize = 0;
    if (av_samples_alloc(planes.data(), &linesize, profile_.channels, room, codec_->sample_fmt, 0) <
        0)
        return false;
    const auto* input = reinterpret_cast<const std::uint8_t*>(frames);
    const int converted = swr_convert(swr_, planes.data(), room, &input, in);
    const bool queued =
        converted <= 0 || feed_->queue(reinterpret_cast<void* const*>(planes.data()), converted);
    av_freep(&planes[0]);
    return queued && drain(false);
}

bool AvEncoder::drain(bool flushing) {
    bool ok =
        feed_->encode(flushing, [this](AVPacket* packet) { return write_packet(packet); }).empty();
    if (file_) {
        avio_flush(file_->pb);
        file_bytes_ = avio_tell(file_->pb);
        if (file_->pb->error < 0) ok = false;
    }
    return ok;
}

bool AvEncoder::write_packet(AVPacket* packet) {
    bool ok = true;
    if (stream_) {
        AVPacket* copy = av_packet_clone(packet);
        if (stream_pts_base_ < 0) stream_pts_base_ = copy->pts;
        copy->pts -= stream_pts_base_;
        copy->dts -= stream_pts_base_;
        av_packet_rescale_ts(copy, codec_->time_base, stream_->streams[0]->time_base);
        copy->stream_index = 0;
        av_write_frame(stream_, copy);
        av_packet_free(&copy);
    }
    if (file_) {
        av_packet_rescale_ts(packet, codec_->time_base, file_->streams[0]->time_base);
        packet->stream_index = 0;
        ok = av_write_frame(file_, packet) >= 0;
    }
    return ok;
}

void AvEncoder::finish() {
    drain(true);
    close_file();
    close_stream();
}

double AvEncoder::seconds() const {
    return static_cast<double>(feed_->frames_encoded()) / profile_.sample_rate;
}

int AvEncoder::format_tag() const {
    return choice_of(profile_.codec)->format_tag;
}

const char* AvEncoder::stream_format() const {
    const char* muxer = choice_of(profile_.codec)->stream_muxer;
    return muxer ? muxer : "";
}

}  // namespace tavora
