#include "engine/invalidpixels.h"

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace quent::rasterops::engine {

namespace {

template <class T> T elementOf(const PixelValue& value) {
  T element;
  std::memcpy(&element, value.data(), sizeof(element));
  return element;
}

/// A complex pixel, which is compared by its bits.
template <class T> struct Bits {
  T real;
  T imaginary;
};

template <class T> unsigned equal(T pixel, T value) {
  return pixel == value ? 1U : 0U;
}
template <class T> unsigned equal(Bits<T> pixel, Bits<T> value) {
  return ((pixel.real ^ value.real) | (pixel.imaginary ^ value.imaginary)) == 0 ? 1U : 0U;
}

/// Counts within one row, at most 2^31 pixels, in 32 bits, so that the loop becomes vector code.
template <class T, class Test>
std::size_t countRows(const _Rbuf_BaseData& plane, const _Rbuf_BaseData* mask, Test test) {
  std::size_t total = 0;
  for (std::ptrdiff_t r = 0; r < plane.rows; ++r) {
    const T* const row = reinterpret_cast<const T*>(plane.data + r * plane.pitch);
    const unsigned char* const valid = mask ? mask->data + r * mask->pitch : nullptr;
    unsigned count = 0;
    if (valid)
      for (std::int32_t c = 0; c < plane.columns; ++c)
        count += test(row[c]) & (valid[c] != 0 ? 1U : 0U);
    else
      for (std::int32_t c = 0; c < plane.columns; ++c)
        count += test(row[c]);
    total += count;
  }
  return total;
}

template <class T>
std::size_t countElements(const _Rbuf_BaseData& plane, const _Rbuf_BaseData* mask, const PixelValue& bytes) {
  const T value = elementOf<T>(bytes);
  if constexpr (std::is_floating_point_v<T>)
    if (value != value)
      return countRows<T>(plane, mask, [](T pixel) { return pixel != pixel ? 1U : 0U; });
  return countRows<T>(plane, mask, [value](T pixel) { return equal(pixel, value); });
}

template <class T> void fillRows(const _Rbuf_BaseData& plane, const _Rbuf_BaseData* mask, T value) {
  for (std::ptrdiff_t r = 0; r < plane.rows; ++r) {
    T* const row = reinterpret_cast<T*>(plane.data + r * plane.pitch);
    const unsigned char* const valid = mask ? mask->data + r * mask->pitch : nullptr;
    for (std::int32_t c = 0; c < plane.columns; ++c)
      if (!valid || valid[c] == 0)
        row[c] = value;
  }
}

} // namespace

void FillInvalid(const _Rbuf_BaseData& plane, const _Rbuf_BaseData* mask, const PixelValue& value) {
  switch (plane.pixelBytes) {
  case 1:
    return fillRows(plane, mask, elementOf<std::uint8_t>(value));
  case 2:
    return fillRows(plane, mask, elementOf<std::uint16_t>(value));
  case 4:
    return fillRows(plane, mask, elementOf<std::uint32_t>(value));
  case 8:
    return fillRows(plane, mask, elementOf<std::uint64_t>(value));
  default:
    return fillRows(plane, mask, elementOf<Bits<std::uint64_t>>(value));
  }
}

std::size_t CountEqual(const _Rbuf_BaseData& plane, const _Rbuf_BaseData* mask, const PixelValue& value) {
  switch (plane.pixelType) {
  case F32:
    return countElements<float>(plane, mask, value);
  case F64:
    return countElements<double>(plane, mask, value);
  case C64:
    return countElements<Bits<std::uint32_t>>(plane, mask, value);
  case C128:
    return countElements<Bits<std::uint64_t>>(plane, mask, value);
  default:
    break;
  }
  switch (plane.pixelBytes) { // equal integers have equal bits
  case 1:
    return countElements<std::uint8_t>(plane, mask, value);
  case 2:
    return countElements<std::uint16_t>(plane, mask, value);
  default:
    return countElements<std::uint32_t>(plane, mask, value);
  }
}

} // namespace quent::rasterops::engine
