/// Masks: made on demand, given, combined, taken over.
#include "rasterops/pixelblock.h"

#include "reference/masks.h"
#include "support/failures.h"
#include "support/foreignblock.h"
#include "support/randomblock.h"
#include "support/simdtest.h"

#include <boost/make_shared.hpp>

namespace {

using namespace testsupport;
using reference::Bytes;
using tilx::PixelBlock;

using InterfacePtr = boost::shared_ptr<tilx::IPixelBlock>;

InterfacePtr MaskBlock(int width, int height, const std::vector<double>& bytes) {
  return MakeBlock(U8, width, height, bytes);
}

RASTEROPS_SIMD_SUITE(PixelBlockMask);

TEST_P(PixelBlockMask, OfPlaneMinusOneIsNullAsDataAndRaisesAsBlock) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  EXPECT_EQ(block->getMaskData(-1), nullptr);
  EXPECT_EQ(block->getMaskData(1), nullptr);
  PixelBlock out;
  ExpectFailure(Kind::Rfault, "Invalid index", [&] { block->getMask(-1, out); });
}

TEST_P(PixelBlockMask, CostsNothingUntilAskedFor) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2, 3, 4});
  EXPECT_FALSE(StateOf(*block)->m_Masks);
  block->getMaskData(1);
  EXPECT_FALSE(HasMask(*block, 0));
  EXPECT_TRUE(HasMask(*block, 1));
}

TEST_P(PixelBlockMask, AsBlockIsAOnePlaneBlockOverTheSameBytes) {
  const BlockPtr block = MakeBlockWithNoData(S16, 3, 1, {1, 7, 2}, 7);
  PixelBlock mask;
  block->getMask(0, mask);
  EXPECT_EQ(mask.getNumOfPlanes(), 1);
  EXPECT_EQ(mask.getDataType(), U8);
  EXPECT_EQ(PixelBytesOf(mask, 0), (Bytes{255, 0, 255}));
  EXPECT_EQ(mask.getPlaneData(0)->data, block->getMaskData(0)->data);
  EXPECT_EQ(StoredCondition(mask, 0), tilx::ALLDATA) << "the mask's own pixels are all data";
  EXPECT_TRUE(IsDirty(mask, 0));
  EXPECT_FALSE(mask.getMaskHasNODATAPrimacy(0));
  EXPECT_FALSE(mask.getNODATAValue(0));
}

TEST_P(PixelBlockMask, ThatDoesNotExistIsMadeEvenIfThePlaneIsSaidToBeClean) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  block->setConditionWithoutMarkingDirty(0, tilx::NODATA);
  PixelBlock mask;
  block->getMask(0, mask);
  EXPECT_EQ(PixelBytesOf(mask, 0), Bytes(2, 0));
}

TEST_P(PixelBlockMask, CanBeComputedIsTold) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  EXPECT_FALSE(block->canComputeMask(-1));
  EXPECT_FALSE(block->canComputeMask(1));
  EXPECT_TRUE(block->canComputeMask(0)) << "ALLDATA";
  block->setCondition(0, tilx::NODATA);
  EXPECT_TRUE(block->canComputeMask(0));
  block->setCondition(0, tilx::SOMEDATA);
  EXPECT_FALSE(block->canComputeMask(0)) << "no NODATA value";
  block->setConditionWithoutMarkingDirty(0, tilx::SOMEDATA);
  EXPECT_TRUE(block->canComputeMask(0)) << "clean";
  SetNoData(*block, 0, 7);
  EXPECT_TRUE(block->canComputeMask(0)) << "UNKNOWN with a NODATA value";
  block->setMaskHasNODATAPrimacy(0, true);
  block->setCondition(0, tilx::UNKNOWN);
  EXPECT_FALSE(block->canComputeMask(0)) << "primacy";
}

TEST_P(PixelBlockMask, GivenIsCopiedScannedAndCleanWithoutPrimacy) {
  const BlockPtr block = MakeBlock(F32, 3, 1, {1, 2, 3});
  const InterfacePtr mask = MaskBlock(3, 1, {255, 0, 100});
  block->setMask(0, mask);
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{255, 0, 100}));
  EXPECT_NE(block->getMaskData(0)->data, mask->getPlaneData(0)->data);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
  EXPECT_FALSE(block->getMaskHasNODATAPrimacy(0));
}

TEST_P(PixelBlockMask, GivenAsABlockOfAnotherClassIsCopied) {
  const BlockPtr block = MakeBlock(F32, 2, 1, {1, 2});
  block->setMask(0, boost::make_shared<ForeignBlock>(MakeBlock(U8, 2, 1, {0, 255})));
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{0, 255}));
}

TEST_P(PixelBlockMask, GivenFromAWindowIsCopiedRowByRow) {
  const BlockPtr block = MakeBlock(U8, 2, 2, {1, 2, 3, 4});
  const InterfacePtr whole = MaskBlock(3, 3, {9, 9, 9, 9, 0, 255, 9, 255, 0});
  block->setMask(0, PixelBlock::Derive(whole, 1, 1, 2, 2));
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{0, 255, 255, 0}));
}

TEST_P(PixelBlockMask, GivenAsAnEmptyListChangesNothing) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  block->setMask(0, std::vector<InterfacePtr>());
  EXPECT_EQ(StoredCondition(*block, 0), tilx::ALLDATA);
  EXPECT_TRUE(IsDirty(*block, 0));
  EXPECT_FALSE(HasMask(*block, 0));
}

TEST_P(PixelBlockMask, GivenAsAListOfOneIsCopied) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  block->setMask(0, std::vector<InterfacePtr>{MaskBlock(2, 1, {255, 100})});
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{255, 100}));
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
}

TEST_P(PixelBlockMask, GivenAsAListIsCombinedByByteMinimum) {
  const BlockPtr block = MakeBlock(U8, 3, 1, {1, 2, 3});
  const InterfacePtr first = MaskBlock(3, 1, {255, 200, 255});
  block->setMask(0, std::vector<InterfacePtr>{first, MaskBlock(3, 1, {255, 100, 0}), first});
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{255, 100, 0}));
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
  EXPECT_EQ(PixelBytesOf(*first, 0), (Bytes{255, 200, 255}));
}

TEST_P(PixelBlockMask, CombinedFromAListTakesTheConditionOfTheComposite) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  block->setMask(0, std::vector<InterfacePtr>{MaskBlock(2, 1, {255, 255}), MaskBlock(2, 1, {100, 100})});
  // The scan would call these NODATA, the composite calls them both kinds.
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
}

TEST_P(PixelBlockMask, TakenOverFromANoDataOrAllDataPlaneIsOnlyACondition) {
  const BlockPtr source = MakeBlock(U8, 2, 1, {1, 2});
  const BlockPtr block = MakeBlock(F32, 2, 1, {1, 2});
  SetMaskBytes(*block, 0, {0, 255});
  block->setMaskFromPixelBlock(0, *source, 0);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::ALLDATA);
  EXPECT_TRUE(IsDirty(*block, 0)) << "the mask follows on demand";
  EXPECT_FALSE(HasMask(*source, 0));
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{255, 255}));
}

TEST_P(PixelBlockMask, TakenOverFromAnotherPlaneIsADeepCopyAndClean) {
  const BlockPtr source = MakeBlockWithNoData(S16, 2, 1, {1, 2, 7, 5}, 7);
  const BlockPtr block = MakeBlock(F32, 2, 1, {1, 2});
  block->setMaskFromPixelBlock(0, *source, 1);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{0, 255}));
  EXPECT_NE(block->getMaskData(0)->data, source->getMaskData(1)->data);
}

TEST_P(PixelBlockMask, PrimacyComputesTheMaskFirst) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {7, 2}, 7);
  block->setMaskHasNODATAPrimacy(0, true);
  EXPECT_TRUE(block->getMaskHasNODATAPrimacy(0));
  EXPECT_FALSE(IsDirty(*block, 0));
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{0, 255}));
  block->setMaskHasNODATAPrimacy(0, false);
  EXPECT_FALSE(block->getMaskHasNODATAPrimacy(0));
}

TEST_P(PixelBlockMask, PrimacyIsNotGivenWhenTheMaskCannotBeComputed) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {7, 2});
  block->setCondition(0, tilx::UNKNOWN);
  EXPECT_EQ(FailureOf([&] { block->setMaskHasNODATAPrimacy(0, true); }).kind, Kind::Rfault);
  EXPECT_FALSE(block->getMaskHasNODATAPrimacy(0));
}

TEST_P(PixelBlockMask, CompositeIsTheByteMinimumOfAllMasks) {
  const BlockPtr block = MakeBlockWithNoData(U8, 3, 1, {7, 2, 3, 4, 5, 7}, 7);
  PixelBlock composite;
  block->getCompositeMask(composite);
  EXPECT_EQ(composite.getNumOfPlanes(), 1);
  EXPECT_EQ(composite.getDataType(), U8);
  EXPECT_EQ(PixelBytesOf(composite, 0), (Bytes{0, 255, 0}));
  EXPECT_EQ(StoredCondition(composite, 0), tilx::SOMEDATA);
  EXPECT_TRUE(IsDirty(composite, 0));
  EXPECT_FALSE(composite.getMaskHasNODATAPrimacy(0));
  ASSERT_TRUE(composite.getNODATAValue(0)) << "that of plane 0";
  EXPECT_EQ(composite.getNODATAValue(0)[0], 7);
  EXPECT_FALSE(IsDirty(*block, 0)) << "every mask is current";
  EXPECT_FALSE(IsDirty(*block, 1));
}

TEST_P(PixelBlockMask, CompositeRaisesWhenAMaskCannotBeComputed) {
  const BlockPtr block = MakeBlock(U8, 3, 1, {7, 2, 3, 4, 5, 7});
  block->setCondition(1, tilx::SOMEDATA);
  PixelBlock composite;
  EXPECT_EQ(FailureOf([&] { block->getCompositeMask(composite); }).kind, Kind::Rfault);
}

TEST_P(PixelBlockMask, OfRandomPlanesIsThatOfTheTwin) {
  ForRandomTrials(200, [](Random& random) {
    const Rbuf_PixelType type = random.Pick(kAllTypes);
    const MadeBlock made = MakeRandomBlock(random, type, 2, RandomSize(random), RandomLayout(random));
    const Bytes outside = made.BytesOutside();
    reference::Block model = Snapshot(*made.block);
    for (std::size_t i = 0; i < 2; ++i) {
      EXPECT_EQ(made.block->getCondition(static_cast<long>(i)), reference::GetCondition(model.planes[i]));
      Failure expected;
      try {
        reference::ComputePlaneMask(model, i);
      } catch (const reference::MaskNotComputable& e) {
        expected = {Kind::Rfault, e.what(), "", "", 0};
      }
      EXPECT_EQ(made.block->canComputeMask(static_cast<long>(i)), expected.kind == Kind::Nothing);
      const Failure actual = FailureOf([&] { made.block->computeMask(static_cast<long>(i)); });
      EXPECT_EQ(actual.kind, expected.kind);
      EXPECT_EQ(actual.what, expected.what);
    }
    EXPECT_TRUE(SameState(model, Snapshot(*made.block)));
    EXPECT_EQ(outside, made.BytesOutside());
  });
}

} // namespace
