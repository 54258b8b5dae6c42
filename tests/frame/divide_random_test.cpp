/// Divide against its slow twin, for all types, conditions, masks, layouts and shapes.
#include "rasterops/divide.h"

#include "reference/divide.h"
#include "reference/masks.h"
#include "support/failures.h"
#include "support/randomblock.h"
#include "support/simdtest.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

namespace {

using namespace testsupport;
using quent::rasterops::Divide;
using quent::rasterops::DivideParams;
using reference::Bytes;

Failure RunDivide(const BlockPtr& dividend, const BlockPtr& divisor, const BlockPtr& result) {
  const auto params = boost::make_shared<DivideParams>();
  params->SetDividendBlock(dividend);
  params->SetDivisorBlock(divisor);
  params->SetResultBlock(result);
  return FailureOf([&] { EXPECT_TRUE(Divide()(params)); });
}

/// Runs operator and twin on the same blocks. False if the run would end the process and was left out.
bool Compare(const MadeBlock& dividend, const MadeBlock& divisor, const MadeBlock& result) {
  const Bytes outside = result.BytesOutside();
  reference::Block models[] = {Snapshot(*dividend.block), Snapshot(*divisor.block), Snapshot(*result.block)};
  // Blocks that are one block are one model.
  reference::Block& x = models[0];
  reference::Block& y = divisor.block == dividend.block ? models[0] : models[1];
  reference::Block& out = result.block == dividend.block ? x : result.block == divisor.block ? y : models[2];
  Failure expected;
  try {
    reference::Divide(x, y, out);
  } catch (const reference::MaskNotComputable& e) {
    expected = {Kind::Rfault, e.what(), "", "", 0};
  } catch (const reference::FillContradictsCondition&) {
    return false;
  }
  const Failure actual = RunDivide(dividend.block, divisor.block, result.block);
  EXPECT_EQ(actual.kind, expected.kind) << actual;
  EXPECT_EQ(actual.what, expected.what);
  if (expected.kind == Kind::Nothing) {
    EXPECT_TRUE(SameState(out, Snapshot(*result.block), true));
    for (auto& [model, block] :
         {std::pair<reference::Block&, BlockPtr>{x, dividend.block}, {y, divisor.block}}) {
      // Whether an input was asked for its condition, which may scan its mask, is left open.
      for (std::size_t i = 0; i < model.planes.size(); ++i)
        EXPECT_EQ(block->getCondition(static_cast<long>(i)), reference::GetCondition(model.planes[i]));
      EXPECT_TRUE(SameState(model, Snapshot(*block), true));
    }
  } else {
    const reference::Block left = Snapshot(*result.block);
    for (std::size_t i = 0; i < left.planes.size(); ++i)
      EXPECT_TRUE(SamePixels(left.planes[i].type, out.planes[i].pixels, left.planes[i].pixels, true));
  }
  EXPECT_EQ(outside, result.BytesOutside()) << "written outside the pixels of the result";
  return true;
}

/// Numbers of planes of both inputs: equal, or one against many.
std::pair<int, int> RandomPlanes(Random& random) {
  static constexpr std::pair<int, int> planes[] = {{1, 1}, {1, 1}, {2, 2}, {1, 3}, {3, 1}};
  return random.Pick(planes);
}

RASTEROPS_SIMD_SUITE(DivideRandom);

TEST_P(DivideRandom, PlanesAreThoseOfTheTwin) {
  int ran = 0;
  ForRandomTrials(1300, [&](Random& random) {
    const Rbuf_PixelType type = random.Pick(kAllTypes);
    SCOPED_TRACE(reference::TypeName(type));
    const auto [planesA, planesB] = RandomPlanes(random);
    const Size size = RandomSize(random);
    const bool oneElementA = random.Chance(10);
    const bool oneElementB = random.Chance(15);
    const Size larger = oneElementA && oneElementB ? Size{1, 1} : size;
    // The result may be larger than the inputs.
    const Size resultSize = {larger.width + random.Between(0, 1), larger.height + random.Between(0, 1)};
    const MadeBlock dividend =
        MakeRandomBlock(random, type, planesA, oneElementA ? Size{1, 1} : size, RandomLayout(random));
    const MadeBlock divisor =
        MakeRandomBlock(random, type, planesB, oneElementB ? Size{1, 1} : size, RandomLayout(random));
    const MadeBlock result =
        MakeRandomBlock(random, type, std::max(planesA, planesB), resultSize, RandomLayout(random));
    ran += Compare(dividend, divisor, result);
  });
  EXPECT_GT(ran, 900);
}

TEST_P(DivideRandom, AllDataPlanesAreThoseOfTheTwin) {
  ForRandomTrials(400, [](Random& random) {
    const Rbuf_PixelType type = random.Pick(kAllTypes);
    SCOPED_TRACE(reference::TypeName(type));
    const Size size = RandomSize(random);
    const MadeBlock dividend = MakePlainBlock(random, type, 2, size, RandomLayout(random));
    const MadeBlock divisor =
        MakePlainBlock(random, type, 2, random.Chance(20) ? Size{1, 1} : size, RandomLayout(random));
    const MadeBlock result = MakePlainBlock(random, type, 2, size, RandomLayout(random));
    for (const MadeBlock* each : {&dividend, &divisor, &result})
      each->block->setCompositeCondition(tilx::ALLDATA);
    EXPECT_TRUE(Compare(dividend, divisor, result));
  });
}

TEST_P(DivideRandom, BlocksThatAreTheSameBlockAreThoseOfTheTwin) {
  ForRandomTrials(400, [](Random& random) {
    const Rbuf_PixelType type = random.Pick(kAllTypes);
    SCOPED_TRACE(reference::TypeName(type));
    const Size size = RandomSize(random);
    const MadeBlock first = MakeRandomBlock(random, type, 2, size, RandomLayout(random));
    const MadeBlock second = MakeRandomBlock(random, type, 2, size, RandomLayout(random));
    switch (random.Between(0, 3)) {
    case 0:
      Compare(first, first, second);
      break;
    case 1:
      Compare(first, second, first);
      break;
    case 2:
      Compare(first, second, second);
      break;
    default:
      Compare(first, first, first);
    }
  });
}

TEST_P(DivideRandom, OverlappingWindowsOfOneBlockAreThoseOfTheTwin) {
  ForRandomTrials(200, [](Random& random) {
    const Rbuf_PixelType type = random.Pick(kAllTypes);
    SCOPED_TRACE(reference::TypeName(type));
    const Size size = RandomSize(random);
    const MadeBlock whole =
        MakePlainBlock(random, type, 1, {size.width + 3, size.height + 1}, Layout::Padded);
    whole.block->setCompositeCondition(tilx::ALLDATA);
    const auto window = [&](long column, long row) {
      MadeBlock made;
      made.storage = whole.storage;
      made.block = boost::dynamic_pointer_cast<tilx::PixelBlock>(
          tilx::PixelBlock::Derive(whole.block, column, row, size.width, size.height));
      return made;
    };
    const MadeBlock result = MakeRandomBlock(random, type, 1, size, RandomLayout(random));
    Compare(window(0, 0), window(random.Between(0, 3), random.Between(0, 1)), result);
  });
}

/// The result of one run on one target, all of it decided by the seed.
std::pair<Rbuf_PixelType, Bytes> ResultWith(const std::string& target, std::uint64_t seed, bool complex) {
  quent::rasterops::UseSimdTarget(target);
  Random random(seed);
  const Rbuf_PixelType type = complex ? (random.Chance(50) ? C64 : C128) : kAllTypes[random.Next() % 11];
  const Size size = RandomSize(random);
  const MadeBlock dividend = MakePlainBlock(random, type, 1, size, Layout::Padded);
  const MadeBlock divisor = MakePlainBlock(random, type, 1, size, Layout::Padded);
  const MadeBlock result = MakePlainBlock(random, type, 1, size, Layout::Allocated);
  for (const MadeBlock* each : {&dividend, &divisor, &result})
    each->block->setCompositeCondition(tilx::ALLDATA);
  EXPECT_EQ(RunDivide(dividend.block, divisor.block, result.block).kind, Kind::Nothing);
  return {type, PixelBytesOf(*result.block, 0)};
}

/// Expects the bits of the last target from the one in use, those of NaN too.
void ExpectBitsOfTheBaseline(const std::string& target, bool complex) {
  const std::string baseline = quent::rasterops::SimdTargets().back();
  for (std::uint64_t seed = FirstSeed(); seed < FirstSeed() + 200; ++seed) {
    const auto [type, expected] = ResultWith(baseline, seed, complex);
    ASSERT_TRUE(SamePixels(type, expected, ResultWith(target, seed, complex).second))
        << "repeat with RASTEROPS_TEST_SEED=" << seed;
  }
}

TEST_P(DivideRandom, RealPixelsHaveTheSameBitsWithEveryTarget) {
  ExpectBitsOfTheBaseline(GetParam(), false);
}

TEST_P(DivideRandom, ComplexPixelsHaveTheSameBitsWithEveryTarget) {
  ExpectBitsOfTheBaseline(GetParam(), true);
}

} // namespace
