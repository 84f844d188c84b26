#include "audio/engine.h"

#include <chrono>

#include "audio/outputs.h"
#include "audio/wav_writer.h"

namespace tavora::audio {

Engine::Engine(OutputKind output, Post post) : post_(std::move(post)), output_(output) {
    if (output_ == OutputKind::Offline) return;
    if (output_ == OutputKind::Card) {
        std::string why;
        card_ = CardOutput::open(mixer_, why);
        if (!card_) {
            note_ = "No sound card could be opened (" + why + "); playing to the null output.";
            output_ = OutputKind::Null;
        }
    }
    if (output_ == OutputKind::Null) null_ = std::make_unique<NullOutput>(mixer_);
    events_ = std::thread([this] {
        while (!quit_) {
            deliver_events();
            watch_card();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
}

Engine::~Engine() {
    quit_ = true;
    if (events_.joinable()) events_.join();
    card_.reset();
    null_.reset();
    std::lock_guard lock(players_mutex_);
    players_.clear();  // joins the feeders; players still held elsewhere go quiet
}

std::shared_ptr<Player> Engine::add_player(bool on_air_meter) {
    auto player = Player::create(output_ == OutputKind::Offline, post_);
    if (!mixer_.add_voice(&player->voice(), on_air_meter)) return nullptr;
    std::lock_guard lock(players_mutex_);
    players_.push_back(player);
    return player;
}

bool Engine::add_tap(Tap tap) {
    taps_.push_back(std::make_unique<Tap>(std::move(tap)));
    return mixer_.add_tap(taps_.back().get());
}

bool Engine::write_wav(const std::string& path) {
    if (wav_) return false;
    wav_ = std::make_unique<WavWriter>(path, output_ == OutputKind::Offline);
    if (!wav_->ok()) {
        wav_.reset();
        return false;
    }
    WavWriter* wav = wav_.get();
    return add_tap([wav](const float* frames, std::size_t count) { wav->write(frames, count); });
}

void Engine::render(float* out, std::size_t frames) {
    mixer_.mix(out, frames);
    deliver_events();
}

void Engine::settle() {
    std::vector<std::shared_ptr<Player>> players;
    {
        std::lock_guard lock(players_mutex_);
        players = players_;
    }
    for (const auto& player : players)
        player->wait_opened();
}

// The event thread owns the switch: the card's callback has stopped for
// good once the card is lost, so the null output takes the mixer over alone.
void Engine::watch_card() {
    if (!card_ || null_ || !card_->lost()) return;
    null_ = std::make_unique<NullOutput>(mixer_);
    post_([this] {
        note_ = "The sound card went away; playing to the null output.";
        if (on_card_lost) on_card_lost(note_);
    });
}

void Engine::deliver_events() {
    std::lock_guard lock(players_mutex_);
    for (const auto& player : players_)
        player->deliver_events();
}

}  // namespace tavora::audio
