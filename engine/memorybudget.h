/// \file
/// Tile size and thread count that fit into a memory budget.
#pragma once

#include "engine/tilegrid.h"

#include <cstddef>
#include <functional>
#include <string>

namespace quent::rasterops::engine {

/// Reads "512M", "2G", "1.5G", "100K" or a number of bytes; the letters stand for powers of 1024.
/// \throws std::invalid_argument
RASTEROPS_ENGINE_API std::size_t ParseMemorySize(const std::string& text);
/// For messages, rounded up: "512M".
RASTEROPS_ENGINE_API std::string MemorySizeText(std::size_t bytes);

/// What is taken when the user names no budget: `limit` less 10 %, at least 256 MiB.
RASTEROPS_ENGINE_API std::size_t DefaultMemoryBudget(std::size_t limit);

/// What tile size and memory depend on. The functions say bytes for one tile size.
struct TileNeeds {
  Size raster;
  Size block;                                            ///< of the output, that tiles are aligned to
  bool blocksOnly = false;                               ///< a block must not be written in parts
  bool stripsOnly = false;                               ///< all inputs have blocks as wide as the raster
  std::size_t largestPixel = 1;                          ///< bytes, of all planes that a tile has
  std::size_t processBytes = 0;                          ///< what the process holds beside the tiles
  std::size_t leastBytes = 0;                            ///< what a step takes that comes after the tiles
  std::function<std::size_t(Size)> laneBytes;            ///< of one thread
  std::function<std::size_t(Size, unsigned)> cacheBytes; ///< so that no block is read twice, by threads
  std::function<std::size_t(unsigned)> leastCache;       ///< of blocks in use at once, by threads
};

/// What the user wants.
struct TileWishes {
  TileRequest tile;
  unsigned threads = 1;
  std::size_t budget = 0;
};

/// What is used.
struct TileChoice {
  Size tile;
  unsigned threads = 1;
  std::size_t cacheBytes = 0; ///< for GDAL's block cache
  std::size_t poolBytes = 0;  ///< for freed pixel memory
  std::size_t totalBytes = 0; ///< of the whole process
};

/// The first that fits of: all threads with tiles of some 1 to 2 MiB a plane in whole output blocks (whole
/// rows where the inputs are strips), smaller tiles, fewer threads, a smaller cache.
/// \throws MemoryError telling what one tile takes; UsageError for a tile beyond 2^31 - 1 pixels
RASTEROPS_ENGINE_API TileChoice ChooseTiles(const TileNeeds& needs, const TileWishes& wishes);

} // namespace quent::rasterops::engine
