/// \file
/// Wide string helpers of the C layer.
///
/// Threads: rstring_PathExpand() reads the environment; the rest holds no state.
#pragma once

#include "rcommon/rfault.h"

extern "C" {

/// A copy on the rsys heap; free it with rsys_HeapFree(). Null for null, and for want of memory.
RASTEROPS_API wchar_t* rstring_Duplicate(const wchar_t* text);

/// A copy of a path on the rsys heap in which each `$NAME` is replaced by the environment variable
/// NAME (letters, digits, underscores); one that is not set is left as it stands.
RASTEROPS_API wchar_t* rstring_PathExpand(const wchar_t* path, Rfault_ErrorReport** slot);
}
