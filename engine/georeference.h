/// \file
/// Where on earth a raster lies.
#pragma once

#include "engine/tilegrid.h"

#include <ogr_spatialref.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class GDALDataset;

namespace quent::rasterops::engine {

/// Geotransform, ground control points, CRS and the rest of what ties pixels to places.
class RASTEROPS_ENGINE_API Georeference {
public:
  Georeference();
  explicit Georeference(GDALDataset& dataset);
  ~Georeference();
  Georeference(const Georeference&);
  Georeference& operator=(const Georeference&);

  /// True if nothing is known.
  bool Empty() const;
  /// Empty if both rasters, which have the same size, show the same ground or one has no georeference; else
  /// how they differ, in words. Corners may be a thousandth of a pixel apart.
  std::string Difference(const Georeference& other, Size size) const;
  /// Takes over what is not known yet.
  void Complete(const Georeference& other);
  /// Writes all of it to a new dataset; false if the format does not take some of it.
  bool Store(GDALDataset& dataset) const;

  const std::optional<std::array<double, 6>>& Transform() const { return m_Transform; }
  /// For instance "EPSG:32616", else the name of the CRS; empty if there is none.
  std::string CrsName() const;

private:
  struct ControlPoints;

  std::optional<std::array<double, 6>> m_Transform;
  std::optional<OGRSpatialReference> m_Crs;
  std::shared_ptr<const ControlPoints> m_ControlPoints; ///< never changed once read, so copies share it
  std::string m_AreaOrPoint;
  std::vector<std::string> m_Rpc;
};

} // namespace quent::rasterops::engine
