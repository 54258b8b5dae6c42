#include "engine/tilegrid.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace quent::rasterops::engine {

TEST(TileGrid, CoversEveryPixelOnce) {
  for (const Size raster : {Size{1, 1}, Size{7, 5}, Size{8, 4}, Size{100, 1}, Size{1, 100}})
    for (const Size tile : {Size{1, 1}, Size{3, 2}, Size{4, 4}, Size{200, 200}}) {
      std::vector<int> seen(static_cast<std::size_t>(raster.width * raster.height), 0);
      const TileGrid grid(raster, tile);
      for (std::size_t i = 0; i < grid.Count(); ++i) {
        const Tile t = grid.At(i);
        for (long y = t.y; y < t.y + t.height; ++y)
          for (long x = t.x; x < t.x + t.width; ++x)
            ++seen.at(static_cast<std::size_t>(y * raster.width + x));
      }
      EXPECT_EQ(seen, std::vector<int>(seen.size(), 1)) << raster.width << "x" << raster.height;
    }
}

TEST(TileGrid, CutsTilesOffAtTheRightAndBottomEdge) {
  const TileGrid grid({10, 7}, {4, 4});
  ASSERT_EQ(grid.Count(), 6U);
  EXPECT_EQ(grid.At(0), (Tile{0, 0, 4, 4}));
  EXPECT_EQ(grid.At(2), (Tile{8, 0, 2, 4}));
  EXPECT_EQ(grid.At(5), (Tile{8, 4, 2, 3}));
}

TEST(TileRequest, ReadsAllForms) {
  EXPECT_EQ(ParseTileRequest("auto").kind, TileRequest::Kind::Auto);
  EXPECT_EQ(ParseTileRequest("whole").kind, TileRequest::Kind::Whole);
  EXPECT_EQ(ParseTileRequest("512").size, (Size{512, 512}));
  EXPECT_EQ(ParseTileRequest("1024x256").size, (Size{1024, 256}));
  for (const char* text : {"", "0", "-5", "x", "5x", "x5", "5x5x5", "5.5", "all", "99999999999"})
    EXPECT_THROW(ParseTileRequest(text), std::invalid_argument) << text;
}

TEST(RoundUp, GoesToTheNextMultiple) {
  EXPECT_EQ(RoundUp(1, 16), 16);
  EXPECT_EQ(RoundUp(16, 16), 16);
  EXPECT_EQ(RoundUp(17, 16), 32);
}

} // namespace quent::rasterops::engine
