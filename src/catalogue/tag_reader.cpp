#include "catalogue/tag_reader.h"

#include <taglib/fileref.h>
#include <taglib/tag.h>

#include "runtime/strings.h"

namespace tavora {

FileTags read_tags(const std::string& native_path) {
    // Only the tag is wanted: no audio properties, which cost a read of the stream.
    TagLib::FileRef file(native_path.c_str(), false);
    if (file.isNull() || !file.tag()) return {};
    const TagLib::Tag& tag = *file.tag();
    return {Trim(tag.title().to8Bit(true)), Trim(tag.artist().to8Bit(true))};
}

}  // namespace tavora
