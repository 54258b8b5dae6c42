/// \file
/// The heap of the base library, and its boolean.
///
/// Pixel storage comes from here. Large blocks are kept in a bounded pool after they are freed, lie on
/// large pages where the system has them, and are aligned to 64 bytes like all others.
///
/// Threads: all functions may be called from any thread at any time.
#pragma once

#include "rcommon/api.h"

#include <cstddef>

/// 32-bit truth value of the C layer: 0 or 1.
typedef int Rsys_Boolean;

extern "C" {

/// Memory with undefined contents; null when there is none left. Free it with rsys_HeapFree().
RASTEROPS_API void* rsys_HeapMalloc(std::size_t size);

/// Zeroed memory for `count` elements of `size` bytes; null when there is none left or the product
/// overflows. Free it with rsys_HeapFree().
RASTEROPS_API void* rsys_HeapCalloc(std::size_t count, std::size_t size);

/// Gives memory of this heap back. A null pointer is fine.
RASTEROPS_API void rsys_HeapFree(void* memory);

/// Start of the heap block that an address lies in, or null if it lies in none.
RASTEROPS_API const void* rsys_HeapBlockOf(const void* address);

/// Bytes that the pool may keep for reuse after they are freed (64 MiB when the library starts).
/// Lowering the limit gives memory back to the system at once.
RASTEROPS_API void rsys_HeapSetPoolLimit(std::size_t bytes);

/// Bytes that the pool keeps at this moment.
RASTEROPS_API std::size_t rsys_HeapPooledBytes();
}
