/// \file
/// Slow twin of the pixel conversions.
#pragma once

#include "reference/model.h"

namespace reference {

/// Converts one pixel. Integers saturate (1-, 2- and 4-bit types at 1, 3 and 15); floats round half away
/// from zero and saturate; NaN gives 0; a finite double beyond the singles gives the largest one; complex
/// to real takes the real part, real to complex has imaginary part 0; a type to itself keeps its bytes.
void ConvertPixel(unsigned char* destination, Rbuf_PixelType destinationType, const unsigned char* source,
                  Rbuf_PixelType sourceType);

/// ConvertPixel() for all pixels of `source`.
Bytes ConvertPixels(Rbuf_PixelType destinationType, const Bytes& source, Rbuf_PixelType sourceType);

/// `count` copies of one pixel.
Bytes FillPixels(const Bytes& value, std::size_t count);

} // namespace reference
