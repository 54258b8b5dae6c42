/// \file
/// Random pixels: extremes, special values, and zeros often.
#pragma once

#include "reference/model.h"
#include "support/random.h"

namespace testsupport {

/// The bytes of one random pixel. Integers: small numbers, extremes or any bits. Floats: 0.0, -0.0, NaN
/// of several payloads, infinities, subnormals, extremes or ordinary numbers.
reference::Bytes RandomPixel(Random& random, Rbuf_PixelType type);

/// `count` random pixels, one after the other.
reference::Bytes RandomPixels(Random& random, Rbuf_PixelType type, std::size_t count);

/// The bytes of the values, converted to the type.
reference::Bytes PixelsOf(Rbuf_PixelType type, const std::vector<double>& values);

/// How many pixels of a plane are invalid.
enum class Pattern { None, Sparse, Dense, All, OddBytes };

/// A random mask; OddBytes holds all byte values, 1 to 254 too.
reference::Bytes RandomMask(Random& random, std::size_t count, Pattern pattern);

inline constexpr Pattern kAllPatterns[] = {Pattern::None, Pattern::Sparse, Pattern::Dense, Pattern::All,
                                           Pattern::OddBytes};

} // namespace testsupport
