#include "platform/mci_cd_audio.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <sstream>

namespace tavora {

namespace {

std::vector<std::string> words_of(const std::string& command) {
    std::istringstream in(command);
    std::vector<std::string> words;
    for (std::string word; in >> word;) {
        for (char& c : word)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        // Flags that change nothing on a stand-in that answers at once.
        if (word != "wait" && word != "shareable" && word != "notify") words.push_back(word);
    }
    return words;
}

bool whole_number(const std::string& text, long& value) {
    if (text.empty() || text.size() > 9) return false;
    value = 0;
    for (char c : text) {
        if (!std::isdigit(static_cast<unsigned char>(c))) return false;
        value = value * 10 + (c - '0');
    }
    return true;
}

constexpr long kFps = mci::kFramesPerSecond;

}  // namespace

MciCdAudio::MciCdAudio(CdDrive& drive, CdDeck& deck) : drive_(&drive), deck_(deck) {
    deck_.ended = [this] { next_track(); };
}

MciCdAudio::~MciCdAudio() {
    deck_.ended = nullptr;
}

void MciCdAudio::use_drive(CdDrive& drive) {
    halt(Mode::Stopped);
    if (open_) drive_->close();
    drive_ = &drive;
    toc_.clear();
    spot_ = {};
    if (open_) drive_->open();
}

int MciCdAudio::mciSendString(const std::string& command, std::string& reply) {
    reply.clear();
    const std::vector<std::string> words = words_of(command);
    if (words.empty()) return mci::kUnrecognizedCommand;
    const std::string& verb = words[0];
    if (verb == "open") return open(words);
    if (verb == "close") {
        if (words.size() < 2 || (words[1] != "all" && words[1] != "cd"))
            return mci::kInvalidDeviceName;
        if (!open_) return words[1] == "all" ? mci::kOk : mci::kInvalidDeviceName;
        halt(Mode::Stopped);
        drive_->close();
        open_ = false;
        toc_.clear();
        return mci::kOk;
    }
    static const char* const kVerbs[] = {"set", "status", "play", "stop", "pause", "seek"};
    bool known = false;
    for (const char* v : kVerbs)
        known = known || verb == v;
    if (!known) return mci::kUnrecognizedCommand;
    if (words.size() < 2 || words[1] != "cd" || !open_) return mci::kInvalidDeviceName;
    sync();
    if (verb == "set") return set(words);
    if (verb == "status") return status(words, reply);
    if (verb == "play") return play(words);
    if (verb == "seek") return seek(words);
    if (const int ready = disc_ready(); ready != mci::kOk) return ready;
    if (words.size() > 2) return mci::kUnrecognizedKeyword;
    halt(verb == "pause" && mode_ != Mode::Stopped ? Mode::Paused : Mode::Stopped);
    return mci::kOk;
}

int MciCdAudio::open(const std::vector<std::string>& words) {
    if (words.size() < 2 || words[1] != "cdaudio") return mci::kInvalidDeviceName;
    if (words.size() == 4 && (words[2] != "alias" || words[3] != "cd"))
        return mci::kUnrecognizedKeyword;
    if (words.size() != 2 && words.size() != 4) return mci::kUnrecognizedKeyword;
    if (open_) return mci::kDuplicateAlias;
    if (!drive_->open()) return mci::kCannotLoadDriver;
    open_ = true;
    milliseconds_ = true;  // MCI's default until a format is set
    return mci::kOk;
}

int MciCdAudio::set(const std::vector<std::string>& words) {
    if (words.size() == 5 && words[2] == "time" && words[3] == "format") {
        if (words[4] == "tmsf") {
            milliseconds_ = false;
            return mci::kOk;
        }
        if (words[4] == "milliseconds" || words[4] == "ms") {
            milliseconds_ = true;
            return mci::kOk;
        }
        return mci::kUnrecognizedKeyword;
    }
    if (words.size() == 4 && words[2] == "door" && words[3] == "open") {
        halt(Mode::Stopped);
        drive_->eject();
        toc_.clear();
        spot_ = {};
        return mci::kOk;
    }
    return mci::kUnrecognizedKeyword;
}

int MciCdAudio::status(const std::vector<std::string>& words, std::string& reply) {
    auto item = [&](std::size_t from) {
        std::string text;
        for (std::size_t i = from; i < words.size(); ++i)
            text += (i > from ? " " : "") + words[i];
        return text;
    };
    const std::string asked = item(2);
    if (asked == "media present") {
        reply = has_disc() ? "true" : "false";
        return mci::kOk;
    }
    if (asked == "mode") {
        static const char* const kModes[] = {"stopped", "playing", "paused", "seeking"};
        reply = has_disc() ? kModes[static_cast<int>(mode_)] : "not ready";
        return mci::kOk;
    }
    if (!has_disc()) return mci::kDeviceNotReady;
    if (asked == "number of tracks") {
        reply = std::to_string(toc_.size());
        return mci::kOk;
    }
    if (asked == "position") {
        const Spot at = now();
        reply = milliseconds_ ? std::to_string((start_of(at.track) + at.offset) * 1000 / kFps)
                              : mci::tmsf_text(at.track, at.offset);
        return mci::kOk;
    }
    if (asked == "length") {
        reply = milliseconds_ ? std::to_string(total() * 1000 / kFps) : mci::msf_text(total());
        return mci::kOk;
    }
    if (words.size() == 5 && words[2] == "length" && words[3] == "track") {
        long track = 0;
        if (!whole_number(words[4], track)) return mci::kBadInteger;
        if (track < 1 || track > static_cast<long>(toc_.size())) return mci::kOutOfRange;
        const long frames = toc_[track - 1].frames;
        reply = milliseconds_ ? std::to_string(frames * 1000 / kFps) : mci::msf_text(frames);
        return mci::kOk;
    }
    return words.size() < 3 ? mci::kMissingParameter : mci::kUnrecognizedKeyword;
}

int MciCdAudio::play(const std::vector<std::string>& words) {
    if (const int ready = disc_ready(); ready != mci::kOk) return ready;
    Spot from = now();
    if (words.size() == 4 && words[2] == "from") {
        if (!parse_spot(words[3], from)) return mci::kOutOfRange;
    } else if (words.size() != 2) {
        return mci::kUnrecognizedKeyword;
    }
    halt(Mode::Stopped);
    spot_ = from;
    mode_ = Mode::Playing;
    start_audio();
    return mci::kOk;
}

int MciCdAudio::seek(const std::vector<std::string>& words) {
    if (words.size() != 4 || words[2] != "to") return mci::kMissingParameter;
    if (const int ready = disc_ready(); ready != mci::kOk) return ready;
    Spot to;
    if (words[3] == "start") {
        to = {};
    } else if (!parse_spot(words[3], to)) {
        return mci::kOutOfRange;
    }
    halt(Mode::Stopped);
    spot_ = to;
    drive_->prepare(to.track);
    return mci::kOk;
}

void MciCdAudio::sync() {
    deck_.poll();
    // Another disc went in since the last look: the tray was open in
    // between, and this look sees no disc.
    const bool swapped = drive_->media_changed() && has_disc();
    if (swapped || !drive_->media_present()) {
        if (has_disc()) {
            halt(Mode::Stopped);
            toc_.clear();
            spot_ = {};
        }
        return;
    }
    if (!has_disc()) {
        toc_ = drive_->tracks();
        spot_ = {};
        mode_ = Mode::Stopped;
    }
    if (mode_ == Mode::Seeking) start_audio();
    follow_file();
}

int MciCdAudio::disc_ready() const {
    if (!has_disc()) return mci::kDeviceNotReady;
    for (const auto& track : toc_)
        if (track.audio) return mci::kOk;
    return mci::kNotAudio;
}

bool MciCdAudio::parse_spot(const std::string& text, Spot& spot) const {
    if (milliseconds_) {
        long ms = 0;
        if (!whole_number(text, ms)) return false;
        long frames = ms * kFps / 1000;
        int track = 1;
        while (track < static_cast<int>(toc_.size()) && frames >= toc_[track - 1].frames) {
            frames -= toc_[track - 1].frames;
            ++track;
        }
        spot = {track, std::min(frames, toc_[track - 1].frames)};
        return true;
    }
    long parts[4] = {0, 0, 0, 0};
    std::size_t count = 0, begin = 0;
    while (count < 4) {
        const std::size_t colon = text.find(':', begin);
        if (!whole_number(text.substr(begin, colon - begin), parts[count++])) return false;
        if (colon == std::string::npos) break;
        begin = colon + 1;
        if (count == 4) return false;
    }
    if (parts[0] < 1 || parts[0] > static_cast<long>(toc_.size())) return false;
    const long offset = (parts[1] * 60 + parts[2]) * kFps + parts[3];
    if (offset > toc_[parts[0] - 1].frames) return false;
    spot = {static_cast<int>(parts[0]), offset};
    return true;
}

MciCdAudio::Spot MciCdAudio::now() const {
    if (mode_ != Mode::Playing || !deck_.playing()) return spot_;
    const long length = toc_[spot_.track - 1].frames;
    const long at = std::lround((deck_.position() - file_start_) * kFps);
    return {spot_.track, std::clamp(at, 0L, length)};
}

long MciCdAudio::start_of(int track) const {
    long frames = 0;
    for (int i = 1; i < track; ++i)
        frames += toc_[i - 1].frames;
    return frames;
}

long MciCdAudio::total() const {
    return start_of(static_cast<int>(toc_.size()) + 1);
}

void MciCdAudio::start_audio() {
    const CdDrive::Track& track = toc_[spot_.track - 1];
    const CdDrive::TrackAudio audio =
        track.audio ? drive_->audio(spot_.track) : CdDrive::TrackAudio{};
    switch (audio.state) {
        case CdDrive::Audio::Pending:
            mode_ = Mode::Seeking;
            return;
        case CdDrive::Audio::Unreadable:
            // A drive skips what it can't read; the air goes on.
            next_track();
            return;
        case CdDrive::Audio::Ready:
            break;
    }
    mode_ = Mode::Playing;
    if (loaded_ != audio.path) {
        deck_.load(audio.path);
        loaded_ = audio.path;
    }
    file_start_ = audio.start;
    deck_.play(file_start_ + static_cast<double>(spot_.offset) / kFps);
    if (spot_.track < static_cast<int>(toc_.size())) drive_->prepare(spot_.track + 1);
}

void MciCdAudio::follow_file() {
    while (mode_ == Mode::Playing && has_disc() && spot_.track < static_cast<int>(toc_.size())) {
        const double at = (deck_.position() - file_start_) * kFps;
        if (at < toc_[spot_.track - 1].frames) return;
        const CdDrive::TrackAudio next = drive_->audio(spot_.track + 1);
        if (next.state != CdDrive::Audio::Ready || next.path != loaded_) return;
        ++spot_.track;
        spot_.offset = 0;
        file_start_ = next.start;
    }
}

void MciCdAudio::next_track() {
    if (mode_ != Mode::Playing && mode_ != Mode::Seeking) return;
    follow_file();
    if (spot_.track >= static_cast<int>(toc_.size())) {
        spot_.offset = toc_[spot_.track - 1].frames;
        halt(Mode::Stopped);
        return;
    }
    ++spot_.track;
    spot_.offset = 0;
    start_audio();
}

void MciCdAudio::halt(Mode mode) {
    if (mode_ == Mode::Playing && has_disc()) spot_ = now();
    if (mode_ == Mode::Playing || mode_ == Mode::Paused) {
        if (mode == Mode::Paused) {
            deck_.pause();
        } else {
            deck_.stop();
        }
    }
    mode_ = mode;
}

}  // namespace tavora
