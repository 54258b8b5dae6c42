/// \file
/// What a file says about a band besides its pixels.
#pragma once

#include "catalogue/description.h"

#include <gdal_priv.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quent::rasterops::engine {

class InputRaster;

/// Labels of one output band.
struct BandLabel {
  std::string description;
  std::string unit;
  std::optional<double> scale;
  std::optional<double> offset;
  std::shared_ptr<const GDALColorTable> colours;
  std::vector<std::string> categories;
};

/// Labels of all output bands.
struct BandLabels {
  std::vector<BandLabel> bands;
  bool isColour = false; ///< the bands are red, green and blue
};

/// The labels of an input that still hold for the output: all of them if pixels keep their meaning and the
/// output is of a type that holds them, names alone if it is another quantity of the same bands, else none.
BandLabels LabelsThatHold(const InputRaster& input, catalogue::Meaning meaning, Rbuf_PixelType outputType,
                          long outputBands);

/// Writes labels to a new band; what the format did not take, in words, or nothing.
std::string StoreLabel(const BandLabel& label, GDALRasterBand& band);

} // namespace quent::rasterops::engine
