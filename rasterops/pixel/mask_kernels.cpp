#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "rasterops/pixel/mask_kernels.cpp"
#include <hwy/foreach_target.h>

#include "rasterops/pixel/mask-inl.h"

#if HWY_ONCE

#include "rasterops/pixel/mask_kernels.h"
#include "rasterops/pixel/planerows.h"

namespace tilx::kernels {

HWY_EXPORT(LookAtMaskRow);
HWY_EXPORT(MaskBytesRow);
HWY_EXPORT(MaskSinglesRow);
HWY_EXPORT(MaskDoublesRow);
HWY_EXPORT(MinimumRow);
HWY_EXPORT(LookAtCompositeRow);
HWY_EXPORT(HoldsPixelRow);
HWY_EXPORT(FillInvalidPixelsRow);

namespace {

/// The sightings of several rows, from the bits that the row functions return.
class Sightings {
public:
  void Add(unsigned bits) { m_Bits |= bits; }
  bool Both() const { return m_Bits == 3; }
  operator Seen() const { return Seen{(m_Bits & 1) != 0, (m_Bits & 2) != 0}; }

private:
  unsigned m_Bits = 0;
};

} // namespace

DataContentsCondition ConditionOfMask(const _Rbuf_BaseData& mask) {
  // Looked at in pieces of a few KiB, since most masks with both kinds show them early.
  constexpr std::size_t piece = 4096;
  const auto look = HWY_DYNAMIC_DISPATCH(LookAtMaskRow);
  const auto columns = static_cast<std::size_t>(mask.columns);
  const bool gapless = IsGapless(mask);
  const std::size_t length = gapless ? columns * static_cast<std::size_t>(mask.rows) : columns;
  Sightings seen;
  for (int r = 0; r < (gapless ? (mask.rows > 0) : mask.rows); ++r)
    for (std::size_t start = 0; start < length; start += piece) {
      seen.Add(look(RowOf(mask, r) + start, length - start < piece ? length - start : piece));
      if (seen.Both())
        return SOMEDATA;
    }
  return Seen(seen).Condition(NODATA);
}

Seen MaskFromNODATA(const _Rbuf_BaseData& plane, const unsigned char* value, const _Rbuf_BaseData& mask) {
  Sightings seen;
  const auto columns = static_cast<std::size_t>(plane.columns);
  for (int r = 0; r < plane.rows; ++r) {
    const unsigned char* const row = RowOf(plane, r);
    if (plane.pixelType == F32)
      seen.Add(HWY_DYNAMIC_DISPATCH(MaskSinglesRow)(row, RowOf(mask, r), columns, value));
    else if (plane.pixelType == F64)
      seen.Add(HWY_DYNAMIC_DISPATCH(MaskDoublesRow)(row, RowOf(mask, r), columns, value));
    else
      seen.Add(HWY_DYNAMIC_DISPATCH(MaskBytesRow)(row, RowOf(mask, r), columns, value, plane.pixelBytes));
  }
  return seen;
}

void MinimumInto(const _Rbuf_BaseData& composite, const _Rbuf_BaseData& mask) {
  for (int r = 0; r < mask.rows; ++r)
    HWY_DYNAMIC_DISPATCH(MinimumRow)
  (RowOf(composite, r), RowOf(mask, r), static_cast<std::size_t>(mask.columns));
}

Seen MinimumIntoAndLook(const _Rbuf_BaseData& composite, const _Rbuf_BaseData& mask) {
  Sightings seen;
  for (int r = 0; r < mask.rows; ++r) {
    const auto columns = static_cast<std::size_t>(mask.columns);
    HWY_DYNAMIC_DISPATCH(MinimumRow)(RowOf(composite, r), RowOf(mask, r), columns);
    seen.Add(HWY_DYNAMIC_DISPATCH(LookAtCompositeRow)(RowOf(composite, r), columns));
  }
  return seen;
}

bool RowHoldsPixel(const unsigned char* row, std::size_t count, const unsigned char* value, int pixelBytes) {
  return HWY_DYNAMIC_DISPATCH(HoldsPixelRow)(row, count, value, pixelBytes);
}

void MaskFromFillRow(const unsigned char* row, unsigned char* mask, std::size_t count,
                     const unsigned char* value, int pixelBytes) {
  HWY_DYNAMIC_DISPATCH(MaskBytesRow)(row, mask, count, value, pixelBytes);
}

void FillInvalidRow(unsigned char* row, const unsigned char* mask, std::size_t count,
                    const unsigned char* value, int pixelBytes) {
  HWY_DYNAMIC_DISPATCH(FillInvalidPixelsRow)(row, mask, count, value, pixelBytes);
}

} // namespace tilx::kernels

#endif // HWY_ONCE
