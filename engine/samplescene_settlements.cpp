#include "engine/samplescene_lines.h"
#include "engine/samplescene_network.h"
#include "engine/samplescene_noise.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <queue>
#include <utility>

namespace quent::rasterops::engine::scene {

namespace {

/// Flat places near a river, for a town and villages.
std::vector<Settlement> MakeSettlements(unsigned seed, const Field& relief, const Network& network,
                                        double extent) {
  std::vector<std::pair<double, int>> sites;
  const int reach = 6;
  for (int row = reach; row < relief.size - reach; ++row) {
    for (int column = reach; column < relief.size - reach; ++column) {
      const int cell = row * relief.size + column;
      if (!relief.Within(cell, 1900.0, extent - 1900.0)) {
        continue;
      }
      double steep = 0.0;
      for (const auto& [dc, dr] : {std::pair{reach, 0}, {-reach, 0}, {0, reach}, {0, -reach}}) {
        steep = std::max(steep, std::fabs(relief.At(column + dc, row + dr) - relief.values[cell]));
      }
      const double x = relief.Centre(column);
      const double y = relief.Centre(row);
      const double bank = network.river.Linear(x, y);
      double score = 0.08 * steep + std::fabs(std::min(bank, 2500.0) - 450.0) / 500.0 +
                     0.5 * HashUnit(seed + 31, column, row);
      for (const Lake& lake : network.lakes) {
        score += lake.reach.Linear(x, y) > 0.0 && relief.values[cell] < lake.level + 15.0 ? 100.0 : 0.0;
      }
      sites.emplace_back(score, cell);
    }
  }
  std::sort(sites.begin(), sites.end());
  std::vector<Settlement> settlements;
  for (const auto& [score, cell] : sites) {
    const double x = relief.Centre(cell % relief.size);
    const double y = relief.Centre(cell / relief.size);
    const auto near = [x, y](const Settlement& other) {
      const double reach = 2600.0 + other.radius;
      return (other.x - x) * (other.x - x) + (other.y - y) * (other.y - y) < reach * reach;
    };
    if (settlements.size() < 5 && std::none_of(settlements.begin(), settlements.end(), near)) {
      const bool town = settlements.empty();
      settlements.push_back({x, y, town ? 950.0 : 230.0 + 150.0 * HashUnit(seed + 32, cell, 0)});
    }
  }
  return settlements;
}

/// Cheapest ways from the town over the relief: for each cell the next one on the way back.
std::vector<int> WaysToTown(const Field& relief, const Network& network, int town) {
  std::vector<int> back(relief.values.size(), -1);
  std::vector<double> cost(relief.values.size(), std::numeric_limits<double>::max());
  using Entry = std::pair<double, int>;
  std::priority_queue<Entry, std::vector<Entry>, std::greater<>> open;
  cost[town] = 0.0;
  back[town] = town;
  open.emplace(0.0, town);
  while (!open.empty()) {
    const auto [spent, cell] = open.top();
    open.pop();
    if (spent > cost[cell]) {
      continue;
    }
    const int column = cell % relief.size;
    const int row = cell / relief.size;
    for (int r = std::max(row - 1, 0); r <= std::min(row + 1, relief.size - 1); ++r) {
      for (int c = std::max(column - 1, 0); c <= std::min(column + 1, relief.size - 1); ++c) {
        const int next = r * relief.size + c;
        const double distance = relief.Distance(cell, next);
        const double slope = (relief.values[next] - relief.values[cell]) / std::max(distance, 1.0);
        const double x = relief.Centre(c);
        const double y = relief.Centre(r);
        double price = distance * (1.0 + 150.0 * slope * slope);
        price *= network.river.Linear(x, y) < 20.0 ? 5.0 : 1.0;
        for (const Lake& lake : network.lakes) {
          price *= lake.reach.Linear(x, y) > 0.0 && relief.values[next] < lake.level + 4.0 ? 100.0 : 1.0;
        }
        if (spent + price < cost[next]) {
          cost[next] = spent + price;
          back[next] = cell;
          open.emplace(cost[next], next);
        }
      }
    }
  }
  return back;
}

/// Roads from the town to the villages, to the dams and out of the scene.
void AddRoads(const Field& relief, const std::vector<int>& dams, double extent, Network& network) {
  const auto cellAt = [&relief](double x, double y) {
    const int column = static_cast<int>((x - relief.origin) / relief.cell);
    const int row = static_cast<int>((y - relief.origin) / relief.cell);
    return row * relief.size + column;
  };
  std::vector<int> goals = dams;
  for (const Settlement& settlement : network.settlements) {
    goals.push_back(cellAt(settlement.x, settlement.y));
  }
  const double left = relief.origin + relief.cell;
  const double right = extent - relief.origin - relief.cell;
  for (const Point& exit : {Point{left, 0.78 * extent}, {right, 0.72 * extent}, {0.3 * extent, right}}) {
    goals.push_back(cellAt(exit.x, exit.y));
  }
  const int town = cellAt(network.settlements.front().x, network.settlements.front().y);
  const std::vector<int> back = WaysToTown(relief, network, town);
  for (const int goal : goals) {
    std::vector<Point> way;
    for (int cell = goal; cell != town; cell = back[cell]) {
      way.push_back({relief.Centre(cell % relief.size), relief.Centre(cell / relief.size)});
    }
    way.push_back({relief.Centre(town % relief.size), relief.Centre(town / relief.size)});
    Straighten(way, 3);
    for (std::size_t point = 1; point < way.size(); ++point) {
      DrawLine(network.road, way[point - 1], way[point], 0.0);
    }
  }
}

} // namespace

void AddSettlements(unsigned seed, const Field& relief, const std::vector<int>& dams, double extent,
                    Network& network) {
  network.settlements = MakeSettlements(seed, relief, network, extent);
  AddRoads(relief, dams, extent, network);
}

} // namespace quent::rasterops::engine::scene
