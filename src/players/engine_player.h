#pragma once

#include <memory>

#include "audio/engine.h"
#include "playback/media_player.h"

namespace tavora {

// A bank player that plays through the audio engine. A file that fails to
// open leaves a player that reads as stopped and, asked to play, ends at
// once, so that the bank passes over it instead of waiting for it for ever.
class EnginePlayer : public MediaPlayer {
  public:
    // With `offline`, an open finishes before Open returns: in virtual time
    // it takes no time, and the rules then see the same states on every run
    // whatever the decoder threads' speed.
    EnginePlayer(std::shared_ptr<audio::Player> player, audio::Post post,
                 audio::Engine* offline = nullptr);
    ~EnginePlayer() override;
    EnginePlayer(const EnginePlayer&) = delete;
    EnginePlayer& operator=(const EnginePlayer&) = delete;

    void Open(const std::string& path) override;
    void play() override;
    void pause() override { player_->pause(); }
    void Stop() override { player_->Stop(); }
    int PlayState() const override;
    int ReadyState() const override { return player_->ReadyState(); }
    double Duration() const override { return player_->Duration(); }
    double CurrentPosition() const override { return player_->CurrentPosition(); }
    void CurrentPosition(double seconds) override { player_->CurrentPosition(seconds); }
    double SelectionStart() const override { return player_->SelectionStart(); }
    void SelectionStart(double seconds) override { player_->SelectionStart(seconds); }
    double SelectionEnd() const override { return player_->SelectionEnd(); }
    void SelectionEnd(double seconds) override { player_->SelectionEnd(seconds); }
    int Volume() const override { return player_->Volume(); }
    void Volume(double hundredths_db) override { player_->Volume(hundredths_db); }
    bool Mute() const override { return player_->Mute(); }
    void Mute(bool mute) override { player_->Mute(mute); }
    void Trim(double db) override { player_->Trim(db); }
    double Rate() const override { return player_->Rate(); }
    void Rate(double rate) override { player_->Rate(rate); }
    std::string ErrorDescription() const override { return player_->ErrorDescription(); }
    const std::string& FileName() const override { return player_->FileName(); }

  private:
    std::shared_ptr<audio::Player> player_;
    audio::Post post_;
    audio::Engine* offline_;
    bool failed_ = false;  // the latest open failed
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

// Players of the engine for a bank. An engine without room for another voice
// gets a player of `stand_ins` instead, which keeps the transport going
// rather than leaving a hole in the bank.
PlayerFactory engine_players(audio::Engine& engine, audio::Post post, PlayerFactory stand_ins);

// One player of the engine, as the cue-point editor's preview has outside the
// bank; null when the engine has no room for another voice.
std::unique_ptr<MediaPlayer> engine_player(audio::Engine& engine, audio::Post post);

}  // namespace tavora
