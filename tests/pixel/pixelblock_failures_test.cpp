/// Every message for planes and blocks that do not fit, and the kind of exception that carries it.
#include "rasterops/pixelblock.h"

#include "support/blocks.h"
#include "support/failures.h"
#include "support/simdtest.h"

#include <boost/make_shared.hpp>

#include <functional>
#include <limits>

namespace {

using namespace testsupport;
using tilx::PixelBlock;

/// One operation on plane `i` of a block.
struct Operation {
  const char* name;
  std::function<void(PixelBlock&, long)> run;
};

const Operation kInvalidIndex[] = {
    {"getCondition", [](PixelBlock& b, long i) { b.getCondition(i); }},
    {"setCondition", [](PixelBlock& b, long i) { b.setCondition(i, tilx::ALLDATA); }},
    {"computeMask", [](PixelBlock& b, long i) { b.computeMask(i); }},
    {"getMask",
     [](PixelBlock& b, long i) {
       PixelBlock out;
       b.getMask(i, out);
     }},
    {"setMask",
     [](PixelBlock& b, long i) {
       b.setMask(i, MakeBlock(U8, 2, 1, {1, 2}));
     }},
    {"setMask",
     [](PixelBlock& b, long i) { b.setMask(i, std::vector<boost::shared_ptr<tilx::IPixelBlock>>()); }},
    {"getPlane",
     [](PixelBlock& b, long i) {
       PixelBlock out;
       b.getPlane(i, out);
     }},
    {"getPlaneData", [](PixelBlock& b, long i) { b.getPlaneData(i); }},
    {"getNODATAValue", [](PixelBlock& b, long i) { b.getNODATAValue(i); }},
    {"setNODATAValue", [](PixelBlock& b, long i) { b.setNODATAValue(i, nullptr); }},
    {"getMaskHasNODATAPrimacy", [](PixelBlock& b, long i) { b.getMaskHasNODATAPrimacy(i); }},
    {"setMaskHasNODATAPrimacy", [](PixelBlock& b, long i) { b.setMaskHasNODATAPrimacy(i, false); }},
    {"setMaskFromPixelBlock",
     [](PixelBlock& b, long i) {
       b.setMaskFromPixelBlock(i, *MakeBlock(U8, 2, 1, {1, 2}), 0);
     }},
    {"setPlaneFromPixelBlock",
     [](PixelBlock& b, long i) {
       b.setPlaneFromPixelBlock(i, *MakeBlock(U8, 2, 1, {1, 2}), 0);
     }},
};

RASTEROPS_SIMD_SUITE(PixelBlockFailures);

TEST_P(PixelBlockFailures, InvalidIndexIsRaisedInTheNameOfTheOperation) {
  for (const Operation& operation : kInvalidIndex)
    for (const long plane : {-1L, 2L, std::numeric_limits<long>::max()}) {
      SCOPED_TRACE(operation.name);
      const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2, 3, 4});
      ExpectFailureFrom(Kind::Rfault, "Invalid index", "pixelblock",
                        std::string("tilx::PixelBlock::") + operation.name,
                        [&] { operation.run(*block, plane); });
    }
}

TEST_P(PixelBlockFailures, InvalidIndexIsRaisedByABlockWithoutPlanes) {
  for (const Operation& operation : kInvalidIndex) {
    SCOPED_TRACE(operation.name);
    PixelBlock block;
    ExpectFailure(Kind::Rfault, "Invalid index", [&] { operation.run(block, 0); });
  }
}

TEST_P(PixelBlockFailures, InvalidIndexWithACapitalIsRaisedByThreeOperations) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  for (const long plane : {-1L, 1L}) {
    ExpectFailureFrom(Kind::Rfault, "Invalid Index", "pixelblock", "tilx::PixelBlock::setPlaneToNODATA",
                      [&] { block->setPlaneToNODATA(plane); });
    ExpectFailureFrom(Kind::Cpp, "Invalid Index", "pixelblock", "tilx::PixelBlock::computeCondition",
                      [&] { block->computeCondition(plane); });
    ExpectFailureFrom(Kind::Cpp, "Invalid Index", "pixelblock",
                      "tilx::PixelBlock::setConditionWithoutMarkingDirty",
                      [&] { block->setConditionWithoutMarkingDirty(plane, tilx::ALLDATA); });
  }
}

TEST_P(PixelBlockFailures, AccessorsOfAPlaneThatDoesNotExistRaise) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  for (const long plane : {-1L, 1L}) {
    ExpectFailure(Kind::Rfault, "Invalid index", [&] { block->getPixelAccessor(plane, true); });
    ExpectFailure(Kind::Rfault, "Invalid index", [&] { block->getMaskAccessor(plane); });
  }
}

TEST_P(PixelBlockFailures, InvalidDimensionsAreRaisedForABlockOfAnotherSize) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  for (const BlockPtr& other : {MakeBlock(U8, 1, 2, {1, 2}), MakeBlock(U8, 2, 2, {1, 2, 3, 4})}) {
    ExpectFailureFrom(Kind::Rfault, "Invalid dimensions", "pixelblock",
                      "tilx::PixelBlock::setMaskFromPixelBlock",
                      [&] { block->setMaskFromPixelBlock(0, *other, 0); });
    ExpectFailureFrom(Kind::Rfault, "Invalid dimensions", "pixelblock",
                      "tilx::PixelBlock::setPlaneFromPixelBlock",
                      [&] { block->setPlaneFromPixelBlock(0, *other, 0); });
  }
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{1, 2}));
}

TEST_P(PixelBlockFailures, SetPlaneRejectsASourceWithoutPlanesOrOfAnotherShape) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  PixelBlock empty;
  ExpectFailureFrom(Kind::Rfault, "Invalid source PixelBlock", "pixelblock", "tilx::PixelBlock::setPlane",
                    [&] { block->setPlane(0, empty); });
  for (const BlockPtr& other :
       {MakeBlock(U8, 1, 1, {1}), MakeBlock(U8, 2, 2, {1, 2, 3, 4}), MakeBlock(S8, 2, 1, {1, 2})})
    ExpectFailureFrom(Kind::Rfault, "Invalid argument", "pixelblock", "tilx::PixelBlock::setPlane",
                      [&] { block->setPlane(0, *other); });
  EXPECT_EQ(ValuesOf(*block, 0), (std::vector<double>{1, 2}));
}

TEST_P(PixelBlockFailures, HomogenousConditionOfABlockWithoutPlanesRaises) {
  bool homogenous = false;
  ExpectFailureFrom(Kind::Rfault, "No planes on PixelBlock", "pixelblock",
                    "tilx::PixelBlock::getHomogenousCondition",
                    [&] { PixelBlock::getHomogenousCondition(PixelBlock(), homogenous); });
}

TEST_P(PixelBlockFailures, AMaskOfAnotherSizeOrTypeRaisesAndLeavesTheBlockAsItWas) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  for (const BlockPtr& mask : {MakeBlock(U8, 1, 1, {1}), MakeBlock(U16, 2, 1, {1, 2})}) {
    EXPECT_NE(FailureOf([&] { block->setMask(0, mask); }).kind, Kind::Nothing);
    EXPECT_NE(FailureOf([&] {
                block->setMask(0, std::vector<boost::shared_ptr<tilx::IPixelBlock>>{mask, mask});
              }).kind,
              Kind::Nothing);
    EXPECT_EQ(StoredCondition(*block, 0), tilx::ALLDATA);
    EXPECT_TRUE(IsDirty(*block, 0));
  }
  EXPECT_EQ(MaskOf(*block, 0), (reference::Bytes{255, 255}));
}

TEST_P(PixelBlockFailures, AnUnknownPixelTypeRaises) {
  const auto unknown = static_cast<Rbuf_PixelType>(13);
  EXPECT_EQ(FailureOf([&] { PixelBlock(1, 2, 2, unknown, nullptr); }).kind, Kind::Rfault);
  EXPECT_EQ(FailureOf([&] { MakeBlock(U8, 2, 1, {1, 2})->Convert(unknown); }).kind, Kind::Rfault);
}

} // namespace
