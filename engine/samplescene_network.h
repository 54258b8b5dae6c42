/// \file
/// What the sample scene's relief leads to: lakes, rivers, moisture, settlements and the roads between them.
#pragma once

#include "engine/samplescene_relief.h"

#include <vector>

namespace quent::rasterops::engine::scene {

/// Water that a dam or a sill holds back.
struct Lake {
  double level; ///< metres
  Field reach;  ///< 1 in the catchment of its outlet, 0 elsewhere: water below the level is lake only there
};

struct Settlement {
  double x, y, radius; ///< metres
};

struct Network {
  std::vector<Lake> lakes;
  std::vector<Settlement> settlements; ///< the town first
  Field river;                         ///< metres to the nearest river bank, negative on the water
  Field road;                          ///< metres to the middle of the nearest road
  Field moisture;                      ///< 0 dry to 1 wet
};

/// Adds settlements, and roads from the town to the villages, to `dams` and out of the scene.
/// \param dams cells of the relief
void AddSettlements(unsigned seed, const Field& relief, const std::vector<int>& dams, double extent,
                    Network& network);

/// Finds all of it on a relief. `extent` is the side of the scene in metres.
Network MakeNetwork(unsigned seed, const Field& relief, double extent);

} // namespace quent::rasterops::engine::scene
