/// Pixel conversions: rbuf_ConvertPixels, the tables behind it, and single values.
#include "rcommon/rbuf.h"

#include "reference/conversion.h"
#include "support/blocks.h"
#include "support/errorslot.h"
#include "support/pixelvalues.h"
#include "support/randomblock.h"

#include <cmath>
#include <limits>

namespace {

using namespace testsupport;
using reference::Bytes;

/// One value through one entry of the conversion table.
template <class To, class From> To Converted(Rbuf_PixelType to, Rbuf_PixelType from, From value) {
  To result;
  rsys_AddressOf_rbuf_Convert()[from][to](&value, &result, 1);
  return result;
}

class RbufConversion : public testing::TestWithParam<Rbuf_PixelType> {};
INSTANTIATE_TEST_SUITE_P(From, RbufConversion, testing::ValuesIn(kAllTypes),
                         [](const auto& type) { return reference::TypeName(type.param); });

TEST_P(RbufConversion, ToEveryTypeIsThatOfTheTwin) {
  const Rbuf_PixelType source = GetParam();
  ForRandomTrials(20, [&](Random& random) {
    const auto count = static_cast<std::size_t>(random.Between(0, 150));
    const Bytes pixels = RandomPixels(random, source, count);
    for (const Rbuf_PixelType target : kAllTypes) {
      SCOPED_TRACE(reference::TypeName(target));
      Bytes converted(count * static_cast<std::size_t>(reference::PixelBytes(target)));
      ErrorSlot slot;
      rbuf_ConvertPixels(converted.data(), target, pixels.data(), source, count, slot);
      EXPECT_FALSE(slot.Failed()) << slot.Text();
      EXPECT_TRUE(
          SamePixels(target, reference::ConvertPixels(target, pixels, source), converted, source != target));
    }
  });
}

TEST_P(RbufConversion, WithStepsTouchesOnlyThePixelsAtTheSteps) {
  const Rbuf_PixelType source = GetParam();
  Random random(FirstSeed());
  for (const Rbuf_PixelType target : kAllTypes) {
    SCOPED_TRACE(reference::TypeName(target));
    const auto sourceBytes = static_cast<std::size_t>(reference::PixelBytes(source));
    const auto targetBytes = static_cast<std::size_t>(reference::PixelBytes(target));
    const Bytes pixels = RandomPixels(random, source, 3 * 7);
    Bytes expected = RandomPixels(random, target, 2 * 7);
    Bytes converted = expected;
    for (std::size_t i = 0; i < 7; ++i)
      reference::ConvertPixel(&expected[2 * i * targetBytes], target, &pixels[3 * i * sourceBytes], source);
    rsys_AddressOf_rbuf_ConvertInc()[source][target](
        pixels.data(), static_cast<std::ptrdiff_t>(3 * sourceBytes), converted.data(),
        static_cast<std::ptrdiff_t>(2 * targetBytes), 7);
    EXPECT_TRUE(SamePixels(target, expected, converted, true));
  }
}

TEST_P(RbufConversion, WithSourceStepZeroRepeatsOnePixelAndWithANegativeOneGoesBackwards) {
  const Rbuf_PixelType type = GetParam();
  Random random(FirstSeed());
  const auto bytes = static_cast<std::ptrdiff_t>(reference::PixelBytes(type));
  const Bytes pixels = RandomPixels(random, type, 5);
  Bytes repeated(pixels.size());
  Bytes backwards(pixels.size());
  const auto convert = rsys_AddressOf_rbuf_ConvertInc()[type][type];
  convert(pixels.data(), 0, repeated.data(), bytes, 5);
  convert(pixels.data() + 4 * bytes, -bytes, backwards.data(), bytes, 5);
  for (std::ptrdiff_t i = 0; i < 5; ++i) {
    EXPECT_EQ(std::memcmp(&repeated[static_cast<std::size_t>(i * bytes)], pixels.data(),
                          static_cast<std::size_t>(bytes)),
              0);
    EXPECT_EQ(std::memcmp(&backwards[static_cast<std::size_t>(i * bytes)], pixels.data() + (4 - i) * bytes,
                          static_cast<std::size_t>(bytes)),
              0);
  }
}

TEST(RbufConversionValues, IntegersSaturateAtTheRangeOfTheTarget) {
  EXPECT_EQ((Converted<std::uint8_t, std::int32_t>(U8, S32, -1)), 0);
  EXPECT_EQ((Converted<std::uint8_t, std::int32_t>(U8, S32, 256)), 255);
  EXPECT_EQ((Converted<std::int8_t, std::uint8_t>(S8, U8, 200)), 127);
  EXPECT_EQ((Converted<std::int16_t, std::uint32_t>(S16, U32, 4000000000u)), 32767);
  EXPECT_EQ((Converted<std::int32_t, std::uint32_t>(S32, U32, 4294967295u)), 2147483647);
  EXPECT_EQ((Converted<std::uint32_t, std::int8_t>(U32, S8, -128)), 0u);
}

TEST(RbufConversionValues, OneTwoAndFourBitTypesSaturateAtOneThreeAndFifteen) {
  EXPECT_EQ((Converted<std::uint8_t, std::uint8_t>(U1, U8, 255)), 1);
  EXPECT_EQ((Converted<std::uint8_t, std::uint8_t>(U2, U8, 255)), 3);
  EXPECT_EQ((Converted<std::uint8_t, std::uint8_t>(U4, U8, 255)), 15);
  EXPECT_EQ((Converted<std::uint8_t, float>(U2, F32, 2.5f)), 3);
  EXPECT_EQ((Converted<std::uint8_t, std::uint8_t>(U1, U4, 15)), 1);
}

TEST(RbufConversionValues, FloatsRoundHalfAwayFromZero) {
  EXPECT_EQ((Converted<std::int16_t, float>(S16, F32, 2.5f)), 3);
  EXPECT_EQ((Converted<std::int16_t, float>(S16, F32, -2.5f)), -3);
  EXPECT_EQ((Converted<std::int16_t, double>(S16, F64, 1.4999999999999998)), 1);
  // Adding a half first would give 1.
  EXPECT_EQ((Converted<std::uint8_t, double>(U8, F64, 0.49999999999999994)), 0);
  EXPECT_EQ((Converted<std::uint8_t, float>(U8, F32, 0.49999997f)), 0);
}

TEST(RbufConversionValues, FloatsSaturateAndNanGivesZero) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ((Converted<std::uint16_t, double>(U16, F64, 1e300)), 65535);
  EXPECT_EQ((Converted<std::int32_t, double>(S32, F64, -infinity)), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ((Converted<std::int32_t, float>(S32, F32, 2147483648.0f)), 2147483647);
  EXPECT_EQ((Converted<std::uint32_t, double>(U32, F64, 4294967295.5)), 4294967295u);
  EXPECT_EQ((Converted<std::int8_t, double>(S8, F64, std::nan(""))), 0);
}

TEST(RbufConversionValues, FiniteDoublesBeyondTheSinglesBecomeTheLargestSingle) {
  constexpr float largest = std::numeric_limits<float>::max();
  EXPECT_EQ((Converted<float, double>(F32, F64, 1e39)), largest);
  EXPECT_EQ((Converted<float, double>(F32, F64, -1e300)), -largest);
  EXPECT_TRUE(std::isinf(Converted<float, double>(F32, F64, std::numeric_limits<double>::infinity())));
  EXPECT_TRUE(std::isnan(Converted<float, double>(F32, F64, std::nan(""))));
  EXPECT_EQ((Converted<float, std::uint32_t>(F32, U32, 16777217u)), 16777216.0f); // to the even neighbour
}

TEST(RbufConversionValues, ComplexToRealTakesTheRealPart) {
  using Pair = reference::Complex<double>;
  EXPECT_EQ((Converted<double, Pair>(F64, C128, {-3.25, 99})), -3.25);
  EXPECT_EQ((Converted<std::int16_t, Pair>(S16, C128, {-3.5, 99})), -4);
}

TEST(RbufConversionValues, RealToComplexHasImaginaryPartZero) {
  const auto pair = Converted<reference::Complex<float>, std::int16_t>(C64, S16, -7);
  EXPECT_EQ(pair.real, -7.0f);
  EXPECT_EQ(pair.imaginary, 0.0f);
}

TEST(RbufConversionValues, ATypeToItselfKeepsTheBitsOfANan) {
  const std::uint32_t bits = 0xFF8ABCDEu; // a signalling NaN
  std::uint32_t copied = 0;
  rsys_AddressOf_rbuf_Convert()[F32][F32](&bits, &copied, 1);
  EXPECT_EQ(copied, bits);
  const std::uint8_t outOfRange = 200; // stored in a byte, it is no 1-bit value
  EXPECT_EQ((Converted<std::uint8_t, std::uint8_t>(U1, U1, outOfRange)), outOfRange);
}

TEST(RbufConversionValues, AnUnknownTypeIsReported) {
  unsigned char pixel[16] = {7};
  ErrorSlot slot;
  rbuf_ConvertPixels(pixel, static_cast<Rbuf_PixelType>(13), pixel, U8, 1, slot);
  EXPECT_TRUE(slot.Failed());
  rbuf_ConvertPixels(pixel, U8, pixel, static_cast<Rbuf_PixelType>(-1), 1, slot);
  EXPECT_TRUE(slot.Failed());
  EXPECT_EQ(pixel[0], 7);
}

} // namespace
