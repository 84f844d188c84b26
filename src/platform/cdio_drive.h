#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "platform/cd_drive.h"

typedef struct _CdIo CdIo_t;

namespace tavora {

// A real drive: libcdio for the table of contents and the drive's state,
// libcdio-paranoia for reading the audio digitally, so that the CD goes
// through the engine like every other player. A track is read into a WAV file
// of `cache` on a thread of its own when it is asked for (the cue of a CD
// track asks minutes before it airs); a sector that fails its bounded retries
// is skipped, never waited on.
class CdioDrive : public CdDrive {
  public:
    // `device` empty: the system's default drive.
    CdioDrive(std::string device, std::filesystem::path cache);
    ~CdioDrive() override;
    CdioDrive(const CdioDrive&) = delete;
    CdioDrive& operator=(const CdioDrive&) = delete;
    // Another drive; closes the one open.
    void set_device(std::string device);

    bool open() override;
    void close() override;
    bool media_present() override;
    bool media_changed() override;
    std::vector<Track> tracks() override;
    void eject() override;
    TrackAudio audio(int track) override;
    void prepare(int track) override;

    // Retries of one read before paranoia skips the sector.
    static constexpr int kRetries = 20;

  private:
    void read_track(int track, std::filesystem::path file);
    void join();

    std::string device_;
    std::filesystem::path cache_;
    CdIo_t* cdio_ = nullptr;
    std::mutex mutex_;
    std::map<int, TrackAudio> read_;  // guarded by mutex_
    std::thread reader_;
};

}  // namespace tavora
