/// \file
/// The C functions of the block layer.
///
/// They never throw: a failure is a report in the slot (rcommon/rfault.h) that wraps the report of the
/// base library. With a null slot a failure is silent.
#pragma once

#include "rcommon/rbuf.h"

extern "C" {

/// A new rectangle that owns its pixels. Note the order: columns before rows.
RASTEROPS_API _Rbuf_BaseData* tilx_PixelRectCreate(int columns, int rows, Rbuf_PixelType pixelType,
                                                   Rfault_ErrorReport** slot);
/// As rbuf_BaseDataCopy().
RASTEROPS_API _Rbuf_BaseData* tilx_PixelRectCopy(const _Rbuf_BaseData* source, _Rbuf_BaseData* destination,
                                                 Rfault_ErrorReport** slot);
/// As rbuf_BaseDataDelete().
RASTEROPS_API void tilx_PixelRectDelete(_Rbuf_BaseData* rect, Rfault_ErrorReport** slot);
/// A stack of new rectangles. Note the order: columns before rows.
RASTEROPS_API _Rbuf_BaseDataStack* tilx_PixelRectStackCreate(int count, int columns, int rows,
                                                             Rbuf_PixelType pixelType,
                                                             Rfault_ErrorReport** slot);
/// As rbuf_BaseDataStackCopy().
RASTEROPS_API _Rbuf_BaseDataStack* tilx_PixelRectStackCopy(const _Rbuf_BaseDataStack* source,
                                                           _Rbuf_BaseDataStack* destination,
                                                           Rfault_ErrorReport** slot);
/// As rbuf_BaseDataStackDelete().
RASTEROPS_API void tilx_PixelRectStackDelete(_Rbuf_BaseDataStack* stack, Rfault_ErrorReport** slot);

/// The pixel type of a name such as L"U16", or -1 with a report. The slot is required.
RASTEROPS_API Rbuf_PixelType tilx_StringToType(const wchar_t* name, Rfault_ErrorReport** slot);

/// As rbuf_ConvertPixels().
RASTEROPS_API void tilx_ConvertPixels(void* destination, Rbuf_PixelType destinationType, const void* source,
                                      Rbuf_PixelType sourceType, std::size_t count,
                                      Rfault_ErrorReport** slot);
/// As rbuf_FillPixels().
RASTEROPS_API void tilx_FillPixels(void* data, Rbuf_PixelType pixelType, const void* value, std::size_t count,
                                   Rfault_ErrorReport** slot);
/// As rbuf_MaskOperation().
RASTEROPS_API void tilx_MaskOperation(_Rbuf_BaseData* destination, const _Rbuf_BaseData* source,
                                      Rbuf_MaskOperator operation, Rfault_ErrorReport** slot);

/// As rsys_AddressOf_rbuf_Convert().
RASTEROPS_API const Rbuf_ConvertFunction (*rsys_AddressOf_tilx_Convert())[rbuf_PixelTypeCount];
/// As rsys_AddressOf_rbuf_ConvertInc().
RASTEROPS_API const Rbuf_ConvertIncFunction (*rsys_AddressOf_tilx_ConvertInc())[rbuf_PixelTypeCount];
/// As rsys_AddressOf_rbuf_Fill().
RASTEROPS_API const Rbuf_FillFunction* rsys_AddressOf_tilx_Fill();
/// As rsys_AddressOf_rbuf_FillInc().
RASTEROPS_API const Rbuf_FillIncFunction* rsys_AddressOf_tilx_FillInc();
}
