#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/cd_drive.h"

namespace tavora {

// A disc as a folder: one WAV or FLAC file a track, in the order of their
// names, numbered by the digits a name starts with when every name has them;
// or a cue sheet (.cue) and the files it names, several tracks to a file.
// A gap in the numbers is a missing track and a file that can't be measured
// a damaged one: both stay on the disc as an unreadable track of four
// seconds, skipped as a drive skips what it can't read. A folder with no
// audio file is a data disc of one track.
class DiscImageDrive : public CdDrive {
  public:
    // Seconds of a media file, negative (with the reason) when it can't be
    // read as the engine would.
    using Measure = std::function<double(const std::string& native_path, std::string& error)>;

    explicit DiscImageDrive(Measure measure);

    // Puts a disc in: the sentences of what is wrong with it, empty when
    // nothing is. A folder that isn't there leaves the drive empty.
    std::vector<std::string> insert(const std::filesystem::path& folder);
    const std::filesystem::path& folder() const { return folder_; }

    bool open() override { return true; }
    bool media_present() override { return present_; }
    bool media_changed() override { return std::exchange(changed_, false); }
    std::vector<Track> tracks() override;
    void eject() override;
    TrackAudio audio(int track) override;

  private:
    struct Entry {
        Track track;
        std::string path;  // empty for a missing or damaged track
        double start = 0;  // seconds into the file
    };
    void read_files(const std::vector<std::filesystem::path>& files,
                    std::vector<std::string>& problems);
    void read_cue_sheet(const std::filesystem::path& sheet, std::vector<std::string>& problems);
    // The file's length in CD frames, or 0 with a problem said.
    long frames_of(const std::filesystem::path& file, int track,
                   std::vector<std::string>& problems);
    Measure measure_;
    std::filesystem::path folder_;
    bool present_ = false;
    bool changed_ = false;
    std::vector<Entry> entries_;
};

}  // namespace tavora
