#pragma once

#include <string>

namespace tavora {

struct FileTags {
    std::string title;
    std::string artist;
};

// The title and artist a media file names itself by, empty where it has
// none or can't be read. UTF-8, with blanks at either end dropped.
FileTags read_tags(const std::string& native_path);

}  // namespace tavora
