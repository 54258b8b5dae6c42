#include "rasterops/tilxpixelrectstack.h"

#include "rasterops/tilxpixelrectstackarray.h"
#include "rcommon/rfaultexception.h"

namespace {

constexpr char file[] = "tilxpixelrectstack";

} // namespace

TilxPixelRectStack::TilxPixelRectStack(int count) {
  RfaultException ex(file, "TilxPixelRectStack::TilxPixelRectStack");
  m_Stack = tilx_PixelRectStackCreate(count, 1, 1, U1, ex.GetErrorSlot());
  ex.Check(__LINE__);
}

TilxPixelRectStack::TilxPixelRectStack(_Rbuf_BaseData* rect, Rsys_Boolean share) {
  RfaultException ex(file, "TilxPixelRectStack::TilxPixelRectStack");
  if (!rect)
    ex.Throw(__LINE__, "TilxPixelRectStack::Invalid arguments for constructor");
  // Not made with a layer of the record's size, which would only be allocated to be deleted again.
  TilxPixelRectStack made(rbuf_BaseDataStackPtrCreate(1, ex.GetErrorSlot()));
  ex.Check(__LINE__);
  made->shared = share;
  made->layers[0] = share == 1 ? rect : tilx_PixelRectCopy(rect, nullptr, ex.GetErrorSlot());
  ex.Check(__LINE__);
  m_Stack = made.Release();
}

TilxPixelRectStack::~TilxPixelRectStack() {
  if (!m_Stack)
    return;
  Rfault_ErrorReport* report = nullptr;
  tilx_PixelRectStackDelete(m_Stack, &report);
  rfault_DeleteErrorReportEx(&report);
}

TilxPixelRectStack& TilxPixelRectStack::operator=(_Rbuf_BaseDataStack* stack) {
  if (stack == m_Stack)
    return *this;
  if (m_Stack) {
    RfaultException ex(file, "TilxPixelRectStack::operator =");
    tilx_PixelRectStackDelete(m_Stack, ex.GetErrorSlot());
    m_Stack = nullptr;
    ex.Check(__LINE__);
  }
  m_Stack = stack;
  return *this;
}

_Rbuf_BaseDataStack* TilxPixelRectStack::Release() {
  _Rbuf_BaseDataStack* const stack = m_Stack;
  m_Stack = nullptr;
  return stack;
}

TilxPixelRectStackArray::TilxPixelRectStackArray() : _Rbuf_BaseDataStackArray{0, nullptr} {}

TilxPixelRectStackArray::~TilxPixelRectStackArray() {
  Rfault_ErrorReport* report = nullptr;
  for (_Rbuf_BaseDataStack* const stack : m_Stacks) {
    rfault_DeleteErrorReportEx(&report);
    rbuf_BaseDataStackDelete(stack, &report);
  }
  rfault_DeleteErrorReportEx(&report);
}

void TilxPixelRectStackArray::AddStack(_Rbuf_BaseDataStack* stack) {
  m_Stacks.push_back(stack);
  count = static_cast<std::int32_t>(m_Stacks.size());
  stacks = m_Stacks.data();
}
