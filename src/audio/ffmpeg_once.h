#pragma once

#include <mutex>
#include <string>

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/error.h>
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

// FFmpeg's words for one of its error codes.
inline std::string ffmpeg_error(int code) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(code, text, sizeof text);
    return text;
}

}  // namespace tavora::audio
