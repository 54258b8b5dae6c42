#include "reference/divide.h"

#include "reference/masks.h"

#include <algorithm>
#include <type_traits>

namespace reference {

using tilx::ALLDATA;
using tilx::NODATA;
using tilx::SOMEDATA;

namespace {

template <class T> bool IsZero(T value) {
  return value == T{};
}
template <class T> bool IsZero(Complex<T> value) {
  return value.real == T{} && value.imaginary == T{};
}

template <class T> T Quotient(T x, T y) {
  if constexpr (std::is_floating_point_v<T>)
    return x / y;
  else // 64 bits hold every quotient, -2147483648 / -1 too; the low bits are kept
    return static_cast<T>(static_cast<std::int64_t>(x) / static_cast<std::int64_t>(y));
}

template <class T> Complex<T> Quotient(Complex<T> x, Complex<T> y) {
  const T n = y.real * y.real + y.imaginary * y.imaginary;
  return {(x.real * y.real + x.imaginary * y.imaginary) / n,
          (x.imaginary * y.real - x.real * y.imaginary) / n};
}

/// Index of the pixel of an input that goes with (row, column): a plane of one element is one value.
std::size_t PixelIndex(const Plane& plane, int row, int column) {
  if (plane.PixelCount() == 1)
    return 0;
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(plane.columns) +
         static_cast<std::size_t>(column);
}

/// True if the pixel was written: the divisor is not zero.
bool DividePixel(const Plane& dividend, std::size_t a, const Plane& divisor, std::size_t b, Plane& result,
                 std::size_t i) {
  return Visit(dividend.type, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    const T x = Load<T>(dividend.Pixel(a));
    const T y = Load<T>(divisor.Pixel(b));
    if (IsZero(y))
      return false;
    Store<T>(result.Pixel(i), Quotient(x, y));
    return true;
  });
}

void DividePlane(Block& dividend, std::size_t a, Block& divisor, std::size_t b, Block& result, std::size_t i,
                 bool masked) {
  const Bytes* maskA = masked ? &GetMask(dividend, a) : nullptr;
  const Bytes* maskB = masked ? &GetMask(divisor, b) : nullptr;
  GetMask(result, i);
  const Plane& x = dividend.planes[a];
  const Plane& y = divisor.planes[b];
  Plane& out = result.planes[i];
  const int rows = std::max(x.rows, y.rows);
  const int columns = std::max(x.columns, y.columns);
  bool sawValid = false;
  bool sawInvalid = false;
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      const std::size_t ia = PixelIndex(x, row, column);
      const std::size_t ib = PixelIndex(y, row, column);
      const std::size_t io = static_cast<std::size_t>(row) * static_cast<std::size_t>(out.columns) +
                             static_cast<std::size_t>(column);
      const bool inputsValid = !masked || ((*maskA)[ia] != 0 && (*maskB)[ib] != 0);
      const bool valid = inputsValid && DividePixel(x, ia, y, ib, out, io);
      (*out.mask)[io] = valid ? 255 : 0;
      (valid ? sawValid : sawInvalid) = true;
    }
  }
  SetCondition(out, sawInvalid ? SOMEDATA : sawValid ? ALLDATA : NODATA);
  if (rows > 0)
    ReleaseWrittenMask(result, i);
}

} // namespace

void Divide(Block& dividend, Block& divisor, Block& result) {
  const std::size_t planes = std::max(dividend.planes.size(), divisor.planes.size());
  for (std::size_t i = 0; i < planes; ++i) {
    const std::size_t a = dividend.planes.size() == 1 ? 0 : i;
    const std::size_t b = divisor.planes.size() == 1 ? 0 : i;
    const auto conditionA = GetCondition(dividend.planes[a]);
    const auto conditionB = GetCondition(divisor.planes[b]);
    if (conditionA == NODATA && conditionB == NODATA)
      SetCondition(result.planes[i], NODATA);
    else
      DividePlane(dividend, a, divisor, b, result, i, conditionA != ALLDATA || conditionB != ALLDATA);
  }
}

} // namespace reference
