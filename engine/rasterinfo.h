/// \file
/// What the engine sees in a raster file.
#pragma once

#include "catalogue/api.h"
#include "engine/tilegrid.h"
#include "rasterops/datacontentscondition.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quent::rasterops::engine {

/// One band.
struct BandInfo {
  int number = 1;
  std::string type; ///< "U8" and so on, or GDAL's name of a 64-bit integer type
  std::optional<double> noData;
  std::vector<std::string> maskFlags; ///< GDAL's: "all-valid", "per-dataset", "alpha", "nodata"
  std::string description;
  bool alpha = false;
  tilx::DataContentsCondition condition = tilx::UNKNOWN; ///< of the whole band
};

/// One file.
struct RasterInfo {
  std::string path;
  std::string driver;
  Size size;
  Size block;
  std::string crs; ///< empty if there is none
  std::optional<std::array<double, 6>> transform;
  std::vector<BandInfo> bands;
};

/// Describes a file. To tell the conditions, pixels of bands that may have invalid ones are read, until both
/// kinds were seen.
/// \param cancelled asked between tiles; true stops with Cancelled
/// \throws InputError; Cancelled
RASTEROPS_ENGINE_API RasterInfo DescribeRaster(const std::string& path,
                                               const std::vector<std::string>& openOptions,
                                               const std::function<bool()>& cancelled);

} // namespace quent::rasterops::engine
