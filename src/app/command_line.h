#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tavora {

// What the operator asked for on the command line. The station itself takes
// its settings from its files; these only choose the front end and folders.
struct CommandLine {
    enum class Action { Run, Help, Version, Play, Headless, Install, Demo, Simulate, Add, Analyse };
    Action action = Action::Run;
    std::optional<std::string> home;  // install folder, c:\tavora
    std::string error;                // non-empty when the line could not be read

    // --play: media to play through the audio engine, and where ("card" or "null").
    std::vector<std::string> play_files;
    std::string output = "card";

    // --headless --record: the recorder's profile to start with the run.
    std::string record;
    // --web [ADDR:]PORT: the station's own web page and API, for the desktop,
    // --headless, --demo and --simulate; empty leaves it to web.ini.
    std::string web;

    // --simulate: a run on the virtual clock.
    std::string start;     // "YYYY-MM-DD HH:MM:SS"
    std::string duration;  // 90s, 45m, 6h, 2d
    std::string script;
    std::string players = "engine";  // or "probe"
    std::string mix_out;
    bool trace_selection = false;
    std::string cd_image;  // a folder standing for the disc in the CD drive

    // --add: files and folders to bring into the library.
    std::vector<std::string> add_paths;
    std::string order = "title-artist";  // or "artist-title": how names read
    bool tags = false;
    // The desktop: save pictures of the windows into this folder, then end.
    std::string screenshots;
};

CommandLine parse_command_line(const std::vector<std::string>& args);
std::string usage_text();

}  // namespace tavora
