#include "playback/dead_air_watch.h"

#include <algorithm>
#include <cmath>

#include "core/log/play_log.h"
#include "platform/clock.h"
#include "platform/path_map.h"
#include "runtime/date_text.h"
#include "runtime/text_file.h"

namespace tavora {

namespace {

constexpr double kSecondsPerDay = 86'400.0;
constexpr const char* kMark = " ** DEAD AIR";  // the state's words begin so
// An emergency file still closed this long after its open has failed.
constexpr double kOpenWait = 2.0;
// How long before the hold is up the first emergency file is opened.
constexpr double kReadyAhead = 1.0;
// A timer may fire this much before its time, in clock units.
constexpr double kEarly = 0.001;

std::string whole_seconds(double seconds) {
    return std::to_string(static_cast<long long>(std::lround(seconds)));
}

}  // namespace

DeadAirWatch::DeadAirWatch(Station& station, const Services& services, Playback& playback)
    : s_(station), services_(services), playback_(playback) {
    // The tick's own first step; while the tick stands (a bridge, a pause),
    // the watchdog's timer keeps the watch.
    playback_.on_tick = [this] {
        if (settings_.on) watch();
    };
    timer_ = services_.loop.CreateTimer([this] {
        if (!playback_.TimerViewer().Enabled()) watch();
    });
    timer_->SetInterval(kWatchMs);
    // Looks are a tick apart: without this one the hold could be overrun
    // by a whole tick before anything is done.
    exact_look_ = services_.loop.CreateTimer([this] {
        exact_look_->SetEnabled(false);
        if (settings_.on) watch();
    });
}

DeadAirWatch::~DeadAirWatch() {
    playback_.on_tick = nullptr;
}

void DeadAirWatch::apply(const DeadAirSettings& settings) {
    settings_ = settings;
    if (level_changed) level_changed(settings.level_dbfs);
    if (!settings.on) stand_down();
    armed_at_ = heard_at_ = now_seconds();
    timer_->SetEnabled(settings.on);
}

double DeadAirWatch::now_seconds() const {
    return services_.clock.Now() * kSecondsPerDay;
}

// A break, a pause, a held set, the CD in the bank's place, or no run at all:
// silence that somebody meant, or that a skip can't end.
bool DeadAirWatch::explained() const {
    if (playback_.Ply_View != 1 || playback_.run_stopped()) return true;
    if (s_.Live_Mode == 2 || s_.CD_Mode == 2) return true;
    if (playback_.Pause_At > 0 && s_.Ply_Now == playback_.Pause_At) return true;
    const Control* button = playback_.request.break_button;
    if (button && button->Caption == "Resume") return true;
    const int active = std::clamp(s_.Ply_Now, 1, kPlayers);
    return !playback_.TimerViewer().Enabled() &&
           playback_.Players(active).PlayState() == MediaPlayer::kPaused;
}

// Whether a skip now hands over to a player that stands open: not while the
// seventh player bridges, nor at the set's end without it, where the next set
// has still to be opened.
bool DeadAirWatch::next_cued() const {
    if (playback_.Players(7).PlayState() == MediaPlayer::kPlaying) return false;
    const int active = std::clamp(s_.Ply_Now, 1, 6);
    if (active == 6 && s_.Ply7_On != 1) return false;
    return playback_.Players(active + 1).PlayState() != MediaPlayer::kClosed;
}

double DeadAirWatch::quiet() const {
    return quiet_seconds ? quiet_seconds() : now_seconds() - heard_at_;
}

bool DeadAirWatch::sounded_since(double at) const {
    return quiet() < now_seconds() - at;
}

void DeadAirWatch::watch() {
    const double now = now_seconds();
    if (!quiet_seconds) {
        for (int n = 1; n <= kPlayers; ++n)
            if (playback_.Players(n).PlayState() == MediaPlayer::kPlaying) heard_at_ = now;
    }
    if (explained()) {
        stand_down();
        armed_at_ = now;
        return;
    }
    switch (stage_) {
        case Stage::Listening: {
            const double silent = std::min(quiet(), now - armed_at_);
            if (silent >= settings_.hold_seconds) {
                const bool cued = next_cued();
                detect();
                skip();
                if (!cued) cover();
            } else if (silent >= settings_.hold_seconds - kReadyAhead) {
                ready_cover();
                look_in(settings_.hold_seconds - silent);
            }
            break;
        }
        case Stage::Skipped:
            // A tick after the skip: what it brought on sounds, or is as
            // silent as what it ended. A look sooner would cover a song that
            // had no time to start.
            if (sounded_since(acted_at_)) {
                recover();
            } else if (now - acted_at_ >= kWatchMs / 1000.0 - kEarly) {
                cover();
            }
            break;
        case Stage::Covering:
            if (sounded_since(acted_at_)) {
                recover();
            } else {
                keep_covering();
            }
            break;
    }
}

void DeadAirWatch::look_in(double seconds) {
    exact_look_->SetInterval(std::max(1, static_cast<int>(std::ceil(seconds * 1000))));
    exact_look_->SetEnabled(true);
}

void DeadAirWatch::detect() {
    const double now = now_seconds();
    silent_from_ = now - std::min(quiet(), now - armed_at_);
    log("DEAD AIR at:" + Format(services_.clock.Now(), "long time") + " - silent for " +
        whole_seconds(now - silent_from_) + " s - " + on_air_title());
    set_state("DEAD AIR since " + Format(silent_from_ / kSecondsPerDay, "long time"));
}

void DeadAirWatch::skip() {
    log("DEAD AIR SKIP at:" + Format(services_.clock.Now(), "long time") + " - " + on_air_title());
    // As a player's close box does: a skip that asks nobody.
    playback_.Ply_Closing = 1;
    playback_.Skip_One();
    playback_.Ply_Closing = 0;
    acted_at_ = now_seconds();
    if (stage_ == Stage::Listening) {
        stage_ = Stage::Skipped;
        look_in(kWatchMs / 1000.0);
    }
}

// The first emergency file opened and cued a moment before the hold is up,
// so that a cover sounds at once: an open takes its time.
void DeadAirWatch::ready_cover() {
    if (ready_ || !fallback_) return;
    emergency_ = emergency_files(settings_.folder, services_.paths);
    next_file_ = 0;
    failures_ = 0;
    on_tone_ = false;
    cue_next_emergency();
    ready_ = true;
}

void DeadAirWatch::cover() {
    stage_ = Stage::Covering;
    acted_at_ = now_seconds();
    ready_cover();
    ready_ = false;
    if (!emergency_.note.empty()) log("DEAD AIR FALLBACK >> " + emergency_.note);
    set_state("DEAD AIR, emergency files on the air");
    start_emergency();
}

void DeadAirWatch::keep_covering() {
    // The bank is still silent: give the next slot its chance, once a hold time.
    if (now_seconds() - acted_at_ >= settings_.hold_seconds) skip();
    if (!fallback_) return;
    const int state = fallback_->PlayState();
    if (state == MediaPlayer::kPlaying) {
        if (fallback_->CurrentPosition() > 1) failures_ = 0;
        return;
    }
    if (state == MediaPlayer::kClosed && now_seconds() - opened_at_ < kOpenWait) return;
    if (state == MediaPlayer::kStopped && !started_) {
        fallback_->play();
        started_ = true;
        return;
    }
    ++failures_;  // ended or failed; a file that played a second or more is no failure
    cue_next_emergency();
    start_emergency();
}

void DeadAirWatch::cue_next_emergency() {
    if (failures_ > emergency_.files.size()) {
        if (on_tone_) {
            if (!gave_up_) log("DEAD AIR FALLBACK >> not even the tone would play");
            gave_up_ = true;
            return;
        }
        log("DEAD AIR FALLBACK >> no emergency file would play, playing a tone");
        emergency_.files = {emergency_tone(services_.paths)};
        next_file_ = 0;
        failures_ = 0;
        on_tone_ = true;
    }
    cued_ = emergency_.files[next_file_ % emergency_.files.size()];
    ++next_file_;
    fallback_->Open(cued_);
    opened_at_ = now_seconds();
    started_ = false;
}

// Plays the cued file now if its open is done, else at the next look.
void DeadAirWatch::start_emergency() {
    if (!fallback_ || gave_up_) return;
    log("DEAD AIR FALLBACK at:" + Format(services_.clock.Now(), "long time") + " >> " + cued_);
    if (fallback_->PlayState() == MediaPlayer::kStopped) {
        fallback_->play();
        started_ = true;
    }
}

void DeadAirWatch::recover() {
    log("DEAD AIR RECOVERED at:" + Format(services_.clock.Now(), "long time") + " - silent for " +
        whole_seconds(now_seconds() - quiet() - silent_from_) + " s - " + on_air_title());
    stand_down();
}

void DeadAirWatch::stand_down() {
    if (fallback_ && fallback_->PlayState() != MediaPlayer::kClosed) fallback_->Stop();
    stage_ = Stage::Listening;
    ready_ = false;
    gave_up_ = false;
    if (!state_.empty()) set_state("");
}

void DeadAirWatch::log(const std::string& line) {
    if (s_.Log_Due == 2) return;
    if (s_.Log_Due == 1) Log_One(s_, services_);  // the waiting line keeps its place
    s_.Log_Line = line;
    Log_One(s_, services_);
}

std::string DeadAirWatch::on_air_title() const {
    if (playback_.Players(7).PlayState() == MediaPlayer::kPlaying)
        return "QX 7 > " + s_.Slot_Title[kSeventhSlot];
    const int slot = std::clamp(s_.Ply_Now, 1, 6);
    return "QX" + std::to_string(slot) + " > " + s_.Slot_Title[slot];
}

// The status file's first line carries the state until the air is back; the
// next regular write keeps it through `state()`.
void DeadAirWatch::set_state(std::string words) {
    state_ = std::move(words);
    const auto file = services_.paths.ToNative("c:\\tavora\\tqxstat.txt").path;
    std::vector<std::string> lines;
    TextReader in(file);
    for (ReadResult line = in.read_line(); line.ok(); line = in.read_line())
        lines.push_back(line.text);
    in.close();
    if (lines.empty()) lines.emplace_back();
    lines[0] = lines[0].substr(0, lines[0].find(kMark));
    if (!state_.empty()) lines[0] += " ** " + state_;
    TextWriter out(file, TextWriter::Mode::Create);
    for (const auto& line : lines)
        out.write_line(line);
    out.close();
}

}  // namespace tavora
