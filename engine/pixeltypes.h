/// \file
/// Pixel types as files hold them and as blocks hold them.
#pragma once

#include "catalogue/api.h"
#include "rcommon/rbuf.h"

#include <gdal.h>

#include <cstddef>
#include <optional>
#include <vector>

class GDALRasterBand;

namespace quent::rasterops::engine {

/// Bytes of a pixel in a block.
RASTEROPS_ENGINE_API std::size_t PixelBytes(Rbuf_PixelType type);
/// GDAL's type of the pixels in a block.
RASTEROPS_ENGINE_API GDALDataType BufferType(Rbuf_PixelType type);
/// Bits of U1, U2 and U4; 0 for types that fill their bytes.
RASTEROPS_ENGINE_API int PartialBits(Rbuf_PixelType type);
RASTEROPS_ENGINE_API bool IsComplex(Rbuf_PixelType type);
RASTEROPS_ENGINE_API bool IsInteger(Rbuf_PixelType type);
/// Smallest and largest value of an integer type.
struct IntegerRange {
  double least;
  double most;
};
RASTEROPS_ENGINE_API IntegerRange RangeOf(Rbuf_PixelType type);

/// Type of a band's pixels; none for 64-bit integers, which blocks do not have.
RASTEROPS_ENGINE_API std::optional<Rbuf_PixelType> BandType(GDALRasterBand& band);

/// The smallest type that holds all values of all the types; for 32-bit integers of both signs, F64.
RASTEROPS_ENGINE_API Rbuf_PixelType UnionType(const std::vector<Rbuf_PixelType>& types);

} // namespace quent::rasterops::engine
