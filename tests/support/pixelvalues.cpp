#include "support/pixelvalues.h"

#include "reference/conversion.h"

#include <limits>
#include <type_traits>

namespace testsupport {

using reference::Bytes;

namespace {

template <class T> T FromBits(std::uint64_t bits) {
  T value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

float NanWithPayload(Random& random, float) {
  return FromBits<float>(0x7F800001u | (random.Next() & 0x803FFFFFu) | (random.Next() & 0x00400000u));
}
double NanWithPayload(Random& random, double) {
  return FromBits<double>(0x7FF0000000000001u | (random.Next() & 0x800FFFFFFFFFFFFFu));
}

template <class T> T RandomFloating(Random& random) {
  using Limits = std::numeric_limits<T>;
  switch (random.Between(0, 11)) {
  case 0:
  case 1:
    return T(0);
  case 2:
    return -T(0);
  case 3:
    return NanWithPayload(random, T());
  case 4:
    return random.Chance(50) ? Limits::infinity() : -Limits::infinity();
  case 5:
    return random.Chance(50) ? Limits::denorm_min() : -Limits::min();
  case 6:
    return random.Chance(50) ? Limits::max() : Limits::lowest();
  case 7:
    return static_cast<T>(random.Between(-3, 3)) + T(0.5);
  case 8:
    return static_cast<T>(random.Between(-70000, 70000));
  case 9:
    return FromBits<T>(random.Next());
  default:
    return static_cast<T>(random.Between(-1000000, 1000000)) / T(1024);
  }
}

template <class T> T RandomInteger(Random& random) {
  switch (random.Between(0, 4)) {
  case 0:
    return T(0);
  case 1:
    return static_cast<T>(random.Between(-3, 3));
  case 2:
    return random.Chance(50) ? std::numeric_limits<T>::max() : std::numeric_limits<T>::lowest();
  default:
    return static_cast<T>(random.Next() >> random.Between(0, 63));
  }
}

template <class T> T RandomElement(Random& random) {
  if constexpr (std::is_floating_point_v<T>)
    return RandomFloating<T>(random);
  else
    return RandomInteger<T>(random);
}

template <class T> void Append(Bytes& bytes, T value) {
  bytes.resize(bytes.size() + sizeof value);
  reference::Store(&bytes[bytes.size() - sizeof value], value);
}

} // namespace

Bytes RandomPixel(Random& random, Rbuf_PixelType type) {
  return RandomPixels(random, type, 1);
}

Bytes RandomPixels(Random& random, Rbuf_PixelType type, std::size_t count) {
  Bytes pixels;
  for (std::size_t i = 0; i < count; ++i) {
    switch (type) {
    case C64:
      Append(pixels, RandomElement<float>(random));
      Append(pixels, RandomElement<float>(random));
      break;
    case C128:
      Append(pixels, RandomElement<double>(random));
      Append(pixels, RandomElement<double>(random));
      break;
    default:
      reference::Visit(type, [&](auto tag) {
        using T = typename decltype(tag)::Type;
        if constexpr (std::is_arithmetic_v<T>)
          Append(pixels, RandomElement<T>(random));
      });
    }
  }
  return pixels;
}

Bytes PixelsOf(Rbuf_PixelType type, const std::vector<double>& values) {
  const auto* first = reinterpret_cast<const unsigned char*>(values.data());
  return reference::ConvertPixels(type, Bytes(first, first + values.size() * sizeof(double)), F64);
}

Bytes RandomMask(Random& random, std::size_t count, Pattern pattern) {
  Bytes mask(count);
  for (unsigned char& byte : mask) {
    switch (pattern) {
    case Pattern::None:
      byte = 255;
      break;
    case Pattern::Sparse:
      byte = random.Chance(3) ? 0 : 255;
      break;
    case Pattern::Dense:
      byte = random.Chance(60) ? 0 : 255;
      break;
    case Pattern::All:
      byte = 0;
      break;
    case Pattern::OddBytes:
      byte = random.Byte();
      break;
    }
  }
  return mask;
}

} // namespace testsupport
