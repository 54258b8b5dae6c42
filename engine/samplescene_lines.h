/// \file
/// Rivers and roads of the sample scene as fields of distance.
#pragma once

#include "engine/samplescene_relief.h"

#include <vector>

namespace quent::rasterops::engine::scene {

/// A field of 10 m cells over the scene and its margin, filled with `value`.
Field LineField(double extent, double origin, double value);

/// Lowers the cells near a line to their distance from a band of `halfWidth` metres around it; negative
/// inside. Cells beyond 150 m stay as they are.
void DrawLine(Field& field, Point from, Point to, double halfWidth);

/// Averages each inner point with its neighbours, `passes` times.
void Straighten(std::vector<Point>& way, int passes);

/// Averages each inner cell with its four neighbours.
void Smooth(Field& field);

} // namespace quent::rasterops::engine::scene
