#include "audio/player.h"

#include <algorithm>
#include <cmath>

namespace tavora::audio {

std::shared_ptr<Player> Player::create(bool offline, Post post) {
    std::shared_ptr<Player> player(new Player(offline, std::move(post)));
    std::weak_ptr<Player> weak = player;
    player->feeder_ = std::make_unique<Feeder>(
        player->voice_.ring(), [weak, post = player->post_](const Feeder::Opened& opened) {
            post([weak, opened] {
                if (auto p = weak.lock()) p->opened(opened);
            });
        });
    return player;
}

Player::Player(bool offline, Post post)
    : post_(std::move(post)), voice_(offline, [this] { feeder_->wake(); }) {}

template <typename F>
void Player::post_here(F&& f) {
    post_([weak = weak_from_this(), f = std::forward<F>(f)] {
        if (auto p = weak.lock()) f(*p);
    });
}

void Player::set_state(int state, bool always_tell) {
    const int old = state_;
    state_ = state;
    if (old == state && !always_tell) return;
    post_here([old, state](Player& p) {
        if (p.PlayStateChange) p.PlayStateChange(old, state);
    });
}

void Player::Open(const std::string& path) {
    file_name_ = path;
    open_gen_ = ++gen_;
    ready_ = 0;
    length_ = 0;
    selection_start_ = selection_end_ = 0.0;
    pending_frame_ = 0;
    finished_ = false;
    send(command::Pause{});  // what still plays ramps out before the new file loads
    send(command::Load{gen_, 0, 1.0});
    send(command::End{-1});
    feeder_->open(gen_, path);
    set_state(kClosed);
}

void Player::opened(const Feeder::Opened& opened) {
    if (opened.gen != open_gen_ || state_ != kClosed) return;  // a later Open took over
    if (opened.result.status != OpenStatus::Succeeded) {
        error_ = opened.result.error;
        if (Error) Error();
        return;
    }
    state_ = kStopped;  // leaving the closed state is told by the ready-state change
    ready_ = kReady;
    length_ = opened.length;
    SelectionEnd(Duration());
    if (rate_ != 1.0) load(0);
    if (ReadyStateChange) ReadyStateChange();
}

void Player::load(std::int64_t frame) {
    frame = std::max<std::int64_t>(frame, 0);
    if (length_ > 0) frame = std::min(frame, length_);
    ++gen_;
    pending_frame_ = frame;
    finished_ = false;
    send(command::Load{gen_, frame, rate_});
    feeder_->seek(gen_, frame, rate_);
}

void Player::play() {
    if (state_ == kClosed || state_ == kPlaying) return;
    const std::int64_t end = selection_end_ > 0 ? frames_of_seconds(selection_end_) : length_;
    if (finished_ || (end > 0 && position_frames() >= end)) {
        load(frames_of_seconds(selection_start_));
    }
    send(command::Play{++serial_});
    set_state(kPlaying);
}

void Player::pause() {
    if (state_ != kPlaying) return;
    send(command::Pause{});
    set_state(kPaused);
}

void Player::Stop() {
    if (state_ == kClosed) return;
    send(command::Pause{});  // the Load waits in the mixer until the ramp is silent
    load(frames_of_seconds(selection_start_));
    set_state(kStopped, true);
}

void Player::ended(const Ended& ended) {
    if (ended.serial != serial_ || state_ != kPlaying) return;  // a later command came first
    finished_ = true;
    set_state(kStopped);
}

std::int64_t Player::position_frames() const {
    if (state_ == kClosed) return 0;
    const std::uint64_t word = voice_.position_word();
    if (Voice::gen_of(word) != (gen_ & 0xffff)) return pending_frame_;
    return Voice::frame_of(word);
}

double Player::CurrentPosition() const {
    return seconds_of_frames(position_frames());
}

void Player::CurrentPosition(double seconds) {
    if (state_ == kClosed) return;
    load(frames_of_seconds(seconds));
}

void Player::SelectionEnd(double seconds) {
    selection_end_ = seconds;
    send(command::End{seconds > 0 ? frames_of_seconds(seconds) : -1});
}

void Player::Volume(double hundredths_db) {
    volume_ = static_cast<int>(std::clamp<long>(std::lround(hundredths_db), -10000, 0));
    send_gain();
}

void Player::Mute(bool mute) {
    mute_ = mute;
    send_gain();
}

void Player::Trim(double db) {
    trim_ = db == 0.0 ? 1.0f : static_cast<float>(std::pow(10.0, db / 20.0));
    send_gain();
}

void Player::send_gain() {
    send(command::Gain{mute_ ? 0.0f : gain_of_volume(volume_) * trim_});
}

void Player::Rate(double rate) {
    rate = std::clamp(rate, 0.5, 1.5);
    if (rate == rate_) return;
    const std::int64_t at = position_frames();
    rate_ = rate;
    if (state_ != kClosed) load(at);
}

void Player::send(const Command& command) {
    if (voice_.send(command)) return;
    ++dropped_commands_;
    report_dropped();
}

void Player::report_dropped() {
    error_ = "The player fell behind and lost a command";
    post_here([](Player& p) {
        if (p.Error) p.Error();
    });
}

void Player::deliver_events() {
    Ended ended;
    while (voice_.next_ended(ended)) {
        post_here([ended](Player& p) { p.ended(ended); });
    }
    const std::uint64_t lost = voice_.dropped_ends();
    if (lost == ends_told_) return;
    ends_told_ = lost;
    post_here([lost](Player& p) {
        p.dropped_ends_seen_ = lost;
        p.report_dropped();
    });
}

}  // namespace tavora::audio
