#include "audio/decoder.h"

#include <algorithm>
#include <cstring>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include "audio/ffmpeg_once.h"
#include "audio/format.h"

namespace tavora::audio {
namespace {

struct FormatClose {
    void operator()(AVFormatContext* f) const { avformat_close_input(&f); }
};
struct CodecFree {
    void operator()(AVCodecContext* c) const { avcodec_free_context(&c); }
};
struct SwrFree {
    void operator()(SwrContext* s) const { swr_free(&s); }
};
struct FrameFree {
    void operator()(AVFrame* f) const { av_frame_free(&f); }
};
struct PacketFree {
    void operator()(AVPacket* p) const { av_packet_free(&p); }
};

constexpr AVRational kFrameTime{1, kRate};

int interrupted(void* opaque) {
    return static_cast<const std::atomic<bool>*>(opaque)->load(std::memory_order_relaxed) ? 1 : 0;
}

// Branch-free so the compiler can vectorise it: it runs over every decoded float sample.
void zero_non_finite(float* samples, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &samples[i], sizeof bits);
        samples[i] = (bits & 0x7f800000u) == 0x7f800000u ? 0.0f : samples[i];
    }
}

bool is_network(const std::string& url) {
    return url.find("://") != std::string::npos;
}

}  // namespace

// Beyond this many failed frames without a good one between, the rest of a
// file is taken as unreadable.
constexpr int kDamagedFramesInARow = 1000;

struct Decoder::Input {
    std::unique_ptr<AVFormatContext, FormatClose> format;
    std::unique_ptr<AVCodecContext, CodecFree> codec;
    std::unique_ptr<SwrContext, SwrFree> resampler;
    std::unique_ptr<AVFrame, FrameFree> frame{av_frame_alloc()};
    std::unique_ptr<AVPacket, PacketFree> packet{av_packet_alloc()};
    AVStream* stream = nullptr;
    bool packet_held = false;  // the codec refused it for now; send it again
    bool demux_done = false;
    // What the resampler was set up for; decoders may change format mid-stream.
    int resampler_format = -1;
    int resampler_rate = 0;
    AVChannelLayout resampler_layout{};

    ~Input() { av_channel_layout_uninit(&resampler_layout); }

    // The next decoded frame into `frame`, false at the end of the input.
    bool next_frame(const std::atomic<bool>* abort) {
        int damaged = 0;
        for (;;) {
            if (abort != nullptr && abort->load(std::memory_order_relaxed)) return false;
            const int received = avcodec_receive_frame(codec.get(), frame.get());
            if (received == 0) return true;
            if (received == AVERROR_EOF) return false;
            if (received != AVERROR(EAGAIN)) {
                // A damaged frame: go on with the next, but a codec that only
                // fails would hold this thread for ever, so that ends the input.
                if (++damaged > kDamagedFramesInARow) return false;
                continue;
            }
            if (demux_done) return false;
            if (!packet_held) {
                const int read = av_read_frame(format.get(), packet.get());
                if (read < 0) {
                    demux_done = true;
                    avcodec_send_packet(codec.get(), nullptr);  // drain what the codec holds
                    continue;
                }
                if (packet->stream_index != stream->index) {
                    av_packet_unref(packet.get());
                    continue;
                }
            }
            const int sent = avcodec_send_packet(codec.get(), packet.get());
            packet_held = sent == AVERROR(EAGAIN);
            if (!packet_held) av_packet_unref(packet.get());
        }
    }

    // To the packet at or before `target` (stream time), with the codec emptied.
    bool seek_to(std::int64_t target) {
        if (av_seek_frame(format.get(), stream->index, target, AVSEEK_FLAG_BACKWARD) < 0) {
            return false;
        }
        avcodec_flush_buffers(codec.get());
        if (packet_held) av_packet_unref(packet.get());
        packet_held = false;
        demux_done = false;
        return true;
    }

    bool ensure_resampler() {
        const AVFrame* f = frame.get();
        if (resampler && resampler_format == f->format && resampler_rate == f->sample_rate &&
            av_channel_layout_compare(&resampler_layout, &f->ch_layout) == 0) {
            return true;
        }
        AVChannelLayout in_layout{};
        if (f->ch_layout.order == AV_CHANNEL_ORDER_UNSPEC || f->ch_layout.nb_channels == 0) {
            av_channel_layout_default(&in_layout, std::max(1, f->ch_layout.nb_channels));
        } else {
            av_channel_layout_copy(&in_layout, &f->ch_layout);
        }
        AVChannelLayout out_layout = AV_CHANNEL_LAYOUT_STEREO;
        SwrContext* raw = nullptr;
        const int made =
            swr_alloc_set_opts2(&raw, &out_layout, AV_SAMPLE_FMT_FLT, kRate, &in_layout,
                                static_cast<AVSampleFormat>(f->format), f->sample_rate, 0, nullptr);
        av_channel_layout_uninit(&in_layout);
        resampler.reset(raw);
        // Half the default filter length: the resampler was a third of all decoding
        // time, and 16 taps still keep aliasing far below the music.
        if (made >= 0) av_opt_set_int(raw, "filter_size", 16, 0);
        if (made < 0 || swr_init(raw) < 0) {
            resampler.reset();
            return false;
        }
        resampler_format = f->format;
        resampler_rate = f->sample_rate;
        av_channel_layout_uninit(&resampler_layout);
        av_channel_layout_copy(&resampler_layout, &f->ch_layout);
        return true;
    }
};

Decoder::Decoder() = default;
Decoder::~Decoder() = default;

bool Decoder::is_open() const {
    return in_ != nullptr;
}

bool Decoder::from_network() const {
    return is_network(url_);
}

void Decoder::close() {
    in_.reset();
    pending_.clear();
    length_ = 0;
}

bool Decoder::open_input(const std::string& url) {
    auto in = std::make_unique<Input>();
    AVFormatContext* format = avformat_alloc_context();
    if (format == nullptr) {
        error_ = "Out of memory opening " + url;
        return false;
    }
    if (abort_ != nullptr) {
        format->interrupt_callback.callback = interrupted;
        format->interrupt_callback.opaque =
            const_cast<void*>(static_cast<const void*>(abort_));  // only read through
    }
    AVDictionary* options = nullptr;
    av_dict_set(&options, "rw_timeout", "15000000", 0);  // a dead server must not hold a player
    const int opened = avformat_open_input(&format, url.c_str(), nullptr, &options);
    av_dict_free(&options);
    if (opened < 0) {
        error_ = "Cannot open " + url + ": " + ffmpeg_error(opened);
        return false;
    }
    in->format.reset(format);
    // WAV data labelled PCM is probed in case it really holds MP3 or AC-3. FFmpeg would
    // look through 128 KB of it at every open; such data shows itself within a few frames.
    if (std::strcmp(format->iformat->name, "wav") == 0) format->probesize = 32 * 1024;
    const int info = avformat_find_stream_info(format, nullptr);
    if (info < 0) {
        error_ = "Cannot read " + url + ": " + ffmpeg_error(info);
        return false;
    }
    const AVCodec* codec = nullptr;
    const int index = av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
    if (index < 0 || codec == nullptr) {
        error_ = index == AVERROR_DECODER_NOT_FOUND ? "No decoder for the sound of " + url
                                                    : "No sound in " + url;
        return false;
    }
    for (unsigned i = 0; i < format->nb_streams; ++i) {
        format->streams[i]->discard =
            static_cast<int>(i) == index ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    in->stream = format->streams[index];
    in->codec.reset(avcodec_alloc_context3(codec));
    if (!in->codec || avcodec_parameters_to_context(in->codec.get(), in->stream->codecpar) < 0) {
        error_ = "Cannot set up the decoder for " + url;
        return false;
    }
    in->codec->thread_count = 1;  // each player already has its own thread
    in->codec->pkt_timebase = in->stream->time_base;
    const int codec_opened = avcodec_open2(in->codec.get(), codec, nullptr);
    if (codec_opened < 0) {
        error_ = "Cannot decode " + url + ": " + ffmpeg_error(codec_opened);
        return false;
    }
    in_ = std::move(in);
    pending_.clear();
    pending_frame_ = 0;
    discard_until_ = 0;
    resync_ = true;
    ended_ = false;
    overshoot_ = -1;
    return true;
}

OpenResult Decoder::open(const std::string& url, const std::atomic<bool>* abort) {
    quiet_ffmpeg_once();
    close();
    url_ = url;
    abort_ = abort;
    error_.clear();
    origin_known_ = false;
    auto aborted = [&] { return abort != nullptr && abort->load(); };
    if (!open_input(url) || !decode_more()) {
        if (error_.empty()) error_ = "No sound could be decoded from " + url;
        close();
        return {aborted() ? OpenStatus::Aborted : OpenStatus::Failed, error_};
    }
    // Containers often count encoder delay and padding in their length, so a local file
    // is measured by decoding its end.
    std::int64_t length = 0;
    const AVStream* stream = in_->stream;
    if (stream->duration != AV_NOPTS_VALUE) {
        const std::int64_t start = stream->start_time != AV_NOPTS_VALUE ? stream->start_time : 0;
        length =
            av_rescale_q(start + stream->duration - origin_pts_, stream->time_base, kFrameTime);
    } else if (in_->format->duration != AV_NOPTS_VALUE) {
        length = av_rescale_q(in_->format->duration, AV_TIME_BASE_Q, kFrameTime);
    }
    if (!is_network(url) && length > 0) {
        const std::int64_t measured = measure_length(length);
        if (!seek(0)) {
            close();
            return {aborted() ? OpenStatus::Aborted : OpenStatus::Failed, error_};
        }
        if (measured > 0) length = measured;
    }
    if (aborted()) {
        close();
        return {OpenStatus::Aborted, "Opening " + url + " was cancelled"};
    }
    length_ = std::max<std::int64_t>(length, 0);
    return {OpenStatus::Succeeded, {}};
}

// The last second is enough to find the end; an estimate that overshoots the end by more
// than that gets a wider look.
std::int64_t Decoder::measure_length(std::int64_t estimate) {
    for (std::int64_t window = kRate; window <= 64 * kRate; window *= 8) {
        if (const std::int64_t end = measure_end_from(std::max<std::int64_t>(estimate - window, 0)))
            return end;
        if (estimate <= window) break;
    }
    return 0;
}

std::int64_t Decoder::measure_end_from(std::int64_t from) {
    Input& in = *in_;
    const std::int64_t target = origin_pts_ + av_rescale_q(from, kFrameTime, in.stream->time_base);
    if (!in.seek_to(target)) return 0;
    std::int64_t end = 0;
    bool stamped = false;
    while (in.next_frame(abort_)) {
        const AVFrame* f = in.frame.get();
        std::int64_t start = end;
        if (position_from(f->best_effort_timestamp, &start)) stamped = true;
        end = std::max(end, start + av_rescale(f->nb_samples, kRate, f->sample_rate));
        av_frame_unref(in.frame.get());
    }
    return stamped ? end : 0;
}

bool Decoder::position_from(std::int64_t pts, std::int64_t* frame) const {
    if (pts == AV_NOPTS_VALUE) return false;
    *frame = av_rescale_q(pts - origin_pts_, in_->stream->time_base, kFrameTime);
    return true;
}

bool Decoder::decode_more() {
    if (!in_ || ended_) return false;
    if (in_->next_frame(abort_)) {
        take_frame();
        return true;
    }
    // Whatever the resampler still holds belongs at the end.
    if (in_->resampler) {
        const int extra = swr_get_out_samples(in_->resampler.get(), 0);
        if (extra > 0) {
            auto* out =
                reinterpret_cast<std::uint8_t*>(pending_.room(static_cast<std::size_t>(extra)));
            const int got = swr_convert(in_->resampler.get(), &out, extra, nullptr, 0);
            pending_.commit(static_cast<std::size_t>(std::max(got, 0)));
        }
    }
    ended_ = true;
    return pending_.size() > 0;
}

void Decoder::take_frame() {
    Input& in = *in_;
    AVFrame* f = in.frame.get();
    const std::int64_t pts = f->best_effort_timestamp;
    if (!origin_known_) {
        origin_pts_ = pts == AV_NOPTS_VALUE ? 0 : pts;
        origin_known_ = true;
    }
    if (resync_) {
        std::int64_t at = 0;
        if (!position_from(pts, &at)) {
            at = discard_until_ + 1;  // unknown: treat as a miss so the seek falls back
        }
        pending_.clear();
        pending_frame_ = at;
        if (at > discard_until_) overshoot_ = at;
        resync_ = false;
    }
    if (!in.ensure_resampler()) {
        av_frame_unref(f);
        return;
    }
    const int room = std::max(swr_get_out_samples(in.resampler.get(), f->nb_samples), 0);
    float* converted = pending_.room(static_cast<std::size_t>(room));
    auto* out = reinterpret_cast<std::uint8_t*>(converted);
    const int got =
        std::max(swr_convert(in.resampler.get(), &out, room,
                             const_cast<const std::uint8_t**>(f->extended_data), f->nb_samples),
                 0);
    // A damaged float file can hold NaN or infinities, which would poison the whole mix;
    // integer samples can't.
    const auto source = static_cast<AVSampleFormat>(f->format);
    if (av_get_packed_sample_fmt(source) == AV_SAMPLE_FMT_FLT ||
        av_get_packed_sample_fmt(source) == AV_SAMPLE_FMT_DBL) {
        zero_non_finite(converted, static_cast<std::size_t>(got) * kChannels);
    }
    pending_.commit(static_cast<std::size_t>(got));
    av_frame_unref(f);
}

bool Decoder::seek_near(std::int64_t frame, std::int64_t preroll) {
    Input& in = *in_;
    const std::int64_t from = frame - preroll;
    std::int64_t target = origin_pts_ + av_rescale_q(from, kFrameTime, in.stream->time_base);
    if (from <= 0) {
        target = in.stream->start_time != AV_NOPTS_VALUE ? std::min(in.stream->start_time, target)
                                                         : target;
    }
    if (!in.seek_to(target)) return false;
    in.resampler.reset();
    pending_.clear();
    discard_until_ = frame;
    resync_ = true;
    ended_ = false;
    overshoot_ = -1;
    return true;
}

bool Decoder::seek(std::int64_t frame) {
    if (!in_) return false;
    frame = std::max<std::int64_t>(frame, 0);
    if (length_ > 0) frame = std::min(frame, length_);
    // Codecs need some packets before the target to settle (MP3's bit reservoir, Opus's
    // pre-roll), and a demuxer may land late; widen the margin when it does.
    const std::int64_t base =
        std::max<std::int64_t>(av_rescale(in_->stream->codecpar->seek_preroll, kRate,
                                          std::max(in_->stream->codecpar->sample_rate, 1)),
                               kRate / 10);
    for (int attempt = 0; attempt < 3; ++attempt) {
        if (!seek_near(frame, base << (3 * attempt))) break;
        while (resync_ && decode_more()) {
        }
        if (overshoot_ < 0) return true;
    }
    // No index to land on: start again and walk forward.
    in_.reset();
    if (!open_input(url_)) return false;
    discard_until_ = frame;
    return true;
}

std::size_t Decoder::read(float* out, std::size_t frames) {
    std::size_t done = 0;
    while (done < frames) {
        const std::size_t available = pending_.size();
        if (available == 0) {
            if (!decode_more()) break;
            continue;
        }
        if (pending_frame_ < discard_until_) {
            const auto skip = static_cast<std::size_t>(std::min<std::int64_t>(
                static_cast<std::int64_t>(available), discard_until_ - pending_frame_));
            pending_.drop(skip);
            pending_frame_ += static_cast<std::int64_t>(skip);
            continue;
        }
        const std::size_t n = std::min(available, frames - done);
        std::memcpy(out + done * kChannels, pending_.data(), n * kChannels * sizeof(float));
        pending_.drop(n);
        pending_frame_ += static_cast<std::int64_t>(n);
        done += n;
    }
    return done;
}

}  // namespace tavora::audio
