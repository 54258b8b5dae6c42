/// \file
/// A pixel block that is used again from tile to tile.
#pragma once

#include "engine/nodata.h"
#include "engine/tilegrid.h"
#include "rasterops/pixelblock.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace quent::rasterops::engine {

/// Keeps one block, and makes a new one only when the size of the tile changes: fresh memory costs more than
/// most operators do.
class TileBlock {
public:
  /// \param noData one per plane, each possibly none
  TileBlock(Rbuf_PixelType type, std::vector<std::optional<PixelValue>> noData);

  /// The block, `size` large. What it holds is left over from before.
  const boost::shared_ptr<tilx::PixelBlock>& Shape(Size size);
  const boost::shared_ptr<tilx::PixelBlock>& Get() const { return m_Block; }

private:
  Rbuf_PixelType m_Type;
  std::vector<std::optional<PixelValue>> m_NoData;
  boost::shared_ptr<tilx::PixelBlock> m_Block;
};

/// Bytes of such a block with all its masks, padding at the end included.
std::size_t TileBlockBytes(Rbuf_PixelType type, std::size_t planes, Size size);

/// Bytes from the first pixel of a plane to that of the next; 0 for one plane.
std::ptrdiff_t PlaneStride(const tilx::PixelBlock& block);

} // namespace quent::rasterops::engine
