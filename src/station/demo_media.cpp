#include "station/demo_media.h"

#include <spawn.h>
#include <sys/wait.h>

#include <cstdio>
#include <map>
#include <system_error>

extern char** environ;

namespace tavora {

namespace {

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", value);
    return text;
}

// Root, third and fifth, the harmony moving to the fourth every eight
// seconds, pulsing on the beat, rising through the intro.
std::string music_expression(const DemoClip& clip) {
    const std::string f = number(clip.root_hz);
    const std::string chord = "if(lt(mod(t,16),8),1,1.335)";
    const std::string tone = "(0.16*sin(2*PI*" + f + "*" + chord + "*t)+0.11*sin(2*PI*" + f +
                             "*1.26*" + chord + "*t)+0.09*sin(2*PI*" + f + "*1.5*" + chord + "*t))";
    const std::string pulse =
        "(0.55+0.45*pow(abs(sin(PI*" + number(clip.beats_per_second) + "*t)),4))";
    const std::string rise =
        clip.intro > 0 ? "min(1,0.15+0.85*t/" + number(clip.intro) + ")" : std::string("1");
    return tone + "*" + pulse + "*" + rise;
}

// The encoder and container for each extension the demo uses.
const std::map<std::string, std::vector<std::string>>& codecs() {
    static const std::map<std::string, std::vector<std::string>> by_extension{
        {".mp3", {"-c:a", "libmp3lame", "-b:a", "160k", "-f", "mp3"}},
        {".ogg", {"-c:a", "libvorbis", "-q:a", "4", "-f", "ogg"}},
        {".flac", {"-c:a", "flac", "-f", "flac"}},
        {".m4a", {"-c:a", "aac", "-b:a", "160k", "-f", "mp4"}},
        {".opus", {"-c:a", "libopus", "-b:a", "128k", "-f", "opus"}},
        {".wav", {"-c:a", "pcm_s16le", "-f", "wav"}},
    };
    return by_extension;
}

std::vector<std::string> ffmpeg_arguments(const DemoClip& clip, const std::filesystem::path& out) {
    // Computed once at a modest rate and spread over both channels: the
    // expression costs far more than the encoding.
    const std::string source =
        "aevalsrc='" + music_expression(clip) + "':s=22050:d=" + number(clip.seconds);
    std::vector<std::string> args{"ffmpeg", "-nostdin", "-loglevel", "error", "-y",
                                  "-f",     "lavfi",    "-i",        source};
    if (clip.outro > 0) {
        args.insert(args.end(), {"-af", "afade=t=out:st=" + number(clip.seconds - clip.outro) +
                                            ":d=" + number(clip.outro)});
    }
    args.insert(args.end(), {"-ac", "2"});
    const auto& codec = codecs().at(clip.file.extension().string());
    args.insert(args.end(), codec.begin(), codec.end());
    args.push_back(out.string());
    return args;
}

pid_t spawn(const std::vector<std::string>& args) {
    std::vector<char*> argv;
    for (const auto& arg : args)
        argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    pid_t pid = 0;
    if (posix_spawnp(&pid, argv[0], nullptr, nullptr, argv.data(), environ) != 0) return -1;
    return pid;
}

// Written under a temporary name so a stopped run never leaves half a song.
std::filesystem::path partial_name(const std::filesystem::path& file) {
    return file.parent_path() / (file.filename().string() + ".part");
}

}  // namespace

std::string make_demo_media(
    const std::vector<DemoClip>& clips,
    const std::function<void(std::size_t done, std::size_t total)>& progress) {
    std::vector<const DemoClip*> to_make;
    for (const auto& clip : clips) {
        std::error_code error;
        if (!std::filesystem::exists(clip.file, error)) to_make.push_back(&clip);
    }
    std::map<pid_t, const DemoClip*> running;
    std::string failure;
    std::size_t next = 0;
    std::size_t done = 0;
    constexpr std::size_t kAtOnce = 2;
    while ((next < to_make.size() && failure.empty()) || !running.empty()) {
        while (failure.empty() && next < to_make.size() && running.size() < kAtOnce) {
            const DemoClip* clip = to_make[next++];
            std::error_code error;
            std::filesystem::create_directories(clip->file.parent_path(), error);
            const pid_t pid = spawn(ffmpeg_arguments(*clip, partial_name(clip->file)));
            if (pid < 0) {
                failure =
                    "the ffmpeg program is needed to make the demo songs (scripts/setup "
                    "installs it)";
                break;
            }
            running[pid] = clip;
        }
        if (running.empty()) break;
        int status = 0;
        const pid_t pid = waitpid(-1, &status, 0);
        const auto finished = running.find(pid);
        if (finished == running.end()) continue;
        const DemoClip& clip = *finished->second;
        running.erase(finished);
        std::error_code error;
        if (WIFEXITED(status) && WEXITSTATUS(status) == 0) {
            std::filesystem::rename(partial_name(clip.file), clip.file, error);
        }
        if ((!WIFEXITED(status) || WEXITSTATUS(status) != 0 || error) && failure.empty()) {
            failure = "ffmpeg could not make " + clip.file.string();
        }
        std::filesystem::remove(partial_name(clip.file), error);
        if (progress) progress(++done, to_make.size());
    }
    return failure;
}

}  // namespace tavora
