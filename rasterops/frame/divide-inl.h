// Row functions of Divide, compiled once per vector target.
#if defined(RASTEROPS_FRAME_DIVIDE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef RASTEROPS_FRAME_DIVIDE_INL_H_
#undef RASTEROPS_FRAME_DIVIDE_INL_H_
#else
#define RASTEROPS_FRAME_DIVIDE_INL_H_
#endif

#include <hwy/highway.h>

#include <cstddef>
#include <limits>
#include <type_traits>

HWY_BEFORE_NAMESPACE();
namespace quent::rasterops {
namespace HWY_NAMESPACE {

using Byte = unsigned char;

/// The floating type that divides integers of T exactly. A quotient x / y that is not whole lies at least
/// 1 / |y| from the next whole number, and is at most |x / y|: relative to itself at least 2^-16 with 8- and
/// 16-bit operands, more than half a unit in the last place of a single, and 2^-32 with 32-bit operands,
/// more than that of a double. So rounding never reaches the next whole number.
template <class T>
using Divider =
    std::conditional_t<std::is_floating_point_v<T>, T, std::conditional_t<(sizeof(T) < 4), float, double>>;

/// x / y for a divisor that may be zero; the quotient by zero is of no meaning and is not stored.
template <class T> HWY_INLINE T Quotient(T x, T y) {
  if constexpr (std::is_floating_point_v<T>) {
    return x / y;
  } else {
    using D = Divider<T>;
    const T safe = y == 0 ? T{1} : y;
    const D quotient = static_cast<D>(x) / static_cast<D>(safe);
    if constexpr (sizeof(T) < 4) {
      return static_cast<T>(static_cast<int>(quotient)); // low bits: -128 / -1 wraps to -128
    } else if constexpr (std::is_signed_v<T>) {
      // 2^31 is the one quotient that does not fit; it wraps to -2^31.
      constexpr D tooLarge = 2147483648.0;
      return static_cast<T>(quotient == tooLarge ? -tooLarge : quotient);
    } else {
      return static_cast<T>(quotient);
    }
  }
}

/// 255 where both masks are nonzero, else 0. The minimum keeps it free of branches: with two tests, GCC 12
/// leaves the loops of some types as they are.
HWY_INLINE Byte BothValid(Byte a, Byte b) {
  const Byte lesser = a < b ? a : b;
  return lesser != 0 ? 255 : 0;
}

/// Bit 0 if a pixel was valid, bit 1 if one was not, from the OR and the AND of all result mask bytes.
HWY_INLINE unsigned SeenBits(Byte any, Byte all) {
  return (any ? 1U : 0U) | (all != 255 ? 2U : 0U);
}

/// Divides a row where the divisor is not zero and, if `masked`, both masks are nonzero. A result that is
/// not valid is stored as it was, which lets the loop become vector code.
template <class T, bool masked>
unsigned DivideRow(const void* dividend, const Byte* dividendMask, const void* divisor,
                   const Byte* divisorMask, void* result, Byte* resultMask, std::size_t count) {
  const T* const xs = static_cast<const T*>(dividend);
  const T* const ys = static_cast<const T*>(divisor);
  T* const out = static_cast<T*>(result);
  Byte all = 255;
  Byte any = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const T x = xs[i];
    const T y = ys[i];
    const T old = out[i];
    Byte valid = y == 0 ? 0 : 255;
    if constexpr (masked)
      valid &= BothValid(dividendMask[i], divisorMask[i]);
    const T quotient = Quotient(x, y);
    out[i] = valid ? quotient : old;
    resultMask[i] = valid;
    all &= valid;
    any |= valid;
  }
  return SeenBits(any, all);
}

/// Gives every NaN in a valid complex pixel the same bits. Of two NaN operands, the one that comes out of a
/// sum or a product depends on the order that the compiler chose, and so on the target.
template <class T> HWY_INLINE void UniteNaNs(T* pixels, const Byte* mask, std::size_t count) {
  Byte any = 0;
  for (std::size_t i = 0; i < 2 * count; ++i)
    any |= static_cast<Byte>(pixels[i] == pixels[i] ? 0 : 1);
  if (!any)
    return;
  for (std::size_t i = 0; i < 2 * count; ++i)
    if (mask[i / 2] && pixels[i] != pixels[i])
      pixels[i] = std::numeric_limits<T>::quiet_NaN();
}

/// DivideRow() for complex pixels of two T each, real part first.
template <class T, bool masked>
unsigned DivideComplexRow(const void* dividend, const Byte* dividendMask, const void* divisor,
                          const Byte* divisorMask, void* result, Byte* resultMask, std::size_t count) {
  const T* const xs = static_cast<const T*>(dividend);
  const T* const ys = static_cast<const T*>(divisor);
  T* const out = static_cast<T*>(result);
  Byte all = 255;
  Byte any = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const T p = xs[2 * i];
    const T q = xs[2 * i + 1];
    const T c = ys[2 * i];
    const T d = ys[2 * i + 1];
    const T oldReal = out[2 * i];
    const T oldImaginary = out[2 * i + 1];
    Byte valid = static_cast<Byte>(c == 0 ? 0 : 255) | static_cast<Byte>(d == 0 ? 0 : 255);
    if constexpr (masked)
      valid &= BothValid(dividendMask[i], divisorMask[i]);
    const T n = c * c + d * d;
    const T real = (p * c + q * d) / n;
    // qc - pd. Written as a difference, GCC 12 fuses it with the sum above into one fmsubadd, in spite of
    // -ffp-contract=off.
    const T imaginary = (q * c + (-p) * d) / n;
    out[2 * i] = valid ? real : oldReal;
    out[2 * i + 1] = valid ? imaginary : oldImaginary;
    resultMask[i] = valid;
    all &= valid;
    any |= valid;
  }
  UniteNaNs(out, resultMask, count);
  return SeenBits(any, all);
}

#define RASTEROPS_DIVIDE_ROW(NAME, FUNCTION, TYPE)                                                           \
  unsigned NAME(const void* x, const Byte* mx, const void* y, const Byte* my, void* out, Byte* mask,         \
                std::size_t count) {                                                                         \
    return mx ? FUNCTION<TYPE, true>(x, mx, y, my, out, mask, count)                                         \
              : FUNCTION<TYPE, false>(x, mx, y, my, out, mask, count);                                       \
  }

RASTEROPS_DIVIDE_ROW(DivideU8, DivideRow, unsigned char)
RASTEROPS_DIVIDE_ROW(DivideS8, DivideRow, signed char)
RASTEROPS_DIVIDE_ROW(DivideU16, DivideRow, unsigned short)
RASTEROPS_DIVIDE_ROW(DivideS16, DivideRow, short)
RASTEROPS_DIVIDE_ROW(DivideU32, DivideRow, unsigned int)
RASTEROPS_DIVIDE_ROW(DivideS32, DivideRow, int)
RASTEROPS_DIVIDE_ROW(DivideF32, DivideRow, float)
RASTEROPS_DIVIDE_ROW(DivideF64, DivideRow, double)
RASTEROPS_DIVIDE_ROW(DivideC64, DivideComplexRow, float)
RASTEROPS_DIVIDE_ROW(DivideC128, DivideComplexRow, double)

#undef RASTEROPS_DIVIDE_ROW

} // namespace HWY_NAMESPACE
} // namespace quent::rasterops
HWY_AFTER_NAMESPACE();

#endif
