#include "platform/cdio_drive.h"

#include <cdio/cdio.h>
#include <cdio/logging.h>
#include <cdio/paranoia/cdda.h>
#include <cdio/paranoia/paranoia.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <system_error>

namespace tavora {

namespace {

namespace fs = std::filesystem;

void put_le(std::ofstream& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out.put(static_cast<char>((value >> (8 * i)) & 0xFF));
}

// CD audio as it is on the disc: 44.1 kHz, 16-bit, stereo.
void wav_header(std::ofstream& out, std::uint32_t data_bytes) {
    out.write("RIFF", 4);
    put_le(out, 36 + data_bytes, 4);
    out.write("WAVEfmt ", 8);
    put_le(out, 16, 4);
    put_le(out, 1, 2);
    put_le(out, 2, 2);
    put_le(out, 44100, 4);
    put_le(out, 44100 * 4, 4);
    put_le(out, 4, 2);
    put_le(out, 16, 2);
    out.write("data", 4);
    put_le(out, data_bytes, 4);
}

}  // namespace

CdioDrive::CdioDrive(std::string device, fs::path cache)
    : device_(std::move(device)), cache_(std::move(cache)) {}

CdioDrive::~CdioDrive() {
    close();
}

void CdioDrive::set_device(std::string device) {
    close();
    device_ = std::move(device);
}

bool CdioDrive::open() {
    if (cdio_) return true;
    cdio_loglevel_default = CDIO_LOG_ERROR;  // a missing drive is our message, not its
    cdio_ = cdio_open(device_.empty() ? nullptr : device_.c_str(), DRIVER_DEVICE);
    return cdio_ != nullptr;
}

void CdioDrive::close() {
    join();
    if (cdio_) cdio_destroy(cdio_);
    cdio_ = nullptr;
}

void CdioDrive::join() {
    if (reader_.joinable()) reader_.join();
}

bool CdioDrive::media_present() {
    return cdio_ && cdio_get_num_tracks(cdio_) != CDIO_INVALID_TRACK;
}

bool CdioDrive::media_changed() {
    if (!cdio_ || cdio_get_media_changed(cdio_) != 1) return false;
    join();
    std::lock_guard lock(mutex_);
    read_.clear();
    return true;
}

std::vector<CdDrive::Track> CdioDrive::tracks() {
    std::vector<Track> toc;
    if (!cdio_) return toc;
    const track_t first = cdio_get_first_track_num(cdio_);
    const track_t count = cdio_get_num_tracks(cdio_);
    if (first == CDIO_INVALID_TRACK || count == CDIO_INVALID_TRACK) return toc;
    for (track_t t = first; t < first + count; ++t) {
        const lsn_t from = cdio_get_track_lsn(cdio_, t);
        const lsn_t to = cdio_get_track_last_lsn(cdio_, t);
        toc.push_back({to >= from ? static_cast<long>(to - from + 1) : 0L,
                       cdio_get_track_format(cdio_, t) == TRACK_FORMAT_AUDIO});
    }
    return toc;
}

void CdioDrive::eject() {
    join();
    {
        std::lock_guard lock(mutex_);
        read_.clear();
    }
    if (cdio_) {
        // Ejecting frees the handle it is given.
        cdio_eject_media(&cdio_);
        cdio_ = nullptr;
        open();
    }
}

CdDrive::TrackAudio CdioDrive::audio(int track) {
    {
        std::lock_guard lock(mutex_);
        if (const auto it = read_.find(track); it != read_.end()) return it->second;
    }
    prepare(track);
    std::lock_guard lock(mutex_);
    const auto it = read_.find(track);
    return it != read_.end() ? it->second : TrackAudio{};
}

void CdioDrive::prepare(int track) {
    {
        std::lock_guard lock(mutex_);
        if (read_.count(track)) return;
        for (const auto& [t, audio] : read_)
            if (audio.state == Audio::Pending) return;  // one read at a time
        read_[track] = {Audio::Pending, {}};
    }
    join();
    std::error_code error;
    fs::create_directories(cache_, error);
    char name[32];
    std::snprintf(name, sizeof name, "track%02d.wav", track);
    reader_ = std::thread([this, track, file = cache_ / name] { read_track(track, file); });
}

// The reader's own handle: libcdio handles are not shared between threads.
void CdioDrive::read_track(int track, fs::path file) {
    TrackAudio result;
    CdIo_t* cdio = cdio_open(device_.empty() ? nullptr : device_.c_str(), DRIVER_DEVICE);
    cdrom_drive_t* drive =
        cdio ? cdio_cddap_identify_cdio(cdio, CDDA_MESSAGE_FORGETIT, nullptr) : nullptr;
    if (drive && cdio_cddap_open(drive) == 0) {
        const lsn_t first = cdio_cddap_track_firstsector(drive, static_cast<track_t>(track));
        const lsn_t last = cdio_cddap_track_lastsector(drive, static_cast<track_t>(track));
        cdrom_paranoia_t* paranoia =
            first >= 0 && last >= first ? cdio_paranoia_init(drive) : nullptr;
        if (paranoia) {
            // Full checking, but a sector that stays bad is skipped.
            cdio_paranoia_modeset(paranoia, PARANOIA_MODE_FULL ^ PARANOIA_MODE_NEVERSKIP);
            cdio_paranoia_seek(paranoia, first, SEEK_SET);
            std::ofstream out(file, std::ios::binary | std::ios::trunc);
            const auto sectors = static_cast<std::uint32_t>(last - first + 1);
            wav_header(out, sectors * CDIO_CD_FRAMESIZE_RAW);
            for (std::uint32_t i = 0; i < sectors && out; ++i) {
                const std::int16_t* samples =
                    cdio_paranoia_read_limited(paranoia, nullptr, kRetries);
                static const char kSilence[CDIO_CD_FRAMESIZE_RAW] = {};
                out.write(samples ? reinterpret_cast<const char*>(samples) : kSilence,
                          CDIO_CD_FRAMESIZE_RAW);
            }
            if (out.flush()) result = {Audio::Ready, file.string()};
            cdio_paranoia_free(paranoia);
        }
        cdio_cddap_close_no_free_cdio(drive);
    } else if (drive) {
        cdio_cddap_close_no_free_cdio(drive);
    }
    if (cdio) cdio_destroy(cdio);
    std::lock_guard lock(mutex_);
    read_[track] = result;
}

}  // namespace tavora
