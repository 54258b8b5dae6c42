/// \file
/// NODATA values: numbers as files state them, bytes as blocks hold them.
#pragma once

#include "catalogue/api.h"
#include "rcommon/rbuf.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace quent::rasterops::engine {

/// The bytes of one pixel, as many as its type has.
using PixelValue = std::array<unsigned char, 16>;

/// A number as a pixel of a type; none where the type cannot hold it: out of range, or not whole for an
/// integer type. Floats take the nearest single; a number just above the largest one, as rounded text gives,
/// is taken as that. Complex types get the imaginary part 0.
RASTEROPS_ENGINE_API std::optional<PixelValue> EncodeValue(double value, Rbuf_PixelType type);

/// True if a pixel of the type gives the number back as it is.
RASTEROPS_ENGINE_API bool HoldsExactly(double value, Rbuf_PixelType type);

/// The number that a pixel holds; of a complex one the real part.
RASTEROPS_ENGINE_API double DecodeValue(const PixelValue& value, Rbuf_PixelType type);

/// The quiet NaN that the engine writes to invalid pixels of a float or complex type.
RASTEROPS_ENGINE_API PixelValue NaNValue(Rbuf_PixelType type);

/// Reads "nan", "inf", "-inf" or a decimal number. Does not depend on the locale.
/// \throws std::invalid_argument
RASTEROPS_ENGINE_API double ParseNumber(const std::string& text);
/// The shortest text that reads as the same number.
RASTEROPS_ENGINE_API std::string NumberText(double value);

} // namespace quent::rasterops::engine
