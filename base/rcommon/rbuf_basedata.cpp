#include "base/rcommon/layout.h"
#include "base/rcommon/report.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

using quent::base::ClearSlot;
using quent::base::Layout;
using quent::base::Report;

namespace {

constexpr std::int32_t bytesOfTypes[rbuf_PixelTypeCount] = {1, 1, 1, 1, 1, 2, 2, 4, 4, 4, 8, 8, 16};

constexpr const char* namesOfTypes[rbuf_PixelTypeCount + 1] = {
    "U1", "U2", "U4", "U8", "S8", "U16", "S16", "U32", "S32", "F32", "F64", "C64", "C128", nullptr};

/// New pixels with undefined contents and a zeroed tail; null for want of memory.
unsigned char* allocatePixels(const Layout& layout) {
  auto* const pixels = static_cast<unsigned char*>(rsys_HeapMalloc(layout.bytes + layout.tailBytes()));
  if (pixels)
    std::memset(pixels + layout.bytes, 0, layout.tailBytes());
  return pixels;
}

/// A record on the C++ heap; null with a report for want of memory.
_Rbuf_BaseData* newRecord(const _Rbuf_BaseData& contents, const char* function, Rfault_ErrorReport** slot) {
  auto* const record = new (std::nothrow) _Rbuf_BaseData(contents);
  if (!record)
    Report(slot, function, "No memory");
  return record;
}

/// Lines of a record: rows, or columns if it is column-major; and the bytes of one.
int lineCount(const _Rbuf_BaseData& rect) {
  return rect.objectType == rbuf_ColumnMajor ? rect.columns : rect.rows;
}
std::size_t lineBytes(const _Rbuf_BaseData& rect) {
  const int length = rect.objectType == rbuf_ColumnMajor ? rect.rows : rect.columns;
  return static_cast<std::size_t>(length) * rect.pixelBytes;
}

void copyLines(const _Rbuf_BaseData& source, _Rbuf_BaseData& destination) {
  const std::size_t bytes = lineBytes(source);
  for (std::ptrdiff_t line = 0; bytes > 0 && line < lineCount(source); ++line)
    std::memmove(destination.data + line * destination.pitch, source.data + line * source.pitch, bytes);
}

/// True if `count` lines from `offset` lie inside `total`, without overflow.
bool isInside(int offset, int count, int total) {
  return offset >= 0 && count >= 0 && offset <= total && count <= total - offset;
}

} // namespace

const std::int32_t* rsys_AddressOf_rbuf_NumBytesPerPixel() {
  return bytesOfTypes;
}

const char* const* rsys_AddressOf_rbuf_PixelTypeName() {
  return namesOfTypes;
}

_Rbuf_BaseData* rbuf_BaseDataCreate(int rows, int columns, Rbuf_PixelType pixelType,
                                    Rbuf_ObjectType objectType, unsigned char* data,
                                    Rfault_ErrorReport** slot) {
  ClearSlot(slot);
  const Layout layout(rows, columns, pixelType, objectType);
  if (layout.problem) {
    Report(slot, "rbuf_BaseDataCreate", layout.problem);
    return nullptr;
  }
  unsigned char* const pixels = data ? data : allocatePixels(layout);
  if (!pixels) {
    Report(slot, "rbuf_BaseDataCreate", "No memory");
    return nullptr;
  }
  _Rbuf_BaseData* const rect = newRecord({rows, columns, pixelType, objectType, pixels, pixels, layout.pitch,
                                          data != nullptr, rows * columns, bytesOfTypes[pixelType]},
                                         "rbuf_BaseDataCreate", slot);
  if (!rect && !data)
    rsys_HeapFree(pixels);
  return rect;
}

_Rbuf_BaseData* rbuf_BaseDataCopy(const _Rbuf_BaseData* source, _Rbuf_BaseData* destination,
                                  Rfault_ErrorReport** slot) {
  ClearSlot(slot);
  if (!source) {
    Report(slot, "rbuf_BaseDataCopy", "The source is null");
    return nullptr;
  }
  if (destination &&
      (destination->rows != source->rows || destination->columns != source->columns ||
       destination->pixelType != source->pixelType || destination->objectType != source->objectType)) {
    Report(slot, "rbuf_BaseDataCopy", "The destination differs from the source in size, type or order");
    return nullptr;
  }
  if (!destination)
    destination = rbuf_BaseDataCreate(source->rows, source->columns, source->pixelType, source->objectType,
                                      nullptr, slot);
  if (destination && destination->data != source->data)
    copyLines(*source, *destination);
  return destination;
}

void rbuf_BaseDataDelete(_Rbuf_BaseData* rect, Rfault_ErrorReport** slot) {
  ClearSlot(slot);
  if (rect && !rect->external)
    rsys_HeapFree(rect->storage);
  delete rect;
}

_Rbuf_BaseData* rbuf_BaseDataReDerive(const _Rbuf_BaseData* source, _Rbuf_BaseData* /*destination*/,
                                      int rowOffset, int columnOffset, int rows, int columns,
                                      Rfault_ErrorReport** slot) {
  ClearSlot(slot);
  if (!source) {
    Report(slot, "rbuf_BaseDataReDerive", "The source is null");
    return nullptr;
  }
  if (!isInside(rowOffset, rows, source->rows) || !isInside(columnOffset, columns, source->columns)) {
    Report(slot, "rbuf_BaseDataReDerive", "The window does not lie inside its source");
    return nullptr;
  }
  const bool columnMajor = source->objectType == rbuf_ColumnMajor;
  const std::ptrdiff_t line = columnMajor ? columnOffset : rowOffset;
  const std::ptrdiff_t position = columnMajor ? rowOffset : columnOffset;
  unsigned char* const first = source->data + line * source->pitch + position * source->pixelBytes;
  return newRecord({rows, columns, source->pixelType, source->objectType, first, first, source->pitch, 1,
                    rows * columns, source->pixelBytes},
                   "rbuf_BaseDataReDerive", slot);
}

void rbuf_BaseDataReallocate(_Rbuf_BaseData* rect, int rows, int columns, Rfault_ErrorReport** slot) {
  ClearSlot(slot);
  if (!rect || rect->external) {
    Report(slot, "rbuf_BaseDataReallocate",
           rect ? "The record does not own its pixels" : "The record is null");
    return;
  }
  const std::unique_ptr<_Rbuf_BaseData> resized(
      rbuf_BaseDataCreate(rows, columns, rect->pixelType, rect->objectType, nullptr, slot));
  if (!resized)
    return;
  std::memset(resized->data, 0, lineCount(*resized) * lineBytes(*resized));
  _Rbuf_BaseData common = *rect;
  common.rows = std::min(rect->rows, rows);
  common.columns = std::min(rect->columns, columns);
  copyLines(common, *resized);
  rsys_HeapFree(rect->storage);
  *rect = *resized;
}

void rbuf_BaseDataSetScalar(_Rbuf_BaseData* rect, double value, int row, int column,
                            Rfault_ErrorReport** slot) {
  ClearSlot(slot);
  if (!rect || !isInside(row, 1, rect->rows) || !isInside(column, 1, rect->columns)) {
    Report(slot, "rbuf_BaseDataSetScalar",
           rect ? "The position is outside the record" : "The record is null");
    return;
  }
  const bool columnMajor = rect->objectType == rbuf_ColumnMajor;
  const std::ptrdiff_t line = columnMajor ? column : row;
  const std::ptrdiff_t position = columnMajor ? row : column;
  rbuf_ConvertPixels(rect->data + line * rect->pitch + position * rect->pixelBytes, rect->pixelType, &value,
                     F64, 1, slot);
}

void rbuf_MaskOperation(_Rbuf_BaseData* destination, const _Rbuf_BaseData* source,
                        Rbuf_MaskOperator operation, Rfault_ErrorReport** slot) {
  ClearSlot(slot);
  const bool fits = destination && source && destination->pixelType == U8 && source->pixelType == U8 &&
                    destination->rows == source->rows && destination->columns == source->columns;
  if (!fits || operation < rbuf_MaskAnd || operation > rbuf_MaskNot) {
    Report(slot, "rbuf_MaskOperation", fits ? "Invalid operation" : "Not two U8 rectangles of one size");
    return;
  }
  for (std::ptrdiff_t row = 0; row < destination->rows; ++row) {
    unsigned char* const to = destination->data + row * destination->pitch;
    const unsigned char* const from = source->data + row * source->pitch;
    for (int c = 0; c < destination->columns; ++c) {
      const unsigned char a = to[c];
      const unsigned char b = from[c];
      to[c] = operation == rbuf_MaskAnd ? std::min(a, b)
              : operation == rbuf_MaskOr
                  ? std::max(a, b)
                  : static_cast<unsigned char>(
                        (operation == rbuf_MaskXor ? (a != 0) != (b != 0) : b == 0) ? 255 : 0);
    }
  }
}
