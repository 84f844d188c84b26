#include "sim/event_log.h"

#include <cmath>
#include <cstdio>
#include <ostream>

#include "runtime/date_text.h"

namespace tavora {

namespace {

constexpr double kSecondsPerDay = 86'400.0;

bool is_fallback(PickReport::Way way) {
    return way == PickReport::Way::Fallback || way == PickReport::Way::CdFallback;
}

}  // namespace

EventLog::EventLog(const Clock& clock, EventLoop& loop, std::ostream& out, Station& station,
                   Playback& playback)
    : clock_(clock), loop_(loop), out_(out), s_(station), playback_(playback), began_(clock.Now()) {
    playback_.observer = this;
}

EventLog::~EventLog() {
    if (playback_.observer == this) playback_.observer = nullptr;
    if (selection_) {
        selection_->hooks.on_pick = nullptr;
        selection_->hooks.trace = nullptr;
    }
}

void EventLog::listen_to(Selection& selection, bool trace) {
    selection_ = &selection;
    selection.hooks.on_pick = [this](const PickReport& pick) { write_pick(pick); };
    if (trace) {
        selection.hooks.trace = [this](const std::string& line) {
            out_ << "TRACE " << event_time(clock_.Now()) << " " << line << "\n";
        };
    }
}

double EventLog::seconds() const {
    return (clock_.Now() - began_) * kSecondsPerDay;
}

void EventLog::state_changed(int player, int slot, int state) {
    if (state == MediaPlayer::kStopped || state == MediaPlayer::kClosed)
        aired_load_[player] = false;
    // The handlers of the bank run first and may pause a player they have
    // just started; what stands once they are done is what airs.
    std::weak_ptr<bool> alive = alive_;
    loop_.post([this, alive, player, slot, state] {
        if (alive.expired()) return;
        if (state == MediaPlayer::kPlaying) check_start(player, slot);
        if (by_players_) check_silence();
    });
}

// The CD's line names the slot it was cued in. Once the CD has given the
// air back (mode 3) the drive's run into the next track, until the CD player
// stops it, is the tail of the mix and no new start.
void EventLog::cd_state_changed(int state) {
    const bool started = !cd_playing_ && state == MediaPlayer::kPlaying;
    cd_playing_ = state == MediaPlayer::kPlaying;
    if (started && s_.CD_Mode != 3) {
        ++aired_;
        const double now = clock_.Now();
        out_ << "AIR " << event_time(now) << " slot=" << kCdSlot
             << " player=CD recid=" << s_.Slot_RecID[kCdSlot] << " \"" << s_.Slot_Title[kCdSlot]
             << "\"\n";
        if (on_air) on_air(kCdSlot, now);
    }
    if (by_players_) check_silence();
}

void EventLog::check_start(int player, int slot) {
    if (aired_load_[player] || playback_.Players(player).PlayState() != MediaPlayer::kPlaying)
        return;
    aired_load_[player] = true;
    ++aired_;
    const double now = clock_.Now();
    out_ << "AIR " << event_time(now) << " slot=" << slot << " player=" << player
         << " recid=" << s_.Slot_RecID[slot] << " \"" << s_.Slot_Title[slot] << "\"\n";
    if (on_air) on_air(slot, now);
}

void EventLog::check_silence() {
    if (cd_playing_) {
        dead_air_.sound_from(seconds());
        return;
    }
    for (int n = 1; n <= kPlayers; ++n) {
        if (playback_.Players(n).PlayState() == MediaPlayer::kPlaying) {
            dead_air_.sound_from(seconds());
            return;
        }
    }
    dead_air_.quiet_from(seconds());
}

void EventLog::write_pick(const PickReport& pick) {
    if (pick.way == PickReport::Way::Starved) return;
    ++picks_;
    if (is_fallback(pick.way)) ++fallbacks_;
    out_ << "PICK " << event_time(clock_.Now()) << " slot=" << pick.slot << " recid=" << pick.rec_id
         << " source=" << pick.record_source << "\n";
}

void EventLog::end() {
    dead_air_.finish(seconds());
    char dead[64];
    std::snprintf(dead, sizeof dead, "%.1f longest_dead_air_s=%.1f", dead_air_.total_seconds(),
                  dead_air_.longest_seconds());
    out_ << "END " << event_time(clock_.Now()) << " aired=" << aired_ << " picks=" << picks_
         << " fallbacks=" << fallbacks_ << " dead_air_s=" << dead << "\n";
}

}  // namespace tavora
