#include "station/demo_media.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <mutex>
#include <system_error>
#include <thread>

#include "audio/decoder.h"
#include "audio/encoder.h"
#include "audio/format.h"
#include "station/demo_synth.h"

extern char** environ;

namespace tavora {

namespace {

constexpr std::size_t kBlock = 4096;

// Written under a temporary name so a stopped run never leaves half a song.
std::filesystem::path partial_name(const std::filesystem::path& file) {
    return file.parent_path() / (file.filename().string() + ".part");
}

// The words as espeak-ng says them, mono at the engine's rate; empty when
// the program is missing or fails, and the clip has its chime instead.
std::vector<float> spoken(const std::string& words, const std::filesystem::path& scratch) {
    const std::string out = scratch.string();
    std::vector<std::string> args{"espeak-ng", "-s", "150", "-w", out, words};
    std::vector<char*> argv;
    for (auto& arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&quiet, 2, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    const int spawned = posix_spawnp(&pid, argv[0], &quiet, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&quiet);
    std::vector<float> mono;
    int status = 0;
    if (spawned != 0 || waitpid(pid, &status, 0) != pid || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        return mono;
    }
    audio::Decoder decoder;
    if (decoder.open(out).status == audio::OpenStatus::Succeeded) {
        std::vector<float> block(kBlock * audio::kChannels);
        while (const std::size_t got = decoder.read(block.data(), kBlock)) {
            for (std::size_t i = 0; i < got; ++i)
                mono.push_back(block[i * audio::kChannels]);
        }
    }
    std::error_code ignored;
    std::filesystem::remove(scratch, ignored);
    return mono;
}

std::string make_clip(const DemoClip& clip, const std::atomic<bool>* stop) {
    const auto partial = partial_name(clip.file);
    audio::Encoder encoder;
    std::string error = encoder.open(partial, clip.file.extension().string(), clip.rate, 1);
    if (!error.empty()) return error;
    std::vector<float> words;
    if (!clip.words.empty()) {
        words = spoken(clip.words,
                       clip.file.parent_path() / (clip.file.filename().string() + ".words.wav"));
    }
    DemoSynth synth(clip, encoder.sample_rate(), std::move(words), audio::kRate);
    std::vector<float> block(kBlock);
    while (error.empty()) {
        if (stop && *stop) error = "stopped";
        const std::size_t frames = error.empty() ? synth.render(block.data(), kBlock) : 0;
        if (frames == 0) break;
        error = encoder.write(block.data(), frames);
    }
    const std::string finished = encoder.finish();
    if (error.empty()) error = finished;
    std::error_code fs_error;
    if (error.empty()) std::filesystem::rename(partial, clip.file, fs_error);
    if (fs_error) error = fs_error.message();
    std::filesystem::remove(partial, fs_error);
    return error.empty() ? error : "could not make " + clip.file.string() + ": " + error;
}

}  // namespace

std::string make_demo_media(const std::vector<DemoClip>& clips,
                            const std::function<void(const DemoClip&, const std::string& error,
                                                     std::size_t made, std::size_t total)>& done,
                            const std::atomic<bool>* stop) {
    std::vector<const DemoClip*> to_make;
    for (const auto& clip : clips) {
        std::error_code error;
        if (!std::filesystem::exists(clip.file, error)) to_make.push_back(&clip);
        std::filesystem::create_directories(clip.file.parent_path(), error);
    }
    std::mutex lock;
    std::size_t next = 0;
    std::size_t made = 0;
    std::string failure;
    auto work = [&] {
        for (;;) {
            const DemoClip* clip = nullptr;
            {
                const std::lock_guard hold(lock);
                if (next == to_make.size() || !failure.empty() || (stop && *stop)) return;
                clip = to_make[next++];
            }
            const std::string error = make_clip(*clip, stop);
            const std::lock_guard hold(lock);
            if (!error.empty() && failure.empty()) failure = error;
            if (error.empty()) ++made;
            if (done) done(*clip, error, made, to_make.size());
        }
    };
    const unsigned cores = std::max(1u, std::thread::hardware_concurrency());
    std::vector<std::thread> workers;
    for (unsigned i = 1; i < std::min<std::size_t>(cores, to_make.size()); ++i)
        workers.emplace_back(work);
    work();
    for (auto& worker : workers)
        worker.join();
    if (failure.empty() && stop && *stop && made < to_make.size()) failure = "stopped";
    return failure;
}

}  // namespace tavora
