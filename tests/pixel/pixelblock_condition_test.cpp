/// Conditions: stored, computed, combined, and the transitions between the states of a plane.
#include "rasterops/pixelblock.h"

#include "support/blocks.h"
#include "support/failures.h"
#include "support/simdtest.h"

namespace {

using namespace testsupport;
using reference::Bytes;
using tilx::ALLDATA;
using tilx::DataContentsCondition;
using tilx::NODATA;
using tilx::PixelBlock;
using tilx::SOMEDATA;
using tilx::UNKNOWN;

RASTEROPS_SIMD_SUITE(PixelBlockCondition);

BlockPtr BlockWithConditions(const std::vector<DataContentsCondition>& conditions) {
  BlockPtr block = MakeBlock(U8, 2, 1, std::vector<double>(2 * conditions.size()));
  for (std::size_t i = 0; i < conditions.size(); ++i)
    block->setCondition(static_cast<long>(i), conditions[i]);
  return block;
}

DataContentsCondition Composite(const std::vector<DataContentsCondition>& conditions) {
  return BlockWithConditions(conditions)->getCompositeCondition();
}

TEST_P(PixelBlockCondition, CompositeOfAllSomeAndNoDataIsUnknownAlthoughTheThirdPlaneIsEmpty) {
  EXPECT_EQ(Composite({ALLDATA, SOMEDATA, NODATA}), UNKNOWN);
}

TEST_P(PixelBlockCondition, CompositeOfSomeSomeAndNoDataIsNoData) {
  EXPECT_EQ(Composite({SOMEDATA, SOMEDATA, NODATA}), NODATA);
}

TEST_P(PixelBlockCondition, CompositeLooksAtTheFirstDifferenceOnly) {
  EXPECT_EQ(PixelBlock().getCompositeCondition(), UNKNOWN);
  EXPECT_EQ(Composite({NODATA, ALLDATA}), NODATA);
  EXPECT_EQ(Composite({ALLDATA, NODATA, SOMEDATA}), NODATA);
  EXPECT_EQ(Composite({ALLDATA, UNKNOWN}), UNKNOWN);
  EXPECT_EQ(Composite({UNKNOWN, NODATA}), NODATA);
  EXPECT_EQ(Composite({ALLDATA, ALLDATA}), ALLDATA);
  EXPECT_EQ(Composite({UNKNOWN, UNKNOWN}), UNKNOWN);
  EXPECT_EQ(Composite({SOMEDATA}), SOMEDATA);
  EXPECT_EQ(Composite({SOMEDATA, SOMEDATA}), UNKNOWN) << "their overlap is not known";
}

TEST_P(PixelBlockCondition, CompositeIsStoredOnEveryPlaneAndMarksEveryMaskDirty) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2, 3, 4});
  block->computeMasks();
  block->setCompositeCondition(SOMEDATA);
  for (long i = 0; i < 2; ++i) {
    EXPECT_EQ(block->getCondition(i), SOMEDATA);
    EXPECT_TRUE(IsDirty(*block, i));
  }
}

TEST_P(PixelBlockCondition, HomogenousConditionIsThatOfAllPlanes) {
  bool homogenous = false;
  EXPECT_EQ(PixelBlock::getHomogenousCondition(*BlockWithConditions({ALLDATA, ALLDATA}), homogenous),
            ALLDATA);
  EXPECT_TRUE(homogenous);
  EXPECT_EQ(PixelBlock::getHomogenousCondition(*BlockWithConditions({SOMEDATA, SOMEDATA}), homogenous),
            SOMEDATA);
  EXPECT_TRUE(homogenous);
  EXPECT_EQ(PixelBlock::getHomogenousCondition(*BlockWithConditions({ALLDATA, ALLDATA, NODATA}), homogenous),
            UNKNOWN);
  EXPECT_FALSE(homogenous);
  homogenous = false;
  EXPECT_EQ(PixelBlock::getHomogenousCondition(*BlockWithConditions({NODATA}), homogenous), NODATA);
  EXPECT_TRUE(homogenous);
}

TEST_P(PixelBlockCondition, WrappedBlockWithoutNoDataValueStaysUnknownUntilItIsGivenACondition) {
  Bytes memory(6, 1);
  PixelBlock block(1, 3, 2, U8, memory.data(), 0, 3, nullptr);
  EXPECT_EQ(block.getCondition(0), UNKNOWN);
  PixelBlock out;
  ExpectFailure(Kind::Rfault,
                "Unable to compute the mask.  The condition requires a NoData value, and one isn't set.",
                [&] { block.getMask(0, out); });
  EXPECT_EQ(block.getCondition(0), UNKNOWN);
  block.setCompositeCondition(ALLDATA);
  block.getMask(0, out);
  EXPECT_EQ(PixelBytesOf(out, 0), Bytes(6, 255));
}

TEST_P(PixelBlockCondition, GetConditionNeverComputesAMask) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {7, 1}, 7);
  EXPECT_EQ(block->getCondition(0), UNKNOWN);
  EXPECT_FALSE(HasMask(*block, 0));
  EXPECT_TRUE(IsDirty(*block, 0));
}

TEST_P(PixelBlockCondition, ScanCountsOnlyTwoHundredFiftyFiveAsValid) {
  const BlockPtr block = MakeBlock(U8, 3, 1, {1, 2, 3});
  SetMaskBytes(*block, 0, {254, 1, 100});
  EXPECT_EQ(block->getCondition(0), NODATA);
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{254, 1, 100})) << "such bytes are kept as they stand";
  SetMaskBytes(*block, 0, {255, 255, 254});
  EXPECT_EQ(block->getCondition(0), SOMEDATA);
  SetMaskBytes(*block, 0, {255, 255, 255});
  EXPECT_EQ(block->getCondition(0), ALLDATA);
}

// The transitions between the states of a plane, one test each.

TEST_P(PixelBlockCondition, TransitionSetConditionStoresItAndMarksDirty) {
  for (const auto condition : {UNKNOWN, NODATA, ALLDATA, SOMEDATA}) {
    const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
    block->computeMask(0);
    ASSERT_FALSE(IsDirty(*block, 0));
    block->setCondition(0, condition);
    EXPECT_EQ(StoredCondition(*block, 0), condition);
    EXPECT_TRUE(IsDirty(*block, 0));
  }
}

TEST_P(PixelBlockCondition, TransitionSetConditionWithoutMarkingDirtyCleans) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  ASSERT_TRUE(IsDirty(*block, 0));
  block->setConditionWithoutMarkingDirty(0, SOMEDATA);
  EXPECT_EQ(StoredCondition(*block, 0), SOMEDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
}

TEST_P(PixelBlockCondition, TransitionComputeMaskOfNoDataOrAllDataGivesAUniformMask) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {7, 1, 7, 1}, 7);
  block->setCondition(0, NODATA);
  block->setCondition(1, ALLDATA);
  block->computeMasks();
  EXPECT_EQ(MaskOf(*block, 0), Bytes(2, 0));
  EXPECT_EQ(MaskOf(*block, 1), Bytes(2, 255));
  EXPECT_EQ(StoredCondition(*block, 0), NODATA);
  EXPECT_EQ(StoredCondition(*block, 1), ALLDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
}

TEST_P(PixelBlockCondition, TransitionComputeMaskOfUnknownScansThePixels) {
  for (const auto incoming : {UNKNOWN, SOMEDATA}) {
    const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {7, 1, 7, 7, 1, 2}, 7);
    block->setCompositeCondition(incoming);
    block->computeMasks();
    EXPECT_EQ(StoredCondition(*block, 0), SOMEDATA);
    EXPECT_EQ(StoredCondition(*block, 1), NODATA);
    EXPECT_EQ(StoredCondition(*block, 2), ALLDATA);
    EXPECT_EQ(MaskOf(*block, 0), (Bytes{0, 255}));
    for (long i = 0; i < 3; ++i)
      EXPECT_FALSE(IsDirty(*block, i));
  }
}

TEST_P(PixelBlockCondition, TransitionComputeMaskRaisesWithoutNoDataValueOrUnderPrimacyAndChangesNothing) {
  const std::string message =
      "Unable to compute the mask.  The condition requires a NoData value, and one isn't set.";
  for (const auto condition : {UNKNOWN, SOMEDATA}) {
    const BlockPtr without = MakeBlock(U8, 2, 1, {1, 2});
    without->setCondition(0, condition);
    ExpectFailureFrom(Kind::Rfault, message, "pixelblock", "tilx::PixelBlock::computeMask",
                      [&] { without->computeMask(0); });
    EXPECT_EQ(StoredCondition(*without, 0), condition);
    EXPECT_TRUE(IsDirty(*without, 0));
    EXPECT_FALSE(HasMask(*without, 0));

    const BlockPtr primacy = MakeBlockWithNoData(U8, 2, 1, {7, 2}, 7);
    primacy->setMaskHasNODATAPrimacy(0, true);
    primacy->setCondition(0, condition);
    ExpectFailure(Kind::Rfault, message, [&] { primacy->computeMask(0); });
    EXPECT_EQ(StoredCondition(*primacy, 0), condition);
    EXPECT_TRUE(IsDirty(*primacy, 0));
  }
}

TEST_P(PixelBlockCondition, TransitionComputeConditionTakesItFromTheMaskAndCleans) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  SetMaskBytes(*block, 0, {0, 255});
  block->setCondition(0, UNKNOWN);
  block->computeCondition(0);
  EXPECT_EQ(StoredCondition(*block, 0), SOMEDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
}

TEST_P(PixelBlockCondition, TransitionComputeConditionWithoutMaskDoesNothing) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {7, 2, 7, 7}, 7);
  block->computeCondition(0);
  EXPECT_EQ(StoredCondition(*block, 0), UNKNOWN);
  EXPECT_TRUE(IsDirty(*block, 0));
  block->computeMask(0); // now there is an array of masks, but no mask of plane 1
  block->computeCondition(1);
  EXPECT_EQ(StoredCondition(*block, 1), UNKNOWN);
  EXPECT_TRUE(IsDirty(*block, 1));
}

TEST_P(PixelBlockCondition, TransitionGetConditionOfACleanUnknownPlaneScansItsMask) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {1, 2}, 7);
  SetMaskBytes(*block, 0, {0, 255});
  block->setConditionWithoutMarkingDirty(0, UNKNOWN);
  EXPECT_EQ(block->getCondition(0), SOMEDATA);
  EXPECT_EQ(StoredCondition(*block, 0), SOMEDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
}

TEST_P(PixelBlockCondition, TransitionGetConditionWithoutNoDataValueDoesNotScan) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  SetMaskBytes(*block, 0, {0, 255});
  block->setConditionWithoutMarkingDirty(0, UNKNOWN);
  EXPECT_EQ(block->getCondition(0), UNKNOWN);
}

TEST_P(PixelBlockCondition, TransitionSetNoDataValueWithAChangeIsUnknownAndDirty) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  block->computeMask(0);
  SetNoData(*block, 0, 1);
  EXPECT_EQ(StoredCondition(*block, 0), UNKNOWN);
  EXPECT_TRUE(IsDirty(*block, 0));
}

TEST_P(PixelBlockCondition, TransitionSetNoDataValueUnderPrimacyChangesNothing) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  block->setMaskHasNODATAPrimacy(0, true);
  SetNoData(*block, 0, 1);
  EXPECT_EQ(StoredCondition(*block, 0), ALLDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
  EXPECT_TRUE(block->getNODATAValue(0));
}

TEST_P(PixelBlockCondition, TransitionSetPlaneToNoDataMarksDirty) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  block->computeMask(0);
  block->setPlaneToNODATA(0);
  EXPECT_EQ(StoredCondition(*block, 0), NODATA);
  EXPECT_TRUE(IsDirty(*block, 0));
}

} // namespace
