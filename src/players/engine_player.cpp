#include "players/engine_player.h"

namespace tavora {

EnginePlayer::EnginePlayer(std::shared_ptr<audio::Player> player, audio::Post post,
                           audio::Engine* offline)
    : player_(std::move(player)), post_(std::move(post)), offline_(offline) {
    player_->PlayStateChange = [this](int old_state, int new_state) {
        raise_state(old_state, new_state);
    };
    player_->Error = [this] {
        if (player_->PlayState() == kClosed) failed_ = true;
        raise_error();
    };
    player_->ReadyStateChange = [this] {
        if (ReadyStateChange) ReadyStateChange();
    };
}

EnginePlayer::~EnginePlayer() {
    // The engine may outlive this player and still deliver its events.
    player_->PlayStateChange = nullptr;
    player_->Error = nullptr;
    player_->ReadyStateChange = nullptr;
}

void EnginePlayer::Open(const std::string& path) {
    failed_ = false;
    player_->Open(path);
    if (offline_) offline_->settle();
}

int EnginePlayer::PlayState() const {
    return failed_ ? kStopped : player_->PlayState();
}

void EnginePlayer::play() {
    if (!failed_) {
        player_->play();
        return;
    }
    post_([this, alive = std::weak_ptr<bool>(alive_)] {
        if (!alive.lock()) return;
        raise_state(kStopped, kPlaying);
        raise_state(kPlaying, kStopped);
    });
}

std::unique_ptr<MediaPlayer> engine_player(audio::Engine& engine, audio::Post post) {
    auto player = engine.add_player();
    if (!player) return nullptr;
    audio::Engine* offline = engine.output() == audio::OutputKind::Offline ? &engine : nullptr;
    return std::make_unique<EnginePlayer>(std::move(player), std::move(post), offline);
}

PlayerFactory engine_players(audio::Engine& engine, audio::Post post, PlayerFactory stand_ins) {
    return [&engine, post,
            stand_ins = std::move(stand_ins)](int number) -> std::unique_ptr<MediaPlayer> {
        auto player = engine_player(engine, post);
        return player ? std::move(player) : stand_ins(number);
    };
}

}  // namespace tavora
