/// \file
/// What a satellite sees of the sample scene.
#pragma once

#include "engine/samplescene_landscape.h"

#include <cstdint>
#include <vector>

namespace quent::rasterops::engine::scene {

/// Pixels of the panchromatic band along one multispectral pixel.
inline constexpr int panRatio = 4;

/// One pass over the scene. Optical values are reflectance at the top of the atmosphere x 10000, and 0
/// outside the swath.
struct Image {
  int size = 0;                                    ///< columns and rows of the multispectral bands
  std::array<std::vector<std::uint16_t>, 4> bands; ///< blue, green, red, near infrared
  std::vector<std::uint8_t> cover; ///< the most frequent class of each multispectral pixel, all over
  std::vector<std::uint16_t> pan;  ///< panRatio times as many columns and rows
};

/// \param size pixels of `landscape` along a side, a multiple of panRatio
Image Observe(unsigned seed, const Landscape& landscape, int size);

} // namespace quent::rasterops::engine::scene
