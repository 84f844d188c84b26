#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavora {

// One line of a simulator script: `HH:MM:SS ACTION ...`, the time counted
// from the start of the run.
struct ScriptAction {
    enum class Kind { Click, Close, Answer, Set, Append, Write, CdInsert, CdEject };
    int line = 0;
    std::int64_t at_ms = 0;
    Kind kind = Kind::Click;
    std::string form;     // click, set, close
    std::string control;  // click, set
    int index = -1;       // a member of a control array
    std::string path;     // append, write: a file of the install folder; cd insert: a folder
    std::string text;     // answer, set: the value; append, write: the line
};

struct Script {
    std::vector<ScriptAction> actions;  // in time order, lines of one time in file order
    std::string error;                  // "line N: why", empty when the script is good
};

// Blank lines and lines starting with '#' are passed over.
Script parse_script(std::string_view text);

// "90s", "45m", "6h", "2d" as milliseconds; nothing for anything else.
std::optional<std::int64_t> parse_duration(std::string_view text);

}  // namespace tavora
