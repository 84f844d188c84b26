#include "playback/cd_deck.h"

namespace tavora {

PlayerDeck::PlayerDeck(std::unique_ptr<MediaPlayer> player) : player_(std::move(player)) {
    player_->PlayStateChange = [this](int, int) {
        const int state = player_->PlayState();
        if (state_changed) state_changed(state);
        // While a play waits for an open no change is an end: the open may be
        // told before the change that closed the old file, which then reads
        // as the new file stopped, until the waiting play starts it.
        const bool waited = waiting_from_ >= 0;
        start_if_waiting();
        if (state == MediaPlayer::kStopped && !commanded_ && !waited && ended) ended();
    };
}

PlayerDeck::~PlayerDeck() {
    player_->PlayStateChange = nullptr;
}

void PlayerDeck::load(const std::string& native_path) {
    commanded_ = true;
    waiting_from_ = -1;
    player_->Stop();
    player_->Open(native_path);
}

bool PlayerDeck::ready() const {
    return player_->ReadyState() == MediaPlayer::kReady;
}

void PlayerDeck::play(double from_seconds) {
    commanded_ = false;
    if (!ready()) {
        // A real-time engine opens on its own thread: play once it has.
        waiting_from_ = from_seconds;
        return;
    }
    waiting_from_ = -1;
    player_->CurrentPosition(from_seconds);
    player_->play();
}

void PlayerDeck::start_if_waiting() {
    if (waiting_from_ >= 0 && ready()) play(waiting_from_);
}

void PlayerDeck::pause() {
    commanded_ = true;
    waiting_from_ = -1;
    player_->pause();
}

void PlayerDeck::stop() {
    commanded_ = true;
    waiting_from_ = -1;
    player_->Stop();
}

bool PlayerDeck::playing() const {
    return player_->PlayState() == MediaPlayer::kPlaying;
}

double PlayerDeck::position() const {
    return waiting_from_ >= 0 ? waiting_from_ : player_->CurrentPosition();
}

}  // namespace tavora
