/// \file
/// A block as plain values: what the slow twins read and write.
#pragma once

#include "rasterops/datacontentscondition.h"
#include "reference/elements.h"

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <vector>

namespace reference {

using Bytes = std::vector<unsigned char>;

/// One plane with all that is known of it. Rows follow each other without padding.
struct Plane {
  Rbuf_PixelType type = U8;
  int rows = 0;
  int columns = 0;
  Bytes pixels;
  std::optional<Bytes> noData;
  std::optional<Bytes> mask;
  tilx::DataContentsCondition condition = tilx::UNKNOWN;
  bool maskDirty = true;
  bool maskHasPrimacy = false;

  std::size_t PixelCount() const {
    return static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
  }
  unsigned char* Pixel(std::size_t index) {
    return pixels.data() + index * static_cast<std::size_t>(PixelBytes(type));
  }
  const unsigned char* Pixel(std::size_t index) const {
    return pixels.data() + index * static_cast<std::size_t>(PixelBytes(type));
  }
};

/// A stack of planes.
struct Block {
  std::vector<Plane> planes;
  /// True once any mask was created: then a plane without mask gets none from a sync.
  bool hasMaskArray = false;
};

/// A mask was asked for that neither condition nor NODATA value determine.
struct MaskNotComputable : std::runtime_error {
  MaskNotComputable()
      : std::runtime_error(
            "Unable to compute the mask.  The condition requires a NoData value, and one isn't set.") {}
};

/// An all-valid plane holds its NODATA value.
struct FillContradictsCondition : std::runtime_error {
  FillContradictsCondition() : std::runtime_error("Condition set to ALLDATA, but found NODATA pixel value") {}
};

} // namespace reference
