#include "rasterops/tilx.h"

#include "rcommon/rtext.h"

namespace {

/// Runs one call of the base library for a function with an error slot: empties the caller's slot, and
/// wraps the report of the call, if it made one, into a report of the function.
template <class Call>
auto reportingAs(const char* function, long line, const char* message, Rfault_ErrorReport** slot,
                 const Call& call) {
  Rfault_ErrorReport* fallback = nullptr;
  Rfault_ErrorReport** const out = slot ? slot : &fallback;
  *out = nullptr;
  struct Wrap {
    const char* function;
    long line;
    const char* message;
    Rfault_ErrorReport** out;
    bool silent;
    Rfault_ErrorReport* inner = nullptr;
    ~Wrap() {
      if (inner)
        *out = rfault_CreateErrorReport(function, line, 2, inner, message, nullptr);
      if (silent)
        rfault_DeleteErrorReportEx(out);
    }
  } wrap{function, line, message, out, slot == nullptr};
  return call(&wrap.inner);
}

} // namespace

// The lines in the reports are part of the functions' contract; they do not follow this file.

_Rbuf_BaseData* tilx_PixelRectCreate(int columns, int rows, Rbuf_PixelType pixelType,
                                     Rfault_ErrorReport** slot) {
  return reportingAs("tilx_PixelRectCreate", 80, "rbuf_BaseDataCreate failed", slot, [&](auto** inner) {
    return rbuf_BaseDataCreate(rows, columns, pixelType, rbuf_RowMajor, nullptr, inner);
  });
}

_Rbuf_BaseData* tilx_PixelRectCopy(const _Rbuf_BaseData* source, _Rbuf_BaseData* destination,
                                   Rfault_ErrorReport** slot) {
  return reportingAs("tilx_PixelRectCopy", 126, "rbuf_BaseDataCopy failed", slot,
                     [&](auto** inner) { return rbuf_BaseDataCopy(source, destination, inner); });
}

void tilx_PixelRectDelete(_Rbuf_BaseData* rect, Rfault_ErrorReport** slot) {
  reportingAs("tilx_PixelRectDelete", 168, "rbuf_BaseDataDelete failed", slot,
              [&](auto** inner) { rbuf_BaseDataDelete(rect, inner); });
}

_Rbuf_BaseDataStack* tilx_PixelRectStackCreate(int count, int columns, int rows, Rbuf_PixelType pixelType,
                                               Rfault_ErrorReport** slot) {
  return reportingAs("tilx_PixelRectStackCreate", 222, "rbuf_BaseDataStackCreate failed", slot,
                     [&](auto** inner) {
                       return rbuf_BaseDataStackCreate(count, rows, columns, pixelType, rbuf_RowMajor, inner);
                     });
}

_Rbuf_BaseDataStack* tilx_PixelRectStackCopy(const _Rbuf_BaseDataStack* source,
                                             _Rbuf_BaseDataStack* destination, Rfault_ErrorReport** slot) {
  return reportingAs("tilx_PixelRectStackCopy", 270, "rbuf_BaseDataStackCopy failed", slot,
                     [&](auto** inner) { return rbuf_BaseDataStackCopy(source, destination, inner); });
}

void tilx_PixelRectStackDelete(_Rbuf_BaseDataStack* stack, Rfault_ErrorReport** slot) {
  reportingAs("tilx_PixelRectStackDelete", 313, "rbuf_BaseDataStackDelete failed", slot,
              [&](auto** inner) { rbuf_BaseDataStackDelete(stack, inner); });
}

Rbuf_PixelType tilx_StringToType(const wchar_t* name, Rfault_ErrorReport** slot) {
  *slot = nullptr;
  const char* const* const names = rsys_AddressOf_rbuf_PixelTypeName();
  for (int i = 0; name && names[i]; ++i)
    if (rtext_Text_strcmp(rtext::twiden(names[i]).c_str(), name) == 0)
      return static_cast<Rbuf_PixelType>(i);
  *slot = rfault_CreateErrorReport("tilx_StringToType", 1, 2, nullptr, "Invalid pixel type:  %s",
                                   name ? name : L"(null)", nullptr);
  return static_cast<Rbuf_PixelType>(-1);
}

void tilx_ConvertPixels(void* destination, Rbuf_PixelType destinationType, const void* source,
                        Rbuf_PixelType sourceType, std::size_t count, Rfault_ErrorReport** slot) {
  rbuf_ConvertPixels(destination, destinationType, source, sourceType, count, slot);
}

void tilx_FillPixels(void* data, Rbuf_PixelType pixelType, const void* value, std::size_t count,
                     Rfault_ErrorReport** slot) {
  rbuf_FillPixels(data, pixelType, value, count, slot);
}

void tilx_MaskOperation(_Rbuf_BaseData* destination, const _Rbuf_BaseData* source,
                        Rbuf_MaskOperator operation, Rfault_ErrorReport** slot) {
  rbuf_MaskOperation(destination, source, operation, slot);
}

const Rbuf_ConvertFunction (*rsys_AddressOf_tilx_Convert())[rbuf_PixelTypeCount] {
  return rsys_AddressOf_rbuf_Convert();
}

const Rbuf_ConvertIncFunction (*rsys_AddressOf_tilx_ConvertInc())[rbuf_PixelTypeCount] {
  return rsys_AddressOf_rbuf_ConvertInc();
}

const Rbuf_FillFunction* rsys_AddressOf_tilx_Fill() {
  return rsys_AddressOf_rbuf_Fill();
}

const Rbuf_FillIncFunction* rsys_AddressOf_tilx_FillInc() {
  return rsys_AddressOf_rbuf_FillInc();
}
