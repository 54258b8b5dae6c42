/// Windows that can be moved.
#include "rasterops/configurablepixelblock.h"

#include "support/blocks.h"
#include "support/failures.h"
#include "support/simdtest.h"

namespace {

using namespace testsupport;
using reference::Bytes;
using tilx::ConfigurablePixelBlock;
using tilx::PixelBlock;

/// Two planes of 3 x 2: 0 to 5 and 10 to 15.
BlockPtr Source() {
  return MakeBlock(U8, 3, 2, {0, 1, 2, 3, 4, 5, 10, 11, 12, 13, 14, 15});
}

RASTEROPS_SIMD_SUITE(ConfigurableBlock);

TEST_P(ConfigurableBlock, IsEmptyAtFirst) {
  ConfigurablePixelBlock block;
  EXPECT_EQ(block.getNumOfPlanes(), 0);
  EXPECT_EQ(block.getWidth(), 0);
  ExpectFailure(Kind::Rfault, "Invalid index", [&] { block.getPlaneData(0); });
}

TEST_P(ConfigurableBlock, SizeRecordsStackAndTextSeeTheWindow) {
  const BlockPtr source = Source();
  ConfigurablePixelBlock block(*source, 1, 1, 2, 1);
  EXPECT_EQ(block.getNumOfPlanes(), 2);
  EXPECT_EQ(block.getWidth(), 2);
  EXPECT_EQ(block.getHeight(), 1);
  EXPECT_EQ(block.getDataType(), U8);
  EXPECT_EQ(block.getNumBytes(), 1);
  EXPECT_EQ(block.getPlanePitch(), source->getPlanePitch());
  EXPECT_EQ(block.getPlaneData(1)->data, source->getPlaneData(1)->data + 4);
  const TilxPixelRectStack stack(block.asPixelRectStack());
  EXPECT_EQ(PixelBytesOf(stack.datalayer(0)), (Bytes{4, 5}));
  std::wstring text;
  block.ToString(text);
  EXPECT_EQ(text, L"{\n\t4,\t5\n}\n{\n\t14,\t15\n}\n");
  PixelBlock plane;
  static_cast<const tilx::IPixelBlock&>(block).getPlane(1, plane);
  EXPECT_EQ(ValuesOf(plane, 0), (std::vector<double>{14, 15}));
}

TEST_P(ConfigurableBlock, SetToNoDataSeesTheWindow) {
  const BlockPtr source = MakeBlockWithNoData(U8, 3, 2, {0, 1, 2, 3, 4, 5, 10, 11, 12, 13, 14, 15}, 99);
  source->setCompositeCondition(tilx::ALLDATA);
  ConfigurablePixelBlock block(*source, 1, 0, 2, 2);
  block.setPixelToNODATA(0, 0, 1);
  EXPECT_EQ(ValuesOf(*source, 0), (std::vector<double>{0, 1, 2, 3, 99, 5}));
  block.setPlaneToNODATA(1);
  EXPECT_EQ(ValuesOf(*source, 1), (std::vector<double>{10, 99, 99, 13, 99, 99}));
  block.setBlockToNODATA();
  EXPECT_EQ(ValuesOf(*source, 0), (std::vector<double>{0, 99, 99, 3, 99, 99}));
}

TEST_P(ConfigurableBlock, MasksConditionsValuesAndFlagsAreThoseOfTheWholeBlock) {
  const BlockPtr source = MakeBlockWithNoData(U8, 3, 1, {7, 1, 2}, 7);
  ConfigurablePixelBlock block(*source, 1, 0, 2, 1);
  block.computeMask(0);
  EXPECT_EQ(block.getCondition(0), tilx::SOMEDATA);
  EXPECT_EQ(MaskOf(block, 0), (Bytes{0, 255, 255}));
  EXPECT_EQ(block.getNODATAValue(0)[0], 7);
  block.setCondition(0, tilx::NODATA);
  EXPECT_EQ(source->getCondition(0), tilx::NODATA) << "the arrays are shared";
}

TEST_P(ConfigurableBlock, CloneConvertSyncAndAccessorsReadTheWholePlanes) {
  const BlockPtr source = MakeBlockWithNoData(U8, 3, 1, {7, 1, 2}, 7);
  ConfigurablePixelBlock block(*source, 1, 0, 2, 1);
  EXPECT_EQ(block.Clone()->getWidth(), 3);
  EXPECT_EQ(block.CloneFromPlanes({0})->getWidth(), 3);
  EXPECT_EQ(block.getPixelAccessor(0, true)->GetWidth(), 3);
  EXPECT_EQ(block.getMaskAccessor(0, true)->GetWidth(), 3);
  block.setCondition(0, tilx::NODATA);
  EXPECT_TRUE(block.syncNODATAFillWithMask(0, true));
  EXPECT_EQ(ValuesOf(*source, 0), (std::vector<double>{7, 7, 7}));
}

TEST_P(ConfigurableBlock, ReconfigureMovesTheWindow) {
  const BlockPtr source = Source();
  ConfigurablePixelBlock block(*source, 0, 0, 1, 1);
  for (int row = 0; row < 2; ++row)
    for (int column = 0; column < 3; ++column) {
      block.Reconfigure(column, row, 1, 1);
      EXPECT_EQ(ValuesOf(block, 0), std::vector<double>{3.0 * row + column});
      EXPECT_EQ(ValuesOf(block, 1), std::vector<double>{10 + 3.0 * row + column});
    }
  block.Reconfigure(0, 0, 3, 2);
  EXPECT_EQ(block.getWidth(), 3);
}

TEST_P(ConfigurableBlock, ReconfigureToAWindowOutsideRaisesAndKeepsTheWindow) {
  const BlockPtr source = Source();
  ConfigurablePixelBlock block(*source, 1, 1, 2, 1);
  const Failure failure = FailureOf([&] { block.Reconfigure(2, 0, 2, 1); });
  EXPECT_EQ(failure.kind, Kind::Rfault) << failure;
  EXPECT_EQ(failure.function, "tilx::ConfigurablePixelBlock::Reconfigure");
  EXPECT_EQ(ValuesOf(block, 0), (std::vector<double>{4, 5}));
  EXPECT_EQ(ValuesOf(block, 1), (std::vector<double>{14, 15}));
  EXPECT_EQ(FailureOf([&] { ConfigurablePixelBlock(*source, 0, -1, 1, 1); }).kind, Kind::Rfault);
}

TEST_P(ConfigurableBlock, ResetAfterReconfigureGivesBackTheWholeBlocksSize) {
  const BlockPtr source = Source();
  ConfigurablePixelBlock block(*source, 1, 1, 2, 1);
  block.Reconfigure(0, 0, 1, 1);
  block.reset();
  EXPECT_EQ(block.getWidth(), 3);
  EXPECT_EQ(block.getHeight(), 2);
  EXPECT_EQ(block.getPlaneData(1), source->getPlaneData(1));
  block.Reconfigure(2, 1, 1, 1);
  EXPECT_EQ(ValuesOf(block, 0), std::vector<double>{5});
  EXPECT_EQ(ValuesOf(*source, 0).size(), 6u) << "the source keeps its own records";
}

TEST_P(ConfigurableBlock, IndexOutOfRangeRaises) {
  const BlockPtr source = Source();
  ConfigurablePixelBlock block(*source, 1, 1, 2, 1);
  ConfigurablePixelBlock out;
  for (const long plane : {-1L, 2L}) {
    ExpectFailure(Kind::Rfault, "Invalid index", [&] { block.getPlaneData(plane); });
    EXPECT_EQ(FailureOf([&] { block.getPlane(plane, out); }).kind, Kind::Rfault);
  }
}

TEST_P(ConfigurableBlock, CopiesShareBlockAndWindow) {
  const BlockPtr source = Source();
  ConfigurablePixelBlock block(*source, 1, 1, 2, 1);
  const ConfigurablePixelBlock copy(block);
  ConfigurablePixelBlock assigned;
  assigned = block;
  EXPECT_EQ(ValuesOf(copy, 1), (std::vector<double>{14, 15}));
  EXPECT_EQ(ValuesOf(assigned, 1), (std::vector<double>{14, 15}));
  block.setCondition(0, tilx::SOMEDATA);
  EXPECT_EQ(copy.getCondition(0), tilx::SOMEDATA);
  EXPECT_EQ(assigned.getCondition(0), tilx::SOMEDATA);
  block.Reconfigure(0, 0, 1, 1);
  EXPECT_EQ(copy.getWidth(), 1) << "the window is shared";
  ConfigurablePixelBlock& same = assigned;
  assigned = same;
  EXPECT_EQ(assigned.getWidth(), 1);
}

TEST_P(ConfigurableBlock, PlaneIsAOnePlaneWindow) {
  const BlockPtr source = MakeBlockWithNoData(U8, 3, 1, {7, 1, 2, 7, 4, 5}, 7);
  source->setMaskHasNODATAPrimacy(1, true);
  ConfigurablePixelBlock block(*source, 1, 0, 2, 1);
  ConfigurablePixelBlock plane;
  block.getPlane(1, plane);
  EXPECT_EQ(plane.getNumOfPlanes(), 1);
  EXPECT_EQ(plane.getWidth(), 2);
  EXPECT_EQ(ValuesOf(plane, 0), (std::vector<double>{4, 5}));
  EXPECT_EQ(plane.getNODATAValue(0)[0], 7);
  EXPECT_EQ(StoredCondition(plane, 0), tilx::SOMEDATA);
  EXPECT_TRUE(IsDirty(plane, 0));
  EXPECT_TRUE(plane.getMaskHasNODATAPrimacy(0));
  EXPECT_TRUE(block.getMaskHasNODATAPrimacy(1));
}

TEST_P(ConfigurableBlock, RederiveSharesAllOfTheSourceAndOnlyTriesTheWindow) {
  const BlockPtr source = Source();
  PixelBlock out;
  ConfigurablePixelBlock::rederive(*source, 1, 1, 2, 1, out);
  EXPECT_EQ(out.getWidth(), 3);
  EXPECT_EQ(out.getPlaneData(1), source->getPlaneData(1));
  PixelBlock untouched;
  EXPECT_EQ(FailureOf([&] { ConfigurablePixelBlock::rederive(*source, 2, 1, 2, 1, untouched); }).kind,
            Kind::Rfault);
  EXPECT_EQ(untouched.getNumOfPlanes(), 0);
}

} // namespace
