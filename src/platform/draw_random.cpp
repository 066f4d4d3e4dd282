#include "platform/draw_random.h"

#include <cmath>
#include <cstring>

namespace fw {

float DrawRandom::Rnd() {
  if (!queued_.empty()) {
    float v = queued_.front();
    queued_.pop_front();
    return v;
  }
  // 24 random bits: every value is exact in a float and below 1.
  return static_cast<float>(generator_() >> 8) / 16777216.0f;
}

void DrawRandom::Randomize(double seed) {
  if (fixedSeed_) seed = *fixedSeed_;
  std::uint64_t bits;
  std::memcpy(&bits, &seed, sizeof bits);
  // The count keeps two reseeds at the same instant (three in a row on a
  // virtual clock that stands still) from repeating one sequence.
  std::seed_seq seq{static_cast<std::uint32_t>(bits), static_cast<std::uint32_t>(bits >> 32), ++reseeds_};
  generator_.seed(seq);
}

}  // namespace fw
