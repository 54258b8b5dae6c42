#include "engine/pixeltypes.h"

#include <gdal_priv.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace quent::rasterops::engine {

namespace {

constexpr IntegerRange ranges[] = {{0, 1},
                                   {0, 3},
                                   {0, 15},
                                   {0, 255},
                                   {-128, 127},
                                   {0, 65535},
                                   {-32768, 32767},
                                   {0, 4294967295.0},
                                   {-2147483648.0, 2147483647.0}};

Rbuf_PixelType byteType(GDALRasterBand& band) {
  const char* const kind = band.GetMetadataItem("PIXELTYPE", "IMAGE_STRUCTURE");
  if (kind && EQUAL(kind, "SIGNEDBYTE"))
    return S8;
  const char* const bits = band.GetMetadataItem("NBITS", "IMAGE_STRUCTURE");
  switch (bits ? std::atoi(bits) : 8) {
  case 1:
    return U1;
  case 2:
    return U2;
  case 4:
    return U4;
  default:
    return U8;
  }
}

/// True if `type` holds every value of `part`.
bool holds(Rbuf_PixelType type, Rbuf_PixelType part) {
  if (type == part)
    return true;
  if (IsComplex(part))
    return type == C128 && part == C64;
  if (part == F64)
    return type == C128;
  if (part == F32)
    return type == F64 || IsComplex(type);
  const IntegerRange range = RangeOf(part);
  if (type == F32 || type == C64) // a single holds 24 bits
    return std::max(std::fabs(range.least), range.most) <= 16777216.0;
  if (!IsInteger(type))
    return true;
  return RangeOf(type).least <= range.least && RangeOf(type).most >= range.most;
}

} // namespace

std::size_t PixelBytes(Rbuf_PixelType type) {
  return static_cast<std::size_t>(rsys_AddressOf_rbuf_NumBytesPerPixel()[type]);
}

GDALDataType BufferType(Rbuf_PixelType type) {
  switch (type) {
  case U16:
    return GDT_UInt16;
  case S16:
    return GDT_Int16;
  case U32:
    return GDT_UInt32;
  case S32:
    return GDT_Int32;
  case F32:
    return GDT_Float32;
  case F64:
    return GDT_Float64;
  case C64:
    return GDT_CFloat32;
  case C128:
    return GDT_CFloat64;
#if GDAL_VERSION_NUM >= GDAL_COMPUTE_VERSION(3, 7, 0)
  case S8:
    return GDT_Int8;
#else
  case S8: // held as the same bits, with PIXELTYPE=SIGNEDBYTE to tell
#endif
  case U1:
  case U2:
  case U4:
  case U8:
    break;
  }
  return GDT_Byte;
}

int PartialBits(Rbuf_PixelType type) {
  return type == U1 ? 1 : type == U2 ? 2 : type == U4 ? 4 : 0;
}

bool IsComplex(Rbuf_PixelType type) {
  return type == C64 || type == C128;
}

bool IsInteger(Rbuf_PixelType type) {
  return type < F32;
}

IntegerRange RangeOf(Rbuf_PixelType type) {
  return ranges[type];
}

std::optional<Rbuf_PixelType> BandType(GDALRasterBand& band) {
  switch (band.GetRasterDataType()) {
  case GDT_Byte:
    return byteType(band);
#if GDAL_VERSION_NUM >= GDAL_COMPUTE_VERSION(3, 7, 0)
  case GDT_Int8:
    return S8;
#endif
  case GDT_UInt16:
    return U16;
  case GDT_Int16:
    return S16;
  case GDT_UInt32:
    return U32;
  case GDT_Int32:
    return S32;
  case GDT_Float32:
    return F32;
  case GDT_Float64:
    return F64;
  case GDT_CInt16: // a single holds 16 bits, a double 32
  case GDT_CFloat32:
    return C64;
  case GDT_CInt32:
  case GDT_CFloat64:
    return C128;
  default:
    return std::nullopt;
  }
}

Rbuf_PixelType UnionType(const std::vector<Rbuf_PixelType>& types) {
  // In this order the first type that holds all is the smallest.
  for (const Rbuf_PixelType candidate : {U1, U2, U4, U8, S8, U16, S16, U32, S32, F32, F64, C64})
    if (std::all_of(types.begin(), types.end(), [=](Rbuf_PixelType part) { return holds(candidate, part); }))
      return candidate;
  return C128;
}

} // namespace quent::rasterops::engine
