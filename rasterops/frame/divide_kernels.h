/// \file
/// Rows of Divide. Not installed.
#pragma once

#include "rcommon/rbuf.h"

#include <cstddef>

namespace quent::rasterops::kernels {

/// Divides `count` pixels of one type. Masks of the inputs are both null or both given; a pixel is valid
/// where they are nonzero and the divisor is not zero. Writes 255 or 0 to the result's mask, and to the
/// result only valid pixels. Result and inputs may share memory.
/// Returns bit 0 if a pixel was valid, bit 1 if one was not.
using DivideRowFunction = unsigned (*)(const void* dividend, const unsigned char* dividendMask,
                                       const void* divisor, const unsigned char* divisorMask, void* result,
                                       unsigned char* resultMask, std::size_t count);

/// The function of a pixel type for the vector target in use; null for a number that is no type.
DivideRowFunction DivideRowOf(Rbuf_PixelType type);

} // namespace quent::rasterops::kernels
