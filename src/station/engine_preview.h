#pragma once

#include <memory>

#include "audio/engine.h"
#include "catalogue/preview_player.h"

namespace tavora {

// The cue-point editor's player on the audio engine: one more engine player,
// outside the bank. Offline, an open finishes before FileName returns.
std::unique_ptr<PreviewPlayer> engine_preview(audio::Engine& engine);

}  // namespace tavora
