// Row functions of masks, compiled once per vector target. Plain loops: the compiler makes vector code of
// them, and tests itself whether rows overlap; if they do, pixels go one by one.
#if defined(RASTEROPS_PIXEL_MASK_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef RASTEROPS_PIXEL_MASK_INL_H_
#undef RASTEROPS_PIXEL_MASK_INL_H_
#else
#define RASTEROPS_PIXEL_MASK_INL_H_
#endif

#include <hwy/highway.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace tilx::kernels {
namespace HWY_NAMESPACE {

using Byte = unsigned char;

// What a row function has seen, in bits.
constexpr unsigned sawValid = 1;
constexpr unsigned sawInvalid = 2;

/// The bits of a pixel of two parts, aligned as a part is.
template <class T> struct Pair {
  T first;
  T second;
};

template <class T> HWY_INLINE bool Same(Pair<T> a, Pair<T> b) {
  return ((a.first ^ b.first) | (a.second ^ b.second)) == 0;
}
template <class T> HWY_INLINE bool Same(T a, T b) {
  return a == b;
}

/// Pixel `i` of a row. C64 pixels are compared as 64 bits, but aligned no more than their parts need be. A
/// pair is loaded part by part: as a whole it would keep the loop from becoming vector code.
template <class T> HWY_INLINE void LoadPixel(const Byte* row, std::size_t i, T& pixel) {
  std::memcpy(&pixel, row + i * sizeof(T), sizeof(T));
}
template <class T> HWY_INLINE void LoadPixel(const Byte* row, std::size_t i, Pair<T>& pixel) {
  LoadPixel(row, 2 * i, pixel.first);
  LoadPixel(row, 2 * i + 1, pixel.second);
}
template <class T> HWY_INLINE T PixelAt(const void* row, std::size_t i) {
  T pixel;
  LoadPixel(static_cast<const Byte*>(row), i, pixel);
  return pixel;
}

/// Bits of a mask row: 255 is valid, all else invalid.
unsigned LookAtMaskRow(const Byte* mask, std::size_t count) {
  Byte all = 255;
  Byte greatest = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const Byte m = mask[i];
    all &= m;
    greatest = m > greatest ? m : greatest;
  }
  return (greatest == 255 ? sawValid : 0) | (all != 255 ? sawInvalid : 0);
}

/// 0 where `same(pixel)`, else 255.
template <class T, class Test>
HWY_INLINE unsigned MaskWhereNot(const void* row, Byte* mask, std::size_t count, Test same) {
  Byte all = 255;
  Byte any = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const T pixel = PixelAt<T>(row, i);
    const Byte m = same(pixel) ? 0 : 255;
    mask[i] = m;
    all &= m;
    any |= m;
  }
  return (any ? sawValid : 0) | (all != 255 ? sawInvalid : 0);
}

template <class T> struct EqualTo {
  T value;
  HWY_INLINE bool operator()(T pixel) const { return Same(pixel, value); }
};
template <class T> struct IsNaN {
  HWY_INLINE bool operator()(T pixel) const { return pixel != pixel; }
};

template <class T> unsigned MaskEqualRow(const void* row, Byte* mask, std::size_t count, const void* value) {
  EqualTo<T> same;
  std::memcpy(&same.value, value, sizeof(T));
  return MaskWhereNot<T>(row, mask, count, same);
}

/// Floats are equal by floating comparison; a NaN value matches every NaN.
template <class T> unsigned MaskFloatRow(const void* row, Byte* mask, std::size_t count, const void* value) {
  T nodata;
  std::memcpy(&nodata, value, sizeof(T));
  if (nodata != nodata)
    return MaskWhereNot<T>(row, mask, count, IsNaN<T>());
  return MaskWhereNot<T>(row, mask, count, EqualTo<T>{nodata});
}

void MinimumRow(Byte* composite, const Byte* mask, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const Byte c = composite[i];
    const Byte m = mask[i];
    composite[i] = m < c ? m : c;
  }
}

/// Bits of a composite row: 0 is invalid, 255 valid, anything between both.
unsigned LookAtCompositeRow(const Byte* composite, std::size_t count) {
  Byte all = 255;
  Byte any = 0;
  for (std::size_t i = 0; i < count; ++i) {
    all &= composite[i];
    any |= composite[i];
  }
  return (any ? sawValid : 0) | (all != 255 ? sawInvalid : 0);
}

template <class T> bool HoldsPixel(const void* row, std::size_t count, const void* value) {
  T searched;
  std::memcpy(&searched, value, sizeof(T));
  Byte found = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const T pixel = PixelAt<T>(row, i);
    found |= static_cast<Byte>(Same(pixel, searched) ? 255 : 0);
  }
  return found != 0;
}

/// Rows whose mask is all valid are only read.
template <class T> void FillInvalid(void* row, const Byte* mask, std::size_t count, const void* value) {
  T fill;
  std::memcpy(&fill, value, sizeof(T));
  Byte* const pixels = static_cast<Byte*>(row);
  constexpr std::size_t step = 256;
  for (std::size_t start = 0; start < count; start += step) {
    const std::size_t n = count - start < step ? count - start : step;
    Byte zeros = 0;
    for (std::size_t i = 0; i < n; ++i)
      zeros |= static_cast<Byte>(mask[start + i] == 0 ? 255 : 0);
    for (std::size_t i = 0; zeros != 0 && i < n; ++i) {
      const T old = PixelAt<T>(row, start + i);
      const T pixel = mask[start + i] == 0 ? fill : old;
      std::memcpy(pixels + (start + i) * sizeof(T), &pixel, sizeof(T));
    }
  }
}

// By the size of a pixel in bytes.

unsigned MaskBytesRow(const void* row, Byte* mask, std::size_t count, const void* value, int pixelBytes) {
  switch (pixelBytes) {
  case 1:
    return MaskEqualRow<std::uint8_t>(row, mask, count, value);
  case 2:
    return MaskEqualRow<std::uint16_t>(row, mask, count, value);
  case 4:
    return MaskEqualRow<std::uint32_t>(row, mask, count, value);
  case 8:
    return MaskEqualRow<std::uint64_t>(row, mask, count, value);
  default:
    return MaskEqualRow<Pair<std::uint64_t>>(row, mask, count, value);
  }
}

unsigned MaskSinglesRow(const void* row, Byte* mask, std::size_t count, const void* value) {
  return MaskFloatRow<float>(row, mask, count, value);
}

unsigned MaskDoublesRow(const void* row, Byte* mask, std::size_t count, const void* value) {
  return MaskFloatRow<double>(row, mask, count, value);
}

bool HoldsPixelRow(const void* row, std::size_t count, const void* value, int pixelBytes) {
  switch (pixelBytes) {
  case 1:
    return HoldsPixel<std::uint8_t>(row, count, value);
  case 2:
    return HoldsPixel<std::uint16_t>(row, count, value);
  case 4:
    return HoldsPixel<std::uint32_t>(row, count, value);
  case 8:
    return HoldsPixel<std::uint64_t>(row, count, value);
  default:
    return HoldsPixel<Pair<std::uint64_t>>(row, count, value);
  }
}

void FillInvalidPixelsRow(void* row, const Byte* mask, std::size_t count, const void* value, int pixelBytes) {
  switch (pixelBytes) {
  case 1:
    return FillInvalid<std::uint8_t>(row, mask, count, value);
  case 2:
    return FillInvalid<std::uint16_t>(row, mask, count, value);
  case 4:
    return FillInvalid<std::uint32_t>(row, mask, count, value);
  case 8:
    return FillInvalid<std::uint64_t>(row, mask, count, value);
  default:
    return FillInvalid<Pair<std::uint64_t>>(row, mask, count, value);
  }
}

} // namespace HWY_NAMESPACE
} // namespace tilx::kernels
HWY_AFTER_NAMESPACE();

#endif
