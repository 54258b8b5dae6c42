/// \file
/// Owner of one pixel rectangle.
#pragma once

#include "rasterops/tilx.h"

/// Owns one `_Rbuf_BaseData`. A failure to delete it is never reported.
class RASTEROPS_API TilxPixelRect {
public:
  TilxPixelRect() = default;
  /// Adopts a record.
  TilxPixelRect(_Rbuf_BaseData* rect) : m_Rect(rect) {}
  /// Copies the pointer without counting: for moving a record between wrappers, of which the caller
  /// keeps only one alive.
  TilxPixelRect(const TilxPixelRect& other) = default;
  ~TilxPixelRect() { Free(); }

  /// Frees the held record, unless it is the same one, and adopts the new one.
  TilxPixelRect& operator=(_Rbuf_BaseData* rect);
  /// Copies the pointer without counting or freeing.
  TilxPixelRect& operator=(const TilxPixelRect& other) = default;
  /// Deletes the held record.
  void Free();

  /// Frees what is held and returns the address of the empty slot, for a C function to fill.
  operator _Rbuf_BaseData**();
  operator _Rbuf_BaseData*() const { return m_Rect; }
  _Rbuf_BaseData* operator->() const { return m_Rect; }
  /// True if a record is held.
  operator bool() const { return m_Rect != nullptr; }
  /// The same for an object that is not const, where the freeing conversion would win otherwise.
  operator bool() { return m_Rect != nullptr; }
  /// True if none is.
  bool operator!() const { return m_Rect == nullptr; }
  /// Without these the comparison would be ambiguous between the two pointers.
  bool operator==(std::nullptr_t) const { return m_Rect == nullptr; }
  bool operator!=(std::nullptr_t) const { return m_Rect != nullptr; }

private:
  _Rbuf_BaseData* m_Rect = nullptr;
};
