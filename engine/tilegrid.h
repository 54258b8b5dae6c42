/// \file
/// How a raster is cut into tiles.
#pragma once

#include "catalogue/api.h"

#include <cstddef>
#include <string>

namespace quent::rasterops::engine {

/// Columns and rows.
struct Size {
  long width = 0;
  long height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

/// A rectangle of a raster.
struct Tile {
  long x = 0;
  long y = 0;
  long width = 0;
  long height = 0;
  friend bool operator==(const Tile&, const Tile&) = default;
};

/// The tiles of a raster in row-major order, those at the right and bottom edge cut off.
class RASTEROPS_ENGINE_API TileGrid {
public:
  /// \param tile at least 1 x 1
  TileGrid(Size raster, Size tile);

  std::size_t Count() const { return m_Across * m_Down; }
  Tile At(std::size_t index) const;

private:
  Size m_Raster;
  Size m_Tile;
  std::size_t m_Across;
  std::size_t m_Down;
};

/// What the user wants of the tile size.
struct TileRequest {
  enum class Kind { Auto, Whole, Fixed };
  Kind kind = Kind::Auto;
  Size size; ///< of Kind::Fixed
};

/// Reads "auto", "whole", "512" or "1024x256". \throws std::invalid_argument
RASTEROPS_ENGINE_API TileRequest ParseTileRequest(const std::string& text);

/// `value` rounded up to a multiple of `unit`.
inline long RoundUp(long value, long unit) {
  return (value + unit - 1) / unit * unit;
}

} // namespace quent::rasterops::engine
