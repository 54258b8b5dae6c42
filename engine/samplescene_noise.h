/// \file
/// Noise for the sample scene, the same on every machine.
#pragma once

#include <cstdint>

namespace quent::rasterops::engine::scene {

/// Mixes a seed and two lattice coordinates into 32 bits.
std::uint32_t Hash(std::uint32_t seed, std::int32_t x, std::int32_t y);

/// Hash() as a number in [0, 1).
double HashUnit(std::uint32_t seed, std::int32_t x, std::int32_t y);

/// Smooth noise in [-1, 1] with a feature size of one unit.
double Noise(std::uint32_t seed, double x, double y);

/// Sum of `octaves` noises, each of half the size and half the height of the one before; in [-1, 1].
double Fractal(std::uint32_t seed, double x, double y, int octaves);

/// As Fractal(), folded so that it has sharp crests; in [0, 1].
double Ridged(std::uint32_t seed, double x, double y, int octaves);

/// 0 below `low`, 1 above `high`, smooth between.
double SmoothStep(double low, double high, double value);

/// `a` at 0, `b` at 1.
inline double Mix(double a, double b, double t) {
  return a + (b - a) * t;
}

/// `value` kept within [low, high].
inline double Clamp(double value, double low, double high) {
  return value < low ? low : value > high ? high : value;
}

} // namespace quent::rasterops::engine::scene
