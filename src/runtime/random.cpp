#include "runtime/random.h"

namespace tavora {

double Random::next() {
    state_ = (state_ * 0x43FD43FDu + 0xC39EC3u) & 0xFFFFFFu;
    return static_cast<double>(state_) / 16777216.0;
}

}  // namespace tavora
