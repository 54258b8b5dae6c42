#include "engine/samplescene_relief.h"

#include "engine/samplescene_noise.h"

#include <algorithm>
#include <cmath>
#include <queue>
#include <utility>

namespace quent::rasterops::engine::scene {

namespace {

constexpr int neighbours[8][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {-1, 1}, {1, -1}, {-1, -1}};

double CubicThrough(const double p[4], double t) {
  return p[1] +
         0.5 * t *
             (p[2] - p[0] +
              t * (2.0 * p[0] - 5.0 * p[1] + 4.0 * p[2] - p[3] + t * (3.0 * (p[1] - p[2]) + p[3] - p[0])));
}

/// Metres that the ground rises per unit of time: much in the range, little in the plain.
double Uplift(unsigned seed, double x, double y) {
  const double swing = 0.55 * Fractal(seed + 11, 1.3 * x, 1.3 * y, 3);
  const double range = SmoothStep(-0.06, 0.55, 0.60 - y + swing);
  return 2.0 + 250.0 * range * (0.25 + 1.1 * Ridged(seed + 12, 1.9 * x, 1.9 * y, 3));
}

/// One time step: uplift, then rivers cut down with the square root of their catchment, then slopes that
/// are too steep slide. Solved from the outlet upwards, so that any step size is stable.
void Wear(Field& height, const Field& uplift) {
  constexpr double step = 2.0;
  constexpr double steepest = 0.42;
  const Drainage drainage = Drain(height);
  for (const int cell : drainage.order) {
    const int receiver = drainage.receiver[cell];
    if (receiver == cell) {
      height.values[cell] = 0.0;
      continue;
    }
    const double distance = height.Distance(cell, receiver);
    const double below = height.values[receiver];
    const double cut = step * std::sqrt(drainage.area[cell]) / distance;
    const double worn = (height.values[cell] + step * uplift.values[cell] + cut * below) / (1.0 + cut);
    height.values[cell] = std::min(worn, below + steepest * distance);
  }
}

/// Soil creep: rounds crests and fills gullies.
void Creep(Field& height, double share) {
  const Field before = height;
  for (int row = 1; row + 1 < height.size; ++row) {
    for (int column = 1; column + 1 < height.size; ++column) {
      const double around = before.At(column - 1, row) + before.At(column + 1, row) +
                            before.At(column, row - 1) + before.At(column, row + 1);
      height.At(column, row) += share * (0.25 * around - before.At(column, row));
    }
  }
}

} // namespace

double Field::Distance(int a, int b) const {
  const double dx = (a % size - b % size) * cell;
  const double dy = (a / size - b / size) * cell;
  return std::sqrt(dx * dx + dy * dy);
}

bool Field::Within(int number, double low, double high) const {
  const double x = Centre(number % size);
  const double y = Centre(number / size);
  return x > low && y > low && x < high && y < high;
}

double Field::Linear(double x, double y) const {
  const double column = Clamp((x - origin) / cell - 0.5, 0.0, size - 1.001);
  const double row = Clamp((y - origin) / cell - 0.5, 0.0, size - 1.001);
  const int c = static_cast<int>(column);
  const int r = static_cast<int>(row);
  const double u = column - c;
  return Mix(Mix(At(c, r), At(c + 1, r), u), Mix(At(c, r + 1), At(c + 1, r + 1), u), row - r);
}

double Field::Cubic(double x, double y) const {
  const double column = Clamp((x - origin) / cell - 0.5, 1.0, size - 2.001);
  const double row = Clamp((y - origin) / cell - 0.5, 1.0, size - 2.001);
  const int c = static_cast<int>(column);
  const int r = static_cast<int>(row);
  double lines[4];
  for (int line = 0; line < 4; ++line) {
    lines[line] = CubicThrough(&values[static_cast<std::size_t>(r - 1 + line) * size + c - 1], column - c);
  }
  return CubicThrough(lines, row - r);
}

Drainage Drain(const Field& height) {
  const int size = height.size;
  const auto cells = height.values.size();
  Drainage drainage{{}, std::vector<int>(cells, -1), std::vector<double>(cells, height.cell * height.cell)};
  drainage.order.reserve(cells);
  std::vector<double> level(cells);

  using Entry = std::pair<double, int>; // ties go to the lower cell number: one order on every machine
  std::priority_queue<Entry, std::vector<Entry>, std::greater<>> shore;
  for (int column = size * 11 / 20; column <= size * 12 / 20; ++column) {
    const int cell = (size - 1) * size + column;
    drainage.receiver[cell] = cell;
    level[cell] = height.values[cell];
    shore.emplace(level[cell], cell);
  }
  while (!shore.empty()) {
    const int cell = shore.top().second;
    shore.pop();
    drainage.order.push_back(cell);
    for (const auto& step : neighbours) {
      const int column = cell % size + step[0];
      const int row = cell / size + step[1];
      if (column < 0 || row < 0 || column >= size || row >= size) {
        continue;
      }
      const int next = row * size + column;
      // Ways of nearly equal slope take turns, else valleys follow the eight directions.
      const auto slopeTo = [&](int to) {
        const double chance = 0.6 + 0.8 * HashUnit(77, next, to);
        return chance * (height.values[next] - level[to]) / height.Distance(next, to);
      };
      if (drainage.receiver[next] < 0) {
        drainage.receiver[next] = cell;
        level[next] = std::max(height.values[next], level[cell] + 1e-3);
        shore.emplace(level[next], next);
      } else if (drainage.receiver[next] != next && level[next] > level[cell]) {
        // Still on the shore: a steeper way down may have come up.
        if (slopeTo(cell) > slopeTo(drainage.receiver[next])) {
          drainage.receiver[next] = cell;
        }
      }
    }
  }
  for (auto cell = drainage.order.rbegin(); cell != drainage.order.rend(); ++cell) {
    if (drainage.receiver[*cell] != *cell) {
      drainage.area[drainage.receiver[*cell]] += drainage.area[*cell];
    }
  }
  return drainage;
}

Field MakeRelief(unsigned seed, double extent) {
  struct Stage {
    int size, steps;
  };
  // From coarse to fine: the large valleys form where they are cheap.
  constexpr Stage stages[] = {{72, 80}, {144, 40}, {288, 30}};
  const double margin = 0.0625 * extent;
  Field height(2, extent + 2.0 * margin, -margin);
  for (const Stage& stage : stages) {
    const double cell = (extent + 2.0 * margin) / stage.size;
    Field finer(stage.size, cell, -margin);
    Field uplift(stage.size, cell, -margin);
    for (int row = 0; row < stage.size; ++row) {
      for (int column = 0; column < stage.size; ++column) {
        const double x = finer.Centre(column);
        const double y = finer.Centre(row);
        uplift.At(column, row) = Uplift(seed, x / extent, y / extent);
        const double inherited = height.size > 2 ? height.Cubic(x, y)
                                                 : 900.0 * (1.2 - y / extent) +
                                                       700.0 * Fractal(seed + 14, x / 4000.0, y / 4000.0, 4);
        finer.At(column, row) = inherited + 0.1 * cell * Noise(seed + 13, x / (3.0 * cell), y / (3.0 * cell));
      }
    }
    for (int step = 0; step < stage.steps; ++step) {
      Wear(finer, uplift);
      Creep(finer, 0.06);
    }
    height = std::move(finer);
  }
  constexpr double lowest = 260.0;
  constexpr double highest = 2650.0;
  const double scale = (highest - lowest) / *std::max_element(height.values.begin(), height.values.end());
  for (double& metres : height.values) {
    metres = lowest + scale * metres;
  }
  return height;
}

} // namespace quent::rasterops::engine::scene
