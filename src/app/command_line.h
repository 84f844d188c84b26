#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tavora {

// What the operator asked for on the command line. The station itself takes
// its settings from its files; these only choose the front end and folders.
struct CommandLine {
    enum class Action { Run, Help, Version, Play, Headless };
    Action action = Action::Run;
    std::optional<std::string> home;  // install folder, c:\tavora
    std::string error;                // non-empty when the line could not be read

    // --play: media to play through the audio engine, and where ("card" or "null").
    std::vector<std::string> play_files;
    std::string output = "card";
};

CommandLine parse_command_line(const std::vector<std::string>& args);
std::string usage_text();

}  // namespace tavora
