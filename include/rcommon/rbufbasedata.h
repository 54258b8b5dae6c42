/// \file
/// Owner of one C record.
#pragma once

#include "rcommon/rbuf.h"

/// Owns one `_Rbuf_BaseData` and deletes it with rbuf_BaseDataDelete(), dropping any report.
/// Copying is not offered: Release() hands a record on.
class RASTEROPS_API RbufBaseData {
public:
  RbufBaseData() = default;
  /// Adopts a record.
  RbufBaseData(_Rbuf_BaseData* rect) : m_Rect(rect) {}
  /// rbuf_BaseDataCreate() with the same arguments. \throws RfaultException when it fails
  RbufBaseData(int rows, int columns, Rbuf_PixelType pixelType, Rbuf_ObjectType objectType,
               unsigned char* data);
  RbufBaseData(const RbufBaseData&) = delete;
  RbufBaseData& operator=(const RbufBaseData&) = delete;
  ~RbufBaseData() { Free(); }

  /// Frees the held record, unless it is the same one, and adopts the new one.
  RbufBaseData& operator=(_Rbuf_BaseData* rect);
  /// Deletes the held record.
  void Free();
  /// Returns the record and forgets it.
  _Rbuf_BaseData* Release();

  /// Address of the slot, for a C function to fill; the held record is not freed.
  _Rbuf_BaseData** operator&() { return &m_Rect; }
  /// Frees what is held and returns the address of the empty slot.
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
