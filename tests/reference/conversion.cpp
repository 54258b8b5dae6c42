#include "reference/conversion.h"

#include <cmath>
#include <limits>

namespace reference {

namespace {

// Every integer type and F32 fits a double without loss.
template <class T> Complex<double> Parts(T value) {
  return {static_cast<double>(value), 0.0};
}
template <class T> Complex<double> Parts(Complex<T> value) {
  return {static_cast<double>(value.real), static_cast<double>(value.imaginary)};
}

double LargestInteger(Rbuf_PixelType type) {
  constexpr double largest[] = {1, 3, 15, 255, 127, 65535, 32767, 4294967295.0, 2147483647.0};
  return largest[type];
}

double SmallestInteger(Rbuf_PixelType type) {
  constexpr double smallest[] = {0, 0, 0, 0, -128, 0, -32768, 0, -2147483648.0};
  return smallest[type];
}

double ToInteger(double value, Rbuf_PixelType type) {
  if (std::isnan(value))
    return 0;
  const double rounded = std::round(value);
  if (rounded > LargestInteger(type))
    return LargestInteger(type);
  if (rounded < SmallestInteger(type))
    return SmallestInteger(type);
  return rounded;
}

float ToSingle(double value) {
  const auto single = static_cast<float>(value);
  if (std::isinf(single) && !std::isinf(value))
    return std::copysign(std::numeric_limits<float>::max(), single);
  return single;
}

void StoreParts(unsigned char* pixel, Rbuf_PixelType type, Complex<double> value) {
  switch (type) {
  case F32:
    return Store(pixel, ToSingle(value.real));
  case F64:
    return Store(pixel, value.real);
  case C64:
    return Store(pixel, Complex<float>{ToSingle(value.real), ToSingle(value.imaginary)});
  case C128:
    return Store(pixel, value);
  case S8:
    return Store(pixel, static_cast<std::int8_t>(ToInteger(value.real, type)));
  case U16:
    return Store(pixel, static_cast<std::uint16_t>(ToInteger(value.real, type)));
  case S16:
    return Store(pixel, static_cast<std::int16_t>(ToInteger(value.real, type)));
  case U32:
    return Store(pixel, static_cast<std::uint32_t>(ToInteger(value.real, type)));
  case S32:
    return Store(pixel, static_cast<std::int32_t>(ToInteger(value.real, type)));
  default:
    return Store(pixel, static_cast<std::uint8_t>(ToInteger(value.real, type)));
  }
}

} // namespace

void ConvertPixel(unsigned char* destination, Rbuf_PixelType destinationType, const unsigned char* source,
                  Rbuf_PixelType sourceType) {
  if (destinationType == sourceType) {
    std::memcpy(destination, source, static_cast<std::size_t>(PixelBytes(sourceType)));
    return;
  }
  const Complex<double> value =
      Visit(sourceType, [&](auto tag) { return Parts(Load<typename decltype(tag)::Type>(source)); });
  StoreParts(destination, destinationType, value);
}

Bytes ConvertPixels(Rbuf_PixelType destinationType, const Bytes& source, Rbuf_PixelType sourceType) {
  const auto sourceBytes = static_cast<std::size_t>(PixelBytes(sourceType));
  const auto destinationBytes = static_cast<std::size_t>(PixelBytes(destinationType));
  const std::size_t count = source.size() / sourceBytes;
  Bytes destination(count * destinationBytes);
  for (std::size_t i = 0; i < count; ++i)
    ConvertPixel(destination.data() + i * destinationBytes, destinationType, source.data() + i * sourceBytes,
                 sourceType);
  return destination;
}

Bytes FillPixels(const Bytes& value, std::size_t count) {
  Bytes filled;
  for (std::size_t i = 0; i < count; ++i)
    filled.insert(filled.end(), value.begin(), value.end());
  return filled;
}

} // namespace reference
