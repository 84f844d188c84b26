#include "audio/outputs.h"

#include <fcntl.h>
#include <portaudio.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <vector>

#include "audio/format.h"

namespace tavora::audio {
namespace {

constexpr std::size_t kNullBlock = kRate / 100;

// ALSA and JACK print pages of probing noise on stderr while PortAudio looks for
// devices; none of it helps the operator, so stderr goes to /dev/null meanwhile.
class QuietStderr {
  public:
    QuietStderr() {
        std::fflush(stderr);
        saved_ = dup(STDERR_FILENO);
        const int null = ::open("/dev/null", O_WRONLY);
        if (null >= 0) {
            dup2(null, STDERR_FILENO);
            close(null);
        }
    }
    ~QuietStderr() {
        std::fflush(stderr);
        if (saved_ >= 0) {
            dup2(saved_, STDERR_FILENO);
            close(saved_);
        }
    }
    QuietStderr(const QuietStderr&) = delete;
    QuietStderr& operator=(const QuietStderr&) = delete;

  private:
    int saved_ = -1;
};

}  // namespace

struct CardCallbacks {
    static int mix(const void*, void* out, unsigned long frames, const PaStreamCallbackTimeInfo*,
                   PaStreamCallbackFlags, void* user) {
        static_cast<CardOutput*>(user)->mixer_.mix(static_cast<float*>(out), frames);
        return paContinue;
    }
    // PortAudio ends a stream by itself only when the device fails under it.
    static void finished(void* user) {
        auto* card = static_cast<CardOutput*>(user);
        if (!card->closing_) card->lost_ = true;
    }
};

NullOutput::NullOutput(Mixer& mixer) : mixer_(mixer), thread_([this] { run(); }) {}

NullOutput::~NullOutput() {
    quit_ = true;
    thread_.join();
}

void NullOutput::run() {
    using Clock = std::chrono::steady_clock;
    constexpr auto kPeriod = std::chrono::microseconds(1'000'000 * kNullBlock / kRate);
    std::vector<float> block(kNullBlock * kChannels);
    auto next = Clock::now();
    while (!quit_) {
        mixer_.mix(block.data(), kNullBlock);
        next += kPeriod;
        const auto now = Clock::now();
        if (now - next > std::chrono::seconds(1)) next = now;  // stalled: don't rush to catch up
        std::this_thread::sleep_until(next);
    }
}

std::unique_ptr<CardOutput> CardOutput::open(Mixer& mixer, std::string& why) {
    QuietStderr quiet;
    PaError error = Pa_Initialize();
    if (error != paNoError) {
        why = Pa_GetErrorText(error);
        return nullptr;
    }
    if (Pa_GetDefaultOutputDevice() == paNoDevice) {
        Pa_Terminate();
        why = "no default output device";
        return nullptr;
    }
    std::unique_ptr<CardOutput> card(new CardOutput(mixer));
    PaStream* stream = nullptr;
    error = Pa_OpenDefaultStream(&stream, 0, kChannels, paFloat32, kRate,
                                 paFramesPerBufferUnspecified, CardCallbacks::mix, card.get());
    if (error == paNoError) error = Pa_SetStreamFinishedCallback(stream, CardCallbacks::finished);
    if (error == paNoError) error = Pa_StartStream(stream);
    if (error != paNoError) {
        if (stream != nullptr) Pa_CloseStream(stream);
        Pa_Terminate();
        why = Pa_GetErrorText(error);
        return nullptr;
    }
    card->stream_ = stream;
    return card;
}

CardOutput::~CardOutput() {
    closing_ = true;
    Pa_StopStream(stream_);
    Pa_CloseStream(stream_);
    Pa_Terminate();
}

}  // namespace tavora::audio
