/// Divide: the arithmetic of each type.
#include "rasterops/divide.h"

#include "frame/divideruns.h"
#include "support/random.h"
#include "support/simdtest.h"

#include <cmath>
#include <limits>

namespace {

using namespace testsupport;
using reference::Bytes;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

RASTEROPS_SIMD_SUITE(DivideArithmetic);

TEST_P(DivideArithmetic, ByNegativeZeroIsInvalid) {
  for (const Rbuf_PixelType type : {F32, F64}) {
    const BlockPtr result = Quotient(type, {1, 1}, {-0.0, 1});
    EXPECT_EQ(MaskOf(*result, 0), (Bytes{0, 255}));
    EXPECT_EQ(ValuesOf(*result, 0), (Values{77, 1}));
  }
}

TEST_P(DivideArithmetic, ByNanIsNanAndValid) {
  for (const Rbuf_PixelType type : {F32, F64}) {
    const BlockPtr result = Quotient(type, {1}, {kNan});
    EXPECT_EQ(MaskOf(*result, 0), Bytes{255});
    EXPECT_TRUE(std::isnan(ValuesOf(*result, 0)[0]));
    EXPECT_EQ(result->getCondition(0), tilx::ALLDATA);
  }
}

TEST_P(DivideArithmetic, InfinitiesAreValid) {
  const BlockPtr result = Quotient(F32, {kInfinity, 3e38, -1, kInfinity}, {2, 1e-10, kInfinity, kInfinity});
  EXPECT_EQ(MaskOf(*result, 0), Bytes(4, 255));
  const Values values = ValuesOf(*result, 0);
  EXPECT_EQ(values[0], kInfinity);
  EXPECT_EQ(values[1], kInfinity);
  EXPECT_TRUE(values[2] == 0 && std::signbit(values[2]));
  EXPECT_TRUE(std::isnan(values[3]));
}

TEST_P(DivideArithmetic, SignedIntegersTruncateTowardZero) {
  for (const Rbuf_PixelType type : {S8, S16, S32})
    EXPECT_EQ(ValuesOf(*Quotient(type, {-7, 7, -7, 7}, {2, -2, -2, 2}), 0), (Values{-3, -3, 3, 3}));
}

TEST_P(DivideArithmetic, SmallestIntegersByMinusOneWrap) {
  EXPECT_EQ(ValuesOf(*Quotient(S8, {-128}, {-1}), 0), Values{-128});
  EXPECT_EQ(ValuesOf(*Quotient(S16, {-32768}, {-1}), 0), Values{-32768});
}

TEST_P(DivideArithmetic, SmallestLongIntegerByMinusOneWrapsInsteadOfFaulting) {
  const BlockPtr result = Quotient(S32, {-2147483648.0, -2147483648.0, 5}, {-1, 2, -1});
  EXPECT_EQ(ValuesOf(*result, 0), (Values{-2147483648.0, -1073741824, -5}));
  EXPECT_EQ(MaskOf(*result, 0), Bytes(3, 255));
}

TEST_P(DivideArithmetic, UnsignedIntegersDoNotTakeTheirHighBitForASign) {
  EXPECT_EQ(ValuesOf(*Quotient(U8, {255}, {2}), 0), Values{127});
  EXPECT_EQ(ValuesOf(*Quotient(U16, {65535}, {2}), 0), Values{32767});
  EXPECT_EQ(ValuesOf(*Quotient(U32, {4294967295.0, 4294967295.0}, {2, 4294967294.0}), 0),
            (Values{2147483647, 1}));
}

TEST_P(DivideArithmetic, SmallIntegersDivideExactlyForEveryPairOfValues) {
  for (const Rbuf_PixelType type : {U8, S8}) {
    const int low = type == U8 ? 0 : -128;
    Values all(256);
    for (int i = 0; i < 256; ++i)
      all[static_cast<std::size_t>(i)] = low + i;
    for (int divisor = low; divisor < low + 256; ++divisor) {
      const BlockPtr result = Quotient(type, all, {static_cast<double>(divisor)});
      const Values quotients = ValuesOf(*result, 0);
      for (int i = 0; i < 256 && divisor != 0; ++i) {
        const int whole = (low + i) / divisor;
        ASSERT_EQ(quotients[static_cast<std::size_t>(i)], type == S8 && whole == 128 ? -128 : whole)
            << low + i << "/" << divisor;
      }
    }
  }
}

/// Dividends just below and at every multiple of every divisor, and the divisors that go with them: there a
/// quotient that is computed by rounding would be wrong first.
std::pair<Values, Values> NextToMultiples(int largest, int sign) {
  std::pair<Values, Values> rows;
  for (int divisor = 1; divisor <= largest; ++divisor)
    for (int multiple = divisor; multiple <= largest; multiple += divisor)
      for (const int dividend : {multiple - 1, multiple}) {
        rows.first.push_back(sign * dividend);
        rows.second.push_back(divisor);
      }
  return rows;
}

TEST_P(DivideArithmetic, SixteenBitIntegersDivideExactlyNextToEveryMultiple) {
  const auto expectExact = [](Rbuf_PixelType type, const Values& dividends, const Values& divisors) {
    const Values quotients = ValuesOf(*Quotient(type, dividends, divisors), 0);
    for (std::size_t i = 0; i < quotients.size(); ++i)
      ASSERT_EQ(quotients[i], static_cast<int>(dividends[i]) / static_cast<int>(divisors[i]))
          << dividends[i] << "/" << divisors[i];
  };
  const auto [dividends, divisors] = NextToMultiples(65535, 1);
  expectExact(U16, dividends, divisors);
  const auto [negative, positive] = NextToMultiples(32767, -1);
  expectExact(S16, negative, positive);
}

TEST_P(DivideArithmetic, ThirtyTwoBitIntegersDivideExactlyNextToMultiples) {
  ForRandomTrials(20, [](Random& random) {
    Values dividends;
    Values divisors;
    for (int i = 0; i < 1000; ++i) {
      const auto divisor = static_cast<std::uint32_t>(random.Next() >> random.Between(33, 62)) + 1;
      const std::uint32_t largest = 0xFFFFFFFFu / divisor;
      const std::uint32_t multiple =
          divisor * (largest - static_cast<std::uint32_t>(random.Between(0, 2)) % largest);
      dividends.push_back(multiple - static_cast<std::uint32_t>(random.Between(0, 1)));
      divisors.push_back(divisor);
    }
    const Values quotients = ValuesOf(*Quotient(U32, dividends, divisors), 0);
    for (std::size_t i = 0; i < quotients.size(); ++i)
      ASSERT_EQ(quotients[i],
                static_cast<std::uint32_t>(dividends[i]) / static_cast<std::uint32_t>(divisors[i]))
          << dividends[i] << "/" << divisors[i];
  });
}

TEST_P(DivideArithmetic, OneTwoAndFourBitTypesDivideAsBytes) {
  for (const Rbuf_PixelType type : {U1, U2, U4}) {
    const BlockPtr result = MakeBlock(type, 2, 1, {0, 0});
    const BlockPtr dividend = MakeBlock(type, 2, 1, {0, 0});
    const BlockPtr divisor = MakeBlock(type, 2, 1, {0, 0});
    SetPixelBytes(dividend->getPlaneData(0), {200, 1});
    SetPixelBytes(divisor->getPlaneData(0), {3, 1});
    RunDivide(dividend, divisor, result);
    EXPECT_EQ(PixelBytesOf(*result, 0), (Bytes{66, 1}));
  }
}

/// Quotient of single complex pixels.
template <class T> std::pair<BlockPtr, reference::Complex<T>> ComplexQuotient(T p, T q, T c, T d) {
  const Rbuf_PixelType type = sizeof(T) == 4 ? C64 : C128;
  const BlockPtr dividend = MakeBlock(type, 1, 1, {0});
  const BlockPtr divisor = MakeBlock(type, 1, 1, {0});
  const BlockPtr result = MakeBlock(type, 1, 1, {77});
  reference::Store(dividend->getPlaneData(0)->data, reference::Complex<T>{p, q});
  reference::Store(divisor->getPlaneData(0)->data, reference::Complex<T>{c, d});
  RunDivide(dividend, divisor, result);
  return {result, reference::Load<reference::Complex<T>>(result->getPlaneData(0)->data)};
}

template <class T> void ExpectComplexRules() {
  const auto [byZero, kept] = ComplexQuotient<T>(1, 1, 0, 0);
  EXPECT_EQ(MaskOf(*byZero, 0), Bytes{0});
  EXPECT_EQ(kept.real, T(77));
  EXPECT_EQ(MaskOf(*ComplexQuotient<T>(1, 1, -T(0), T(0)).first, 0), Bytes{0});
  EXPECT_EQ(MaskOf(*ComplexQuotient<T>(1, 1, T(0), T(kNan)).first, 0), Bytes{255});
  const auto [byI, quotient] = ComplexQuotient<T>(1, 0, 0, 1);
  EXPECT_EQ(MaskOf(*byI, 0), Bytes{255});
  EXPECT_EQ(quotient.real, T(0));
  EXPECT_EQ(quotient.imaginary, T(-1));
  const auto ordinary = ComplexQuotient<T>(3, 4, 1, 2).second;
  EXPECT_EQ(ordinary.real, T(11) / T(5));
  EXPECT_EQ(ordinary.imaginary, T(-2) / T(5));
}

TEST_P(DivideArithmetic, ComplexOneOneByZeroIsInvalidAndOneByIIsMinusI) {
  ExpectComplexRules<float>();
  ExpectComplexRules<double>();
}

TEST_P(DivideArithmetic, ComplexDivisionDoesNotRescaleAgainstOverflow) {
  const auto [result, quotient] = ComplexQuotient<float>(1e30f, 0, 1e30f, 0); // 1e60 is beyond the singles
  EXPECT_EQ(MaskOf(*result, 0), Bytes{255});
  EXPECT_TRUE(std::isnan(quotient.real));
  EXPECT_EQ(ComplexQuotient<double>(1e30, 0, 1e30, 0).second.real, 1.0);
  // The divisor is not zero, but the sum of its squares is.
  const auto tiny = ComplexQuotient<float>(1, 0, 1e-30f, 0).second;
  EXPECT_EQ(tiny.real, std::numeric_limits<float>::infinity());
}

} // namespace
