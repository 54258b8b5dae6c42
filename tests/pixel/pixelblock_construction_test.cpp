/// What a new block holds, for each constructor.
#include "rasterops/pixelblock.h"

#include "reference/conversion.h"
#include "support/failures.h"
#include "support/foreignblock.h"
#include "support/randomblock.h"
#include "support/simdtest.h"

#include <boost/make_shared.hpp>

#include <numeric>

namespace {

using namespace testsupport;
using reference::Bytes;
using tilx::PixelBlock;

RASTEROPS_SIMD_SUITE(PixelBlockConstruction);

TEST_P(PixelBlockConstruction, DefaultBlockHasNoPlanes) {
  const PixelBlock block;
  EXPECT_EQ(block.getNumOfPlanes(), 0);
  EXPECT_EQ(block.getWidth(), 0);
  EXPECT_EQ(block.getHeight(), 0);
  EXPECT_EQ(static_cast<int>(block.getDataType()), -1);
  EXPECT_EQ(block.getNumBytes(), -1);
  EXPECT_EQ(block.getPlanePitch(), 0);
}

TEST_P(PixelBlockConstruction, NewBlockIsZeroedContiguousAndNoData) {
  for (const Rbuf_PixelType type : kAllTypes) {
    const PixelBlock block(3, 5, 4, type, nullptr);
    const int bytes = reference::PixelBytes(type);
    EXPECT_EQ(block.getNumOfPlanes(), 3);
    EXPECT_EQ(block.getWidth(), 5);
    EXPECT_EQ(block.getHeight(), 4);
    EXPECT_EQ(block.getDataType(), type);
    EXPECT_EQ(block.getNumBytes(), bytes);
    for (long i = 0; i < 3; ++i) {
      EXPECT_EQ(PixelBytesOf(block, i), Bytes(static_cast<std::size_t>(20 * bytes)));
      EXPECT_EQ(block.getCondition(i), tilx::NODATA);
      EXPECT_TRUE(IsDirty(block, i));
      EXPECT_FALSE(HasMask(block, i));
      EXPECT_FALSE(block.getMaskHasNODATAPrimacy(i));
      EXPECT_FALSE(block.getNODATAValue(i));
      EXPECT_EQ(block.getPlaneData(i)->data, block.getPlaneData(0)->data + i * block.getPlanePitch());
      EXPECT_EQ(block.getPlaneData(i)->objectType, rbuf_RowMajor);
      EXPECT_EQ(block.getPlaneData(i)->external != 0, i > 0) << "plane 0 owns the pixels of all";
    }
    EXPECT_GE(block.getPlanePitch(), 20 * bytes);
  }
}

TEST_P(PixelBlockConstruction, NewBlockWithNoDataValueSevenHoldsItEverywhereAndItsMaskIsAllZero) {
  unsigned char seven = 7;
  unsigned char* noData[] = {&seven, nullptr};
  PixelBlock block(2, 5, 3, U8, noData);
  EXPECT_EQ(PixelBytesOf(block, 0), Bytes(15, 7));
  EXPECT_EQ(PixelBytesOf(block, 1), Bytes(15, 0));
  EXPECT_EQ(block.getCondition(0), tilx::NODATA);
  EXPECT_EQ(MaskOf(block, 0), Bytes(15, 0));
  ASSERT_TRUE(block.getNODATAValue(0));
  EXPECT_NE(block.getNODATAValue(0).get(), &seven) << "the value is copied";
  EXPECT_FALSE(block.getNODATAValue(1));
}

TEST_P(PixelBlockConstruction, NoDataValuesMayLieAtAnyAddress) {
  for (const Rbuf_PixelType type : kAllTypes) {
    Random random(FirstSeed());
    const Bytes value = RandomPixel(random, type);
    Bytes shifted(value.size() + 1);
    std::copy(value.begin(), value.end(), shifted.begin() + 1);
    unsigned char* noData[] = {shifted.data() + 1};
    const PixelBlock block(1, 3, 3, type, noData);
    EXPECT_EQ(PixelBytesOf(block, 0), reference::FillPixels(value, 9));
    EXPECT_EQ(Bytes(block.getNODATAValue(0).get(), block.getNODATAValue(0).get() + value.size()), value);
  }
}

TEST_P(PixelBlockConstruction, AllocatedPixelsAreFollowedByAZeroedRow) {
  const PixelBlock block(2, 5, 4, U16, nullptr);
  const unsigned char* end = block.getPlaneData(1)->data + 4 * block.getPlaneData(1)->pitch;
  for (int i = 0; i < block.getPlaneData(1)->pitch; ++i)
    EXPECT_EQ(end[i], 0);
}

TEST_P(PixelBlockConstruction, WrappedBlockIsUnknownAndLeavesThePixelsAlone) {
  Bytes memory(200);
  std::iota(memory.begin(), memory.end(), static_cast<unsigned char>(0));
  const Bytes before = memory;
  unsigned char seven = 7;
  unsigned char* noData[] = {&seven, &seven};
  {
    const PixelBlock block(2, 5, 4, U8, memory.data() + 3, 60, 8, noData);
    EXPECT_EQ(block.getCondition(0), tilx::UNKNOWN);
    EXPECT_EQ(block.getCondition(1), tilx::UNKNOWN);
    EXPECT_TRUE(IsDirty(block, 1));
    EXPECT_FALSE(block.getMaskHasNODATAPrimacy(1));
    EXPECT_EQ(block.getWidth(), 5);
    EXPECT_EQ(block.getPlanePitch(), 60);
    const _Rbuf_BaseData* plane = block.getPlaneData(1);
    EXPECT_EQ(plane->data, memory.data() + 63);
    EXPECT_EQ(plane->storage, memory.data() + 63);
    EXPECT_EQ(plane->pitch, 8);
    EXPECT_EQ(plane->columns, 5);
    EXPECT_EQ(plane->numElements, 20);
    EXPECT_NE(plane->external, 0);
    EXPECT_EQ(plane->objectType, rbuf_RowMajor);
  }
  EXPECT_EQ(memory, before);
}

TEST_P(PixelBlockConstruction, WrappingNothingAllocatesAsANewBlock) {
  float value = 2.5f;
  unsigned char* noData[] = {reinterpret_cast<unsigned char*>(&value)};
  const PixelBlock block(1, 3, 2, F32, nullptr, 0, 0, noData);
  EXPECT_EQ(block.getCondition(0), tilx::NODATA);
  EXPECT_EQ(ValuesOf(block, 0), std::vector<double>(6, 2.5));
}

TEST_P(PixelBlockConstruction, PitchMustBeAMultipleOfThePixelSize) {
  Bytes memory(200);
  ExpectFailureFrom(Kind::Rfault, "Inter-row pitch is not an even multiple of the pixel size", "pixelblock",
                    "tilx::PixelBlock::pixelBlockData::Init",
                    [&] { PixelBlock(1, 5, 4, U16, memory.data(), 0, 11, nullptr); });
  EXPECT_EQ(PixelBlock(1, 5, 4, U16, memory.data(), 0, 12, nullptr).getPlaneData(0)->pitch, 12);
}

TEST_P(PixelBlockConstruction, FewerThanOnePlaneRaises) {
  for (const long planes : {0L, -3L})
    ExpectFailureFrom(Kind::Rfault, "Invalid noOfPlanes", "pixelblock",
                      "tilx::PixelBlock::pixelBlockData::Init",
                      [&] { PixelBlock(planes, 5, 4, U16, nullptr); });
}

TEST_P(PixelBlockConstruction, MorePixelsThanThereIsMemoryRaises) {
  ExpectFailure(Kind::Rfault, "No Memory", [] { PixelBlock(200000, 10000, 10000, C128, nullptr); });
}

TEST_P(PixelBlockConstruction, ABlockWithoutRowsOrColumnsCanBeMade) {
  for (const auto& [width, height] : {std::pair{0, 3}, std::pair{3, 0}, std::pair{0, 0}}) {
    PixelBlock block(2, width, height, F32, nullptr);
    EXPECT_EQ(block.getWidth(), width);
    EXPECT_EQ(block.getHeight(), height);
    EXPECT_EQ(MaskOf(block, 1), Bytes());
    EXPECT_EQ(block.getCondition(1), tilx::NODATA);
  }
}

TEST_P(PixelBlockConstruction, FromAStackCopiesEveryLayerAndIsAllData) {
  TilxPixelRectStack stack(tilx_PixelRectStackCreate(2, 3, 2, S16, nullptr));
  SetPixelBytes(stack.datalayer(0), PixelsOf(S16, {1, 2, 3, 4, 5, 6}));
  SetPixelBytes(stack.datalayer(1), PixelsOf(S16, {-1, -2, -3, -4, -5, -6}));
  const PixelBlock block(stack);
  SetPixelBytes(stack.datalayer(0), PixelsOf(S16, {0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(ValuesOf(block, 0), (std::vector<double>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(ValuesOf(block, 1), (std::vector<double>{-1, -2, -3, -4, -5, -6}));
  for (long i = 0; i < 2; ++i) {
    EXPECT_EQ(block.getCondition(i), tilx::ALLDATA);
    EXPECT_TRUE(IsDirty(block, i));
    EXPECT_FALSE(block.getMaskHasNODATAPrimacy(i));
    EXPECT_EQ(block.getPlaneData(i)->objectType, rbuf_RowMajor);
  }
}

TEST_P(PixelBlockConstruction, FromAStackTransposesColumnMajorLayers) {
  for (const Rbuf_PixelType type : kAllTypes) {
    Random random(FirstSeed());
    TilxPixelRectStack stack(rbuf_BaseDataStackCreate(1, 3, 2, type, rbuf_ColumnMajor, nullptr));
    const _Rbuf_BaseData* layer = stack.datalayer(0);
    const auto bytes = static_cast<std::size_t>(layer->pixelBytes);
    const Bytes pixels = RandomPixels(random, type, 6);
    std::copy(pixels.begin(), pixels.end(), layer->data); // column by column
    const PixelBlock block(stack);
    ASSERT_EQ(block.getHeight(), 3);
    ASSERT_EQ(block.getWidth(), 2);
    const Bytes rows = PixelBytesOf(block, 0);
    for (std::size_t r = 0; r < 3; ++r)
      for (std::size_t c = 0; c < 2; ++c)
        EXPECT_EQ(std::memcmp(&rows[(r * 2 + c) * bytes], &pixels[(c * 3 + r) * bytes], bytes), 0);
    EXPECT_EQ(block.getPlaneData(0)->objectType, rbuf_RowMajor);
  }
}

TEST_P(PixelBlockConstruction, FromNoStackOrAnEmptyOneRaises) {
  const std::string message = "Base data stack is null or contains no layers.";
  ExpectFailure(Kind::Rfault, message, [] { PixelBlock(static_cast<const _Rbuf_BaseDataStack*>(nullptr)); });
  TilxPixelRectStack empty(rbuf_BaseDataStackPtrCreate(0, nullptr));
  ASSERT_TRUE(static_cast<bool>(empty));
  ExpectFailure(Kind::Rfault, message, [&] { PixelBlock block(empty); });
}

TEST_P(PixelBlockConstruction, FromTheInterfaceCopiesPixelsAndMasksWithPrimacyAndWithoutNoDataValue) {
  const BlockPtr source = MakeBlockWithNoData(U8, 3, 1, {1, 7, 3, 4, 5, 6}, 7);
  const ForeignBlock foreign(source);
  for (const tilx::IPixelBlock* each : {static_cast<const tilx::IPixelBlock*>(source.get()),
                                        static_cast<const tilx::IPixelBlock*>(&foreign)}) {
    const PixelBlock copy(*each);
    EXPECT_EQ(ValuesOf(copy, 0), (std::vector<double>{1, 7, 3}));
    EXPECT_EQ(ValuesOf(copy, 1), (std::vector<double>{4, 5, 6}));
    EXPECT_NE(copy.getPlaneData(0)->data, source->getPlaneData(0)->data);
    EXPECT_EQ(StoredCondition(copy, 0), tilx::SOMEDATA);
    EXPECT_EQ(StoredCondition(copy, 1), tilx::ALLDATA);
    for (long i = 0; i < 2; ++i) {
      EXPECT_FALSE(IsDirty(copy, i));
      EXPECT_TRUE(HasMask(copy, i));
      EXPECT_TRUE(copy.getMaskHasNODATAPrimacy(i));
      EXPECT_FALSE(copy.getNODATAValue(i));
      EXPECT_NE(copy.getMaskData(i)->data, source->getMaskData(i)->data);
    }
    EXPECT_EQ(MaskOf(copy, 0), (Bytes{255, 0, 255}));
    EXPECT_EQ(MaskOf(copy, 1), (Bytes{255, 255, 255}));
  }
}

TEST_P(PixelBlockConstruction, FromAStateSharesItLockIncluded) {
  const auto state = boost::make_shared<PixelBlock::pixelBlockData>(
      1L, 2L, 2L, U8, nullptr, 0L, 0L, static_cast<unsigned char* const*>(nullptr), nullptr);
  PixelBlock first(state);
  PixelBlock second(state);
  first.setCondition(0, tilx::ALLDATA);
  EXPECT_EQ(MaskOf(first, 0), Bytes(4, 255));
  EXPECT_TRUE(HasMask(second, 0)) << "even the array of masks, made later, is shared";
  EXPECT_EQ(second.getCondition(0), tilx::ALLDATA);
}

} // namespace
