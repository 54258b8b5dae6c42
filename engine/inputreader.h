/// \file
/// Reads the tiles of one input on one thread.
#pragma once

#include "engine/inputraster.h"
#include "engine/tileblock.h"

#include <cstddef>
#include <vector>

namespace quent::rasterops::engine {

/// One GDAL handle and the blocks that it reads into. The masks of a block that it gives are computed.
class InputReader {
public:
  /// \param raster outlives the reader
  InputReader(const InputRaster& raster, GDALDatasetUniquePtr handle);

  /// The pixels of a tile in the type that operators see; the block is good until the next call. A raster of
  /// one pixel, and a value, give that pixel whatever the tile.
  /// \throws InputError
  const boost::shared_ptr<tilx::PixelBlock>& Read(const Tile& tile);

  /// Bytes that reading a tile takes on one thread, GDAL's cache apart.
  static std::size_t Bytes(const InputRaster& raster, Size tile);

private:
  const boost::shared_ptr<tilx::PixelBlock>& readOnce();
  void readPixels(const Tile& tile);
  bool blocksFit(const Tile& tile) const;
  void readBlocks(const Tile& tile, std::size_t plane);
  void readMasks(const Tile& tile);
  void readMask(const Tile& tile, std::size_t plane);
  void readFractions(const Tile& tile, GDALRasterBand& band, const _Rbuf_BaseData& target);
  const boost::shared_ptr<tilx::PixelBlock>& finish();
  [[noreturn]] void fail(const Tile& tile, const std::string& reason) const;

  const InputRaster& m_Raster;
  GDALDatasetUniquePtr m_Handle;
  std::vector<int> m_Numbers; ///< of the bands
  TileBlock m_Native;
  TileBlock m_Converted;
  TileBlock m_Mask; ///< a mask that is read, where the input has any
  std::vector<unsigned char> m_Scratch;
  bool m_Done = false; ///< the one pixel is read
};

} // namespace quent::rasterops::engine
