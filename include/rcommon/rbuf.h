/// \file
/// Pixel rectangles: pixel types, records, and the C functions that make, copy and convert them.
///
/// Every function with an error slot (see rcommon/rfault.h) sets `*slot` to a report when it fails and
/// to null when it does not; a null slot drops the report. None of them throws.
///
/// Threads: the functions hold no shared state; a record may be read by many threads and written by one.
#pragma once

#include "rcommon/rfault.h"
#include "rcommon/rsys.h"

#include <cstddef>
#include <cstdint>

/// Pixel types by number. U1, U2 and U4 are stored one pixel per byte.
enum Rbuf_PixelType : std::int32_t {
  U1 = 0,   ///< 1-bit unsigned, one pixel per byte
  U2 = 1,   ///< 2-bit unsigned, one pixel per byte
  U4 = 2,   ///< 4-bit unsigned, one pixel per byte
  U8 = 3,   ///< unsigned 8-bit integer
  S8 = 4,   ///< signed 8-bit integer
  U16 = 5,  ///< unsigned 16-bit integer
  S16 = 6,  ///< signed 16-bit integer
  U32 = 7,  ///< unsigned 32-bit integer
  S32 = 8,  ///< signed 32-bit integer
  F32 = 9,  ///< IEEE 754 single
  F64 = 10, ///< IEEE 754 double
  C64 = 11, ///< complex of two singles, real part first
  C128 = 12 ///< complex of two doubles, real part first
};

/// Number of pixel types; valid numbers lie below it.
constexpr int rbuf_PixelTypeCount = 13;

/// How a record lays out its elements.
enum Rbuf_ObjectType : std::int32_t {
  rbuf_ColumnMajor = 2, ///< element (r, c) at `data + c * pitch + r * pixelBytes`
  rbuf_RowMajor = 3     ///< element (r, c) at `data + r * pitch + c * pixelBytes`
};

/// One rectangle of pixels. Pixel (r, c) lies at `data + r * pitch + c * pixelBytes`.
struct _Rbuf_BaseData {
  std::int32_t rows;          ///< number of rows (height)
  std::int32_t columns;       ///< number of columns (width)
  Rbuf_PixelType pixelType;   ///< element type
  Rbuf_ObjectType objectType; ///< element order, row-major in every rectangle of a block
  unsigned char* data;        ///< address of the first pixel; all access goes through it
  unsigned char* storage;     ///< address of the first pixel when the record was created
  std::int32_t pitch;         ///< bytes from the start of a row to the start of the next
  std::int32_t external;      ///< nonzero: the record does not own its pixels
  std::int32_t numElements;   ///< rows times columns; 1 stands for one value
  std::int32_t pixelBytes;    ///< bytes per pixel
};

/// An ordered set of rectangles.
struct _Rbuf_BaseDataStack {
  std::int32_t count;      ///< number of layers
  Rsys_Boolean shared;     ///< 1: the layers are only referred to, not owned
  _Rbuf_BaseData** layers; ///< one entry per layer, possibly null
};

/// A count of stacks and where they are listed.
struct _Rbuf_BaseDataStackArray {
  std::int32_t count;           ///< number of stacks
  _Rbuf_BaseDataStack** stacks; ///< one entry per stack
};

/// Converts `count` contiguous pixels. Source and destination may be the same if the types are.
typedef void (*Rbuf_ConvertFunction)(const void* source, void* destination, std::size_t count);

/// Converts `count` pixels that lie `sourceStep` and `destinationStep` bytes apart.
typedef void (*Rbuf_ConvertIncFunction)(const void* source, std::ptrdiff_t sourceStep, void* destination,
                                        std::ptrdiff_t destinationStep, std::size_t count);

/// Writes `count` contiguous pixels, each a copy of the pixel at `value`.
typedef void (*Rbuf_FillFunction)(void* destination, const void* value, std::size_t count);

/// Writes `count` pixels that lie `step` bytes apart, each a copy of the pixel at `value`.
typedef void (*Rbuf_FillIncFunction)(void* destination, std::ptrdiff_t step, const void* value,
                                     std::size_t count);

/// How rbuf_MaskOperation() combines two mask bytes.
enum Rbuf_MaskOperator : std::int32_t {
  rbuf_MaskAnd = 0, ///< byte minimum
  rbuf_MaskOr = 1,  ///< byte maximum
  rbuf_MaskXor = 2, ///< 255 where exactly one byte is nonzero, else 0
  rbuf_MaskNot = 3  ///< 255 where the second byte is 0, else 0; the first is not read
};

extern "C" {

/// A new row-major or column-major record. With `data` null it owns new pixels, whose contents are
/// undefined, followed by a zeroed tail of at least one row; with `data` set it refers to them and
/// never frees them. The pitch is `columns * pixelBytes` (`rows * pixelBytes` if column-major).
/// Fails on an unknown type or order, a negative size, a size beyond 32 bits, and for want of memory.
RASTEROPS_API _Rbuf_BaseData* rbuf_BaseDataCreate(int rows, int columns, Rbuf_PixelType pixelType,
                                                  Rbuf_ObjectType objectType, unsigned char* data,
                                                  Rfault_ErrorReport** slot);

/// With `destination` null, a new record that owns a copy of the pixels, without padding between rows.
/// With a destination of the same size and type, copies the pixels into it and returns it.
RASTEROPS_API _Rbuf_BaseData* rbuf_BaseDataCopy(const _Rbuf_BaseData* source, _Rbuf_BaseData* destination,
                                                Rfault_ErrorReport** slot);

/// Frees the record, and its pixels unless they are external. A null record is fine.
RASTEROPS_API void rbuf_BaseDataDelete(_Rbuf_BaseData* rect, Rfault_ErrorReport** slot);

/// A new record that looks at a window of `source`, sharing its pixels and pitch. `destination` is the
/// earlier record of a window that moves, or null: it is left alone, the new record does not depend on
/// it, and its owner deletes it. Fails when the window does not lie inside `source`.
RASTEROPS_API _Rbuf_BaseData* rbuf_BaseDataReDerive(const _Rbuf_BaseData* source, _Rbuf_BaseData* destination,
                                                    int rowOffset, int columnOffset, int rows, int columns,
                                                    Rfault_ErrorReport** slot);

/// Gives a record that owns its pixels a new size. Pixels that lie in both sizes keep their values, new
/// ones are 0. Fails on a record with external pixels.
RASTEROPS_API void rbuf_BaseDataReallocate(_Rbuf_BaseData* rect, int rows, int columns,
                                           Rfault_ErrorReport** slot);

/// Sets the pixel at (`row`, `column`) from a double, converted as by rbuf_ConvertPixels().
RASTEROPS_API void rbuf_BaseDataSetScalar(_Rbuf_BaseData* rect, double value, int row, int column,
                                          Rfault_ErrorReport** slot);

/// A stack of `count` new rectangles, each owning its pixels.
RASTEROPS_API _Rbuf_BaseDataStack* rbuf_BaseDataStackCreate(int count, int rows, int columns,
                                                            Rbuf_PixelType pixelType,
                                                            Rbuf_ObjectType objectType,
                                                            Rfault_ErrorReport** slot);

/// A stack of `count` null layers, to be filled by the caller. It owns what is put into it.
RASTEROPS_API _Rbuf_BaseDataStack* rbuf_BaseDataStackPtrCreate(int count, Rfault_ErrorReport** slot);

/// rbuf_BaseDataCopy() for each layer; a destination has as many layers as the source.
RASTEROPS_API _Rbuf_BaseDataStack* rbuf_BaseDataStackCopy(const _Rbuf_BaseDataStack* source,
                                                          _Rbuf_BaseDataStack* destination,
                                                          Rfault_ErrorReport** slot);

/// Frees the layers, unless `shared`, and the record. A null stack is fine.
RASTEROPS_API void rbuf_BaseDataStackDelete(_Rbuf_BaseDataStack* stack, Rfault_ErrorReport** slot);

/// Bytes of all pixels of such a stack; a multiple of `count`. 0 with a report when the size is not
/// valid or overflows.
RASTEROPS_API std::size_t rbuf_BaseDataStackDataSize(int count, int rows, int columns,
                                                     Rbuf_PixelType pixelType, Rbuf_ObjectType objectType,
                                                     Rfault_ErrorReport** slot);

/// True if the layers follow each other at one fixed distance in one allocation. Layers of one heap
/// block lie in one allocation; of memory that a caller brought, even spacing is all that is asked.
RASTEROPS_API bool rbuf_BaseDataStackIsContiguous(const _Rbuf_BaseDataStack* stack);

/// Writes `count` contiguous pixels of a type from the bytes of one pixel.
RASTEROPS_API void rbuf_FillPixels(void* data, Rbuf_PixelType pixelType, const void* value, std::size_t count,
                                   Rfault_ErrorReport** slot);

/// Converts `count` contiguous pixels. Integers saturate at the target's range (1-, 2- and 4-bit types
/// at 1, 3 and 15); floats round half away from zero and saturate; NaN gives 0. Double to single rounds as
/// IEEE does, keeps NaN and infinities, and saturates finite values at the largest finite single. Complex to
/// real takes the real part; real to complex has imaginary part 0. A type to itself copies the bytes, so that
/// a NaN keeps its bits.
RASTEROPS_API void rbuf_ConvertPixels(void* destination, Rbuf_PixelType destinationType, const void* source,
                                      Rbuf_PixelType sourceType, std::size_t count,
                                      Rfault_ErrorReport** slot);

/// Combines `source` into `destination`, two U8 rectangles of one size, byte by byte.
RASTEROPS_API void rbuf_MaskOperation(_Rbuf_BaseData* destination, const _Rbuf_BaseData* source,
                                      Rbuf_MaskOperator operation, Rfault_ErrorReport** slot);

/// Bytes per pixel, indexed by pixel type.
RASTEROPS_API const std::int32_t* rsys_AddressOf_rbuf_NumBytesPerPixel();

/// Names of the pixel types ("U1" to "C128"), indexed by pixel type, ended by a null pointer.
RASTEROPS_API const char* const* rsys_AddressOf_rbuf_PixelTypeName();

/// `[sourceType][destinationType]`: the function behind rbuf_ConvertPixels().
RASTEROPS_API const Rbuf_ConvertFunction (*rsys_AddressOf_rbuf_Convert())[rbuf_PixelTypeCount];

/// `[sourceType][destinationType]`: the same conversions for pixels that lie apart.
RASTEROPS_API const Rbuf_ConvertIncFunction (*rsys_AddressOf_rbuf_ConvertInc())[rbuf_PixelTypeCount];

/// `[pixelType]`: the function behind rbuf_FillPixels().
RASTEROPS_API const Rbuf_FillFunction* rsys_AddressOf_rbuf_Fill();

/// `[pixelType]`: the same for pixels that lie apart.
RASTEROPS_API const Rbuf_FillIncFunction* rsys_AddressOf_rbuf_FillInc();
}
