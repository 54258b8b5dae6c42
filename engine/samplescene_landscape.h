/// \file
/// The sample scene's ground: heights at full resolution, land cover and reflectance of each pixel.
#pragma once

#include "engine/samplescene_network.h"

#include <array>
#include <cstdint>
#include <vector>

namespace quent::rasterops::engine::scene {

/// Land cover classes, by the values in the land cover raster.
enum class Cover : std::uint8_t { Unknown, Water, Forest, Grass, Crop, Rock, Snow, BuiltUp };
inline constexpr int coverCount = 8;

/// Reflectance in blue, green, red and near infrared.
using Spectrum = std::array<double, 4>;

/// One pixel of ground.
struct Ground {
  Cover cover = Cover::Unknown;
  Spectrum reflectance{}; ///< as seen from above, without the light's angle
};

/// The whole scene in square pixels.
class Landscape {
public:
  /// \param size   pixels along a side
  /// \param extent metres along a side
  Landscape(unsigned seed, int size, double extent);

  /// Metres; on a lake that of its surface.
  double Height(int column, int row) const { return m_Height.At(column + 1, row + 1); }
  bool IsLake(int column, int row) const {
    return m_Lake[static_cast<std::size_t>(row) * m_Size + column] != 0;
  }
  /// Rise per metre to the right and downwards.
  Point Slope(int column, int row) const;
  Ground At(int column, int row) const;

private:
  /// Where a point of the scene lies in the relief: bent a little, so that its square cells do not show.
  Point Bend(double x, double y) const;
  void MakeHeights(const Field& relief);
  Cover NaturalCover(double x, double y, double height, const Point& slope, double moisture) const;

  unsigned m_Seed;
  int m_Size;
  Network m_Network;
  Field m_Height; ///< with one more pixel on each side
  std::vector<std::uint8_t> m_Lake;
};

} // namespace quent::rasterops::engine::scene
