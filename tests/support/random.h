/// \file
/// Random trials that can be repeated: a failing one prints its seed.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>

namespace testsupport {

/// A small generator whose numbers depend on the seed alone, on every machine.
class Random {
public:
  explicit Random(std::uint64_t seed) : m_State(seed) {}

  std::uint64_t Next() {
    std::uint64_t z = (m_State += 0x9E3779B97F4A7C15u);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }
  /// A number from `low` to `high`, both included.
  int Between(int low, int high) {
    return low + static_cast<int>(Next() % static_cast<std::uint64_t>(high - low + 1));
  }
  bool Chance(int percent) { return Between(1, 100) <= percent; }
  unsigned char Byte() { return static_cast<unsigned char>(Next()); }
  /// One entry of a list.
  template <class List> auto Pick(const List& list) {
    return *(std::begin(list) + Between(0, static_cast<int>(std::size(list)) - 1));
  }

private:
  std::uint64_t m_State;
};

/// Seed of the first trial: RASTEROPS_TEST_SEED, or always the same.
inline std::uint64_t FirstSeed() {
  const char* seed = std::getenv("RASTEROPS_TEST_SEED");
  return seed ? std::strtoull(seed, nullptr, 10) : 20240117;
}

/// Calls `body(random)` for seeds in a row and stops after a trial that failed, whose seed is printed.
template <class Body> void ForRandomTrials(int trials, Body body) {
  for (int trial = 0; trial < trials; ++trial) {
    const std::uint64_t seed = FirstSeed() + static_cast<std::uint64_t>(trial);
    SCOPED_TRACE("repeat with RASTEROPS_TEST_SEED=" + std::to_string(seed));
    Random random(seed);
    body(random);
    if (testing::Test::HasFailure())
      return;
  }
}

} // namespace testsupport
