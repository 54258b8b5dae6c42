#include "rasterops/pixelrectdeleter.h"

#include "rasterops/legacyhelpertemplate.h"

void quent::rasterops::PixelRectDeleter::operator()(_Rbuf_BaseData* rect) const noexcept {
  // Without an exception object: a deleter must work when there is no memory left to make one.
  rbuf_BaseDataDelete(rect, nullptr);
}

template <> void LegacyHelperTemplate<_Rbuf_BaseDataStack>::Free() noexcept {
  rbuf_BaseDataStackDelete(Release(), nullptr);
}

template <> void LegacyHelperTemplate<unsigned char>::Free() noexcept {
  rsys_HeapFree(Release());
}

unsigned char* RbufBaseDataStack::Element(int layer, int row, int column) const {
  const _Rbuf_BaseData& rect = *m_Handle->layers[layer];
  return rect.data + static_cast<std::ptrdiff_t>(rect.pitch) * row +
         static_cast<std::ptrdiff_t>(rect.pixelBytes) * column;
}
