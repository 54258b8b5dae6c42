#include "engine/nodata.h"

#include "engine/pixeltypes.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace quent::rasterops::engine {

namespace {

constexpr double largestSingle = std::numeric_limits<float>::max();

template <class T> PixelValue bytesOf(T real) {
  PixelValue value{}; // the imaginary part of a complex pixel stays 0
  std::memcpy(value.data(), &real, sizeof(real));
  return value;
}

std::optional<float> single(double value) {
  if (std::isnan(value))
    return std::numeric_limits<float>::quiet_NaN();
  if (std::isinf(value) || std::fabs(value) <= largestSingle)
    return static_cast<float>(value);
  // Text with 7 digits, as 3.402823e+38, or rounded up, lies this close to the largest single.
  if (std::fabs(value) <= largestSingle * (1.0 + 1e-6))
    return static_cast<float>(std::copysign(largestSingle, value));
  return std::nullopt;
}

} // namespace

std::optional<PixelValue> EncodeValue(double value, Rbuf_PixelType type) {
  if (IsInteger(type)) {
    const IntegerRange range = RangeOf(type);
    if (!(value >= range.least && value <= range.most) || value != std::floor(value))
      return std::nullopt;
  }
  switch (type) {
  case U1:
  case U2:
  case U4:
  case U8:
    return bytesOf(static_cast<std::uint8_t>(value));
  case S8:
    return bytesOf(static_cast<std::int8_t>(value));
  case U16:
    return bytesOf(static_cast<std::uint16_t>(value));
  case S16:
    return bytesOf(static_cast<std::int16_t>(value));
  case U32:
    return bytesOf(static_cast<std::uint32_t>(value));
  case S32:
    return bytesOf(static_cast<std::int32_t>(value));
  case F32:
  case C64:
    if (const auto narrow = single(value))
      return bytesOf(*narrow);
    return std::nullopt;
  case F64:
  case C128:
    return std::isnan(value) ? NaNValue(type) : bytesOf(value);
  }
  return std::nullopt;
}

bool HoldsExactly(double value, Rbuf_PixelType type) {
  const auto encoded = EncodeValue(value, type);
  return encoded && (std::isnan(value) || DecodeValue(*encoded, type) == value);
}

double DecodeValue(const PixelValue& value, Rbuf_PixelType type) {
  double number = 0.0;
  const auto convert = rsys_AddressOf_rbuf_Convert()[type][F64];
  convert(value.data(), &number, 1);
  return number;
}

PixelValue NaNValue(Rbuf_PixelType type) {
  if (type == F32 || type == C64)
    return bytesOf(std::numeric_limits<float>::quiet_NaN());
  return bytesOf(std::numeric_limits<double>::quiet_NaN());
}

double ParseNumber(const std::string& text) {
  double value = 0.0;
  const char* begin = text.data();
  const char* const end = begin + text.size();
  if (begin != end && *begin == '+')
    ++begin;
  const auto [stop, error] = std::from_chars(begin, end, value);
  if (error != std::errc() || stop != end)
    throw std::invalid_argument("'" + text + "' is not a number");
  return value;
}

std::string NumberText(double value) {
  char text[32];
  const auto [stop, error] = std::to_chars(text, text + sizeof(text), value);
  return error == std::errc() ? std::string(text, stop) : std::string("?");
}

} // namespace quent::rasterops::engine
