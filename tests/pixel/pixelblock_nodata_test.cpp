/// NODATA values, and pixels, planes and blocks that are made invalid.
#include "rasterops/pixelblock.h"

#include "support/blocks.h"
#include "support/failures.h"
#include "support/simdtest.h"

#include <limits>

namespace {

using namespace testsupport;
using reference::Bytes;
using tilx::PixelBlock;

RASTEROPS_SIMD_SUITE(PixelBlockNoData);

TEST_P(PixelBlockNoData, SettingTheValueAlreadySetLeavesConditionAndDirtyFlagAlone) {
  const BlockPtr block = MakeBlockWithNoData(S16, 2, 1, {7, 1}, 7);
  block->computeMask(0);
  const unsigned char* before = block->getNODATAValue(0).get();
  SetNoData(*block, 0, 7);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
  EXPECT_EQ(block->getNODATAValue(0).get(), before);
}

TEST_P(PixelBlockNoData, SettingNoneWhereThereIsNoneIsNoChange) {
  const BlockPtr block = MakeBlock(S16, 2, 1, {7, 1});
  block->computeMask(0);
  block->setNODATAValue(0, nullptr);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::ALLDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
}

TEST_P(PixelBlockNoData, DroppingTheValueIsAChange) {
  const BlockPtr block = MakeBlockWithNoData(S16, 2, 1, {7, 1}, 7);
  block->computeMask(0);
  block->setNODATAValue(0, nullptr);
  EXPECT_FALSE(block->getNODATAValue(0));
  EXPECT_EQ(StoredCondition(*block, 0), tilx::UNKNOWN);
  EXPECT_TRUE(IsDirty(*block, 0));
}

TEST_P(PixelBlockNoData, ValuesAreComparedByTheirBytes) {
  const BlockPtr block = MakeBlockWithNoData(F32, 2, 1, {0, 1}, 0.0);
  block->computeMask(0);
  SetNoData(*block, 0, -0.0);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::UNKNOWN) << "another value, though equal as a number";
}

TEST_P(PixelBlockNoData, EarlierSharersOfTheBytesKeepTheOldOnes) {
  const BlockPtr block = MakeBlockWithNoData(S16, 2, 1, {7, 1}, 7);
  const boost::shared_array<unsigned char> earlier = block->getNODATAValue(0);
  SetNoData(*block, 0, 9);
  EXPECT_EQ(reference::Load<std::int16_t>(earlier.get()), 7);
  EXPECT_EQ(reference::Load<std::int16_t>(block->getNODATAValue(0).get()), 9);
}

TEST_P(PixelBlockNoData, OnePixelOfAOneByOneAllDataPlaneGivesNoData) {
  const BlockPtr block = MakeBlock(U8, 1, 1, {5});
  block->setPixelToNODATA(0, 0, 0);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::NODATA);
  EXPECT_EQ(MaskOf(*block, 0), Bytes{0});
  EXPECT_EQ(ValuesOf(*block, 0), std::vector<double>{5}) << "there is no NODATA value to write";
}

TEST_P(PixelBlockNoData, OnePixelOfALargerAllDataPlaneGivesSomeData) {
  const BlockPtr block = MakeBlock(U8, 2, 2, {1, 2, 3, 4});
  block->setPixelToNODATA(0, 1, 0);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{255, 0, 255, 255}));
}

TEST_P(PixelBlockNoData, OnePixelOfAPlaneWithAValueIsWritten) {
  const BlockPtr block = MakeBlockWithNoData(S16, 2, 2, {1, 2, 3, 4}, -9999);
  block->computeMask(0);
  block->setPixelToNODATA(0, 0, 1);
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{1, 2, -9999, 4}));
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{255, 255, 0, 255}));
}

TEST_P(PixelBlockNoData, OnePixelUnderADirtyMaskIsLeftToTheNextScan) {
  const BlockPtr block = MakeBlockWithNoData(S16, 2, 2, {1, 2, 3, 4}, -9999);
  block->setCondition(0, tilx::ALLDATA);
  block->setPixelToNODATA(0, 0, 1);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
  EXPECT_TRUE(IsDirty(*block, 0));
  EXPECT_FALSE(HasMask(*block, 0));
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{255, 255, 0, 255}));
}

TEST_P(PixelBlockNoData, OnePixelOfASomeDataPlaneTakesTheConditionFromTheMask) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  SetMaskBytes(*block, 0, {0, 255});
  block->setPixelToNODATA(0, 1, 0);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::NODATA);
}

TEST_P(PixelBlockNoData, OnePixelOfASomeDataPlaneWithoutMaskGivesUnknown) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {1, 2}, 7);
  block->setCondition(0, tilx::SOMEDATA);
  block->setPixelToNODATA(0, 1, 0);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::UNKNOWN);
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{1, 7}));
}

TEST_P(PixelBlockNoData, OnePixelOfANoDataPlaneIsLeftAlone) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {1, 2}, 7);
  block->setCondition(0, tilx::NODATA);
  block->setPixelToNODATA(0, 1, 0);
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{1, 2}));
  EXPECT_EQ(StoredCondition(*block, 0), tilx::NODATA);
}

TEST_P(PixelBlockNoData, OnePixelWithNeitherMaskNorValueRaises) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  for (const auto condition : {tilx::UNKNOWN, tilx::SOMEDATA}) {
    block->setCondition(0, condition);
    ExpectFailure(Kind::Rfault, "No Mask or NODATA value set for this plane",
                  [&] { block->setPixelToNODATA(0, 0, 0); });
    EXPECT_EQ(StoredCondition(*block, 0), condition);
  }
}

TEST_P(PixelBlockNoData, OnePixelOutsideThePlaneRaises) {
  const BlockPtr block = MakeBlock(U8, 3, 2, {1, 2, 3, 4, 5, 6});
  for (const auto& [column, row] : {std::pair{-1L, 0L}, {3L, 0L}, {0L, -1L}, {0L, 2L}})
    ExpectFailure(Kind::Rfault, "Invalid Pixel Position",
                  [&, c = column, r = row] { block->setPixelToNODATA(0, c, r); });
  EXPECT_EQ(FailureOf([&] { block->setPixelToNODATA(1, 0, 0); }).kind, Kind::Rfault);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::ALLDATA);
}

TEST_P(PixelBlockNoData, SetBlockLeavesTheDirtyFlagAsItWasAndSetPlaneSetsIt) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {1, 2, 3, 4}, 7);
  block->computeMask(0);
  ASSERT_FALSE(IsDirty(*block, 0));
  ASSERT_TRUE(IsDirty(*block, 1));
  block->setBlockToNODATA();
  EXPECT_FALSE(IsDirty(*block, 0));
  EXPECT_TRUE(IsDirty(*block, 1));
  for (long i = 0; i < 2; ++i) {
    EXPECT_EQ(StoredCondition(*block, i), tilx::NODATA);
    EXPECT_EQ(ValuesOf(*block, i), (std::vector<double>{7, 7}));
  }
  block->setPlaneToNODATA(0);
  EXPECT_TRUE(IsDirty(*block, 0));
}

TEST_P(PixelBlockNoData, SetPlaneOrBlockWithoutAValueLeavesThePixelsAlone) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2, 3, 4});
  block->setPlaneToNODATA(1);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::ALLDATA);
  EXPECT_EQ(StoredCondition(*block, 1), tilx::NODATA);
  block->setBlockToNODATA();
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{1, 2}));
  EXPECT_EQ(ValuesOf(*block, 1), (std::vector<double>{3, 4}));
}

TEST_P(PixelBlockNoData, FillsLeaveThePaddingBetweenRowsAlone) {
  Bytes memory(24, 0xA5);
  unsigned char seven = 7;
  unsigned char* noData[] = {&seven, &seven};
  PixelBlock block(2, 2, 3, U8, memory.data(), 12, 4, noData);
  block.setPlaneToNODATA(0);
  Bytes expected(24, 0xA5);
  for (const std::size_t row : {0, 4, 8})
    expected[row] = expected[row + 1] = 7;
  EXPECT_EQ(memory, expected);
  block.setBlockToNODATA();
  for (const std::size_t row : {12, 16, 20})
    expected[row] = expected[row + 1] = 7;
  EXPECT_EQ(memory, expected);
}

} // namespace
