/// Masks from NODATA fill.
#include "rasterops/computemask.h"

#include "reference/masks.h"
#include "support/failures.h"
#include "support/randomblock.h"
#include "support/simdtest.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using namespace testsupport;
using reference::Bytes;
using tilx::ComputeMask;
using tilx::DataContentsCondition;

using RectPtr = boost::shared_ptr<_Rbuf_BaseData>;

/// A plane, its mask, and what a run of the operator makes of them.
struct MaskRun {
  RectPtr plane;
  RectPtr mask;
  boost::shared_array<unsigned char> noData;
  boost::shared_ptr<DataContentsCondition> condition =
      boost::make_shared<DataContentsCondition>(tilx::UNKNOWN);

  static RectPtr NewRect(int width, int height, Rbuf_PixelType type) {
    return RectPtr(tilx_PixelRectCreate(width, height, type, nullptr), quent::rasterops::PixelRectDeleter());
  }
  MaskRun(int width, int height, Rbuf_PixelType type)
      : plane(NewRect(width, height, type)), mask(NewRect(width, height, U8)) {
    std::fill_n(mask->data, width * height, 77);
  }
  MaskRun(Rbuf_PixelType type, const std::vector<double>& values)
      : MaskRun(static_cast<int>(values.size()), 1, type) {
    SetPixelBytes(plane.get(), PixelsOf(type, values));
  }
  void SetNoData(const Bytes& value) {
    noData.reset(new unsigned char[value.size()]);
    std::copy(value.begin(), value.end(), noData.get());
  }
  void SetNoData(double value) { SetNoData(PixelsOf(plane->pixelType, {value})); }
  void Run() {
    ComputeMask op;
    const auto params = op.CreateParams();
    params->SetPixelBlock(plane);
    params->SetMaskBlock(mask);
    params->SetNODATAValue(noData);
    params->SetDataCondition(condition);
    EXPECT_TRUE(op(params));
  }
  Bytes Mask() const { return PixelBytesOf(mask.get()); }
};

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

RASTEROPS_SIMD_SUITE(ComputeMaskOp);

TEST_P(ComputeMaskOp, ParametersAreNullAtFirst) {
  const auto params = ComputeMask().CreateParams();
  EXPECT_FALSE(params->GetPixelBlock());
  EXPECT_FALSE(params->GetMaskBlock());
  EXPECT_FALSE(params->GetNODATAValue());
  EXPECT_FALSE(params->GetDataCondition());
}

TEST_P(ComputeMaskOp, NoDataWithoutANoDataValueGivesAMaskOfZerosAndStays) {
  MaskRun run(U8, {1, 2, 3});
  *run.condition = tilx::NODATA;
  run.Run();
  EXPECT_EQ(run.Mask(), Bytes(3, 0));
  EXPECT_EQ(*run.condition, tilx::NODATA);
}

TEST_P(ComputeMaskOp, UnknownWithoutANoDataValueGivesAFullMaskAndAllData) {
  for (const auto incoming : {tilx::UNKNOWN, tilx::SOMEDATA, tilx::ALLDATA}) {
    MaskRun run(U8, {1, 2, 3});
    *run.condition = incoming;
    run.Run();
    EXPECT_EQ(run.Mask(), Bytes(3, 255));
    EXPECT_EQ(*run.condition, tilx::ALLDATA);
  }
}

TEST_P(ComputeMaskOp, AllDataIsBelievedWithoutLookingAtThePixels) {
  MaskRun run(U8, {7, 7, 7});
  run.SetNoData(7);
  *run.condition = tilx::ALLDATA;
  run.Run();
  EXPECT_EQ(run.Mask(), Bytes(3, 255));
  EXPECT_EQ(*run.condition, tilx::ALLDATA);
}

TEST_P(ComputeMaskOp, NoDataIsBelievedWithoutLookingAtThePixels) {
  MaskRun run(U8, {1, 2, 3});
  run.SetNoData(7);
  *run.condition = tilx::NODATA;
  run.Run();
  EXPECT_EQ(run.Mask(), Bytes(3, 0));
  EXPECT_EQ(*run.condition, tilx::NODATA);
}

TEST_P(ComputeMaskOp, SomeDataAndConditionsThatMeanNothingAreScanned) {
  for (const int incoming : {2, -1, 17}) {
    MaskRun run(U8, {7, 2, 3});
    run.SetNoData(7);
    *run.condition = static_cast<DataContentsCondition>(incoming);
    run.Run();
    EXPECT_EQ(run.Mask(), (Bytes{0, 255, 255}));
    EXPECT_EQ(*run.condition, tilx::SOMEDATA);
  }
}

TEST_P(ComputeMaskOp, NanAsNoDataMatchesNanOfAnyPayload) {
  MaskRun run(6, 1, F32);
  const std::uint32_t pixels[] = {0x7FC00000u, 0xFFC00001u, 0x7F800001u, 0x7F800000u, 0xFF800000u, 0u};
  std::memcpy(run.plane->data, pixels, sizeof pixels);
  run.SetNoData(kNan);
  run.Run();
  EXPECT_EQ(run.Mask(), (Bytes{0, 0, 0, 255, 255, 255})); // infinities are valid
  EXPECT_EQ(*run.condition, tilx::SOMEDATA);
}

TEST_P(ComputeMaskOp, NanIsValidUnderAnotherNoDataValue) {
  MaskRun run(F64, {kNan, 3, kInfinity});
  run.SetNoData(3);
  run.Run();
  EXPECT_EQ(run.Mask(), (Bytes{255, 0, 255}));
}

TEST_P(ComputeMaskOp, NegativeZeroEqualsZeroAsNoData) {
  for (const Rbuf_PixelType type : {F32, F64}) {
    MaskRun run(type, {-0.0, 0.0, 1.0});
    run.SetNoData(0.0);
    run.Run();
    EXPECT_EQ(run.Mask(), (Bytes{0, 0, 255}));
    run.SetNoData(-0.0);
    *run.condition = tilx::UNKNOWN;
    run.Run();
    EXPECT_EQ(run.Mask(), (Bytes{0, 0, 255}));
  }
}

TEST_P(ComputeMaskOp, ComplexPixelsMatchByTheirBits) {
  MaskRun run(4, 1, C64);
  const float pixels[] = {0.0f, 1.0f, -0.0f, 1.0f, 0.0f, -1.0f, kNan, 1.0f};
  std::memcpy(run.plane->data, pixels, sizeof pixels);
  Bytes value(8);
  std::memcpy(value.data(), pixels, 8);
  run.SetNoData(value);
  run.Run();
  EXPECT_EQ(run.Mask(), (Bytes{0, 255, 255, 255}));
  std::memcpy(value.data(), pixels + 6, 8); // a NaN matches the same bits
  run.SetNoData(value);
  *run.condition = tilx::UNKNOWN;
  run.Run();
  EXPECT_EQ(run.Mask(), (Bytes{255, 255, 255, 0}));
}

TEST_P(ComputeMaskOp, APlaneInWhichNoPixelIsNoDataIsAllData) {
  MaskRun run(S16, {1, 2, 3});
  run.SetNoData(-9999);
  run.Run();
  EXPECT_EQ(*run.condition, tilx::ALLDATA);
  EXPECT_EQ(run.Mask(), Bytes(3, 255));
}

TEST_P(ComputeMaskOp, APlaneInWhichAllPixelsAreNoDataIsNoData) {
  MaskRun run(S16, {-9999, -9999, -9999});
  run.SetNoData(-9999);
  run.Run();
  EXPECT_EQ(*run.condition, tilx::NODATA);
  EXPECT_EQ(run.Mask(), Bytes(3, 0));
}

TEST_P(ComputeMaskOp, APlaneWithoutPixelsStaysUnknown) {
  MaskRun run(0, 3, U8);
  run.SetNoData(1);
  *run.condition = tilx::SOMEDATA;
  run.Run();
  EXPECT_EQ(*run.condition, tilx::UNKNOWN);
}

TEST_P(ComputeMaskOp, OneBitTypesCompareAsBytes) {
  MaskRun run(2, 1, U1);
  SetPixelBytes(run.plane.get(), {200, 1});
  run.SetNoData(Bytes{200});
  run.Run();
  EXPECT_EQ(run.Mask(), (Bytes{0, 255}));
}

TEST_P(ComputeMaskOp, ATypeBeyondTheThirteenRaises) {
  MaskRun run(U8, {1});
  run.SetNoData(1);
  run.plane->pixelType = static_cast<Rbuf_PixelType>(13);
  ExpectFailureFrom(Kind::Cpp, "Unsupported PixelType", "computemask", "tilx::ComputeMask::operator ()",
                    [&] { run.Run(); });
}

TEST_P(ComputeMaskOp, MissingMembersAreNamed) {
  ComputeMask op;
  EXPECT_EQ(FailureOf([&] { op(boost::shared_ptr<ComputeMask::ComputeMaskParams>()); }).kind, Kind::Cpp);
  EXPECT_EQ(FailureOf([&] { op(op.CreateParams()); }).kind, Kind::Cpp);
}

TEST_P(ComputeMaskOp, IsThatOfTheTwinForRandomPlanes) {
  ForRandomTrials(150, [](Random& random) {
    const Rbuf_PixelType type = random.Pick(kAllTypes);
    const Size size = RandomSize(random);
    const MadeBlock made = MakeRandomBlock(random, type, 1, size, RandomLayout(random));
    const reference::Block model = Snapshot(*made.block);
    const reference::Plane& plane = model.planes[0];
    MaskRun run(size.width, size.height, type);
    // The plane with its own pitch, the mask a window of a larger one.
    const RectPtr outer = MaskRun::NewRect(size.width + 5, size.height + 2, U8);
    std::fill_n(outer->data, outer->numElements, 77);
    run.mask.reset(rbuf_BaseDataReDerive(outer.get(), nullptr, 1, 3, size.height, size.width, nullptr),
                   quent::rasterops::PixelRectDeleter());
    run.plane.reset(const_cast<_Rbuf_BaseData*>(made.block->getPlaneData(0)), [](_Rbuf_BaseData*) {});
    if (plane.noData)
      run.SetNoData(*plane.noData);
    for (const auto incoming : {tilx::UNKNOWN, tilx::ALLDATA, tilx::SOMEDATA}) {
      *run.condition = incoming;
      run.Run();
      const reference::MaskResult expected = reference::ComputeMask(plane, incoming);
      EXPECT_EQ(*run.condition, expected.condition) << reference::TypeName(type);
      EXPECT_TRUE(SamePixels(U8, expected.mask, run.Mask())) << reference::TypeName(type);
    }
    // Nothing around the window was written.
    SetPixelBytes(run.mask.get(), Bytes(plane.PixelCount(), 77));
    EXPECT_EQ(PixelBytesOf(outer.get()), Bytes(static_cast<std::size_t>(outer->numElements), 77));
  });
}

} // namespace
