/// \file
/// The last step on a tile before it is written.
#pragma once

#include "engine/nodataplan.h"
#include "rasterops/pixelblock.h"

#include <cstddef>
#include <vector>

namespace quent::rasterops::engine {

/// Pixels that a reader of the output will see otherwise than the operator meant them.
struct TileCounts {
  std::size_t equalToNoData = 0; ///< valid, but hold the NODATA value
  std::size_t hiddenByMask = 0;  ///< valid in some band, but masked for all
};

/// Puts into invalid pixels what the file is to hold there and makes the mask for all bands. Belongs to one
/// thread.
class RASTEROPS_ENGINE_API TileFinisher {
public:
  explicit TileFinisher(const NoDataPlan& plan);

  /// \return the mask for all bands without padding, good until the next call; null if every pixel of the
  /// tile is valid or the output has no mask
  const unsigned char* Finish(tilx::PixelBlock& block);
  /// Sums over all tiles so far.
  const TileCounts& Counts() const { return m_Counts; }

private:
  void combine(const _Rbuf_BaseData* mask, std::size_t width, std::size_t height);

  NoDataPlan m_Plan;
  TileCounts m_Counts;
  std::vector<unsigned char> m_Least; ///< over the planes so far, 0 or 255
  std::vector<unsigned char> m_Most;
};

} // namespace quent::rasterops::engine
