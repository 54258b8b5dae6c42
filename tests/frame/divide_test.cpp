/// Divide: planes, single elements, masks, conditions and failures.
#include "rasterops/divide.h"

#include "frame/divideruns.h"
#include "support/failures.h"
#include "support/simdtest.h"

#include <boost/make_shared.hpp>

namespace {

using namespace testsupport;
using quent::rasterops::Divide;
using quent::rasterops::DivideParams;
using reference::Bytes;

RASTEROPS_SIMD_SUITE(DivideOp);

TEST_P(DivideOp, ParametersAreNullAtFirst) {
  const auto params = boost::dynamic_pointer_cast<DivideParams>(Divide().CreateParams());
  ASSERT_TRUE(params);
  EXPECT_FALSE(params->GetDividendBlock());
  EXPECT_FALSE(params->GetDivisorBlock());
  EXPECT_FALSE(params->GetResultBlock());
}

TEST_P(DivideOp, TenByThreeIsThree) {
  const BlockPtr result = Quotient(U8, {10}, {3});
  EXPECT_EQ(ValuesOf(*result, 0), Values{3});
  EXPECT_EQ(result->getCondition(0), tilx::ALLDATA);
  EXPECT_FALSE(IsDirty(*result, 0));
}

TEST_P(DivideOp, ADivisorOfZeroMasksThePixelAndLeavesItAsItWas) {
  const BlockPtr result = Quotient(U8, {10, 10, 10}, {3, 0, 2});
  EXPECT_EQ(ValuesOf(*result, 0), (Values{3, 77, 5}));
  EXPECT_EQ(MaskOf(*result, 0), (Bytes{255, 0, 255}));
  EXPECT_EQ(result->getCondition(0), tilx::SOMEDATA);
}

TEST_P(DivideOp, ADivisorOfZeroGivesTheNoDataValueOfTheResultIfItHasOne) {
  const BlockPtr result = MakeBlockWithNoData(U8, 3, 1, {77, 77, 77}, 99);
  RunDivide(MakeBlock(U8, 3, 1, {10, 10, 10}), MakeBlock(U8, 3, 1, {3, 0, 2}), result);
  EXPECT_EQ(ValuesOf(*result, 0), (Values{3, 99, 5}));
  EXPECT_EQ(result->getCondition(0), tilx::SOMEDATA);
}

TEST_P(DivideOp, AOnePlaneDivisorDividesAllThreePlanesOfTheDividend) {
  const BlockPtr result = MakeBlock(S16, 2, 1, Values(6));
  RunDivide(MakeBlock(S16, 2, 1, {10, 20, 30, 40, 50, 60}), MakeBlock(S16, 2, 1, {10, 5}), result);
  EXPECT_EQ(ValuesOf(*result, 0), (Values{1, 4}));
  EXPECT_EQ(ValuesOf(*result, 1), (Values{3, 8}));
  EXPECT_EQ(ValuesOf(*result, 2), (Values{5, 12}));
}

TEST_P(DivideOp, AThreePlaneDivisorUnderAOnePlaneDividendGivesThreePlanes) {
  const BlockPtr result = MakeBlock(S16, 2, 1, Values(6));
  RunDivide(MakeBlock(S16, 2, 1, {60, 120}), MakeBlock(S16, 2, 1, {1, 2, 3, 4, 5, 0}), result);
  EXPECT_EQ(ValuesOf(*result, 0), (Values{60, 60}));
  EXPECT_EQ(ValuesOf(*result, 1), (Values{20, 30}));
  EXPECT_EQ(ValuesOf(*result, 2), (Values{12, 0}));
  EXPECT_EQ(result->getCondition(1), tilx::ALLDATA);
  EXPECT_EQ(result->getCondition(2), tilx::SOMEDATA);
}

TEST_P(DivideOp, ADivisorOfOneElementDividesTheWholeDividend) {
  const BlockPtr divisor = MakeBlock(F32, 1, 1, {4});
  ASSERT_EQ(divisor->getPlaneData(0)->numElements, 1);
  const BlockPtr result = MakeBlock(F32, 3, 2, Values(6));
  RunDivide(MakeBlock(F32, 3, 2, {1, 2, 3, 4, 5, 6}), divisor, result);
  EXPECT_EQ(ValuesOf(*result, 0), (Values{0.25, 0.5, 0.75, 1, 1.25, 1.5}));
}

TEST_P(DivideOp, ADividendOfOneElementIsDividedByTheWholeDivisor) {
  const BlockPtr result = MakeBlock(F32, 3, 2, Values(6));
  RunDivide(MakeBlock(F32, 1, 1, {12}), MakeBlock(F32, 3, 2, {1, 2, 3, 4, 6, 0}), result);
  EXPECT_EQ(ValuesOf(*result, 0), (Values{12, 6, 4, 3, 2, 0}));
  EXPECT_EQ(MaskOf(*result, 0), (Bytes{255, 255, 255, 255, 255, 0}));
}

TEST_P(DivideOp, ADivisorElementOfZeroMasksEveryPixel) {
  EXPECT_EQ(MaskOf(*Quotient(U16, {1, 2, 3}, {0}), 0), Bytes(3, 0));
}

TEST_P(DivideOp, AnInvalidElementMasksEveryPixel) {
  const BlockPtr divisor = MakeBlockWithNoData(U16, 1, 1, {5}, 5);
  const BlockPtr result = MakeBlock(U16, 3, 1, {77, 77, 77});
  RunDivide(MakeBlock(U16, 3, 1, {10, 20, 30}), divisor, result);
  EXPECT_EQ(MaskOf(*result, 0), Bytes(3, 0));
  EXPECT_EQ(ValuesOf(*result, 0), (Values{77, 77, 77}));
  EXPECT_EQ(result->getCondition(0), tilx::NODATA);
}

TEST_P(DivideOp, PlanesThatAreBothNoDataGetTheConditionAndNothingElse) {
  const BlockPtr dividend = MakeBlock(U8, 2, 1, {10, 10, 20, 20});
  const BlockPtr divisor = MakeBlock(U8, 2, 1, {2, 2, 2, 2});
  dividend->setCondition(0, tilx::NODATA);
  divisor->setCondition(0, tilx::NODATA);
  const BlockPtr result = MakeBlockWithNoData(U8, 2, 1, {77, 78, 79, 80}, 99);
  result->computeMasks();
  RunDivide(dividend, divisor, result);
  EXPECT_EQ(StoredCondition(*result, 0), tilx::NODATA);
  EXPECT_TRUE(IsDirty(*result, 0));
  EXPECT_EQ(ValuesOf(*result, 0), (Values{77, 78})) << "not even filled";
  EXPECT_EQ(PixelBytesOf(StateOf(*result)->m_Masks[0].get()), (Bytes{255, 255}));
  EXPECT_EQ(ValuesOf(*result, 1), (Values{10, 10}));
}

TEST_P(DivideOp, ANoDataPlaneWithAPartnerThatHasDataComesOutWithNoValidPixel) {
  for (const auto partner : {tilx::ALLDATA, tilx::SOMEDATA}) {
    const BlockPtr dividend = MakeBlockWithNoData(U8, 2, 1, {10, 99}, 99);
    dividend->setCondition(0, partner);
    const BlockPtr divisor = MakeBlock(U8, 2, 1, {2, 2});
    divisor->setCondition(0, tilx::NODATA);
    const BlockPtr result = MakeBlockWithNoData(U8, 2, 1, {77, 78}, 50);
    RunDivide(dividend, divisor, result);
    EXPECT_EQ(MaskOf(*result, 0), (Bytes{0, 0}));
    EXPECT_EQ(StoredCondition(*result, 0), tilx::NODATA);
    EXPECT_FALSE(IsDirty(*result, 0));
    EXPECT_EQ(ValuesOf(*result, 0), (Values{50, 50}));
  }
}

TEST_P(DivideOp, AnAllDataPlaneOverZerosEndsAsNoData) {
  const BlockPtr result = Quotient(S32, {1, 2, 3}, {0, 0, 0});
  EXPECT_EQ(result->getCondition(0), tilx::NODATA);
  EXPECT_FALSE(IsDirty(*result, 0));
  EXPECT_EQ(MaskOf(*result, 0), Bytes(3, 0));
}

TEST_P(DivideOp, MaskedPixelsOfEitherInputAreInvalid) {
  const BlockPtr dividend = MakeBlockWithNoData(F32, 4, 1, {-1, 6, 6, 6}, -1);
  const BlockPtr divisor = MakeBlockWithNoData(F32, 4, 1, {2, -9, 0, 2}, -9);
  const BlockPtr result = MakeBlock(F32, 4, 1, {77, 77, 77, 77});
  RunDivide(dividend, divisor, result);
  EXPECT_EQ(ValuesOf(*result, 0), (Values{77, 77, 77, 3}));
  EXPECT_EQ(MaskOf(*result, 0), (Bytes{0, 0, 0, 255}));
}

TEST_P(DivideOp, MaskBytesFromOneOnAreValid) {
  const BlockPtr dividend = MakeBlock(U8, 4, 1, {10, 10, 10, 10});
  SetMaskBytes(*dividend, 0, {0, 1, 254, 255});
  const BlockPtr result = MakeBlock(U8, 4, 1, {77, 77, 77, 77});
  RunDivide(dividend, MakeBlock(U8, 4, 1, {2, 2, 2, 2}), result);
  EXPECT_EQ(ValuesOf(*result, 0), (Values{77, 5, 5, 5}));
  EXPECT_EQ(MaskOf(*result, 0), (Bytes{0, 255, 255, 255}));
}

TEST_P(DivideOp, UnequalTypesRaiseAndLeaveTheResultUntouched) {
  const BlockPtr result = MakeBlock(S8, 1, 1, {77});
  const reference::Block before = Snapshot(*result);
  ExpectFailureFrom(Kind::Cpp, "Data types for divide must match!", "divide",
                    "quent::rasterops::Divide::runOnCPU",
                    [&] { RunDivide(MakeBlock(S8, 1, 1, {1}), MakeBlock(U16, 1, 1, {1}), result); });
  EXPECT_TRUE(SameState(before, Snapshot(*result)));
}

TEST_P(DivideOp, ATypeBeyondTheThirteenRaises) {
  const BlockPtr blocks[] = {MakeBlock(U8, 1, 1, {1}), MakeBlock(U8, 1, 1, {1}), MakeBlock(U8, 1, 1, {77})};
  for (const BlockPtr& block : blocks)
    const_cast<_Rbuf_BaseData*>(block->getPlaneData(0))->pixelType = static_cast<Rbuf_PixelType>(13);
  ExpectFailureFrom(Kind::Cpp, "Unsupported DataType", "divide", "quent::rasterops::Divide::runOnCPU",
                    [&] { RunDivide(blocks[0], blocks[1], blocks[2]); });
}

TEST_P(DivideOp, AnInputWhoseMaskCannotBeComputedRaisesAndPlanesBeforeItAreFinished) {
  const BlockPtr dividend = MakeBlock(U8, 2, 1, {10, 10, 20, 20});
  dividend->setCondition(1, tilx::UNKNOWN);
  const BlockPtr result = MakeBlock(U8, 2, 1, {77, 77, 77, 77});
  ExpectFailure(Kind::Rfault,
                "Unable to compute the mask.  The condition requires a NoData value, and one isn't set.",
                [&] {
                  RunDivide(dividend, MakeBlock(U8, 2, 1, {2, 2, 2, 2}), result);
                });
  EXPECT_EQ(ValuesOf(*result, 0), (Values{5, 5}));
  EXPECT_EQ(StoredCondition(*result, 0), tilx::ALLDATA);
  EXPECT_EQ(ValuesOf(*result, 1), (Values{77, 77}));
}

TEST_P(DivideOp, MissingBlocksAndParametersAreNamed) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 1});
  const auto named = [](const Failure& failure, const char* part) {
    EXPECT_EQ(failure.kind, Kind::Cpp) << failure;
    EXPECT_NE(failure.what.find(part), std::string::npos) << failure;
    EXPECT_NE((failure.what + failure.function).find("Divide"), std::string::npos) << failure;
  };
  named(FailureOf([&] { RunDivide(nullptr, block, block); }), "ividend");
  named(FailureOf([&] { RunDivide(block, nullptr, block); }), "ivisor");
  named(FailureOf([&] { RunDivide(block, block, nullptr); }), "esult");
  named(FailureOf([] { Divide()(nullptr); }), "");
  named(FailureOf([] { Divide()(boost::make_shared<quent::gpu::GPUOperation::Parameters>()); }), "");
}

TEST_P(DivideOp, BlocksThatDoNotFitRaise) {
  const BlockPtr two = MakeBlock(U8, 2, 1, {1, 1});
  const auto kind = [&](const BlockPtr& dividend, const BlockPtr& divisor, const BlockPtr& result) {
    return FailureOf([&] { RunDivide(dividend, divisor, result); }).kind;
  };
  EXPECT_EQ(kind(two, two, MakeBlock(U16, 2, 1, {1, 1})), Kind::Cpp) << "another type";
  EXPECT_EQ(kind(two, two, MakeBlock(U8, 1, 1, {1})), Kind::Cpp) << "too small";
  EXPECT_EQ(kind(MakeBlock(U8, 1, 1, {1, 1, 1}), two, MakeBlock(U8, 2, 1, {1, 1})), Kind::Cpp)
      << "too few planes";
  EXPECT_EQ(kind(MakeBlock(U8, 3, 1, {1, 1, 1}), two, MakeBlock(U8, 3, 1, {1, 1, 1})), Kind::Cpp)
      << "a divisor of neither one element nor the size of the dividend";
}

using DivideOpDeathTest = DivideOp;
INSTANTIATE_TEST_SUITE_P(Simd, DivideOpDeathTest, testing::ValuesIn(quent::rasterops::SimdTargets()),
                         [](const auto& target) { return target.param; });

TEST_P(DivideOpDeathTest, AResultThatIsAllValidAndHoldsItsNoDataValueEndsTheProcess) {
  const BlockPtr result = MakeBlockWithNoData(U8, 2, 1, {0, 0}, 5);
  EXPECT_DEATH(RunDivide(MakeBlock(U8, 2, 1, {10, 9}), MakeBlock(U8, 2, 1, {2, 3}), result), "");
}

} // namespace
