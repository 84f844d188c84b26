#include "audio/codec_feed.h"

#include <algorithm>

#include "audio/ffmpeg_once.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/audio_fifo.h>
}

namespace tavora::audio {

CodecFeed::CodecFeed(AVCodecContext* codec) : codec_(codec) {
    if (codec->frame_size > 0) frame_size_ = codec->frame_size;
    fifo_ = av_audio_fifo_alloc(codec->sample_fmt, codec->ch_layout.nb_channels, frame_size_ * 4);
    frame_ = av_frame_alloc();
    packet_ = av_packet_alloc();
}

CodecFeed::~CodecFeed() {
    av_packet_free(&packet_);
    av_frame_free(&frame_);
    if (fifo_) av_audio_fifo_free(fifo_);
}

bool CodecFeed::queue(void* const* planes, int frames) {
    return av_audio_fifo_write(fifo_, const_cast<void**>(planes), frames) >= frames;
}

bool CodecFeed::take_packets(const Write& write) {
    bool written = true;
    while (avcodec_receive_packet(codec_, packet_) == 0) {
        written = write(packet_) && written;
        av_packet_unref(packet_);
    }
    return written;
}

std::string CodecFeed::encode(bool flush, const Write& write) {
    bool written = true;
    while (av_audio_fifo_size(fifo_) >= frame_size_ || (flush && av_audio_fifo_size(fifo_) > 0)) {
        const int take = std::min(frame_size_, av_audio_fifo_size(fifo_));
        av_frame_unref(frame_);
        frame_->nb_samples = take;
        frame_->format = codec_->sample_fmt;
        frame_->sample_rate = codec_->sample_rate;
        av_channel_layout_copy(&frame_->ch_layout, &codec_->ch_layout);
        if (av_frame_get_buffer(frame_, 0) < 0) return "out of memory while encoding";
        av_audio_fifo_read(fifo_, reinterpret_cast<void**>(frame_->data), take);
        frame_->pts = next_pts_;
        next_pts_ += take;
        if (const int code = avcodec_send_frame(codec_, frame_); code < 0)
            return "the encoder refused a frame: " + ffmpeg_error(code);
        written = take_packets(write) && written;
    }
    if (flush) {
        avcodec_send_frame(codec_, nullptr);
        written = take_packets(write) && written;
    }
    return written ? std::string() : "can't write the file";
}

}  // namespace tavora::audio
