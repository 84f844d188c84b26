#pragma once

#include <cstdint>

namespace tavora {

// The process's one random sequence: values in [0, 1), always starting from
// the same fixed state, so every start of the station draws the same
// sequence. Nothing reseeds it, least of all the clock. The station owns one
// and hands it to the rules that draw.
//
// A 24-bit linear congruential generator: cheap, and its sequence is a
// fixed, documented property of the station rather than of a library.
class Random {
  public:
    double next();

  private:
    std::uint32_t state_ = 0x50000;
};

}  // namespace tavora
