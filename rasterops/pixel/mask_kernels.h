/// \file
/// Rows and planes of masks. Not installed.
#pragma once

#include "rasterops/datacontentscondition.h"
#include "rcommon/rbuf.h"

#include <cstddef>

namespace tilx::kernels {

/// Which kinds of pixel a scan has seen.
struct Seen {
  bool valid = false;
  bool invalid = false;

  /// #SOMEDATA for both, #ALLDATA or #NODATA for one, `none` for neither.
  DataContentsCondition Condition(DataContentsCondition none) const {
    if (valid)
      return invalid ? SOMEDATA : ALLDATA;
    return invalid ? NODATA : none;
  }
};

/// Condition of a plane from its mask: only 255 is valid. Stops at the first contradiction.
DataContentsCondition ConditionOfMask(const _Rbuf_BaseData& mask);

/// Writes 0 where a pixel equals the NODATA value, 255 elsewhere, by the rules of ComputeMask.
Seen MaskFromNODATA(const _Rbuf_BaseData& plane, const unsigned char* value, const _Rbuf_BaseData& mask);

/// Takes the byte minimum of `mask` into `composite`.
void MinimumInto(const _Rbuf_BaseData& composite, const _Rbuf_BaseData& mask);
/// The same, and looks at the result: 0 is invalid, 255 valid, anything else both.
Seen MinimumIntoAndLook(const _Rbuf_BaseData& composite, const _Rbuf_BaseData& mask);

/// True if one of `count` pixels has the bytes of `value`.
bool RowHoldsPixel(const unsigned char* row, std::size_t count, const unsigned char* value, int pixelBytes);
/// Writes 0 where a pixel has the bytes of `value`, 255 elsewhere.
void MaskFromFillRow(const unsigned char* row, unsigned char* mask, std::size_t count,
                     const unsigned char* value, int pixelBytes);
/// Writes `value` to every pixel whose mask byte is 0.
void FillInvalidRow(unsigned char* row, const unsigned char* mask, std::size_t count,
                    const unsigned char* value, int pixelBytes);

} // namespace tilx::kernels
