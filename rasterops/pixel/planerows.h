/// \file
/// Whole planes, row by row. Not installed.
#pragma once

#include "rcommon/rbuf.h"
#include "rcommon/rfaultexception.h"

#include <cstddef>
#include <cstring>

namespace tilx {

/// Address of the first pixel of a row.
inline unsigned char* RowOf(const _Rbuf_BaseData& rect, std::ptrdiff_t row) {
  return rect.data + row * rect.pitch;
}

/// Sets all bytes of a mask, and not those between its rows, which a window shares with its source.
inline void FillMask(const _Rbuf_BaseData& mask, unsigned char value) {
  for (int r = 0; r < mask.rows; ++r)
    std::memset(RowOf(mask, r), value, static_cast<std::size_t>(mask.columns));
}

/// True if the rows of a rectangle follow each other without padding.
inline bool IsGapless(const _Rbuf_BaseData& rect) {
  return rect.pitch == rect.columns * rect.pixelBytes;
}

/// Calls `action(first row, count)` for the longest runs of pixels that lie side by side: once for the
/// plane if both rectangles are gapless, else once a row.
template <class Action>
void ForEachRun(const _Rbuf_BaseData& a, const _Rbuf_BaseData& b, const Action& action) {
  const bool gapless = IsGapless(a) && IsGapless(b);
  const auto columns = static_cast<std::size_t>(a.columns);
  for (int row = 0; row < (gapless ? (a.rows > 0) : a.rows); ++row)
    action(row, gapless ? columns * static_cast<std::size_t>(a.rows) : columns);
}

/// Converts the pixels of a plane into another one of the same size.
inline void ConvertPlane(const _Rbuf_BaseData& from, const _Rbuf_BaseData& to, const char* file,
                         const char* function) {
  RfaultException ex(file, function);
  ForEachRun(from, to, [&](int row, std::size_t count) {
    rbuf_ConvertPixels(RowOf(to, row), to.pixelType, RowOf(from, row), from.pixelType, count,
                       ex.GetErrorSlot());
    ex.Check(__LINE__);
  });
}

/// Writes one value to all pixels of a plane.
inline void FillPlane(const _Rbuf_BaseData& rect, const unsigned char* value, const char* file,
                      const char* function) {
  RfaultException ex(file, function);
  ForEachRun(rect, rect, [&](int row, std::size_t count) {
    rbuf_FillPixels(RowOf(rect, row), rect.pixelType, value, count, ex.GetErrorSlot());
    ex.Check(__LINE__);
  });
}

} // namespace tilx
