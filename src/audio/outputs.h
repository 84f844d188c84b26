#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "audio/mixer.h"

namespace tavora::audio {

// Plays to nowhere in real time: mixes 10 ms blocks on a thread of its own, paced by
// the clock, so everything behaves as on a sound card.
class NullOutput {
  public:
    explicit NullOutput(Mixer& mixer);
    ~NullOutput();
    NullOutput(const NullOutput&) = delete;
    NullOutput& operator=(const NullOutput&) = delete;

  private:
    void run();
    Mixer& mixer_;
    std::atomic<bool> quit_{false};
    std::thread thread_;
};

// The default sound card through PortAudio; mixes in its callback.
class CardOutput {
  public:
    // nullptr and the reason when there is no device that takes our format.
    static std::unique_ptr<CardOutput> open(Mixer& mixer, std::string& why);
    ~CardOutput();
    CardOutput(const CardOutput&) = delete;
    CardOutput& operator=(const CardOutput&) = delete;

    // True once the stream has ended by itself (the device went away): its
    // callback mixes no more. Any thread.
    bool lost() const { return lost_; }

  private:
    friend struct CardCallbacks;
    explicit CardOutput(Mixer& mixer) : mixer_(mixer) {}

    Mixer& mixer_;
    void* stream_ = nullptr;
    std::atomic<bool> closing_{false};
    std::atomic<bool> lost_{false};
};

}  // namespace tavora::audio
