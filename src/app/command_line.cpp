#include "command_line.h"

#include <functional>
#include <map>

namespace tavora {

namespace {

using Action = CommandLine::Action;

const std::map<std::string, Action, std::less<>>& action_flags() {
    static const std::map<std::string, Action, std::less<>> flags{
        {"--help", Action::Help},         {"-h", Action::Help},
        {"--version", Action::Version},   {"--headless", Action::Headless},
        {"--install", Action::Install},   {"--demo", Action::Demo},
        {"--simulate", Action::Simulate}, {"--analyse", Action::Analyse},
    };
    return flags;
}

// Options that take one value: where the value goes and, when only some
// values are allowed, which.
struct ValueOption {
    std::string CommandLine::*field;
    std::vector<std::string> allowed;
    std::string need;
};

const std::map<std::string, ValueOption, std::less<>>& value_options() {
    static const std::map<std::string, ValueOption, std::less<>> options{
        {"--output", {&CommandLine::output, {"null", "card"}, "null or card"}},
        {"--start", {&CommandLine::start, {}, "a start time"}},
        {"--for", {&CommandLine::duration, {}, "a duration"}},
        {"--script", {&CommandLine::script, {}, "a script file"}},
        {"--players", {&CommandLine::players, {"engine", "probe"}, "engine or probe"}},
        {"--mix-out", {&CommandLine::mix_out, {}, "a WAV file"}},
        {"--cd-image", {&CommandLine::cd_image, {}, "a folder of one audio file a track"}},
        {"--order",
         {&CommandLine::order, {"title-artist", "artist-title"}, "title-artist or artist-title"}},
        {"--record", {&CommandLine::record, {}, "a recorder profile"}},
        {"--web", {&CommandLine::web, {}, "[ADDR:]PORT, such as 8080 or 127.0.0.1:8080"}},
        {"--screenshots", {&CommandLine::screenshots, {}, "a folder"}},
    };
    return options;
}

bool allowed(const ValueOption& option, const std::string& value) {
    if (option.allowed.empty()) return value.rfind("--", 0) != 0;
    for (const auto& one : option.allowed) {
        if (one == value) return true;
    }
    return false;
}

void check_simulation(CommandLine& line) {
    if (!line.record.empty() && line.action != Action::Headless)
        line.error = "--record goes with --headless";
    if (line.action != Action::Simulate) return;
    if (line.start.empty())
        line.error = "--simulate needs --start \"YYYY-MM-DD HH:MM:SS\"";
    else if (line.duration.empty())
        line.error = "--simulate needs --for DURATION";
}

}  // namespace

CommandLine parse_command_line(const std::vector<std::string>& args) {
    CommandLine line;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        const bool has_value = i + 1 < args.size();
        if (const auto flag = action_flags().find(arg); flag != action_flags().end()) {
            line.action = flag->second;
        } else if (const auto option = value_options().find(arg); option != value_options().end()) {
            if (!has_value || !allowed(option->second, args[i + 1])) {
                line.error = arg + " needs " + option->second.need;
                return line;
            }
            line.*(option->second.field) = args[++i];
        } else if (arg == "--home") {
            if (!has_value) {
                line.error = "--home needs a folder";
                return line;
            }
            line.home = args[++i];
        } else if (arg == "--trace-selection") {
            line.trace_selection = true;
        } else if (arg == "--tags") {
            line.tags = true;
        } else if (arg == "--add") {
            line.action = Action::Add;
            while (i + 1 < args.size() && args[i + 1].rfind("--", 0) != 0) {
                line.add_paths.push_back(args[++i]);
            }
            if (line.add_paths.empty()) {
                line.error = "--add needs at least one file or folder";
                return line;
            }
        } else if (arg == "--play") {
            line.action = Action::Play;
            while (i + 1 < args.size() && args[i + 1].rfind("--", 0) != 0) {
                line.play_files.push_back(args[++i]);
            }
            if (line.play_files.empty()) {
                line.error = "--play needs at least one file";
                return line;
            }
        } else {
            line.error = "unknown option: " + arg;
            return line;
        }
    }
    check_simulation(line);
    return line;
}

std::string usage_text() {
    return "Usage: tavora [options]\n"
           "\n"
           "An unattended music programming and playout station.\n"
           "\n"
           "Without a mode option it opens the station's windows on the install folder\n"
           "(a demo library made when the library is empty), or plays headless when\n"
           "there is no display.\n"
           "\n"
           "Options:\n"
           "  --install        make the install folder: settings, an empty library, web and\n"
           "                   manual folders; never overwrites what is there\n"
           "  --demo           install, make a demo library of generated songs when the\n"
           "                   library is empty, and run the station headless\n"
           "  --headless       run the station without windows until SIGINT or SIGTERM\n"
           "      --record PROFILE               record (and stream) the air from the start,\n"
           "                                     with a .asd profile of the install folder\n"
           "  --home DIR       install folder (default: $TAVORA_HOME or ~/tavora)\n"
           "  --simulate       run the station on a virtual clock and print what it does:\n"
           "      --start \"YYYY-MM-DD HH:MM:SS\"  when the run begins\n"
           "      --for DURATION                 how long it runs: 90s, 45m, 6h, 2d\n"
           "      --script FILE                  timed clicks, answers and file lines\n"
           "      --players engine|probe         decode and mix, or only time the files\n"
           "      --mix-out FILE.wav             write the mix (engine players)\n"
           "      --trace-selection              print the selection's trace lines\n"
           "  --add PATH...    add media files and folders (walked recursively) to the library\n"
           "                   by the auto add wizard's rules, without questions\n"
           "      --order title-artist|artist-title  how file names read (default title-artist)\n"
           "      --tags                         take title and artist from the file's tags\n"
           "                                     when its name isn't \"title - artist\"\n"
           "  --analyse        measure the loudness of every record not yet measured\n"
           "  --web [ADDR:]PORT  serve the request page and API (default address 127.0.0.1)\n"
           "                   with the desktop, --headless, --demo or --simulate; web.ini\n"
           "                   can do it too\n"
           "  --cd-image DIR   a folder (one WAV or FLAC a track) as the disc in the CD drive,\n"
           "                   with --headless, --demo or --simulate; tavora.ini can do it too\n"
           "  --screenshots DIR  open the windows, run the station a minute, save a PNG\n"
           "                   of each main window into DIR and exit\n"
           "  --play FILE...   play the files at once through the audio engine and exit\n"
           "  --output OUT     where the station or --play sounds: card (default) or null\n"
           "  --version        print the version and exit\n"
           "  --help           print this text and exit\n";
}

}  // namespace tavora
