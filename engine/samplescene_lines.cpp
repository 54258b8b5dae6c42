#include "engine/samplescene_lines.h"

#include "engine/samplescene_noise.h"

#include <algorithm>
#include <cmath>

namespace quent::rasterops::engine::scene {

Field LineField(double extent, double origin, double value) {
  constexpr double cell = 10.0;
  Field field(static_cast<int>((extent - 2.0 * origin) / cell), cell, origin);
  std::fill(field.values.begin(), field.values.end(), value);
  return field;
}

void DrawLine(Field& field, Point from, Point to, double halfWidth) {
  constexpr double reach = 150.0;
  const auto index = [&field](double metres) {
    return std::clamp(static_cast<int>((metres - field.origin) / field.cell), 0, field.size - 1);
  };
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double length = dx * dx + dy * dy;
  for (int row = index(std::min(from.y, to.y) - reach); row <= index(std::max(from.y, to.y) + reach); ++row) {
    for (int column = index(std::min(from.x, to.x) - reach); column <= index(std::max(from.x, to.x) + reach);
         ++column) {
      const double px = field.Centre(column) - from.x;
      const double py = field.Centre(row) - from.y;
      const double t = length > 0.0 ? Clamp((px * dx + py * dy) / length, 0.0, 1.0) : 0.0;
      const double ex = px - t * dx;
      const double ey = py - t * dy;
      double& value = field.At(column, row);
      value = std::min(value, std::sqrt(ex * ex + ey * ey) - halfWidth);
    }
  }
}

void Straighten(std::vector<Point>& way, int passes) {
  for (int pass = 0; pass < passes; ++pass) {
    const std::vector<Point> before = way;
    for (std::size_t point = 1; point + 1 < way.size(); ++point) {
      way[point] = {0.25 * (before[point - 1].x + before[point + 1].x) + 0.5 * before[point].x,
                    0.25 * (before[point - 1].y + before[point + 1].y) + 0.5 * before[point].y};
    }
  }
}

void Smooth(Field& field) {
  const Field before = field;
  for (int row = 1; row + 1 < field.size; ++row) {
    for (int column = 1; column + 1 < field.size; ++column) {
      field.At(column, row) =
          0.5 * before.At(column, row) + 0.125 * (before.At(column - 1, row) + before.At(column + 1, row) +
                                                  before.At(column, row - 1) + before.At(column, row + 1));
    }
  }
}

} // namespace quent::rasterops::engine::scene
