#include "engine/samplescene_landscape.h"

#include "base/parallel/concurrency.h"
#include "engine/samplescene_noise.h"
#include "engine/samplescene_patterns.h"

#include <algorithm>
#include <cmath>

namespace quent::rasterops::engine::scene {

namespace {

constexpr double snowLine = 1950.0; ///< metres
constexpr double treeLine = 1400.0;
constexpr double highestField = 640.0;

/// Largest rise per metre around each cell of the relief, for the strength of the small detail.
Field Steepness(const Field& relief) {
  Field steepness(relief.size, relief.cell, relief.origin);
  for (int row = 1; row + 1 < relief.size; ++row) {
    for (int column = 1; column + 1 < relief.size; ++column) {
      const double dx = relief.At(column + 1, row) - relief.At(column - 1, row);
      const double dy = relief.At(column, row + 1) - relief.At(column, row - 1);
      steepness.At(column, row) = std::sqrt(dx * dx + dy * dy) / (2.0 * relief.cell);
    }
  }
  return steepness;
}

Spectrum NaturalReflectance(Cover cover, unsigned seed, double x, double y, double height) {
  const double coarse = Fractal(seed + 51, x / 300.0, y / 300.0, 3);
  const double fine = Fractal(seed + 52, x / 24.0, y / 24.0, 2);
  switch (cover) {
  case Cover::Water: {
    const double sediment = 0.5 + 0.5 * coarse;
    return Blend({0.030, 0.028, 0.012, 0.005}, {0.038, 0.052, 0.030, 0.009}, sediment);
  }
  case Cover::Forest: {
    // Broad leaves below, needles above, crowns and gaps all over.
    const double needles = Clamp((height - 700.0) / 600.0 + 0.6 * coarse, 0.0, 1.0);
    return Scaled(Blend({0.024, 0.048, 0.028, 0.360}, {0.017, 0.030, 0.020, 0.225}, needles),
                  1.0 + 0.30 * fine);
  }
  case Cover::Grass: {
    const double dry = Clamp(0.35 + 0.5 * coarse + (height - 900.0) / 3000.0, 0.0, 1.0);
    return Scaled(Blend({0.036, 0.078, 0.052, 0.370}, {0.062, 0.098, 0.105, 0.270}, dry), 1.0 + 0.10 * fine);
  }
  case Cover::Rock: {
    const double warm = 0.5 + 0.5 * coarse;
    return Scaled(Blend({0.115, 0.130, 0.145, 0.175}, {0.100, 0.130, 0.170, 0.215}, warm), 1.0 + 0.16 * fine);
  }
  case Cover::Snow:
    return Scaled({0.760, 0.775, 0.765, 0.690}, 1.0 + 0.05 * coarse + 0.03 * fine);
  default:
    return {0.10, 0.12, 0.14, 0.20};
  }
}

} // namespace

Landscape::Landscape(unsigned seed, int size, double extent)
    : m_Seed(seed),
      m_Size(size), m_Network{{}, {}, Field(2, 1.0, 0.0), Field(2, 1.0, 0.0), Field(2, 1.0, 0.0)},
      m_Height(size + 2, extent / size, -extent / size), m_Lake(static_cast<std::size_t>(size) * size) {
  const Field relief = MakeRelief(seed, extent);
  m_Network = MakeNetwork(seed, relief, extent);
  MakeHeights(relief);
}

Point Landscape::Bend(double x, double y) const {
  return {x + 170.0 * Fractal(m_Seed + 1, x / 1100.0, y / 1100.0, 4),
          y + 170.0 * Fractal(m_Seed + 2, x / 1100.0, y / 1100.0, 4)};
}

void Landscape::MakeHeights(const Field& relief) {
  const Field steepness = Steepness(relief);
  Concurrency::parallel_for(0, m_Height.size, [&](int row) {
    for (int column = 0; column < m_Height.size; ++column) {
      const double x = m_Height.Centre(column);
      const double y = m_Height.Centre(row);
      const Point at = Bend(x, y);
      // Ribs and gullies where it is steep, a ripple of centimetres where it is flat.
      const double steep = std::min(steepness.Linear(at.x, at.y), 0.8);
      const double detail = 70.0 * steep * (Ridged(m_Seed + 3, x / 340.0, y / 340.0, 4) - 0.45) +
                            (0.4 + 16.0 * steep) * Fractal(m_Seed + 4, x / 70.0, y / 70.0, 3);
      double height = relief.Cubic(at.x, at.y) + detail;
      for (const Lake& lake : m_Network.lakes) {
        if (height < lake.level && lake.reach.Linear(at.x, at.y) > 0.5) {
          height = lake.level;
          if (column > 0 && row > 0 && column <= m_Size && row <= m_Size) {
            m_Lake[static_cast<std::size_t>(row - 1) * m_Size + column - 1] = 1;
          }
        }
      }
      m_Height.At(column, row) = height;
    }
  });
}

Point Landscape::Slope(int column, int row) const {
  const double scale = 0.5 / m_Height.cell;
  return {(m_Height.At(column + 2, row + 1) - m_Height.At(column, row + 1)) * scale,
          (m_Height.At(column + 1, row + 2) - m_Height.At(column + 1, row)) * scale};
}

Cover Landscape::NaturalCover(double x, double y, double height, const Point& slope, double moisture) const {
  const double steep = std::sqrt(slope.x * slope.x + slope.y * slope.y);
  const double patchy = Fractal(m_Seed + 41, x / 900.0, y / 900.0, 5);
  const double ragged = Fractal(m_Seed + 42, x / 160.0, y / 160.0, 3);
  // Snow lies lower on slopes that face away from the sun, upwards in the picture, and not on cliffs.
  if (height + 220.0 * patchy + 120.0 * ragged + 260.0 * -slope.y > snowLine && steep < 1.15) {
    return Cover::Snow;
  }
  const double bare = 0.9 * steep + 0.0008 * (height - treeLine) + 0.30 * patchy + 0.20 * ragged;
  if (bare > 1.0 || (height > treeLine + 320.0 && bare > 0.6)) {
    return Cover::Rock;
  }
  const double trees = 0.55 * moisture + 1.5 * patchy + 0.4 * ragged + 0.55 * std::min(steep, 0.6);
  const double limit = height > treeLine - 250.0 ? 0.26 + (height - treeLine + 250.0) / 420.0 : 0.26;
  const bool cultivated = height < highestField && steep < 0.16;
  return trees > (cultivated ? 0.58 : limit) ? Cover::Forest : cultivated ? Cover::Crop : Cover::Grass;
}

Ground Landscape::At(int column, int row) const {
  const double x = m_Height.Centre(column + 1);
  const double y = m_Height.Centre(row + 1);
  const Point at = Bend(x, y);
  const double height = Height(column, row);
  if (IsLake(column, row) || m_Network.river.Linear(at.x, at.y) < 0.0) {
    return {Cover::Water, NaturalReflectance(Cover::Water, m_Seed, x, y, height)};
  }
  if (m_Network.road.Linear(at.x, at.y) < 6.0) {
    return {Cover::BuiltUp, RoadReflectance(m_Seed, x, y)};
  }
  const Point slope = Slope(column, row);
  for (const Settlement& settlement : m_Network.settlements) {
    Ground ground;
    if (BuiltUpAt(m_Seed, settlement, {x, y}, at, slope, ground)) {
      return ground;
    }
  }
  const double moisture = m_Network.moisture.Linear(at.x, at.y);
  const Cover cover = NaturalCover(x, y, height, slope, moisture);
  if (cover == Cover::Crop) {
    return FieldAt(m_Seed, x, y);
  }
  return {cover, NaturalReflectance(cover, m_Seed, x, y, height)};
}

} // namespace quent::rasterops::engine::scene
