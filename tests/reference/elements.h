/// \file
/// Elements of the 13 pixel types, for the slow twins. Nothing here asks the library.
#pragma once

#include "rcommon/rbuf.h"

#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace reference {

/// One pixel of C64 or C128.
template <class T> struct Complex {
  T real;
  T imaginary;
};

/// Names an element type for Visit().
template <class T> struct ElementTag { using Type = T; };

inline int PixelBytes(Rbuf_PixelType type) {
  constexpr int bytes[] = {1, 1, 1, 1, 1, 2, 2, 4, 4, 4, 8, 8, 16};
  return bytes[type];
}

inline const char* TypeName(Rbuf_PixelType type) {
  constexpr const char* names[] = {"U1",  "U2",  "U4",  "U8",  "S8",  "U16", "S16",
                                   "U32", "S32", "F32", "F64", "C64", "C128"};
  return names[type];
}

inline bool IsComplex(Rbuf_PixelType type) {
  return type == C64 || type == C128;
}

/// True for F32, F64 and the complex types.
inline bool IsFloating(Rbuf_PixelType type) {
  return type >= F32;
}

template <class T> T Load(const unsigned char* pixel) {
  T value;
  std::memcpy(&value, pixel, sizeof value);
  return value;
}

template <class T> void Store(unsigned char* pixel, T value) {
  std::memcpy(pixel, &value, sizeof value);
}

/// Calls `visitor(ElementTag<T>{})` with the element of a pixel type.
template <class Visitor> decltype(auto) Visit(Rbuf_PixelType type, Visitor visitor) {
  switch (type) {
  case U1:
  case U2:
  case U4:
  case U8:
    return visitor(ElementTag<std::uint8_t>{});
  case S8:
    return visitor(ElementTag<std::int8_t>{});
  case U16:
    return visitor(ElementTag<std::uint16_t>{});
  case S16:
    return visitor(ElementTag<std::int16_t>{});
  case U32:
    return visitor(ElementTag<std::uint32_t>{});
  case S32:
    return visitor(ElementTag<std::int32_t>{});
  case F32:
    return visitor(ElementTag<float>{});
  case F64:
    return visitor(ElementTag<double>{});
  case C64:
    return visitor(ElementTag<Complex<float>>{});
  case C128:
    return visitor(ElementTag<Complex<double>>{});
  }
  throw std::invalid_argument("no such pixel type");
}

} // namespace reference
