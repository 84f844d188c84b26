#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tavora {

// `tavora --play FILE...`: opens every file on a player of its own, plays them all at
// once through the engine's mixer, and returns when the last one has ended.
int run_play_command(const std::vector<std::string>& files, const std::string& output,
                     std::ostream& out, std::ostream& err);

}  // namespace tavora
