/// Windows that share the pixels and masks of a block.
#include "rasterops/pixelblock.h"

#include "reference/masks.h"
#include "support/failures.h"
#include "support/foreignblock.h"
#include "support/randomblock.h"
#include "support/simdtest.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

namespace {

using namespace testsupport;
using reference::Bytes;
using tilx::PixelBlock;

using InterfacePtr = boost::shared_ptr<tilx::IPixelBlock>;

BlockPtr Window(const InterfacePtr& source, long column, long row, long width, long height) {
  return boost::dynamic_pointer_cast<PixelBlock>(PixelBlock::Derive(source, column, row, width, height));
}

/// Two planes of 3 x 2: 0 to 5 and 10 to 15.
BlockPtr Source() {
  return MakeBlock(U8, 3, 2, {0, 1, 2, 3, 4, 5, 10, 11, 12, 13, 14, 15});
}

RASTEROPS_SIMD_SUITE(DerivedPixelBlock);

TEST_P(DerivedPixelBlock, OfTheWholeBlockSharesAllPixelsAndWritesAreSeenInTheSource) {
  const BlockPtr source = Source();
  const BlockPtr window = Window(source, 0, 0, 3, 2);
  ASSERT_TRUE(window);
  for (long i = 0; i < 2; ++i)
    EXPECT_EQ(window->getPlaneData(i)->data, source->getPlaneData(i)->data);
  SetPixelBytes(window->getPlaneData(1), {9, 9, 9, 9, 9, 9});
  EXPECT_EQ(ValuesOf(*source, 1), std::vector<double>(6, 9));
}

TEST_P(DerivedPixelBlock, LooksAtTheWindowOfEveryPlane) {
  const BlockPtr source = Source();
  const BlockPtr window = Window(source, 1, 1, 2, 1);
  EXPECT_EQ(window->getNumOfPlanes(), 2);
  EXPECT_EQ(window->getWidth(), 2);
  EXPECT_EQ(window->getHeight(), 1);
  EXPECT_EQ(window->getDataType(), U8);
  EXPECT_EQ(ValuesOf(*window, 0), (std::vector<double>{4, 5}));
  EXPECT_EQ(ValuesOf(*window, 1), (std::vector<double>{14, 15}));
  EXPECT_EQ(window->getPlanePitch(), source->getPlanePitch());
  EXPECT_EQ(window->getPlaneData(0)->pitch, source->getPlaneData(0)->pitch);
}

TEST_P(DerivedPixelBlock, ArgumentsAreTestedInTheirOrder) {
  const InterfacePtr source = Source();
  const auto fails = [&](const char* message, long column, long row, long width, long height) {
    ExpectFailure(Kind::BareRuntimeError, message,
                  [&] { PixelBlock::Derive(source, column, row, width, height); });
  };
  fails("Invalid width", 0, 0, 0, 1);
  fails("Invalid width", 0, 0, 4, 1);
  fails("Invalid width", -1, -1, -1, -1);
  fails("Invalid height", 0, 0, 1, 0);
  fails("Invalid height", 0, 0, 1, 3);
  fails("Invalid height", -1, -1, 1, -1);
  fails("Invalid columnOffset", -1, 0, 1, 1);
  fails("Invalid columnOffset", 3, -1, 1, 1);
  fails("Invalid rowOffset", 0, -1, 1, 1);
  fails("Invalid rowOffset", 0, 2, 1, 1);
}

TEST_P(DerivedPixelBlock, ColumnOffsetEqualToTheWidthRaises) {
  ExpectFailure(Kind::BareRuntimeError, "Invalid columnOffset",
                [] { PixelBlock::Derive(Source(), 3, 0, 1, 1); });
}

TEST_P(DerivedPixelBlock, RunningPastTheEndOfTheBlockRaises) {
  EXPECT_EQ(FailureOf([] { PixelBlock::Derive(Source(), 2, 0, 2, 1); }).kind, Kind::Rfault);
  EXPECT_EQ(FailureOf([] { PixelBlock::Derive(Source(), 0, 1, 1, 2); }).kind, Kind::Rfault);
}

TEST_P(DerivedPixelBlock, OfPlanesThatAreNotEvenlySpacedIsNull) {
  Bytes memory(100);
  const auto state = boost::make_shared<PixelBlock::pixelBlockData>(
      3L, 2L, 2L, U8, memory.data(), 10L, 2L, static_cast<unsigned char* const*>(nullptr), nullptr);
  const auto block = boost::make_shared<PixelBlock>(state);
  block->setCompositeCondition(tilx::ALLDATA);
  EXPECT_TRUE(PixelBlock::Derive(block, 0, 0, 1, 1));
  state->m_Planes[2].reset(rbuf_BaseDataCreate(2, 2, U8, rbuf_RowMajor, memory.data() + 21, nullptr),
                           quent::rasterops::PixelRectDeleter());
  EXPECT_FALSE(PixelBlock::Derive(block, 0, 0, 1, 1));
}

TEST_P(DerivedPixelBlock, OfASomeDataBlockThatLiesFullyOnValidPixelsIsAllData) {
  const BlockPtr source = MakeBlockWithNoData(U8, 3, 1, {7, 1, 2}, 7);
  const BlockPtr valid = Window(source, 1, 0, 2, 1);
  EXPECT_EQ(StoredCondition(*valid, 0), tilx::ALLDATA);
  EXPECT_EQ(StoredCondition(*Window(source, 0, 0, 1, 1), 0), tilx::NODATA);
  EXPECT_EQ(StoredCondition(*Window(source, 0, 0, 2, 1), 0), tilx::SOMEDATA);
  EXPECT_EQ(source->getCondition(0), tilx::SOMEDATA);
  EXPECT_FALSE(IsDirty(*valid, 0));
  EXPECT_FALSE(IsDirty(*source, 0)) << "its mask was computed";
}

TEST_P(DerivedPixelBlock, SharesTheBytesOfTheMask) {
  const BlockPtr source = MakeBlockWithNoData(U8, 3, 2, {7, 1, 2, 3, 4, 5}, 7);
  const BlockPtr window = Window(source, 1, 1, 2, 1);
  EXPECT_EQ(window->getMaskData(0)->data, source->getMaskData(0)->data + source->getMaskData(0)->pitch + 1);
  static_cast<unsigned char*>(window->getMaskAccessor(0)->GetRowPtr(0))[1] = 0;
  EXPECT_EQ(MaskOf(*source, 0), (Bytes{0, 255, 255, 255, 255, 0}));
  EXPECT_EQ(StoredCondition(*window, 0), tilx::SOMEDATA);
  EXPECT_EQ(StoredCondition(*source, 0), tilx::SOMEDATA);
  EXPECT_EQ(ValuesOf(*source, 0), (std::vector<double>{7, 1, 2, 3, 4, 7})) << "filled through the window";
}

TEST_P(DerivedPixelBlock, WritingChangesNeitherConditionNorFlagsOfTheSource) {
  const BlockPtr source = Source();
  const BlockPtr window = Window(source, 0, 0, 1, 1);
  window->setPixelToNODATA(0, 0, 0);
  EXPECT_EQ(StoredCondition(*window, 0), tilx::NODATA);
  EXPECT_EQ(StoredCondition(*source, 0), tilx::ALLDATA);
  EXPECT_FALSE(IsDirty(*source, 0));
  EXPECT_EQ(MaskOf(*source, 0), (Bytes{0, 255, 255, 255, 255, 255})) << "the mask bytes are shared";
}

TEST_P(DerivedPixelBlock, HasCopiesOfTheNoDataValuesAndThePrimacyOfTheSource) {
  const BlockPtr source = MakeBlockWithNoData(U8, 1, 1, {7, 1}, 7);
  source->setMaskHasNODATAPrimacy(1, true);
  const BlockPtr window = Window(source, 0, 0, 1, 1);
  EXPECT_EQ(window->getNODATAValue(0)[0], 7);
  EXPECT_NE(window->getNODATAValue(0).get(), source->getNODATAValue(0).get());
  EXPECT_FALSE(window->getMaskHasNODATAPrimacy(0));
  EXPECT_TRUE(window->getMaskHasNODATAPrimacy(1));
}

TEST_P(DerivedPixelBlock, OfABlockOfAnotherClassHasNoNoDataValueAndNoPrimacy) {
  const BlockPtr source = MakeBlockWithNoData(U8, 2, 1, {7, 1}, 7);
  source->setMaskHasNODATAPrimacy(0, true);
  const BlockPtr window = Window(boost::make_shared<ForeignBlock>(source), 1, 0, 1, 1);
  EXPECT_FALSE(window->getNODATAValue(0));
  EXPECT_FALSE(window->getMaskHasNODATAPrimacy(0));
  EXPECT_EQ(StoredCondition(*window, 0), tilx::ALLDATA);
  EXPECT_EQ(ValuesOf(*window, 0), std::vector<double>{1});
}

TEST_P(DerivedPixelBlock, OfASourceWithoutMaskTakesItsCondition) {
  const BlockPtr source = Source();
  source->setConditionWithoutMarkingDirty(0, tilx::SOMEDATA); // clean, though no mask was ever made
  source->setConditionWithoutMarkingDirty(1, tilx::UNKNOWN);
  const BlockPtr window = Window(source, 0, 0, 2, 2);
  EXPECT_EQ(StoredCondition(*window, 0), tilx::SOMEDATA);
  EXPECT_EQ(StoredCondition(*window, 1), tilx::UNKNOWN);
  EXPECT_FALSE(IsDirty(*window, 0));
  EXPECT_FALSE(HasMask(*window, 0));
}

TEST_P(DerivedPixelBlock, OfASourceWhoseMaskCannotBeComputedRaises) {
  const BlockPtr source = Source();
  source->setCondition(1, tilx::SOMEDATA);
  ExpectFailure(Kind::Rfault,
                "Unable to compute the mask.  The condition requires a NoData value, and one isn't set.",
                [&] { PixelBlock::Derive(source, 0, 0, 1, 1); });
}

TEST_P(DerivedPixelBlock, KeepsTheSourceAlive) {
  BlockPtr source = Source();
  const boost::weak_ptr<PixelBlock> watched = source;
  BlockPtr window = Window(source, 1, 0, 2, 2);
  source.reset();
  EXPECT_FALSE(watched.expired());
  EXPECT_EQ(ValuesOf(*window, 0), (std::vector<double>{1, 2, 4, 5}));
  window.reset();
  EXPECT_TRUE(watched.expired());
}

TEST_P(DerivedPixelBlock, OfAWindowIsAWindowOfTheSource) {
  const BlockPtr source = MakeBlock(S16, 4, 4, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15});
  const BlockPtr inner = Window(Window(source, 1, 1, 3, 3), 1, 1, 2, 1);
  EXPECT_EQ(ValuesOf(*inner, 0), (std::vector<double>{10, 11}));
}

TEST_P(DerivedPixelBlock, OfRandomBlocksShowsTheRectangleOfPixelsAndMask) {
  ForRandomTrials(100, [](Random& random) {
    const Size size = RandomSize(random);
    const MadeBlock made = MakeRandomBlock(random, random.Pick(kAllTypes), 2, size, RandomLayout(random));
    for (long i = 0; i < 2; ++i)
      if (!made.block->canComputeMask(i))
        made.block->setCondition(i, tilx::NODATA);
    const int column = random.Between(0, size.width - 1);
    const int row = random.Between(0, size.height - 1);
    const int width = random.Between(1, size.width - column);
    const int height = random.Between(1, size.height - row);
    const BlockPtr window = Window(made.block, column, row, width, height);
    ASSERT_TRUE(window);
    for (long i = 0; i < 2; ++i) {
      const auto bytes = static_cast<std::size_t>(made.block->getNumBytes());
      const Bytes pixels = PixelBytesOf(*made.block, i);
      const Bytes mask = MaskOf(*made.block, i);
      Bytes expectedPixels;
      Bytes expectedMask;
      for (int r = row; r < row + height; ++r) {
        const std::size_t first = static_cast<std::size_t>(r) * static_cast<std::size_t>(size.width) +
                                  static_cast<std::size_t>(column);
        const std::size_t end = first + static_cast<std::size_t>(width);
        expectedPixels.insert(expectedPixels.end(), &pixels[first * bytes], &pixels[0] + end * bytes);
        expectedMask.insert(expectedMask.end(), &mask[first], &mask[0] + end);
      }
      EXPECT_EQ(PixelBytesOf(*window, i), expectedPixels);
      EXPECT_EQ(MaskOf(*window, i), expectedMask);
      EXPECT_EQ(StoredCondition(*window, i), reference::ScanMask(expectedMask));
    }
  });
}

} // namespace
