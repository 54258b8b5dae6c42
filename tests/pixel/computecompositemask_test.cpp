/// Masks combined into one.
#include "rasterops/computecompositemask.h"

#include "rasterops/pixelblock.h"
#include "reference/masks.h"
#include "support/failures.h"
#include "support/randomblock.h"
#include "support/simdtest.h"

#include <boost/make_shared.hpp>

namespace {

using namespace testsupport;
using reference::Bytes;
using tilx::ComputeCompositeMask;
using tilx::DataContentsCondition;

using RectPtr = boost::shared_ptr<_Rbuf_BaseData>;

RectPtr NewMask(int width, int height, const Bytes& bytes) {
  RectPtr mask(tilx_PixelRectCreate(width, height, U8, nullptr), quent::rasterops::PixelRectDeleter());
  SetPixelBytes(mask.get(), bytes);
  return mask;
}

/// What a run makes of masks of one size.
reference::MaskResult Combined(int width, int height, const std::vector<Bytes>& masks) {
  ComputeCompositeMask op;
  const auto params = op.CreateParams();
  boost::shared_array<RectPtr> inputs(new RectPtr[masks.size() + 1]);
  for (std::size_t i = 0; i < masks.size(); ++i)
    inputs[static_cast<std::ptrdiff_t>(i)] = NewMask(width, height, masks[i]);
  const RectPtr composite =
      NewMask(width, height, Bytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 33));
  const auto condition = boost::make_shared<DataContentsCondition>(tilx::NODATA);
  params->SetMaskArraySize(static_cast<long>(masks.size()));
  params->SetMaskArray(inputs);
  params->SetCompositeMask(composite);
  params->SetDataCondition(condition);
  EXPECT_TRUE(op(params));
  for (std::size_t i = 0; i < masks.size(); ++i)
    EXPECT_EQ(PixelBytesOf(inputs[static_cast<std::ptrdiff_t>(i)].get()), masks[i]) << "an input was written";
  return {PixelBytesOf(composite.get()), *condition};
}

RASTEROPS_SIMD_SUITE(ComputeCompositeMaskOp);

TEST_P(ComputeCompositeMaskOp, ParametersAreNullAtFirst) {
  const auto params = ComputeCompositeMask().CreateParams();
  EXPECT_EQ(params->GetMaskArraySize(), 0);
  EXPECT_FALSE(params->GetMaskArray());
  EXPECT_FALSE(params->GetCompositeMask());
  EXPECT_FALSE(params->GetDataCondition());
}

TEST_P(ComputeCompositeMaskOp, OfAFullMaskAndOneWithAZeroHasThatZeroAndIsSomeData) {
  Bytes holed(130, 255);
  holed[71] = 0;
  for (const auto& masks : {std::vector<Bytes>{Bytes(130, 255), holed}, {holed, Bytes(130, 255)}}) {
    const reference::MaskResult result = Combined(130, 1, masks);
    EXPECT_EQ(result.mask, holed);
    EXPECT_EQ(result.condition, tilx::SOMEDATA);
  }
}

TEST_P(ComputeCompositeMaskOp, WhoseLastMaskHoldsOneHundredHoldsItTooAndIsSomeData) {
  const reference::MaskResult result = Combined(7, 3, {Bytes(21, 255), Bytes(21, 100)});
  EXPECT_EQ(result.mask, Bytes(21, 100));
  EXPECT_EQ(result.condition, tilx::SOMEDATA);
}

TEST_P(ComputeCompositeMaskOp, OfOneMaskOfZerosIsNoData) {
  const reference::MaskResult result = Combined(7, 3, {Bytes(21, 0)});
  EXPECT_EQ(result.mask, Bytes(21, 0));
  EXPECT_EQ(result.condition, tilx::NODATA);
}

TEST_P(ComputeCompositeMaskOp, OfFullMasksIsAllData) {
  const reference::MaskResult result = Combined(65, 2, {Bytes(130, 255), Bytes(130, 255)});
  EXPECT_EQ(result.mask, Bytes(130, 255));
  EXPECT_EQ(result.condition, tilx::ALLDATA);
}

TEST_P(ComputeCompositeMaskOp, OfNoMasksIsFullAndUnknown) {
  const reference::MaskResult result = Combined(7, 3, {});
  EXPECT_EQ(result.mask, Bytes(21, 255));
  EXPECT_EQ(result.condition, tilx::UNKNOWN);
}

TEST_P(ComputeCompositeMaskOp, OfMasksWithoutPixelsIsUnknown) {
  EXPECT_EQ(Combined(0, 0, {Bytes()}).condition, tilx::UNKNOWN);
}

TEST_P(ComputeCompositeMaskOp, TakesTheByteMinimumNotTheLogicalAnd) {
  const reference::MaskResult result = Combined(3, 1, {{200, 1, 255}, {100, 2, 254}});
  EXPECT_EQ(result.mask, (Bytes{100, 1, 254}));
  EXPECT_EQ(result.condition, tilx::SOMEDATA);
}

TEST_P(ComputeCompositeMaskOp, MissingMembersAndSizesThatDoNotFitRaise) {
  ComputeCompositeMask op;
  EXPECT_EQ(
      FailureOf([&] { op(boost::shared_ptr<ComputeCompositeMask::ComputeCompositeMaskParams>()); }).kind,
      Kind::Cpp);
  const auto params = op.CreateParams();
  EXPECT_EQ(FailureOf([&] { op(params); }).kind, Kind::Cpp);
  boost::shared_array<RectPtr> inputs(new RectPtr[1]);
  inputs[0] = NewMask(3, 1, Bytes(3));
  params->SetMaskArraySize(1);
  params->SetMaskArray(inputs);
  params->SetCompositeMask(NewMask(2, 1, Bytes(2)));
  params->SetDataCondition(boost::make_shared<DataContentsCondition>(tilx::NODATA));
  EXPECT_EQ(FailureOf([&] { op(params); }).kind, Kind::Cpp);
}

TEST_P(ComputeCompositeMaskOp, IsThatOfTheTwinForRandomMasks) {
  ForRandomTrials(150, [](Random& random) {
    const Size size = RandomSize(random);
    const std::size_t count = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
    std::vector<Bytes> masks;
    for (int i = random.Between(1, 4); i > 0; --i)
      masks.push_back(RandomMask(random, count, random.Pick(kAllPatterns)));
    const reference::MaskResult expected = reference::ComputeCompositeMask(masks, count);
    const reference::MaskResult actual = Combined(size.width, size.height, masks);
    EXPECT_TRUE(SamePixels(U8, expected.mask, actual.mask));
    EXPECT_EQ(expected.condition, actual.condition);
  });
}

} // namespace
