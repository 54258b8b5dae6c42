#include "engine/georeference.h"

#include <gdal_priv.h>

#include <algorithm>
#include <cmath>

namespace quent::rasterops::engine {

struct Georeference::ControlPoints {
  int count;
  GDAL_GCP* points;
  std::optional<OGRSpatialReference> crs;

  explicit ControlPoints(GDALDataset& dataset)
      : count(dataset.GetGCPCount()), points(GDALDuplicateGCPs(count, dataset.GetGCPs())) {
    if (const OGRSpatialReference* reference = dataset.GetGCPSpatialRef())
      crs = *reference;
  }
  ControlPoints(const ControlPoints&) = delete;
  ControlPoints& operator=(const ControlPoints&) = delete;
  ~ControlPoints() {
    GDALDeinitGCPs(count, points);
    CPLFree(points);
  }
};

Georeference::Georeference() = default;
Georeference::~Georeference() = default;
Georeference::Georeference(const Georeference&) = default;
Georeference& Georeference::operator=(const Georeference&) = default;

Georeference::Georeference(GDALDataset& dataset) {
  std::array<double, 6> transform{};
  if (dataset.GetGeoTransform(transform.data()) == CE_None)
    m_Transform = transform;
  if (const OGRSpatialReference* reference = dataset.GetSpatialRef())
    m_Crs = *reference;
  if (dataset.GetGCPCount() > 0)
    m_ControlPoints = std::make_shared<const ControlPoints>(dataset);
  if (const char* item = dataset.GetMetadataItem("AREA_OR_POINT"))
    m_AreaOrPoint = item;
  if (char** const rpc = dataset.GetMetadata("RPC"))
    for (char** item = rpc; *item; ++item)
      m_Rpc.emplace_back(*item);
}

bool Georeference::Empty() const {
  return !m_Transform && !m_Crs && !m_ControlPoints && m_Rpc.empty();
}

void Georeference::Complete(const Georeference& other) {
  if (!m_Transform && !m_ControlPoints) {
    m_Transform = other.m_Transform;
    m_ControlPoints = other.m_ControlPoints;
    m_AreaOrPoint = other.m_AreaOrPoint;
  }
  if (!m_Crs)
    m_Crs = other.m_Crs;
  if (m_Rpc.empty())
    m_Rpc = other.m_Rpc;
}

std::string Georeference::Difference(const Georeference& other, Size size) const {
  if (m_Crs && other.m_Crs) {
    const char* const options[] = {"IGNORE_DATA_AXIS_TO_SRS_AXIS_MAPPING=YES", nullptr};
    if (!m_Crs->IsSame(&*other.m_Crs, options))
      return "CRS " + CrsName() + " against " + other.CrsName();
  }
  if (m_Transform && other.m_Transform) {
    const auto& a = *m_Transform;
    const auto& b = *other.m_Transform;
    const double pixel = std::min(std::hypot(a[1], a[4]), std::hypot(a[2], a[5]));
    for (const double column : {0.0, static_cast<double>(size.width)})
      for (const double row : {0.0, static_cast<double>(size.height)}) {
        const double x = (a[0] - b[0]) + column * (a[1] - b[1]) + row * (a[2] - b[2]);
        const double y = (a[3] - b[3]) + column * (a[4] - b[4]) + row * (a[5] - b[5]);
        if (!(std::hypot(x, y) <= 1e-3 * pixel))
          return "their corners lie apart";
      }
  }
  return {};
}

bool Georeference::Store(GDALDataset& dataset) const {
  bool stored = true;
  // Before the geotransform: it decides whether that means pixel corners or centres in some formats.
  if (!m_AreaOrPoint.empty())
    stored = dataset.SetMetadataItem("AREA_OR_POINT", m_AreaOrPoint.c_str()) == CE_None && stored;
  // A dataset has either a geotransform or control points; where a file states both, the former is exact.
  if (!m_Transform && m_ControlPoints) {
    const OGRSpatialReference* const crs = m_ControlPoints->crs ? &*m_ControlPoints->crs : nullptr;
    stored = dataset.SetGCPs(m_ControlPoints->count, m_ControlPoints->points, crs) == CE_None && stored;
  } else {
    if (m_Crs)
      stored = dataset.SetSpatialRef(&*m_Crs) == CE_None && stored;
    if (m_Transform) {
      auto transform = *m_Transform;
      stored = dataset.SetGeoTransform(transform.data()) == CE_None && stored;
    }
  }
  if (!m_Rpc.empty()) {
    std::vector<char*> items;
    for (const std::string& item : m_Rpc)
      items.push_back(const_cast<char*>(item.c_str())); // copied, never written to
    items.push_back(nullptr);
    stored = dataset.SetMetadata(items.data(), "RPC") == CE_None && stored;
  }
  return stored;
}

std::string Georeference::CrsName() const {
  const OGRSpatialReference* crs = m_Crs ? &*m_Crs : nullptr;
  if (!crs && m_ControlPoints && m_ControlPoints->crs)
    crs = &*m_ControlPoints->crs;
  if (!crs)
    return {};
  const char* const authority = crs->GetAuthorityName(nullptr);
  const char* const code = crs->GetAuthorityCode(nullptr);
  if (authority && code)
    return std::string(authority) + ":" + code;
  const char* const name = crs->GetName();
  return name ? name : "unnamed";
}

} // namespace quent::rasterops::engine
