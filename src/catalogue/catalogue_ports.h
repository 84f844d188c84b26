#pragma once

#include <functional>
#include <string>

namespace tavora {

// What the program director needs of the rest of the station and of the
// front end. Each may be left empty: the rule then passes over that step.
struct CatalogueHooks {
    // The exact length in seconds of a media file (a native path), as the
    // engine decodes it; below 0 with `error` set when it isn't media. The
    // front end supplies it, so the catalogue's rules never link a decoder.
    std::function<double(const std::string& native_path, std::string& error)> measure_length;
    // Told of every row the catalogue has added, by its RecID, after the
    // row is written: the one hand-over point for work on new records.
    std::function<void(long long RecID, const std::string& native_path)> record_added;
    // Unloads the Request screen if visible and loads it at 0, 0.
    std::function<void()> reload_request;
    // `frmViewer` is loaded.
    std::function<bool()> viewer_loaded;
    // Opens `frmTypeLookup`.
    std::function<void()> open_type_lookup;
};

}  // namespace tavora
