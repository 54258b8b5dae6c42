#include "engine/memorybudget.h"

#include "engine/errors.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <vector>

namespace quent::rasterops::engine {

namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20;
constexpr std::size_t usefulPlane = mebibyte;           ///< larger planes leave the second-level cache
constexpr std::size_t largestRowsPlane = 32 * mebibyte; ///< what whole rows of strips may take
constexpr long smallestSide = 16;
constexpr std::size_t largestPool = 64 * mebibyte;
constexpr std::size_t slack = 4 * mebibyte;    ///< by which the process may differ from run to run
constexpr double largestRecord = 2147483647.0; ///< pixels and bytes of a row that a record can count

bool countable(Size tile, std::size_t pixelBytes) {
  const auto width = static_cast<double>(tile.width);
  return width * static_cast<double>(tile.height) <= largestRecord &&
         width * static_cast<double>(pixelBytes) <= largestRecord;
}

Size clip(Size tile, Size raster) {
  return {std::min(tile.width, raster.width), std::min(tile.height, raster.height)};
}

/// Whole blocks, some mebibyte a plane, wider before higher.
Size usefulTile(const TileNeeds& needs) {
  Size tile = needs.block;
  const auto bytes = [&needs](Size t) {
    return static_cast<std::size_t>(t.width) * static_cast<std::size_t>(t.height) * needs.largestPixel;
  };
  while (true) {
    const bool wider = tile.width <= tile.height && tile.width < needs.raster.width;
    Size next = tile;
    if (wider || tile.height >= needs.raster.height)
      next.width *= 2;
    else
      next.height *= 2;
    if (bytes(next) > usefulPlane || (tile.width >= needs.raster.width && tile.height >= needs.raster.height))
      return tile;
    tile = next;
  }
}

/// Tile sizes to try, best first.
std::vector<Size> candidates(const TileNeeds& needs, const TileRequest& request) {
  if (request.kind == TileRequest::Kind::Whole)
    return {needs.raster};
  if (request.kind == TileRequest::Kind::Fixed) {
    Size tile = request.size;
    if (needs.blocksOnly)
      tile = {RoundUp(tile.width, needs.block.width), RoundUp(tile.height, needs.block.height)};
    return {clip(tile, needs.raster)};
  }
  std::vector<Size> sizes;
  const Size rows{needs.raster.width, needs.block.height};
  const std::size_t rowsBytes =
      static_cast<std::size_t>(rows.width) * static_cast<std::size_t>(rows.height) * needs.largestPixel;
  if (needs.stripsOnly && rowsBytes <= largestRowsPlane)
    sizes.push_back(rows);
  Size tile = usefulTile(needs);
  sizes.push_back(tile);
  if (!(tile == needs.block))
    sizes.push_back(needs.block);
  tile = needs.block;
  while (!needs.blocksOnly && (tile.width > smallestSide || tile.height > smallestSide)) {
    tile = {std::max(smallestSide, tile.width / 2), std::max(smallestSide, tile.height / 2)};
    sizes.push_back(tile);
  }
  for (Size& size : sizes)
    size = clip(size, needs.raster);
  return sizes;
}

TileChoice cost(const TileNeeds& needs, Size tile, unsigned threads, bool fullCache) {
  TileChoice choice;
  choice.tile = tile;
  choice.threads = threads;
  const std::size_t lane = needs.laneBytes(tile);
  choice.cacheBytes = std::max(needs.leastCache(threads), fullCache ? needs.cacheBytes(tile, threads) : 0);
  choice.poolBytes = std::min(largestPool, lane);
  const std::size_t cache = choice.cacheBytes + choice.cacheBytes / 8; // GDAL does not count its own records
  choice.totalBytes =
      std::max(needs.leastBytes, needs.processBytes + threads * lane + cache + choice.poolBytes);
  return choice;
}

} // namespace

std::size_t ParseMemorySize(const std::string& text) {
  double value = 0.0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  const std::string unit(stop, end);
  const std::string letters = "KMGT";
  const char letter = unit.empty() ? '\0' : static_cast<char>(unit[0] >= 'a' ? unit[0] - 'a' + 'A' : unit[0]);
  const std::size_t power = letters.find(letter);
  const bool known = unit.empty() || (power != std::string::npos &&
                                      (unit.size() == 1 || unit.substr(1) == "B" || unit.substr(1) == "iB"));
  const double bytes = unit.empty() ? value : value * std::pow(1024.0, static_cast<double>(power + 1));
  if (error != std::errc() || !known || !(bytes >= 1.0) || bytes > 1e18)
    throw std::invalid_argument("'" + text + "' is no amount of memory such as 512M or 2G");
  return static_cast<std::size_t>(bytes);
}

std::string MemorySizeText(std::size_t bytes) {
  return std::to_string((bytes + mebibyte - 1) / mebibyte) + "M";
}

std::size_t DefaultMemoryBudget(std::size_t limit) {
  const std::size_t margin = std::max(256 * mebibyte, limit / 10);
  return limit > margin ? limit - margin : 0;
}

TileChoice ChooseTiles(const TileNeeds& needs, const TileWishes& wishes) {
  std::vector<Size> sizes = candidates(needs, wishes.tile);
  const bool automatic = wishes.tile.kind == TileRequest::Kind::Auto;
  std::erase_if(sizes, [&needs](Size size) { return !countable(size, needs.largestPixel); });
  if (sizes.empty())
    throw UsageError("--tile: such a tile has more pixels than a block can count; choose a smaller one");
  // More threads than tiles would only take memory.
  const auto useful = [&needs](Size size, unsigned threads) {
    return static_cast<unsigned>(std::min<std::size_t>(threads, TileGrid(needs.raster, size).Count()));
  };
  for (const bool fullCache : {true, false})
    for (unsigned threads = wishes.threads; threads >= 1; --threads)
      for (const Size size : sizes) {
        const TileChoice choice = cost(needs, size, useful(size, threads), fullCache);
        if (choice.totalBytes <= wishes.budget)
          return choice;
      }
  const TileChoice least = cost(needs, sizes.back(), 1, false);
  throw MemoryError("one tile of " + std::to_string(least.tile.width) + " x " +
                    std::to_string(least.tile.height) + " pixels takes " + MemorySizeText(least.totalBytes) +
                    ", the budget is " + MemorySizeText(wishes.budget) + "; give --memory " +
                    MemorySizeText(least.totalBytes + slack) +
                    (automatic ? " or more" : " or a smaller --tile"));
}

} // namespace quent::rasterops::engine
