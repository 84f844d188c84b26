#pragma once

#include <string>
#include <vector>

#include "platform/cd_drive.h"
#include "platform/mci.h"

namespace tavora {

// The "cdaudio" device of MCI on a CdDrive: the command strings the CD
// player sends, their replies, and the transport of a drive playing a disc
// at 75 frames a second, its sound through a CdDeck. A disc plays on from
// track to track to its end; a track that can't be read is skipped.
class MciCdAudio : public Mci {
  public:
    MciCdAudio(CdDrive& drive, CdDeck& deck);
    ~MciCdAudio() override;
    MciCdAudio(const MciCdAudio&) = delete;
    MciCdAudio& operator=(const MciCdAudio&) = delete;

    int mciSendString(const std::string& command, std::string& reply) override;

    // Another drive (a disc image put in by a script); stops what plays.
    void use_drive(CdDrive& drive);
    CdDrive& drive() { return *drive_; }

  private:
    enum class Mode { Stopped, Playing, Paused, Seeking };
    struct Spot {
        int track = 1;
        long offset = 0;  // frames into the track
    };

    int open(const std::vector<std::string>& words);
    int set(const std::vector<std::string>& words);
    int status(const std::vector<std::string>& words, std::string& reply);
    int play(const std::vector<std::string>& words);
    int seek(const std::vector<std::string>& words);

    // Catches up with the drive: a disc put in or taken out, audio that a
    // real drive has finished reading.
    void sync();
    bool has_disc() const { return !toc_.empty(); }
    int disc_ready() const;  // kOk, or why the disc can't be played
    bool parse_spot(const std::string& text, Spot& spot) const;
    Spot now() const;
    long start_of(int track) const;
    long total() const;
    void start_audio();
    // One file may hold several tracks (a cue sheet): the position runs on
    // from one into the next.
    void follow_file();
    void next_track();
    void halt(Mode mode);

    CdDrive* drive_;
    CdDeck& deck_;
    bool open_ = false;
    bool milliseconds_ = false;
    std::vector<CdDrive::Track> toc_;
    Mode mode_ = Mode::Stopped;
    Spot spot_;
    std::string loaded_;     // the file on the deck
    double file_start_ = 0;  // where the current track begins in it, seconds
};

}  // namespace tavora
