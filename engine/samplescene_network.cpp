#include "engine/samplescene_network.h"

#include "engine/samplescene_lines.h"
#include "engine/samplescene_noise.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quent::rasterops::engine::scene {

namespace {

constexpr double far = 1e6; ///< metres, beyond everything in the scene

/// Cells that drain through `outlet`, itself included, with 1.
Field Catchment(const Field& relief, const Drainage& drainage, int outlet) {
  Field reach(relief.size, relief.cell, relief.origin);
  reach.values[outlet] = 1.0;
  for (const int cell : drainage.order) {
    if (reach.values[drainage.receiver[cell]] > 0.0) {
      reach.values[cell] = 1.0;
    }
  }
  return reach;
}

/// The places where a dam of `depth` metres makes the largest lakes of at most `largest` square metres, far
/// from each other.
void AddLakes(std::vector<Lake>& lakes, std::vector<int>& dams, const Field& relief, const Drainage& drainage,
              double extent, double depth, double largest, std::size_t count) {
  const double cellArea = relief.cell * relief.cell;
  std::vector<std::pair<double, int>> sites;
  for (std::size_t at = 0; at < relief.values.size(); ++at) {
    const int dam = static_cast<int>(at);
    if (drainage.area[at] < 2.5e6 || drainage.area[at] > 4e7 || !relief.Within(dam, 900.0, extent - 900.0)) {
      continue;
    }
    const double level = relief.values[at] + depth;
    double area = 0.0;
    std::vector<int> open{dam};
    while (!open.empty()) {
      const int cell = open.back();
      open.pop_back();
      area += cellArea;
      const int column = cell % relief.size;
      const int row = cell / relief.size;
      for (int r = std::max(row - 1, 0); r <= std::min(row + 1, relief.size - 1); ++r) {
        for (int c = std::max(column - 1, 0); c <= std::min(column + 1, relief.size - 1); ++c) {
          const int next = r * relief.size + c;
          if (next != cell && drainage.receiver[next] == cell && relief.values[next] < level) {
            open.push_back(next);
          }
        }
      }
    }
    if (area <= largest && area >= 0.25 * largest) {
      sites.emplace_back(-area, dam);
    }
  }
  std::sort(sites.begin(), sites.end());
  for (const auto& [size, dam] : sites) {
    const auto near = [&, at = dam](int other) { return relief.Distance(at, other) < 3500.0; };
    if (count > 0 && std::none_of(dams.begin(), dams.end(), near)) {
      dams.push_back(dam);
      lakes.push_back({relief.values[dam] + depth, Catchment(relief, drainage, dam)});
      --count;
    }
  }
}

/// Each cell's largest donor, or -1: a river is followed up along it.
std::vector<int> MainDonors(const Drainage& drainage) {
  std::vector<int> donors(drainage.receiver.size(), -1);
  for (const int cell : drainage.order) {
    const int receiver = drainage.receiver[cell];
    if (receiver != cell && (donors[receiver] < 0 || drainage.area[cell] > drainage.area[donors[receiver]])) {
      donors[receiver] = cell;
    }
  }
  return donors;
}

Field MakeRivers(const Field& relief, const Drainage& drainage, double extent) {
  const std::vector<int> donors = MainDonors(drainage);
  std::vector<Point> points(relief.values.size());
  for (std::size_t cell = 0; cell < points.size(); ++cell) {
    const int at = static_cast<int>(cell);
    points[cell] = {relief.Centre(at % relief.size), relief.Centre(at / relief.size)};
  }
  // The eight directions of the drainage show as corners: average each point with the ones up and down.
  for (int pass = 0; pass < 4; ++pass) {
    const std::vector<Point> before = points;
    for (std::size_t cell = 0; cell < points.size(); ++cell) {
      if (donors[cell] >= 0) {
        const Point& up = before[donors[cell]];
        const Point& down = before[drainage.receiver[cell]];
        points[cell] = {0.25 * (up.x + down.x) + 0.5 * before[cell].x,
                        0.25 * (up.y + down.y) + 0.5 * before[cell].y};
      }
    }
  }
  Field river = LineField(extent, relief.origin, far);
  for (std::size_t cell = 0; cell < points.size(); ++cell) {
    if (drainage.area[cell] > 4e6) {
      const double halfWidth = 5.0 + 0.0012 * std::sqrt(drainage.area[cell]);
      DrawLine(river, points[cell], points[drainage.receiver[cell]], halfWidth);
    }
  }
  return river;
}

Field MakeMoisture(const Field& relief, const Drainage& drainage) {
  Field moisture(relief.size, relief.cell, relief.origin);
  for (std::size_t cell = 0; cell < moisture.values.size(); ++cell) {
    moisture.values[cell] = std::min(1.0, std::sqrt(drainage.area[cell]) / 1200.0);
  }
  for (int pass = 0; pass < 6; ++pass) {
    Smooth(moisture);
  }
  return moisture;
}

} // namespace

Network MakeNetwork(unsigned seed, const Field& relief, double extent) {
  const Drainage drainage = Drain(relief);
  Network network{{},
                  {},
                  MakeRivers(relief, drainage, extent),
                  LineField(extent, relief.origin, far),
                  MakeMoisture(relief, drainage)};
  std::vector<int> dams;
  AddLakes(network.lakes, dams, relief, drainage, extent, 60.0, 1.6e6, 2);
  AddLakes(network.lakes, dams, relief, drainage, extent, 12.0, 1.2e6, 1);
  AddSettlements(seed, relief, dams, extent, network);
  return network;
}

} // namespace quent::rasterops::engine::scene
