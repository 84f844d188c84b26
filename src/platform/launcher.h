#pragma once

#include <string>
#include <vector>

namespace tavora {

// Starts other programs and never waits for them. Paths are native.
class Launcher {
  public:
    virtual ~Launcher() = default;
    // Shows a text file in the desktop's viewer; false when it can't.
    virtual bool OpenTextFile(const std::string& path) = 0;
    // Words split at blanks, double quotes keep a word whole. False when the
    // program can't be found or started.
    virtual bool Start(const std::string& command_line) = 0;
};

// The real thing: a detached child process, so the station neither blocks on
// it nor leaves a zombie behind.
class SystemLauncher : public Launcher {
  public:
    bool OpenTextFile(const std::string& path) override;
    bool Start(const std::string& command_line) override;
};

// Remembers what was asked, for tests; answers with `succeed`.
class RecordingLauncher : public Launcher {
  public:
    bool OpenTextFile(const std::string& path) override;
    bool Start(const std::string& command_line) override;

    std::vector<std::string> opened;   // text files
    std::vector<std::string> started;  // command lines
    bool succeed = true;
};

// Exposed for its tests.
std::vector<std::string> SplitCommandLine(const std::string& command_line);

}  // namespace tavora
