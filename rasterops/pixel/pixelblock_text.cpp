// Text dumps of a block.
#include "rasterops/pixel/planerows.h"
#include "rasterops/pixelblock.h"

#include <cmath>
#include <limits>
#include <sstream>

namespace tilx {

namespace {

double valueOf(const _Rbuf_BaseData& rect, std::ptrdiff_t row, std::ptrdiff_t column) {
  double value = 0;
  rsys_AddressOf_rbuf_Convert()[rect.pixelType][F64](RowOf(rect, row) + column * rect.pixelBytes, &value, 1);
  return value;
}

/// A whole number that a long holds prints as one; anything else as the stream prints a double.
template <class Character> void printValue(std::basic_ostream<Character>& out, double value) {
  constexpr double range = 9223372036854775808.0; // 2^63; beyond it there is no long to print
  if (value == std::round(value) && value >= -range && value < range)
    out << static_cast<long long>(value);
  else
    out << value;
}

void printRow(std::wostream& out, const _Rbuf_BaseData& rect, int row) {
  for (int c = 0; c < rect.columns; ++c) {
    out << L'\t';
    printValue(out, valueOf(rect, row, c));
    if (c + 1 < rect.columns)
      out << L',';
  }
}

/// Rows separated by line ends, without one at the end.
void printRectangle(std::wostream& out, const _Rbuf_BaseData* rect) {
  if (!rect) {
    out << L"null";
    return;
  }
  for (int r = 0; r < rect->rows; ++r) {
    printRow(out, *rect, r);
    if (r + 1 < rect->rows)
      out << std::endl;
  }
}

void printRectangles(std::wostream& out, const boost::shared_array<boost::shared_ptr<_Rbuf_BaseData>>& rects,
                     long count, long width, long height) {
  constexpr long largestPrinted = 10;
  if (!rects) {
    out << L"null" << std::endl;
    return;
  }
  if (width > largestPrinted || height > largestPrinted) {
    out << width << L" x " << height << std::endl;
    return;
  }
  out << std::endl;
  for (long i = 0; i < count; ++i) {
    out << L"{ ";
    printRectangle(out, rects[i].get());
    out << L" }" << std::endl;
  }
}

const wchar_t* nameOf(DataContentsCondition condition) {
  switch (condition) {
  case ALLDATA:
    return L"ALLDATA\t";
  case NODATA:
    return L"NODATA\t";
  case SOMEDATA:
    return L"SOMEDATA\t";
  case UNKNOWN:
    return L"UNKNOWN\t";
  }
  return L"INVALID\t";
}

void printFlags(std::wostream& out, const wchar_t* title, const boost::shared_array<bool>& flags,
                long count) {
  out << title;
  for (long i = 0; i < count; ++i)
    out << (flags[i] ? L"true\t" : L"false\t");
  out << std::endl;
}

} // namespace

void PixelBlock::ToString(std::wstring& out) {
  std::wostringstream text;
  for (long i = 0; i < m_Data->m_NumOfPlanes; ++i) {
    const _Rbuf_BaseData& rect = *getPlaneData(i);
    text << L"{" << std::endl;
    for (int r = 0; r < rect.rows; ++r) {
      printRow(text, rect, r);
      text << std::endl;
    }
    text << L"}" << std::endl;
  }
  out = text.str();
}

void PixelBlock::ToFileAsString(_rfile_FdRec* file) {
  RfaultException ex("pixelblock", "tilx::PixelBlock::ToFileAsString");
  const auto write = [&](const std::string& piece) {
    rfile_WriteSeq(file, piece.data(), piece.size(), ex.GetErrorSlot());
    ex.Check(__LINE__);
  };
  for (long i = 0; i < m_Data->m_NumOfPlanes; ++i) {
    const _Rbuf_BaseData& rect = *getPlaneData(i);
    write("{\n");
    for (int r = 0; r < rect.rows; ++r)
      for (int c = 0; c < rect.columns; ++c) {
        std::ostringstream piece;
        piece << '\t';
        printValue(piece, valueOf(rect, r, c));
        if (c + 1 < rect.columns)
          piece << ',';
        write(piece.str());
      }
    write("}\n");
  }
}

std::wstring PixelBlock::ToDebugString() const {
  const pixelBlockData& data = *m_Data;
  const long count = data.m_NumOfPlanes;
  std::wostringstream out;
  out << L"m_NumOfPlanes: " << count << std::endl;
  out << L"m_Planes: ";
  printRectangles(out, data.m_Planes, count, getWidth(), getHeight());
  out << L"m_Masks: ";
  printRectangles(out, data.m_Masks, count, getWidth(), getHeight());
  out << L"m_NoDataValues: ";
  if (!data.m_NoDataValues)
    out << L"null";
  for (long i = 0; i < count; ++i)
    if (data.m_NoDataValues[i])
      out << static_cast<int>(data.m_NoDataValues[i][0]) << L"\t";
    else
      out << L"null\t";
  out << std::endl;
  out << L"m_PlanesCondition: ";
  for (long i = 0; i < count; ++i)
    out << nameOf(data.m_PlanesCondition[i]);
  out << std::endl;
  printFlags(out, L"m_MaskDirty: ", data.m_MaskDirty, count);
  printFlags(out, L"m_MaskHasPrimacy: ", data.m_MaskHasPrimacy, count);
  return out.str();
}

} // namespace tilx
