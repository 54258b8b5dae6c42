#include "rasterops/pixelrectdeleter.h"

#include "rasterops/legacyhelpertemplate.h"
#include "rcommon/rfaultexception.h"

void quent::rasterops::PixelRectDeleter::operator()(_Rbuf_BaseData* rect) const noexcept {
  RfaultException ex("pixelrectdeleter", "quent::rasterops::PixelRectDeleter::operator ()");
  rbuf_BaseDataDelete(rect, ex.GetErrorSlot());
}

template <> void LegacyHelperTemplate<_Rbuf_BaseDataStack>::Free() noexcept {
  RfaultException ex("legacyhelpertemplate.h", "LegacyHelperTemplate < Rbuf_BaseDataStack >::Free");
  rbuf_BaseDataStackDelete(Release(), ex.GetErrorSlot());
}

template <> void LegacyHelperTemplate<unsigned char>::Free() noexcept {
  rsys_HeapFree(Release());
}

unsigned char* RbufBaseDataStack::Element(int layer, int row, int column) const {
  const _Rbuf_BaseData& rect = *m_Handle->layers[layer];
  return rect.data + static_cast<std::ptrdiff_t>(rect.pitch) * row +
         static_cast<std::ptrdiff_t>(rect.pixelBytes) * column;
}
