/// Which copies share and which are deep.
#include "rasterops/pixelblock.h"

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

/// Two planes with a NODATA value; plane 0 has a clean mask and primacy.
BlockPtr Source() {
  const BlockPtr block = MakeBlockWithNoData(S16, 2, 1, {7, 1, 7, 2}, 7);
  block->setMaskHasNODATAPrimacy(0, true);
  return block;
}

BlockPtr CloneOf(const PixelBlock& block) {
  return boost::dynamic_pointer_cast<PixelBlock>(block.Clone());
}

RASTEROPS_SIMD_SUITE(PixelBlockCopy);

TEST_P(PixelBlockCopy, CopyConstructorAssignmentAndSetFromShareEverything) {
  const BlockPtr source = Source();
  const PixelBlock constructed(*source);
  PixelBlock assigned;
  EXPECT_EQ(&(assigned = *source), &assigned);
  PixelBlock set;
  set.SetFrom(*source);
  for (const PixelBlock* copy :
       {&constructed, static_cast<const PixelBlock*>(&assigned), static_cast<const PixelBlock*>(&set)}) {
    const StateOf from(*source);
    const StateOf to(*copy);
    EXPECT_EQ(to->m_Planes.get(), from->m_Planes.get());
    EXPECT_EQ(to->m_Masks.get(), from->m_Masks.get());
    EXPECT_EQ(to->m_NoDataValues.get(), from->m_NoDataValues.get());
    EXPECT_EQ(to->m_PlanesCondition.get(), from->m_PlanesCondition.get());
    EXPECT_EQ(to->m_MaskDirty.get(), from->m_MaskDirty.get());
    EXPECT_EQ(to->m_MaskHasPrimacy.get(), from->m_MaskHasPrimacy.get());
    EXPECT_EQ(copy->getNumOfPlanes(), 2);
  }
  source->setCondition(1, tilx::NODATA);
  EXPECT_EQ(constructed.getCondition(1), tilx::NODATA)
      << "a condition set through one is seen through the other";
  EXPECT_EQ(assigned.getCondition(1), tilx::NODATA);
  assigned.setCondition(1, tilx::ALLDATA);
  EXPECT_EQ(source->getCondition(1), tilx::ALLDATA);
}

TEST_P(PixelBlockCopy, SharedPixelsOutliveTheirSource) {
  BlockPtr source = Source();
  const PixelBlock copy(*source);
  source.reset();
  EXPECT_EQ(ValuesOf(copy, 1), (std::vector<double>{7, 2}));
}

TEST_P(PixelBlockCopy, AssignmentToItselfKeepsTheBlock) {
  const BlockPtr block = Source();
  PixelBlock& same = *block;
  *block = same;
  block->SetFrom(*block);
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{7, 1}));
}

TEST_P(PixelBlockCopy, SetFromABlockOfAnotherClassRaisesAfterReplacingTheContentsByAnEmptyBlock) {
  const ForeignBlock foreign(MakeBlock(F32, 3, 2, {1, 2, 3, 4, 5, 6}));
  PixelBlock target(*Source());
  ExpectFailure(Kind::BareRuntimeError, "tilx::PixelBlock::SetFrom TODO", [&] { target.SetFrom(foreign); });
  EXPECT_EQ(target.getNumOfPlanes(), 1);
  EXPECT_EQ(target.getWidth(), 3);
  EXPECT_EQ(target.getHeight(), 2);
  EXPECT_EQ(target.getDataType(), F32);
  EXPECT_EQ(ValuesOf(target, 0), std::vector<double>(6, 0.0));
  EXPECT_EQ(StoredCondition(target, 0), tilx::NODATA);
}

TEST_P(PixelBlockCopy, CloneOfABlockWithACleanMaskKeepsTheMaskAndTheFlags) {
  const BlockPtr source = Source();
  const BlockPtr clone = CloneOf(*source);
  EXPECT_TRUE(HasMask(*clone, 0));
  EXPECT_FALSE(HasMask(*clone, 1));
  EXPECT_FALSE(IsDirty(*clone, 0));
  EXPECT_TRUE(IsDirty(*clone, 1));
  EXPECT_TRUE(clone->getMaskHasNODATAPrimacy(0));
  EXPECT_FALSE(clone->getMaskHasNODATAPrimacy(1));
  EXPECT_EQ(StoredCondition(*clone, 0), tilx::SOMEDATA);
  EXPECT_EQ(StoredCondition(*clone, 1), tilx::UNKNOWN);
  EXPECT_TRUE(SameState(Snapshot(*source), Snapshot(*clone)));
}

TEST_P(PixelBlockCopy, GetPlaneOfABlockWithACleanMaskLosesTheMaskAndMarksItDirty) {
  const BlockPtr source = Source();
  PixelBlock plane;
  source->getPlane(0, plane);
  EXPECT_EQ(plane.getNumOfPlanes(), 1);
  EXPECT_FALSE(HasMask(plane, 0));
  EXPECT_TRUE(IsDirty(plane, 0));
  EXPECT_TRUE(plane.getMaskHasNODATAPrimacy(0));
  EXPECT_EQ(StoredCondition(plane, 0), tilx::SOMEDATA);
  EXPECT_EQ(reference::Load<std::int16_t>(plane.getNODATAValue(0).get()), 7);
  EXPECT_EQ(plane.getPlaneData(0)->data, source->getPlaneData(0)->data);
  plane.setCondition(0, tilx::ALLDATA);
  EXPECT_EQ(StoredCondition(*source, 0), tilx::SOMEDATA) << "the pixels are shared, the state is not";
}

TEST_P(PixelBlockCopy, CloneIsDeep) {
  const BlockPtr source = Source();
  const BlockPtr clone = CloneOf(*source);
  SetPixelBytes(source->getPlaneData(0), PixelsOf(S16, {9, 9}));
  SetMaskBytes(*source, 0, {255, 255});
  SetNoData(*source, 0, 5);
  source->setCondition(1, tilx::NODATA);
  EXPECT_EQ(ValuesOf(*clone, 0), (std::vector<double>{7, 1}));
  EXPECT_EQ(MaskOf(*clone, 0), (Bytes{0, 255}));
  EXPECT_EQ(reference::Load<std::int16_t>(clone->getNODATAValue(0).get()), 7);
  EXPECT_EQ(StoredCondition(*clone, 1), tilx::UNKNOWN);
}

TEST_P(PixelBlockCopy, CloneOfAnEmptyBlockIsEmpty) {
  EXPECT_EQ(PixelBlock().Clone()->getNumOfPlanes(), 0);
}

TEST_P(PixelBlockCopy, CloneFromPlanesTakesTheListedPlanesInOrderWithRepeats) {
  const BlockPtr source = Source();
  const auto clone = boost::dynamic_pointer_cast<PixelBlock>(source->CloneFromPlanes({1, 0, 0}));
  ASSERT_EQ(clone->getNumOfPlanes(), 3);
  EXPECT_EQ(ValuesOf(*clone, 0), (std::vector<double>{7, 2}));
  EXPECT_EQ(ValuesOf(*clone, 1), (std::vector<double>{7, 1}));
  EXPECT_EQ(ValuesOf(*clone, 2), (std::vector<double>{7, 1}));
  EXPECT_FALSE(HasMask(*clone, 0));
  EXPECT_TRUE(HasMask(*clone, 1));
  EXPECT_TRUE(HasMask(*clone, 2));
  EXPECT_NE(clone->getMaskData(1)->data, clone->getMaskData(2)->data);
  EXPECT_NE(clone->getPlaneData(1)->data, clone->getPlaneData(2)->data);
  EXPECT_NE(clone->getNODATAValue(1).get(), clone->getNODATAValue(2).get());
  EXPECT_EQ(StoredCondition(*clone, 0), tilx::UNKNOWN);
  EXPECT_EQ(StoredCondition(*clone, 2), tilx::SOMEDATA);
}

TEST_P(PixelBlockCopy, CloneFromAnEmptyListHasNoPlanes) {
  const auto clone = Source()->CloneFromPlanes({});
  EXPECT_EQ(clone->getNumOfPlanes(), 0);
  EXPECT_EQ(clone->getWidth(), 0);
  EXPECT_EQ(clone->getHeight(), 0);
  EXPECT_EQ(static_cast<int>(clone->getDataType()), -1);
  EXPECT_EQ(clone->getNumBytes(), -1);
}

TEST_P(PixelBlockCopy, CloneFromAPlaneThatDoesNotExistRaises) {
  for (const long plane : {-1L, 2L})
    ExpectFailureFrom(Kind::Rfault, "Plane index out of range", "pixelblock",
                      "tilx::PixelBlock::CloneFromPlanes", [&] {
                        Source()->CloneFromPlanes({0, plane});
                      });
}

TEST_P(PixelBlockCopy, CloneOfRandomBlocksIsEqualAndWithoutPadding) {
  ForRandomTrials(100, [](Random& random) {
    const MadeBlock made =
        MakeRandomBlock(random, random.Pick(kAllTypes), 3, RandomSize(random), RandomLayout(random));
    const BlockPtr clone = CloneOf(*made.block);
    EXPECT_TRUE(SameState(Snapshot(*made.block), Snapshot(*clone)));
    EXPECT_EQ(clone->getPlaneData(0)->pitch, clone->getWidth() * clone->getNumBytes());
  });
}

} // namespace
