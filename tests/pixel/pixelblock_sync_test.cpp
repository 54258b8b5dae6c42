/// Mask and NODATA fill brought into line, either way.
#include "rasterops/pixelblock.h"

#include "reference/masks.h"
#include "support/failures.h"
#include "support/randomblock.h"
#include "support/simdtest.h"

namespace {

using namespace testsupport;
using reference::Bytes;
using tilx::PixelBlock;

const std::string kContradiction = "Condition set to ALLDATA, but found NODATA pixel value";

RASTEROPS_SIMD_SUITE(PixelBlockSync);

TEST_P(PixelBlockSync, MaskFollowsTheFillAndConditionAndDirtyFlagStay) {
  const BlockPtr block = MakeBlockWithNoData(U8, 3, 1, {7, 1, 2}, 7);
  block->syncMaskWithNODATAFill(0);
  EXPECT_TRUE(HasMask(*block, 0));
  EXPECT_TRUE(IsDirty(*block, 0));
  EXPECT_EQ(StoredCondition(*block, 0), tilx::UNKNOWN);
  EXPECT_EQ(PixelBytesOf(StateOf(*block)->m_Masks[0].get()), (Bytes{0, 255, 255}));
}

TEST_P(PixelBlockSync, MaskOfANoDataOrAllDataPlaneBecomesUniform) {
  const BlockPtr block = MakeBlockWithNoData(U8, 3, 1, {7, 1, 2}, 7);
  block->setCondition(0, tilx::NODATA);
  block->syncMaskWithNODATAFill(0);
  EXPECT_EQ(PixelBytesOf(StateOf(*block)->m_Masks[0].get()), Bytes(3, 0));
  block->setCondition(0, tilx::ALLDATA);
  block->syncMaskWithNODATAFill(0);
  EXPECT_EQ(PixelBytesOf(StateOf(*block)->m_Masks[0].get()), Bytes(3, 255));
}

TEST_P(PixelBlockSync, MaskUnderPrimacyOrWithoutAValueIsLeftAlone) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {7, 1, 7, 1}, 7);
  block->setMaskHasNODATAPrimacy(0, true);
  SetMaskBytes(*block, 0, {255, 0});
  block->syncMaskWithNODATAFill(0);
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{255, 0}));
  block->setNODATAValue(1, nullptr);
  block->syncMaskWithNODATAFill(1);
  EXPECT_FALSE(HasMask(*block, 1));
}

TEST_P(PixelBlockSync, MaskIsNotMadeOnceAnotherPlaneHasOne) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {7, 1, 7, 1}, 7);
  block->computeMask(0);
  block->syncMaskWithNODATAFill(1);
  EXPECT_FALSE(HasMask(*block, 1));
}

TEST_P(PixelBlockSync, MaskComparesBytesWhileComputeMaskComparesNumbers) {
  const BlockPtr block = MakeBlockWithNoData(F32, 2, 1, {-0.0, 0.0}, 0.0);
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{0, 0}));
  block->setCondition(0, tilx::UNKNOWN);
  block->syncMaskWithNODATAFill(0);
  EXPECT_EQ(PixelBytesOf(StateOf(*block)->m_Masks[0].get()), (Bytes{255, 0}));
}

TEST_P(PixelBlockSync, MaskComparesTheBytesOfNanToo) {
  const std::uint32_t pixels[] = {0x7FC00000u, 0x7FC00001u};
  Bytes memory(8);
  std::memcpy(memory.data(), pixels, 8);
  unsigned char* noData[] = {memory.data()};
  PixelBlock block(1, 2, 1, F32, memory.data(), 0, 8, noData);
  EXPECT_EQ(MaskOf(block, 0), (Bytes{0, 0}));
  block.setCondition(0, tilx::UNKNOWN);
  block.syncMaskWithNODATAFill(0);
  EXPECT_EQ(PixelBytesOf(StateOf(block)->m_Masks[0].get()), (Bytes{0, 255}));
}

TEST_P(PixelBlockSync, FillWithoutAValueIsInLine) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  block->setCondition(0, tilx::UNKNOWN);
  EXPECT_TRUE(block->syncNODATAFillWithMask(0, true));
}

TEST_P(PixelBlockSync, FillOfANoDataPlaneIsWrittenToEveryPixel) {
  const BlockPtr block = MakeBlockWithNoData(S32, 2, 1, {1, 2}, -5);
  block->setCondition(0, tilx::NODATA);
  EXPECT_TRUE(block->syncNODATAFillWithMask(0, true));
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{-5, -5}));
}

TEST_P(PixelBlockSync, FillOfAnAllDataPlaneThatHoldsTheValueRaisesIfStrict) {
  const BlockPtr block = MakeBlockWithNoData(U8, 3, 1, {1, 7, 3}, 7);
  block->setCondition(0, tilx::ALLDATA);
  ExpectFailureFrom(Kind::Cpp, kContradiction, "pixelblock", "tilx::PixelBlock::syncNODATAFillWithMask",
                    [&] { block->syncNODATAFillWithMask(0, true); });
  EXPECT_FALSE(block->syncNODATAFillWithMask(0, false));
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{1, 7, 3}));
}

TEST_P(PixelBlockSync, FillOfAnAllDataPlaneUnderPrimacyIsNotLookedAt) {
  const BlockPtr block = MakeBlockWithNoData(U8, 3, 1, {1, 7, 3}, 7);
  block->setCondition(0, tilx::ALLDATA);
  block->setMaskHasNODATAPrimacy(0, true);
  EXPECT_TRUE(block->syncNODATAFillWithMask(0, true));
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{1, 7, 3}));
}

TEST_P(PixelBlockSync, FillGoesIntoPixelsWhoseMaskByteIsZeroAndNoOthers) {
  const BlockPtr block = MakeBlockWithNoData(U8, 4, 1, {1, 2, 3, 4}, 7);
  SetMaskBytes(*block, 0, {255, 0, 1, 254});
  EXPECT_TRUE(block->syncNODATAFillWithMask(0, true));
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{1, 7, 3, 4}));
}

TEST_P(PixelBlockSync, FillWithAValueGivesTheMaskPrimacyAndKeepsTheCondition) {
  const BlockPtr block = MakeBlock(U8, 3, 1, {1, 2, 3});
  SetMaskBytes(*block, 0, {255, 0, 255});
  unsigned char nine = 9;
  block->syncNODATAFillWithMask(0, &nine);
  EXPECT_TRUE(block->getMaskHasNODATAPrimacy(0));
  EXPECT_EQ(block->getNODATAValue(0)[0], 9);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{1, 9, 3}));
}

TEST_P(PixelBlockSync, FillWithAValueComputesTheMaskFromTheOldValueFirst) {
  const BlockPtr block = MakeBlockWithNoData(U8, 3, 1, {7, 2, 3}, 7);
  unsigned char two = 2;
  block->syncNODATAFillWithMask(0, &two);
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{0, 255, 255}));
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{2, 2, 3}));
}

TEST_P(PixelBlockSync, MaskOfRandomPlanesIsThatOfTheTwin) {
  ForRandomTrials(200, [](Random& random) {
    const Rbuf_PixelType type = random.Pick(kAllTypes);
    const MadeBlock made = MakeRandomBlock(random, type, 2, RandomSize(random), RandomLayout(random));
    const Bytes outside = made.BytesOutside();
    reference::Block model = Snapshot(*made.block);
    for (std::size_t i = 0; i < 2; ++i) {
      made.block->syncMaskWithNODATAFill(static_cast<long>(i));
      reference::SyncMaskWithNODATAFill(model, i);
      const StateOf state(*made.block);
      ASSERT_EQ(HasMask(*made.block, static_cast<long>(i)), model.planes[i].mask.has_value());
      if (model.planes[i].noData && !model.planes[i].maskHasPrimacy && model.planes[i].mask) {
        EXPECT_TRUE(
            SamePixels(U8, *model.planes[i].mask, PixelBytesOf(state->m_Masks[static_cast<long>(i)].get())))
            << reference::TypeName(type);
      }
    }
    EXPECT_TRUE(SameState(model, Snapshot(*made.block)));
    EXPECT_EQ(outside, made.BytesOutside());
  });
}

TEST_P(PixelBlockSync, FillOfRandomPlanesIsThatOfTheTwin) {
  ForRandomTrials(300, [](Random& random) {
    const Rbuf_PixelType type = random.Pick(kAllTypes);
    const MadeBlock made = MakeRandomBlock(random, type, 2, RandomSize(random), RandomLayout(random));
    const Bytes outside = made.BytesOutside();
    const bool strict = random.Chance(50);
    reference::Block model = Snapshot(*made.block);
    for (std::size_t i = 0; i < 2; ++i) {
      Failure expected;
      bool expectedResult = true;
      try {
        expectedResult = reference::SyncNODATAFillWithMask(model, i, strict);
      } catch (const reference::MaskNotComputable& e) {
        expected = {Kind::Rfault, e.what(), "", "", 0};
      } catch (const reference::FillContradictsCondition& e) {
        expected = {Kind::Cpp, e.what(), "", "", 0};
      }
      bool result = true;
      const Failure actual =
          FailureOf([&] { result = made.block->syncNODATAFillWithMask(static_cast<long>(i), strict); });
      EXPECT_EQ(actual.kind, expected.kind) << actual;
      EXPECT_EQ(actual.what, expected.what);
      EXPECT_EQ(result, expectedResult);
    }
    EXPECT_TRUE(SameState(model, Snapshot(*made.block)));
    EXPECT_EQ(outside, made.BytesOutside());
  });
}

} // namespace
