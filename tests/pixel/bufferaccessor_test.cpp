/// Row access to pixels and masks, and what the release of an accessor does.
#include "rasterops/bufferaccessor.h"

#include "rasterops/maskbufferaccessor.h"
#include "rasterops/pixelblock.h"
#include "rasterops/pixelbufferaccessor.h"
#include "rcommon/rbufbasedata.h"
#include "reference/masks.h"
#include "support/failures.h"
#include "support/randomblock.h"
#include "support/simdtest.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

namespace {

using namespace testsupport;
using reference::Bytes;
using tilx::MaskBufferAccessor;
using tilx::PixelBlock;
using tilx::PixelBufferAccessor;

unsigned char* Row(tilx::BufferAccessor& accessor, int row) {
  return static_cast<unsigned char*>(accessor.GetRowPtr(row));
}

/// The accessor's own class, on which a condition can be stated.
template <class Accessor>
boost::shared_ptr<Accessor> As(const boost::shared_ptr<tilx::BufferAccessor>& taken) {
  const auto accessor = boost::dynamic_pointer_cast<Accessor>(taken);
  EXPECT_TRUE(accessor);
  return accessor;
}

RASTEROPS_SIMD_SUITE(BufferAccess);

TEST_P(BufferAccess, GivesSizePitchAndRows) {
  Bytes memory(40);
  PixelBlock block(1, 3, 2, U16, memory.data() + 2, 0, 10, nullptr);
  block.setCondition(0, tilx::ALLDATA);
  const auto pixels = block.getPixelAccessor(0, true);
  EXPECT_EQ(pixels->GetWidth(), 3);
  EXPECT_EQ(pixels->GetHeight(), 2);
  EXPECT_EQ(pixels->GetPitch(), 10);
  EXPECT_EQ(pixels->GetRowPtr(1), memory.data() + 12);
  EXPECT_EQ(As<PixelBufferAccessor>(pixels)->GetPixelType(), U16);
  EXPECT_EQ(As<PixelBufferAccessor>(pixels)->GetCondition(), tilx::ALLDATA);
  const auto mask = block.getMaskAccessor(0, true);
  EXPECT_EQ(mask->GetWidth(), 3);
  EXPECT_EQ(mask->GetHeight(), 2);
  EXPECT_EQ(Row(*mask, 1), block.getMaskData(0)->data + mask->GetPitch());
  EXPECT_EQ(Row(*mask, 1)[2], 255);
  EXPECT_EQ(As<MaskBufferAccessor>(mask)->GetCondition(), tilx::ALLDATA);
}

TEST_P(BufferAccess, ClonedBufferBelongsToTheCaller) {
  const BlockPtr block = MakeBlock(S16, 2, 2, {1, 2, 3, 4});
  const auto accessor = block->getPixelAccessor(0, true);
  const RbufBaseData clone(accessor->CloneBuffer());
  SetPixelBytes(block->getPlaneData(0), PixelsOf(S16, {0, 0, 0, 0}));
  EXPECT_EQ(PixelBytesOf(clone), PixelsOf(S16, {1, 2, 3, 4}));
  EXPECT_EQ(clone->external, 0);
  EXPECT_EQ(clone->objectType, rbuf_RowMajor);
}

TEST_P(BufferAccess, ClonedBufferOfAPaddedPlaneHoldsItsPixels) {
  Bytes memory{1, 2, 9, 9, 3, 4};
  PixelBlock block(1, 2, 2, U8, memory.data(), 0, 4, nullptr);
  const RbufBaseData clone(block.getPixelAccessor(0, true)->CloneBuffer());
  EXPECT_EQ(PixelBytesOf(clone), (Bytes{1, 2, 3, 4}));
}

TEST_P(BufferAccess, TakingAMaskAccessorComputesTheMaskOrRaises) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {7, 1}, 7);
  block->getMaskAccessor(0, true);
  EXPECT_FALSE(IsDirty(*block, 0));
  block->setNODATAValue(0, nullptr);
  EXPECT_EQ(FailureOf([&] { block->getMaskAccessor(0, true); }).kind, Kind::Rfault);
}

TEST_P(BufferAccess, ReadingChangesNothingAtRelease) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {7, 1}, 7);
  block->computeMask(0);
  const reference::Block before = Snapshot(*block);
  Row(*block->getPixelAccessor(0, true), 0)[1] = 7;
  Row(*block->getMaskAccessor(0, true), 0);
  SetPixelBytes(block->getPlaneData(0), {7, 1});
  EXPECT_TRUE(SameState(before, Snapshot(*block)));
}

TEST_P(BufferAccess, WritablePixelAccessorOfWhichNoRowWasTakenChangesNothingAtRelease) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {7, 1}, 7);
  block->computeMask(0);
  const reference::Block before = Snapshot(*block);
  block->getPixelAccessor(0);
  block->getPixelAccessor(0, false);
  EXPECT_TRUE(SameState(before, Snapshot(*block)));
}

TEST_P(BufferAccess, WrittenPixelsAreFollowedByMaskAndCondition) {
  const BlockPtr block = MakeBlockWithNoData(U8, 3, 1, {7, 1, 2}, 7);
  block->computeMask(0);
  {
    const auto accessor = block->getPixelAccessor(0);
    unsigned char* row = Row(*accessor, 0);
    row[0] = 5;
    row[2] = 7;
    EXPECT_EQ(MaskOf(*block, 0), (Bytes{0, 255, 255})) << "not before the release";
  }
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{255, 255, 0}));
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
}

TEST_P(BufferAccess, WrittenPixelsUnderPrimacyLeaveTheMaskAlone) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {7, 1}, 7);
  block->setMaskHasNODATAPrimacy(0, true);
  Row(*block->getPixelAccessor(0), 0)[1] = 7;
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{0, 255}));
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
}

TEST_P(BufferAccess, WrittenPixelsWithoutMaskOrNoDataValueLeaveTheConditionAlone) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {7, 1});
  Row(*block->getPixelAccessor(0), 0)[1] = 7;
  EXPECT_EQ(StoredCondition(*block, 0), tilx::ALLDATA);
  EXPECT_TRUE(IsDirty(*block, 0));
}

TEST_P(BufferAccess, WritableMaskAccessorWhoseRowsAreAllSetToZeroEndsAsNoDataWithThePixelsFilled) {
  for (const bool hasNoData : {true, false}) {
    const BlockPtr block = MakeBlock(S16, 2, 2, {1, 2, 3, 4});
    if (hasNoData)
      SetNoData(*block, 0, -9999);
    block->setCondition(0, tilx::ALLDATA);
    {
      const auto accessor = block->getMaskAccessor(0);
      for (int row = 0; row < 2; ++row)
        std::fill_n(Row(*accessor, row), 2, 0);
    }
    EXPECT_EQ(StoredCondition(*block, 0), tilx::NODATA);
    EXPECT_FALSE(IsDirty(*block, 0));
    EXPECT_EQ(ValuesOf(*block, 0),
              hasNoData ? std::vector<double>(4, -9999) : (std::vector<double>{1, 2, 3, 4}));
  }
}

TEST_P(BufferAccess, WrittenMaskHasTheLastWordOverSetCondition) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  {
    const auto accessor = block->getMaskAccessor(0);
    Row(*accessor, 0)[0] = 0;
    block->setCondition(0, tilx::ALLDATA);
  }
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
}

TEST_P(BufferAccess, AfterSetConditionOnAMaskAccessorFurtherRowsCauseNoRescan) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {1, 2}, 7);
  block->setCondition(0, tilx::ALLDATA);
  {
    const auto accessor = As<MaskBufferAccessor>(block->getMaskAccessor(0));
    Row(*accessor, 0)[0] = 0;
    accessor->SetCondition(tilx::ALLDATA, false);
    Row(*accessor, 0)[1] = 0;
  }
  EXPECT_EQ(StoredCondition(*block, 0), tilx::ALLDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
  EXPECT_EQ(MaskOf(*block, 0), (Bytes{0, 0}));
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{1, 2})) << "the fill is not brought into line";
}

TEST_P(BufferAccess, SetConditionMarksDirtyWhenAskedTo) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  As<PixelBufferAccessor>(block->getPixelAccessor(0))->SetCondition(tilx::NODATA, true);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::NODATA);
  EXPECT_TRUE(IsDirty(*block, 0));
  As<PixelBufferAccessor>(block->getPixelAccessor(0))->SetCondition(tilx::SOMEDATA, false);
  EXPECT_EQ(StoredCondition(*block, 0), tilx::SOMEDATA);
  EXPECT_FALSE(IsDirty(*block, 0));
}

TEST_P(BufferAccess, SetConditionOnAReadOnlyAccessorRaisesTheSameWordsForMaskAndPixels) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  const std::string message = "SetCondition was called on a Read-Only MaskBufferAccessor";
  ExpectFailure(Kind::Cpp, message, [&] {
    As<MaskBufferAccessor>(block->getMaskAccessor(0, true))->SetCondition(tilx::NODATA, true);
  });
  ExpectFailure(Kind::Cpp, message, [&] {
    As<PixelBufferAccessor>(block->getPixelAccessor(0, true))->SetCondition(tilx::NODATA, true);
  });
  EXPECT_EQ(StoredCondition(*block, 0), tilx::ALLDATA);
}

TEST_P(BufferAccess, AnAccessorKeepsTheStateOfTheBlockAlive) {
  BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  const auto accessor = block->getPixelAccessor(0);
  block.reset();
  EXPECT_EQ(Row(*accessor, 0)[1], 2);
}

TEST_P(BufferAccess, ReleaseAfterRandomPixelsIsThatOfTheTwin) {
  ForRandomTrials(150, [](Random& random) {
    const Rbuf_PixelType type = random.Pick(kAllTypes);
    const MadeBlock made = MakeRandomBlock(random, type, 2, RandomSize(random), RandomLayout(random));
    const Bytes outside = made.BytesOutside();
    reference::Block model = Snapshot(*made.block);
    {
      const auto accessor = made.block->getPixelAccessor(1);
      accessor->GetRowPtr(0);
      const Bytes written = RandomPixels(random, type, model.planes[1].PixelCount());
      SetPixelBytes(made.block->getPlaneData(1), written);
      model.planes[1].pixels = written;
    }
    reference::ReleaseWrittenPixels(model, 1);
    EXPECT_TRUE(SameState(model, Snapshot(*made.block))) << reference::TypeName(type);
    EXPECT_EQ(outside, made.BytesOutside());
  });
}

TEST_P(BufferAccess, ReleaseAfterARandomMaskIsThatOfTheTwin) {
  int ran = 0;
  ForRandomTrials(200, [&](Random& random) {
    const Rbuf_PixelType type = random.Pick(kAllTypes);
    const MadeBlock made = MakeRandomBlock(random, type, 2, RandomSize(random), RandomLayout(random));
    const Bytes outside = made.BytesOutside();
    reference::Block model = Snapshot(*made.block);
    const Bytes mask = RandomMask(random, model.planes[1].PixelCount(), random.Pick(kAllPatterns));
    try {
      reference::GetMask(model, 1) = mask;
      reference::ReleaseWrittenMask(model, 1);
    } catch (const std::runtime_error&) {
      return; // the mask cannot be computed, or the release would end the process
    }
    {
      const auto accessor = made.block->getMaskAccessor(1);
      accessor->GetRowPtr(0);
      SetPixelBytes(made.block->getMaskData(1), mask);
    }
    EXPECT_TRUE(SameState(model, Snapshot(*made.block))) << reference::TypeName(type);
    EXPECT_EQ(outside, made.BytesOutside());
    ++ran;
  });
  EXPECT_GT(ran, 100);
}

using BufferAccessDeathTest = BufferAccess;
INSTANTIATE_TEST_SUITE_P(Simd, BufferAccessDeathTest, testing::ValuesIn(quent::rasterops::SimdTargets()),
                         [](const auto& target) { return target.param; });

TEST_P(BufferAccessDeathTest, AFullMaskOverThePlanesNoDataValueEndsTheProcess) {
  EXPECT_DEATH(
      {
        const BlockPtr block = MakeBlockWithNoData(U8, 2, 1, {7, 1}, 7);
        block->setCondition(0, tilx::ALLDATA);
        block->getMaskAccessor(0)->GetRowPtr(0);
      },
      "");
}

} // namespace
