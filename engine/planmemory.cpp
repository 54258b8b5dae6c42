#include "engine/planmemory.h"

#include "base/hostsystem/hostsystem.h"
#include "engine/inputreader.h"
#include "engine/pixeltypes.h"

#include <algorithm>

namespace quent::rasterops::engine {

namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20;
/// Code pages, thread stacks and allocator slack that come on top once a run starts.
constexpr std::size_t runOverhead = 24 * mebibyte;
constexpr std::size_t laneOverhead = 2 * mebibyte;
constexpr std::size_t smallestCache = 8 * mebibyte;
/// Of a driver that copies the finished dataset, its share of GDAL's cache included.
constexpr std::size_t copyBytes = 80 * mebibyte;
constexpr std::size_t baseCache = 16 * mebibyte;

std::size_t area(Size size) {
  return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

bool aligned(Size tile, Size block, Size raster) {
  return (tile.width % block.width == 0 || tile.width >= raster.width) &&
         (tile.height % block.height == 0 || tile.height >= raster.height);
}

/// Bytes of one thread for a tile.
std::size_t laneBytes(const RunPlan& plan, Size tile) {
  const OutputShape& shape = plan.output.shape;
  const auto bands = static_cast<std::size_t>(shape.bands);
  std::size_t bytes = laneOverhead + TileBlockBytes(plan.resultType, bands, tile);
  if (shape.type != plan.resultType)
    bytes += TileBlockBytes(shape.type, bands, tile);
  if (plan.output.noData.kind == NoDataPlan::Kind::Mask)
    bytes += 3 * area(tile); // two while bands are combined, one to write an all-valid tile
  bytes += area(plan.format->Block()) * PixelBytes(shape.type);
  for (const InputRaster& input : plan.inputs)
    bytes += InputReader::Bytes(input, tile);
  return bytes;
}

/// Bytes of the blocks of an input that several tiles of one row share, on one thread.
std::size_t sharedBlocks(const InputRaster& input, Size tile) {
  if (input.IsValue() || (input.BlocksStandAlone() && aligned(tile, input.BlockSize(), input.RasterSize())))
    return 0;
  const Size block = input.BlockSize();
  const Size raster = input.RasterSize();
  const auto pieces = [](long length, long piece) {
    return static_cast<std::size_t>((length + piece - 1) / piece);
  };
  const std::size_t across = std::min(pieces(raster.width, block.width), pieces(tile.width, block.width) + 1);
  const std::size_t down =
      std::min(pieces(raster.height, block.height), pieces(tile.height, block.height) + 1);
  const std::size_t bands = input.BlocksStandAlone() ? input.Bands().size() : 1;
  return across * down * bands * input.BlockBytes();
}

std::size_t cacheBytes(const RunPlan& plan, Size tile, unsigned threads) {
  std::size_t bytes = baseCache;
  for (const InputRaster& input : plan.inputs)
    bytes += threads * (sharedBlocks(input, tile) + area(tile));
  const OutputShape& shape = plan.output.shape;
  const Size block = plan.format->Block();
  if (!aligned(tile, block, shape.size)) {
    const auto rows = static_cast<std::size_t>(RoundUp(tile.height, block.height) + block.height);
    bytes += static_cast<std::size_t>(RoundUp(shape.size.width, block.width)) * rows *
             (PixelBytes(shape.type) * static_cast<std::size_t>(shape.bands) + 1);
  }
  return bytes;
}

} // namespace

void PlanMemory(const Request& request, RunPlan& plan) {
  TileNeeds needs;
  needs.raster = plan.output.shape.size;
  needs.block = plan.format->Block();
  needs.blocksOnly = plan.format->Compressed();
  needs.stripsOnly = std::all_of(plan.inputs.begin(), plan.inputs.end(), [&needs](const InputRaster& input) {
    return input.IsStrips() || input.RasterSize() != needs.raster;
  });
  needs.largestPixel = std::max(PixelBytes(plan.resultType), PixelBytes(plan.output.shape.type));
  std::size_t blocks = 0;
  for (const InputRaster& input : plan.inputs) {
    needs.largestPixel =
        std::max({needs.largestPixel, PixelBytes(input.NativeType()), PixelBytes(input.Type())});
    blocks += input.BlockBytes();
  }
  needs.processBytes = base::ResidentBytes() + runOverhead;
  if (plan.format->Copies())
    needs.leastBytes = needs.processBytes + copyBytes;
  needs.leastCache = [blocks](unsigned threads) { return std::max(smallestCache, threads * blocks); };
  needs.laneBytes = [&plan](Size tile) { return laneBytes(plan, tile); };
  needs.cacheBytes = [&plan](Size tile, unsigned threads) { return cacheBytes(plan, tile, threads); };
  plan.budget = request.memory.value_or(DefaultMemoryBudget(base::MemoryLimit()));
  const unsigned threads = request.threads > 0 ? request.threads : base::AvailableProcessors();
  plan.tiles = ChooseTiles(needs, {request.tile, threads, plan.budget});
}

} // namespace quent::rasterops::engine
