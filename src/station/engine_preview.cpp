#include "station/engine_preview.h"

namespace tavora {

namespace {

class EnginePreview : public PreviewPlayer {
  public:
    EnginePreview(std::shared_ptr<audio::Player> player, audio::Engine* offline)
        : player_(std::move(player)), offline_(offline) {
        player_->ReadyStateChange = [this] {
            if (ReadyStateChange) ReadyStateChange();
        };
    }
    ~EnginePreview() override { player_->ReadyStateChange = nullptr; }

    void FileName(const std::string& path) override {
        player_->Open(path);
        if (offline_) offline_->settle();
    }
    const std::string& FileName() const override { return player_->FileName(); }
    double CurrentPosition() const override { return player_->CurrentPosition(); }
    void CurrentPosition(double seconds) override { player_->CurrentPosition(seconds); }
    double SelectionStart() const override { return player_->SelectionStart(); }
    void SelectionStart(double seconds) override { player_->SelectionStart(seconds); }
    double SelectionEnd() const override { return player_->SelectionEnd(); }
    void SelectionEnd(double seconds) override { player_->SelectionEnd(seconds); }
    double Duration() const override { return player_->Duration(); }
    int Volume() const override { return player_->Volume(); }
    void Volume(double hundredths_db) override { player_->Volume(hundredths_db); }
    int PlayState() const override { return player_->PlayState(); }
    double Rate() const override { return player_->Rate(); }
    void Rate(double rate) override { player_->Rate(rate); }
    void Play() override { player_->play(); }
    void Stop() override { player_->Stop(); }

  private:
    std::shared_ptr<audio::Player> player_;
    audio::Engine* offline_;
};

}  // namespace

std::unique_ptr<PreviewPlayer> engine_preview(audio::Engine& engine) {
    auto player = engine.add_player();
    if (!player) return nullptr;
    audio::Engine* offline = engine.output() == audio::OutputKind::Offline ? &engine : nullptr;
    return std::make_unique<EnginePreview>(std::move(player), offline);
}

}  // namespace tavora
