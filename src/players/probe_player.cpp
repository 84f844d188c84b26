#include "players/probe_player.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "audio/decoder.h"
#include "audio/format.h"

namespace tavora {

namespace {

double measure(const std::string& native_path, std::string& error) {
    audio::Decoder decoder;
    const audio::OpenResult opened = decoder.open(native_path);
    if (opened.status != audio::OpenStatus::Succeeded) {
        error = opened.error;
        return -1;
    }
    return audio::seconds_of_frames(decoder.length());
}

}  // namespace

double MediaLengths::length(const std::string& native_path, std::string& error) {
    std::error_code ec;
    const std::uintmax_t size = std::filesystem::file_size(native_path, ec);
    std::filesystem::file_time_type written;
    if (!ec) written = std::filesystem::last_write_time(native_path, ec);
    if (ec) return measure(native_path, error);  // a URL, or a file that isn't there

    auto known = known_.find(native_path);
    if (known == known_.end() || known->second.size != size || known->second.written != written) {
        Entry entry{size, written, 0, {}};
        entry.seconds = measure(native_path, entry.error);
        known = known_.insert_or_assign(native_path, std::move(entry)).first;
    }
    if (known->second.seconds < 0) error = known->second.error;
    return known->second.seconds;
}

ProbePlayer::ProbePlayer(const Clock& clock, EventLoop& loop, std::shared_ptr<MediaLengths> lengths)
    : clock_(clock), loop_(loop), lengths_(std::move(lengths)) {
    end_timer_ = loop_.CreateTimer([this] { ended(); });
}

double ProbePlayer::now_seconds() const {
    return clock_.Now() * 86'400.0;
}

double ProbePlayer::end_seconds() const {
    return selection_end_ > 0 ? std::min(selection_end_, duration_) : duration_;
}

void ProbePlayer::set_state(int state, bool always_tell) {
    const int old = state_;
    state_ = state;
    if (old == state && !always_tell) return;
    loop_.post([this, alive = std::weak_ptr<bool>(alive_), old, state] {
        if (alive.lock()) raise_state(old, state);
    });
}

void ProbePlayer::Open(const std::string& path) {
    end_timer_->SetEnabled(false);
    file_name_ = path;
    ready_ = 0;
    duration_ = position_ = 0;
    selection_start_ = selection_end_ = 0;
    failed_ = false;
    set_state(kClosed);
    const double length = lengths_->length(path, error_);
    if (length < 0) {
        failed_ = true;
        loop_.post([this, alive = std::weak_ptr<bool>(alive_)] {
            if (alive.lock()) raise_error();
        });
        return;
    }
    state_ = kStopped;  // as the engine's player: leaving closed raises no play-state event
    ready_ = kReady;
    duration_ = length;
    selection_end_ = length;
}

double ProbePlayer::CurrentPosition() const {
    if (state_ != kPlaying) return position_;
    return std::min(position_ + (now_seconds() - played_from_), std::max(end_seconds(), position_));
}

void ProbePlayer::CurrentPosition(double seconds) {
    if (state_ == kClosed) return;
    position_ = std::clamp(seconds, 0.0, duration_);
    if (state_ != kPlaying) return;
    played_from_ = now_seconds();
    schedule_end();
}

void ProbePlayer::SelectionEnd(double seconds) {
    selection_end_ = seconds;
    if (state_ == kPlaying) schedule_end();
}

void ProbePlayer::Volume(double hundredths_db) {
    volume_ = static_cast<int>(std::clamp<long>(std::lround(hundredths_db), -10000, 0));
}

void ProbePlayer::play() {
    if (failed_) {
        // Nothing to play: it starts and ends at once, as a damaged file would.
        set_state(kPlaying);
        set_state(kStopped);
        return;
    }
    if (state_ == kClosed || state_ == kPlaying) return;
    if (position_ >= end_seconds()) position_ = selection_start_;
    played_from_ = now_seconds();
    set_state(kPlaying);
    schedule_end();
}

void ProbePlayer::pause() {
    if (state_ != kPlaying) return;
    position_ = CurrentPosition();
    end_timer_->SetEnabled(false);
    set_state(kPaused);
}

void ProbePlayer::Stop() {
    if (state_ == kClosed) return;
    end_timer_->SetEnabled(false);
    position_ = selection_start_;
    set_state(kStopped, true);
}

void ProbePlayer::schedule_end() {
    const double left = end_seconds() - CurrentPosition();
    const auto ms = std::max<long long>(1, std::llround(std::ceil(left * 1000.0)));
    end_timer_->SetInterval(static_cast<int>(std::min<long long>(ms, 1'000'000'000)));
    end_timer_->SetEnabled(true);
}

void ProbePlayer::ended() {
    end_timer_->SetEnabled(false);
    if (state_ != kPlaying) return;
    position_ = std::max(end_seconds(), position_);
    set_state(kStopped);
}

PlayerFactory probe_players(const Clock& clock, EventLoop& loop) {
    return [&clock, &loop,
            lengths = std::make_shared<MediaLengths>()](int) -> std::unique_ptr<MediaPlayer> {
        return std::make_unique<ProbePlayer>(clock, loop, lengths);
    };
}

}  // namespace tavora
