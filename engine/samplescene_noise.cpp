#include "engine/samplescene_noise.h"

#include <cmath>

namespace quent::rasterops::engine::scene {

std::uint32_t Hash(std::uint32_t seed, std::int32_t x, std::int32_t y) {
  std::uint32_t h = seed * 0x9E3779B1u;
  h ^= static_cast<std::uint32_t>(x) * 0x85EBCA77u;
  h = (h << 13) | (h >> 19);
  h ^= static_cast<std::uint32_t>(y) * 0xC2B2AE3Du;
  h ^= h >> 15;
  h *= 0x2C1B3C6Du;
  h ^= h >> 12;
  h *= 0x297A2D39u;
  h ^= h >> 15;
  return h;
}

double HashUnit(std::uint32_t seed, std::int32_t x, std::int32_t y) {
  return Hash(seed, x, y) * (1.0 / 4294967296.0);
}

namespace {

/// Weight with zero first and second derivative at both ends, so that shading shows no lattice.
double Fade(double t) {
  return t * t * t * (t * (t * 6.0 - 15.0) + 10.0);
}

/// Slope noise of one corner: a gradient out of a small fixed set, applied to the offset.
double Corner(std::uint32_t seed, std::int32_t x, std::int32_t y, double dx, double dy) {
  static constexpr double gradients[16][2] = {{1.0, 0.0},   {-1.0, 0.0},   {0.0, 1.0},    {0.0, -1.0},
                                              {0.8, 0.6},   {-0.8, 0.6},   {0.8, -0.6},   {-0.8, -0.6},
                                              {0.6, 0.8},   {-0.6, 0.8},   {0.6, -0.8},   {-0.6, -0.8},
                                              {0.28, 0.96}, {-0.96, 0.28}, {0.96, -0.28}, {-0.28, -0.96}};
  const double* gradient = gradients[Hash(seed, x, y) >> 28];
  return gradient[0] * dx + gradient[1] * dy;
}

} // namespace

double Noise(std::uint32_t seed, double x, double y) {
  const double left = std::floor(x);
  const double top = std::floor(y);
  const auto column = static_cast<std::int32_t>(left);
  const auto row = static_cast<std::int32_t>(top);
  const double dx = x - left;
  const double dy = y - top;
  const double u = Fade(dx);
  const double upper = Mix(Corner(seed, column, row, dx, dy), Corner(seed, column + 1, row, dx - 1.0, dy), u);
  const double lower = Mix(Corner(seed, column, row + 1, dx, dy - 1.0),
                           Corner(seed, column + 1, row + 1, dx - 1.0, dy - 1.0), u);
  // Unit gradients reach at most sqrt(1/2).
  return Clamp(1.4142 * Mix(upper, lower, Fade(dy)), -1.0, 1.0);
}

double Fractal(std::uint32_t seed, double x, double y, int octaves) {
  double sum = 0.0;
  double height = 0.5;
  double total = 0.0;
  for (int octave = 0; octave < octaves; ++octave) {
    sum += height * Noise(seed + static_cast<std::uint32_t>(octave) * 101u, x, y);
    total += height;
    height *= 0.5;
    x *= 2.0;
    y *= 2.0;
  }
  return sum / total;
}

double Ridged(std::uint32_t seed, double x, double y, int octaves) {
  double sum = 0.0;
  double height = 0.5;
  double total = 0.0;
  double weight = 1.0;
  for (int octave = 0; octave < octaves; ++octave) {
    const double crest = 1.0 - std::fabs(Noise(seed + static_cast<std::uint32_t>(octave) * 131u, x, y));
    sum += height * crest * crest * weight;
    total += height;
    weight = Clamp(crest * crest * 1.5, 0.0, 1.0);
    height *= 0.5;
    x *= 2.0;
    y *= 2.0;
  }
  return sum / total;
}

double SmoothStep(double low, double high, double value) {
  const double t = Clamp((value - low) / (high - low), 0.0, 1.0);
  return t * t * (3.0 - 2.0 * t);
}

} // namespace quent::rasterops::engine::scene
