#include "platform/launcher.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>

namespace tavora {

namespace {

std::optional<std::string> FindProgram(const std::string& name) {
    if (name.empty()) return std::nullopt;
    if (name.find('/') != std::string::npos) {
        if (access(name.c_str(), X_OK) == 0) return name;
        return std::nullopt;
    }
    const char* path = std::getenv("PATH");
    std::string dirs = path && *path ? path : "/usr/local/bin:/usr/bin:/bin";
    std::size_t start = 0;
    while (start <= dirs.size()) {
        std::size_t end = dirs.find(':', start);
        if (end == std::string::npos) end = dirs.size();
        const std::string dir = end > start ? dirs.substr(start, end - start) : ".";
        const std::string candidate = dir + "/" + name;
        std::error_code ec;
        if (access(candidate.c_str(), X_OK) == 0 && !std::filesystem::is_directory(candidate, ec)) {
            return candidate;
        }
        start = end + 1;
    }
    return std::nullopt;
}

// Double fork: the grandchild runs the program under init, the child exits
// at once and is reaped here. A close-on-exec pipe tells whether exec worked.
// Only async-signal-safe calls happen between fork and exec.
bool SpawnDetached(const std::string& program, const std::vector<std::string>& args) {
    std::vector<char*> argv;
    for (const auto& a : args)
        argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);

    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0) return false;
    const int null_fd = open("/dev/null", O_RDWR | O_CLOEXEC);

    const pid_t child = fork();
    if (child < 0) {
        close(fds[0]);
        close(fds[1]);
        if (null_fd >= 0) close(null_fd);
        return false;
    }
    if (child == 0) {
        setsid();
        if (fork() != 0) _exit(0);
        if (null_fd >= 0) {
            dup2(null_fd, STDIN_FILENO);
            dup2(null_fd, STDOUT_FILENO);
            dup2(null_fd, STDERR_FILENO);
        }
        execv(program.c_str(), argv.data());
        const int err = errno;
        (void)!write(fds[1], &err, sizeof err);
        _exit(127);
    }
    close(fds[1]);
    if (null_fd >= 0) close(null_fd);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    int err = 0;
    ssize_t n;
    while ((n = read(fds[0], &err, sizeof err)) < 0 && errno == EINTR) {
    }
    close(fds[0]);
    return n == 0;
}

}  // namespace

std::vector<std::string> SplitCommandLine(const std::string& command_line) {
    std::vector<std::string> words;
    std::string word;
    bool in_word = false;
    bool quoted = false;
    for (const char c : command_line) {
        if (c == '"') {
            quoted = !quoted;
            in_word = true;
        } else if ((c == ' ' || c == '\t') && !quoted) {
            if (in_word) words.push_back(std::move(word));
            word.clear();
            in_word = false;
        } else {
            word += c;
            in_word = true;
        }
    }
    if (in_word) words.push_back(std::move(word));
    return words;
}

bool SystemLauncher::OpenTextFile(const std::string& path) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) return false;
    const auto viewer = FindProgram("xdg-open");
    return viewer && SpawnDetached(*viewer, {*viewer, path});
}

bool SystemLauncher::Start(const std::string& command_line) {
    const auto words = SplitCommandLine(command_line);
    if (words.empty()) return false;
    const auto program = FindProgram(words.front());
    return program && SpawnDetached(*program, words);
}

bool RecordingLauncher::OpenTextFile(const std::string& path) {
    opened.push_back(path);
    return succeed;
}

bool RecordingLauncher::Start(const std::string& command_line) {
    started.push_back(command_line);
    return succeed;
}

}  // namespace tavora
