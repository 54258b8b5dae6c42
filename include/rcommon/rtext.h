/// \file
/// Conversions between UTF-8 and wide text.
///
/// Threads: the functions hold no state.
#pragma once

#include "rcommon/api.h"

#include <string>

namespace rtext {

/// UTF-8 to wide. Bytes that are not UTF-8 become U+FFFD.
RASTEROPS_API std::wstring twiden(const char* text);

/// Wide to UTF-8. Values that are no code points become U+FFFD.
RASTEROPS_API std::string narrow(const wchar_t* text);

} // namespace rtext

extern "C" {

/// Compares two wide strings code by code: negative, 0 or positive as by `wcscmp`.
RASTEROPS_API int rtext_Text_strcmp(const wchar_t* left, const wchar_t* right);
}
