/// \file
/// The element of each pixel type. Not installed.
#pragma once

#include "rcommon/rbuf.h"

#include <complex>

namespace quent::base {

/// `Element` is the C++ type of one pixel; `highest` the greatest value of an integer type that is
/// narrower than its element.
template <Rbuf_PixelType> struct PixelElement;

template <> struct PixelElement<U1> {
  using Element = unsigned char;
  static constexpr unsigned char highest = 1;
};
template <> struct PixelElement<U2> {
  using Element = unsigned char;
  static constexpr unsigned char highest = 3;
};
template <> struct PixelElement<U4> {
  using Element = unsigned char;
  static constexpr unsigned char highest = 15;
};
template <> struct PixelElement<U8> { using Element = unsigned char; };
template <> struct PixelElement<S8> { using Element = signed char; };
template <> struct PixelElement<U16> { using Element = unsigned short; };
template <> struct PixelElement<S16> { using Element = short; };
template <> struct PixelElement<U32> { using Element = unsigned int; };
template <> struct PixelElement<S32> { using Element = int; };
template <> struct PixelElement<F32> { using Element = float; };
template <> struct PixelElement<F64> { using Element = double; };
template <> struct PixelElement<C64> { using Element = std::complex<float>; };
template <> struct PixelElement<C128> { using Element = std::complex<double>; };

} // namespace quent::base
