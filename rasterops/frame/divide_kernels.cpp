#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "rasterops/frame/divide_kernels.cpp"
#include <hwy/foreach_target.h>

#include "rasterops/frame/divide-inl.h"

#if HWY_ONCE

#include "rasterops/frame/divide_kernels.h"

namespace quent::rasterops {

HWY_EXPORT(DivideU8);
HWY_EXPORT(DivideS8);
HWY_EXPORT(DivideU16);
HWY_EXPORT(DivideS16);
HWY_EXPORT(DivideU32);
HWY_EXPORT(DivideS32);
HWY_EXPORT(DivideF32);
HWY_EXPORT(DivideF64);
HWY_EXPORT(DivideC64);
HWY_EXPORT(DivideC128);

kernels::DivideRowFunction kernels::DivideRowOf(Rbuf_PixelType type) {
  switch (type) {
  case U1:
  case U2:
  case U4:
  case U8:
    return &HWY_DYNAMIC_DISPATCH(DivideU8);
  case S8:
    return &HWY_DYNAMIC_DISPATCH(DivideS8);
  case U16:
    return &HWY_DYNAMIC_DISPATCH(DivideU16);
  case S16:
    return &HWY_DYNAMIC_DISPATCH(DivideS16);
  case U32:
    return &HWY_DYNAMIC_DISPATCH(DivideU32);
  case S32:
    return &HWY_DYNAMIC_DISPATCH(DivideS32);
  case F32:
    return &HWY_DYNAMIC_DISPATCH(DivideF32);
  case F64:
    return &HWY_DYNAMIC_DISPATCH(DivideF64);
  case C64:
    return &HWY_DYNAMIC_DISPATCH(DivideC64);
  case C128:
    return &HWY_DYNAMIC_DISPATCH(DivideC128);
  }
  return nullptr;
}

} // namespace quent::rasterops

#endif // HWY_ONCE
