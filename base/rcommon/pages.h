/// \file
/// Memory from the system. Not installed.
#pragma once

#include <cstddef>

namespace quent::base {

/// Zeroed pages, large ones where the system has them; null when there are none left.
void* MapPages(std::size_t bytes);
/// Gives pages back; `bytes` as when they were mapped.
void UnmapPages(void* pages, std::size_t bytes);

/// Memory at a multiple of `alignment`, a power of two; null when there is none left.
void* AllocateAligned(std::size_t bytes, std::size_t alignment);
/// Gives aligned memory back.
void FreeAligned(void* memory);

} // namespace quent::base
