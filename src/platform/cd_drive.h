#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tavora {

// A drive and the disc in it, as the MCI stand-in needs them: the table of
// contents, and each track's audio as a file the engine can play. Two stand
// behind it: a folder image of a disc, and a real drive read digitally.
// Rule thread only.
class CdDrive {
  public:
    struct Track {
        long frames = 0;    // length, 75 a second
        bool audio = true;  // false for a data track
    };
    enum class Audio { Ready, Pending, Unreadable };
    struct TrackAudio {
        Audio state = Audio::Unreadable;
        std::string path;  // native, when ready
        double start = 0;  // seconds into the file where the track begins
    };

    virtual ~CdDrive() = default;
    // False when there is no such drive on this machine.
    virtual bool open() = 0;
    virtual void close() {}
    virtual bool media_present() = 0;
    // True once after a disc went in or out since the last call.
    virtual bool media_changed() = 0;
    // Empty without a disc.
    virtual std::vector<Track> tracks() = 0;
    virtual void eject() = 0;
    // A track's audio (1-based); a real drive reads it first, so it may be
    // pending. `prepare` says which track is wanted next.
    virtual TrackAudio audio(int track) = 0;
    virtual void prepare(int /*track*/) {}
};

// The sound of the CD: one more player of the audio engine, fed a track's
// file at a time. Rule thread only.
class CdDeck {
  public:
    virtual ~CdDeck() = default;
    virtual void load(const std::string& native_path) = 0;
    virtual bool ready() const = 0;  // loaded and able to play
    virtual void play(double from_seconds) = 0;
    virtual void pause() = 0;
    virtual void stop() = 0;
    virtual bool playing() const = 0;
    virtual double position() const = 0;  // seconds into the file
    // Called at each command the drive takes, for work that waits on an open.
    virtual void poll() {}
    // Raised when the file has played to its end (never for a stop asked for).
    std::function<void()> ended;
};

}  // namespace tavora
