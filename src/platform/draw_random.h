#pragma once
#include <cstdint>
#include <deque>
#include <optional>
#include <random>

#include "forms/services.h"

namespace fw {

// Rnd and Randomize over a Mersenne twister. Values queued by a script come
// out first, in order; Randomize reseeds the generator and keeps the queue.
class DrawRandom : public Random {
 public:
  explicit DrawRandom(std::uint32_t seed = 5489u) : generator_(seed) {}
  float Rnd() override;
  void Randomize(double seed) override;
  void Queue(float value) { queued_.push_back(value); }
  // From now on Randomize takes this seed instead of the clock's, so that a
  // game's draws repeat from one run to the next.
  void FixSeed(std::uint32_t seed) { fixedSeed_ = seed; }

 private:
  std::deque<float> queued_;
  std::mt19937 generator_;
  std::uint32_t reseeds_ = 0;
  std::optional<std::uint32_t> fixedSeed_;
};

}  // namespace fw
