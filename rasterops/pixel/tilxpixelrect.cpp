#include "rasterops/tilxpixelrect.h"

TilxPixelRect& TilxPixelRect::operator=(_Rbuf_BaseData* rect) {
  if (rect != m_Rect) {
    Free();
    m_Rect = rect;
  }
  return *this;
}

void TilxPixelRect::Free() {
  if (!m_Rect)
    return;
  Rfault_ErrorReport* report = nullptr;
  tilx_PixelRectDelete(m_Rect, &report);
  m_Rect = nullptr;
  rfault_DeleteErrorReportEx(&report);
}

TilxPixelRect::operator _Rbuf_BaseData**() {
  Free();
  return &m_Rect;
}
