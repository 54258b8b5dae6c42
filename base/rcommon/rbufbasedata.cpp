#include "rcommon/rbufbasedata.h"

#include "rcommon/rfaultexception.h"

RbufBaseData::RbufBaseData(int rows, int columns, Rbuf_PixelType pixelType, Rbuf_ObjectType objectType,
                           unsigned char* data) {
  RfaultException ex("rbufbasedata", "RbufBaseData::RbufBaseData");
  m_Rect = rbuf_BaseDataCreate(rows, columns, pixelType, objectType, data, ex.GetErrorSlot());
  ex.Check(__LINE__);
}

RbufBaseData& RbufBaseData::operator=(_Rbuf_BaseData* rect) {
  if (rect != m_Rect) {
    Free();
    m_Rect = rect;
  }
  return *this;
}

void RbufBaseData::Free() {
  Rfault_ErrorReport* report = nullptr;
  rbuf_BaseDataDelete(Release(), &report);
  rfault_DeleteErrorReportEx(&report);
}

_Rbuf_BaseData* RbufBaseData::Release() {
  _Rbuf_BaseData* const rect = m_Rect;
  m_Rect = nullptr;
  return rect;
}

RbufBaseData::operator _Rbuf_BaseData**() {
  Free();
  return &m_Rect;
}
