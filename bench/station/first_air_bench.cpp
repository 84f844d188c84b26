// What a newcomer waits for: from starting the station on a fresh install
// folder (the build already done) to the first song on the air, the demo
// made on the way. Runs the tavora program itself, as ./scripts/run does.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

extern char** environ;

namespace tavora {
namespace {

namespace fs = std::filesystem;

// Starts the demo with its output on a pipe; the pid, or -1.
pid_t start_demo(const fs::path& home, int* out) {
    int pipe_ends[2];
    if (pipe(pipe_ends) != 0) return -1;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe_ends[1], 1);
    posix_spawn_file_actions_addclose(&actions, pipe_ends[0]);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    std::string program = TAVORA_PROGRAM;
    std::string home_text = home.string();
    char demo[] = "--demo", output[] = "--output", null[] = "null", home_flag[] = "--home";
    char* argv[] = {program.data(), demo, output, null, home_flag, home_text.data(), nullptr};
    pid_t pid = -1;
    if (posix_spawn(&pid, argv[0], &actions, nullptr, argv, environ) != 0) pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    close(pipe_ends[1]);
    *out = pipe_ends[0];
    return pid;
}

void BM_FirstAirOfAFreshDemo(benchmark::State& state) {
    const fs::path home = fs::temp_directory_path() / "tavora-bench-first-air";
    for (auto _ : state) {
        fs::remove_all(home);
        const auto began = std::chrono::steady_clock::now();
        int out = -1;
        const pid_t pid = start_demo(home, &out);
        if (pid < 0) {
            state.SkipWithError("the tavora program could not be started");
            return;
        }
        FILE* lines = fdopen(out, "r");
        char line[1024];
        bool aired = false;
        while (!aired && std::fgets(line, sizeof line, lines) != nullptr)
            aired = std::string(line).rfind("AIR ", 0) == 0;
        const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - began;
        kill(pid, SIGTERM);
        std::fclose(lines);
        waitpid(pid, nullptr, 0);
        if (!aired) {
            state.SkipWithError("the demo ended without airing a song");
            return;
        }
        state.SetIterationTime(waited.count());
    }
    fs::remove_all(home);
}
BENCHMARK(BM_FirstAirOfAFreshDemo)->UseManualTime()->Unit(benchmark::kSecond)->Iterations(3);

}  // namespace
}  // namespace tavora
