/// Planes copied in, converted and handed out.
#include "rasterops/pixelblock.h"

#include "reference/conversion.h"
#include "support/failures.h"
#include "support/foreignblock.h"
#include "support/randomblock.h"
#include "support/simdtest.h"

#include <cstring>

namespace {

using namespace testsupport;
using reference::Bytes;
using tilx::PixelBlock;

RASTEROPS_SIMD_SUITE(PixelBlockPlane);

TEST_P(PixelBlockPlane, SetPlaneCopiesPixelsNoDataValueConditionAndPrimacy) {
  const BlockPtr source = MakeBlockWithNoData(S16, 2, 1, {7, 1, 5, 5}, 7);
  source->setMaskHasNODATAPrimacy(0, true);
  const BlockPtr block = MakeBlock(S16, 2, 1, {1, 2, 3, 4});
  block->computeMask(1);
  block->setPlane(1, *source);
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{1, 2}));
  EXPECT_EQ(ValuesOf(*block, 1), (std::vector<double>{7, 1})) << "plane 0 of the source";
  EXPECT_EQ(reference::Load<std::int16_t>(block->getNODATAValue(1).get()), 7);
  EXPECT_NE(block->getNODATAValue(1).get(), source->getNODATAValue(0).get());
  EXPECT_EQ(StoredCondition(*block, 1), tilx::SOMEDATA);
  EXPECT_TRUE(block->getMaskHasNODATAPrimacy(1));
  EXPECT_TRUE(IsDirty(*block, 1));
}

TEST_P(PixelBlockPlane, SetPlaneFromASourceWithoutValueDropsTheOneOfThePlane) {
  const BlockPtr block = MakeBlockWithNoData(S16, 2, 1, {1, 2}, 7);
  block->setPlane(0, *MakeBlock(S16, 2, 1, {3, 4}));
  EXPECT_FALSE(block->getNODATAValue(0));
  EXPECT_EQ(StoredCondition(*block, 0), tilx::ALLDATA);
}

TEST_P(PixelBlockPlane, SetPlaneOfAPlaneFromItselfMarksItDirty) {
  const BlockPtr block = MakeBlockWithNoData(S16, 2, 1, {1, 7}, 7);
  block->computeMask(0);
  PixelBlock view;
  block->getPlane(0, view);
  block->setPlane(0, view);
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{1, 7}));
  EXPECT_TRUE(IsDirty(*block, 0));
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
}

TEST_P(PixelBlockPlane, SetPlaneGoesRowByRowAndLeavesThePaddingAlone) {
  Bytes memory(12, 0xA5);
  PixelBlock block(1, 2, 3, U8, memory.data(), 0, 4, nullptr);
  block.setPlane(0, *MakeBlock(U8, 2, 3, {1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(memory, (Bytes{1, 2, 0xA5, 0xA5, 3, 4, 0xA5, 0xA5, 5, 6, 0xA5, 0xA5}));
}

TEST_P(PixelBlockPlane, SetPlaneFromABlockConvertsAndTakesOverTheMask) {
  const BlockPtr source = MakeBlockWithNoData(F32, 2, 2, {1, 1, 1, 1, 2.5, -3, 300, 7}, 7);
  const BlockPtr block = MakeBlock(U8, 2, 2, {9, 9, 9, 9});
  block->setPlaneFromPixelBlock(0, *source, 1);
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{3, 0, 255, 7}));
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{255, 255, 255, 0}));
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
  EXPECT_FALSE(block->getNODATAValue(0));
}

TEST_P(PixelBlockPlane, SetPlaneFromABlockOfAnotherClassConverts) {
  const ForeignBlock source(MakeBlock(F32, 2, 1, {2.5, -3}));
  const BlockPtr block = MakeBlock(S16, 2, 1, {9, 9});
  block->setPlaneFromPixelBlock(0, source, 0);
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{3, -3}));
  EXPECT_EQ(StoredCondition(*block, 0), tilx::ALLDATA);
}

TEST_P(PixelBlockPlane, SetPlaneFromABlockGoesRowByRowOnBothSides) {
  const Bytes sourceMemory{1, 2, 0, 0, 0, 3, 4, 0, 0, 0};
  Bytes sourceCopy = sourceMemory;
  PixelBlock source(1, 2, 2, U8, sourceCopy.data(), 0, 5, nullptr);
  source.setCondition(0, tilx::ALLDATA);
  std::vector<std::int16_t> memory(8, -1);
  PixelBlock block(1, 2, 2, S16, reinterpret_cast<unsigned char*>(memory.data()), 0, 8, nullptr);
  block.setPlaneFromPixelBlock(0, source, 0);
  EXPECT_EQ(memory, (std::vector<std::int16_t>{1, 2, -1, -1, 3, 4, -1, -1}));
  EXPECT_EQ(sourceCopy, sourceMemory);
}

TEST_P(PixelBlockPlane, ConvertKeepsMasksAndDropsNoDataValues) {
  const BlockPtr source = MakeBlockWithNoData(F64, 2, 1, {7, 2.5, 70000, -1}, 7);
  const BlockPtr converted = source->Convert(U16);
  EXPECT_EQ(converted->getDataType(), U16);
  EXPECT_EQ(ValuesOf(*converted, 0), (std::vector<double>{7, 3}));
  EXPECT_EQ(ValuesOf(*converted, 1), (std::vector<double>{65535, 0}));
  for (long i = 0; i < 2; ++i) {
    EXPECT_FALSE(converted->getNODATAValue(i));
    EXPECT_FALSE(converted->getMaskHasNODATAPrimacy(i));
  }
}

TEST_P(PixelBlockPlane, ConvertOfPlanesWithKnownMasksCopiesThem) {
  const BlockPtr source = MakeBlock(F64, 2, 1, {7, 2.5, 3, 4});
  SetMaskBytes(*source, 0, {100, 255});
  const BlockPtr converted = source->Convert(F32);
  EXPECT_EQ(MaskOf(*converted, 0), (Bytes{100, 255}));
  EXPECT_EQ(StoredCondition(*converted, 0), tilx::SOMEDATA);
  EXPECT_FALSE(IsDirty(*converted, 0));
  EXPECT_EQ(StoredCondition(*converted, 1), tilx::ALLDATA);
  EXPECT_TRUE(IsDirty(*converted, 1));
  EXPECT_FALSE(HasMask(*converted, 1));
}

TEST_P(PixelBlockPlane, ConvertOfRandomBlocksIsThatOfTheTwinForAllPairsOfTypes) {
  ForRandomTrials(13, [](Random& random) {
    const Rbuf_PixelType source = kAllTypes[random.Next() % kAllTypes.size()];
    const MadeBlock made = MakePlainBlock(random, source, 2, RandomSize(random), RandomLayout(random));
    made.block->setCompositeCondition(tilx::ALLDATA);
    for (const Rbuf_PixelType target : kAllTypes) {
      SCOPED_TRACE(std::string(reference::TypeName(source)) + " to " + reference::TypeName(target));
      const BlockPtr converted = made.block->Convert(target);
      for (long i = 0; i < 2; ++i)
        EXPECT_TRUE(SamePixels(target, reference::ConvertPixels(target, PixelBytesOf(*made.block, i), source),
                               PixelBytesOf(*converted, i), source != target));
    }
  });
}

TEST_P(PixelBlockPlane, StackIsAViewOfAllPlanes) {
  const BlockPtr block = MakeBlock(S16, 2, 1, {1, 2, 3, 4});
  const TilxPixelRectStack stack(block->asPixelRectStack());
  ASSERT_EQ(stack->count, 2);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(stack.datalayer(i)->data, block->getPlaneData(i)->data);
    EXPECT_NE(stack.datalayer(i)->external, 0);
    EXPECT_EQ(stack.datalayer(i)->numElements, 2);
  }
}

TEST_P(PixelBlockPlane, FirstRecordIsReachedLikeAPointer) {
  const BlockPtr block = MakeBlock(S16, 2, 1, {1, 2, 3, 4});
  EXPECT_EQ((*block)->columns, 2);
  _Rbuf_BaseData* record = *block;
  EXPECT_EQ(record, block->getPlaneData(0));
  PixelBlock empty;
  ExpectFailure(Kind::BareRuntimeError, "Empty Pixel Block",
                [&] { static_cast<void>(static_cast<_Rbuf_BaseData*>(empty)); });
  ExpectFailure(Kind::BareRuntimeError, "Empty Pixel Block", [&] { static_cast<void>(empty->rows); });
}

TEST_P(PixelBlockPlane, PitchBetweenPlanesIsThatOfTheFirstTwo) {
  EXPECT_EQ(MakeBlock(S16, 2, 1, {1, 2})->getPlanePitch(), 0);
  Bytes memory(100);
  EXPECT_EQ(PixelBlock(3, 2, 2, U8, memory.data(), 30, 2, nullptr).getPlanePitch(), 30);
  EXPECT_EQ(PixelBlock(3, 2, 2, U8, memory.data() + 80, -30, 2, nullptr).getPlanePitch(), -30);
}

} // namespace
