#include "bench_media.h"

#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <thread>

namespace tavora::audio::bench {
namespace {

std::string folder() {
    static const std::string path = [] {
        const auto dir = std::filesystem::temp_directory_path() / "tavora-audio-bench";
        std::filesystem::create_directories(dir);
        return dir.string();
    }();
    return path;
}

std::string codec_args(const std::string& format) {
    static const std::map<std::string, std::string> args = {
        {"wav", "-c:a pcm_s16le"},    {"mp3", "-c:a libmp3lame -b:a 192k"},
        {"ogg", "-c:a libvorbis"},    {"opus", "-c:a libopus"},
        {"flac", "-c:a flac"},        {"m4a", "-c:a aac"},
        {"wma", "-c:a wmav2 -f asf"}, {"mp2", "-c:a mp2"}};
    return args.at(format);
}

}  // namespace

std::string music(const std::string& format) {
    const std::string path = folder() + "/music." + format;
    if (std::filesystem::exists(path)) return path;
    // Two detuned tones and a little noise: something for every codec to work on.
    const std::string command =
        "ffmpeg -nostdin -hide_banner -loglevel error -y -f lavfi -i "
        "\"aevalsrc=0.3*sin(2*PI*440*t)+0.2*sin(2*PI*554.4*t)+0.05*(random(0)-0.5)|"
        "0.3*sin(2*PI*660*t)+0.2*sin(2*PI*329.6*t)+0.05*(random(1)-0.5):s=44100:d=" +
        std::to_string(static_cast<int>(kMediaSeconds)) + "\" " + codec_args(format) + " \"" +
        path + "\"";
    return std::system(command.c_str()) == 0 ? path : std::string();
}

double ffmpeg_decode_seconds(const std::string& path, int runs) {
    const std::string log = folder() + "/ffmpeg-bench.txt";
    double best = 1e9;
    for (int run = 0; run < runs; ++run) {
        const std::string command = "ffmpeg -nostdin -hide_banner -benchmark -threads 1 -i \"" +
                                    path + "\" -f null - > \"" + log + "\" 2>&1";
        if (std::system(command.c_str()) != 0) return 0;
        std::ifstream in(log);
        std::string line;
        while (std::getline(in, line)) {
            const auto at = line.find("rtime=");
            if (at != std::string::npos) best = std::min(best, std::atof(line.c_str() + at + 6));
        }
    }
    return best < 1e9 ? best : 0;
}

double process_cpu_seconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    auto seconds = [](const timeval& t) { return t.tv_sec + t.tv_usec / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double thread_cpu_seconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

void wait_until_idle() {
    for (;;) {
        const double before = process_cpu_seconds();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        if (process_cpu_seconds() - before < 0.002) return;
    }
}

double resident_bytes() {
    std::ifstream statm("/proc/self/statm");
    double pages_total = 0;
    double pages_resident = 0;
    statm >> pages_total >> pages_resident;
    return pages_resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

}  // namespace tavora::audio::bench
