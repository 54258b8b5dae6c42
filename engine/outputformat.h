/// \file
/// Which driver writes the output, and with which options.
#pragma once

#include "catalogue/api.h"
#include "engine/tilegrid.h"
#include "rcommon/rbuf.h"

#include <string>
#include <vector>

class GDALDriver;

namespace quent::rasterops::engine {

/// What the user wants of the output file.
struct OutputRequest {
  std::string path;
  std::string driver;                       ///< GDAL's short name; empty: from the extension
  std::vector<std::string> creationOptions; ///< KEY=VALUE
  bool overwrite = false;
};

/// What the output file will hold.
struct OutputShape {
  Size size;
  long bands = 1;
  Rbuf_PixelType type = U8;
  bool isColour = false; ///< three bands that are red, green and blue
};

/// Driver and creation options. Drivers that can only copy a finished dataset get a temporary GeoTIFF.
class RASTEROPS_ENGINE_API OutputFormat {
public:
  /// \throws UsageError for an unknown driver or option, or a type that the driver cannot hold
  OutputFormat(const OutputRequest& request, const OutputShape& shape);

  /// The driver of the output file.
  GDALDriver& Driver() const { return *m_Driver; }
  std::string Name() const;
  /// True if the dataset that tiles are written to is copied to the output in the end.
  bool Copies() const { return m_Copies; }
  /// The driver that tiles are written with.
  GDALDriver& TileDriver() const { return *m_TileDriver; }
  /// Options of the dataset that tiles are written to.
  const std::vector<std::string>& TileOptions() const { return m_TileOptions; }
  /// Options of the copy, if there is one.
  const std::vector<std::string>& CopyOptions() const { return m_CopyOptions; }
  /// Blocks that tiles are best aligned to.
  Size Block() const { return m_Block; }
  /// True if a block that is written twice costs space or quality.
  bool Compressed() const { return m_Compressed; }

private:
  void geoTiffOptions(const OutputRequest& request, const OutputShape& shape);
  void typeOptions(const OutputRequest& request, const OutputShape& shape);

  GDALDriver* m_Driver = nullptr;
  GDALDriver* m_TileDriver = nullptr;
  bool m_Copies = false;
  bool m_Compressed = false;
  Size m_Block;
  std::vector<std::string> m_TileOptions;
  std::vector<std::string> m_CopyOptions;
};

} // namespace quent::rasterops::engine
