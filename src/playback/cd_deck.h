#pragma once

#include <functional>
#include <memory>

#include "platform/cd_drive.h"
#include "playback/media_player.h"

namespace tavora {

// The CD's sound on one more player of the bank's kind, so that the CD is
// mixed, recorded and streamed like every song. Rule thread only.
class PlayerDeck : public CdDeck {
  public:
    explicit PlayerDeck(std::unique_ptr<MediaPlayer> player);
    ~PlayerDeck() override;
    PlayerDeck(const PlayerDeck&) = delete;
    PlayerDeck& operator=(const PlayerDeck&) = delete;

    void load(const std::string& native_path) override;
    bool ready() const override;
    void play(double from_seconds) override;
    void pause() override;
    void stop() override;
    bool playing() const override;
    double position() const override;
    void poll() override { start_if_waiting(); }

    // Every change of the player's state, for the event log.
    std::function<void(int state)> state_changed;

  private:
    void start_if_waiting();

    std::unique_ptr<MediaPlayer> player_;
    bool commanded_ = false;    // stopped or paused on purpose since the latest play
    double waiting_from_ = -1;  // a play asked for before the file was open
};

}  // namespace tavora
