/// \file
/// The sample scene's relief: a landscape worn by rivers until it drains.
#pragma once

#include <cstddef>
#include <vector>

namespace quent::rasterops::engine::scene {

struct Point {
  double x, y;
};

/// Values at the centres of square cells, with metres as coordinates: x to the right, y down.
struct Field {
  Field(int size, double cell, double origin)
      : size(size), cell(cell), origin(origin), values(static_cast<std::size_t>(size) * size) {}

  double& At(int column, int row) { return values[static_cast<std::size_t>(row) * size + column]; }
  double At(int column, int row) const { return values[static_cast<std::size_t>(row) * size + column]; }
  /// Coordinate of the centre of a column, or of a row.
  double Centre(int index) const { return origin + (index + 0.5) * cell; }
  /// Metres between the centres of two cells, numbered row by row.
  double Distance(int a, int b) const;
  /// True if both coordinates of the centre of cell `number` lie between `low` and `high`.
  bool Within(int number, double low, double high) const;
  /// Bilinear value; beyond the edge cells, that of the edge.
  double Linear(double x, double y) const;
  /// Cubic value through the cell values, with continuous slope.
  double Cubic(double x, double y) const;

  int size;      ///< columns and rows
  double cell;   ///< cell size in metres
  double origin; ///< coordinate of the left and of the upper edge
  std::vector<double> values;
};

/// Where the water of each cell of a relief goes. Cells are numbered row by row.
struct Drainage {
  std::vector<int> order;    ///< every cell once, each after the one that it drains to
  std::vector<int> receiver; ///< the neighbour that a cell drains to; an outlet drains to itself
  std::vector<double> area;  ///< square metres that drain through a cell, itself included
};

/// Floods the relief from its outlet, a stretch of the lower edge, so that hollows drain over their rim.
Drainage Drain(const Field& height);

/// A relief with a mountain range above, a plain below, and valleys that all lead to the outlet.
/// \param extent side of the scene in metres; the field reaches beyond it on all sides
Field MakeRelief(unsigned seed, double extent);

} // namespace quent::rasterops::engine::scene
