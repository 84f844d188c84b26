#pragma once

#include <mutex>

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/log.h>
}

namespace tavora::audio {

// FFmpeg's own log would fill the station's terminal with every damaged frame and
// every encoder's statistics; the engine reports what matters in its own words.
inline void quiet_ffmpeg_once() {
    static std::once_flag once;
    std::call_once(once, [] {
        av_log_set_level(AV_LOG_QUIET);
        avformat_network_init();
    });
}

}  // namespace tavora::audio
