#include "engine/memorybudget.h"

#include "engine/errors.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace quent::rasterops::engine {

namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20;

std::size_t area(Size size) {
  return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

/// Three planes of F32 a lane.
TileNeeds needs(Size raster) {
  TileNeeds result;
  result.raster = raster;
  result.block = {512, 512};
  result.largestPixel = 4;
  result.processBytes = 50 * mebibyte;
  result.laneBytes = [](Size tile) { return 12 * area(tile); };
  result.cacheBytes = [](Size, unsigned) { return 16 * mebibyte; };
  result.leastCache = [](unsigned) { return 8 * mebibyte; };
  return result;
}

TileWishes wishes(std::size_t budget, unsigned threads = 4) {
  return {{}, threads, budget};
}

} // namespace

TEST(MemorySize, ReadsUnits) {
  EXPECT_EQ(ParseMemorySize("1000"), 1000U);
  EXPECT_EQ(ParseMemorySize("2K"), 2048U);
  EXPECT_EQ(ParseMemorySize("512M"), 512 * mebibyte);
  EXPECT_EQ(ParseMemorySize("512MB"), 512 * mebibyte);
  EXPECT_EQ(ParseMemorySize("512MiB"), 512 * mebibyte);
  EXPECT_EQ(ParseMemorySize("1.5g"), 1536 * mebibyte);
  for (const char* text : {"", "M", "-1", "0", "5X", "5MM", "nan", "inf", "1e300"})
    EXPECT_THROW(ParseMemorySize(text), std::invalid_argument) << text;
}

TEST(MemorySize, TextIsRoundedUp) {
  EXPECT_EQ(MemorySizeText(1), "1M");
  EXPECT_EQ(MemorySizeText(mebibyte), "1M");
  EXPECT_EQ(MemorySizeText(mebibyte + 1), "2M");
}

TEST(DefaultMemoryBudget, LeavesAMargin) {
  EXPECT_EQ(DefaultMemoryBudget(1000 * mebibyte), 744 * mebibyte);
  EXPECT_EQ(DefaultMemoryBudget(100000 * mebibyte), 90000 * mebibyte);
  EXPECT_EQ(DefaultMemoryBudget(100 * mebibyte), 0U);
}

TEST(ChooseTiles, TakesOneBlockOfF32WhereMemoryIsPlenty) {
  const TileChoice choice = ChooseTiles(needs({8192, 8192}), wishes(1024 * mebibyte));
  EXPECT_EQ(choice.tile, (Size{512, 512}));
  EXPECT_EQ(choice.threads, 4U);
}

TEST(ChooseTiles, TakesSeveralBlocksOfSmallPixels) {
  TileNeeds bytes = needs({8192, 8192});
  bytes.largestPixel = 1;
  EXPECT_EQ(ChooseTiles(bytes, wishes(1024 * mebibyte)).tile, (Size{1024, 1024}));
}

TEST(ChooseTiles, TakesWholeRowsOfStrips) {
  TileNeeds strips = needs({8192, 8192});
  strips.stripsOnly = true;
  EXPECT_EQ(ChooseTiles(strips, wishes(1024 * mebibyte)).tile, (Size{8192, 512}));
  EXPECT_EQ(ChooseTiles(strips, wishes(110 * mebibyte)).tile, (Size{512, 512})) << "they do not fit";
}

TEST(ChooseTiles, StaysWithinTheBudget) {
  for (std::size_t budget = 62; budget < 200; ++budget)
    EXPECT_LE(ChooseTiles(needs({8192, 8192}), wishes(budget * mebibyte)).totalBytes, budget * mebibyte);
}

TEST(ChooseTiles, ShrinksTilesBeforeThreads) {
  const TileChoice choice = ChooseTiles(needs({8192, 8192}), wishes(72 * mebibyte));
  EXPECT_EQ(choice.threads, 4U);
  EXPECT_LT(choice.tile.width, 512);
}

TEST(ChooseTiles, GivesUpThreadsForAFixedTile) {
  TileWishes fixed = wishes(70 * mebibyte);
  fixed.tile = {TileRequest::Kind::Fixed, {512, 512}};
  const TileChoice choice = ChooseTiles(needs({8192, 8192}), fixed);
  EXPECT_EQ(choice.tile, (Size{512, 512}));
  EXPECT_LT(choice.threads, 4U);
}

TEST(ChooseTiles, NeverTakesMoreThreadsThanTiles) {
  EXPECT_EQ(ChooseTiles(needs({100, 100}), wishes(1024 * mebibyte)).threads, 1U);
  EXPECT_EQ(ChooseTiles(needs({1000, 100}), wishes(1024 * mebibyte)).threads, 2U);
}

TEST(ChooseTiles, SaysWhatOneTileTakes) {
  TileWishes whole = wishes(100 * mebibyte);
  whole.tile.kind = TileRequest::Kind::Whole;
  try {
    ChooseTiles(needs({4096, 4096}), whole);
    FAIL() << "192 MiB do not fit into 100";
  } catch (const MemoryError& e) {
    // 50 for the process, 192 for the tile, 64 for the pool, 8 and an eighth for the cache
    EXPECT_NE(std::string(e.what()).find("315M"), std::string::npos) << e.what();
    EXPECT_EQ(e.Code(), ExitCode::Memory);
  }
  whole.budget = 315 * mebibyte;
  EXPECT_NO_THROW(ChooseTiles(needs({4096, 4096}), whole));
}

TEST(ChooseTiles, CountsTheStepAfterTheTiles) {
  TileNeeds copying = needs({100, 100});
  copying.leastBytes = 130 * mebibyte;
  EXPECT_EQ(ChooseTiles(copying, wishes(130 * mebibyte)).totalBytes, 130 * mebibyte);
  EXPECT_THROW(ChooseTiles(copying, wishes(129 * mebibyte)), MemoryError);
}

TEST(ChooseTiles, KeepsToWholeBlocksWhereTheseAreCompressed) {
  TileNeeds compressed = needs({8192, 8192});
  compressed.blocksOnly = true;
  TileWishes fixed = wishes(1024 * mebibyte);
  fixed.tile = {TileRequest::Kind::Fixed, {64, 600}};
  EXPECT_EQ(ChooseTiles(compressed, fixed).tile, (Size{512, 1024}));
}

TEST(ChooseTiles, RefusesTilesBeyondTheRange) {
  TileWishes whole = wishes(std::size_t{1} << 60);
  whole.tile.kind = TileRequest::Kind::Whole;
  EXPECT_THROW(ChooseTiles(needs({65536, 32768}), whole), UsageError);
  EXPECT_NO_THROW(ChooseTiles(needs({65535, 32768}), whole));
}

} // namespace quent::rasterops::engine
