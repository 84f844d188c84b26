#include "command_line.h"

namespace tavora {

CommandLine parse_command_line(const std::vector<std::string>& args) {
    CommandLine line;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg == "--help" || arg == "-h") {
            line.action = CommandLine::Action::Help;
        } else if (arg == "--version") {
            line.action = CommandLine::Action::Version;
        } else if (arg == "--home") {
            if (i + 1 >= args.size()) {
                line.error = "--home needs a folder";
                return line;
            }
            line.home = args[++i];
        } else if (arg == "--headless") {
            line.action = CommandLine::Action::Headless;
        } else if (arg == "--play") {
            line.action = CommandLine::Action::Play;
            while (i + 1 < args.size() && args[i + 1].rfind("--", 0) != 0) {
                line.play_files.push_back(args[++i]);
            }
            if (line.play_files.empty()) {
                line.error = "--play needs at least one file";
                return line;
            }
        } else if (arg == "--output") {
            if (i + 1 >= args.size() || (args[i + 1] != "null" && args[i + 1] != "card")) {
                line.error = "--output needs null or card";
                return line;
            }
            line.output = args[++i];
        } else {
            line.error = "unknown option: " + arg;
            return line;
        }
    }
    return line;
}

std::string usage_text() {
    return "Usage: tavora [options]\n"
           "\n"
           "An unattended music programming and playout station.\n"
           "\n"
           "Options:\n"
           "  --headless     run the station without windows until SIGINT or SIGTERM\n"
           "  --home DIR     install folder (default: $TAVORA_HOME or ~/tavora)\n"
           "  --play FILE... play the files at once through the audio engine and exit\n"
           "  --output OUT   where --play sounds: card (default) or null\n"
           "  --version      print the version and exit\n"
           "  --help         print this text and exit\n";
}

}  // namespace tavora
