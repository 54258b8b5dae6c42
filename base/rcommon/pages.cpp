#include "base/rcommon/pages.h"

#include <cstdint>
#include <cstdlib>

#if defined(_WIN32)
#include <malloc.h>
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace quent::base {

#if defined(_WIN32)

void* MapPages(std::size_t bytes) {
  return VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}
void UnmapPages(void* pages, std::size_t) {
  VirtualFree(pages, 0, MEM_RELEASE);
}
void* AllocateAligned(std::size_t bytes, std::size_t alignment) {
  return _aligned_malloc(bytes, alignment);
}
void FreeAligned(void* memory) {
  _aligned_free(memory);
}

#else

namespace {

constexpr std::size_t largePage = std::size_t{2} << 20;

void* map(std::size_t bytes) {
  void* const pages = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return pages == MAP_FAILED ? nullptr : pages;
}

} // namespace

void* MapPages(std::size_t bytes) {
  if (bytes < largePage)
    return map(bytes);
  // Only aligned memory can lie on large pages: map one page more and give both ends back.
  auto* const mapped = static_cast<unsigned char*>(map(bytes + largePage));
  if (!mapped)
    return nullptr;
  const std::size_t head = (largePage - reinterpret_cast<std::uintptr_t>(mapped) % largePage) % largePage;
  if (head > 0)
    munmap(mapped, head);
  munmap(mapped + head + bytes, largePage - head);
#if defined(MADV_HUGEPAGE)
  madvise(mapped + head, bytes, MADV_HUGEPAGE);
#endif
  return mapped + head;
}

void UnmapPages(void* pages, std::size_t bytes) {
  munmap(pages, bytes);
}

void* AllocateAligned(std::size_t bytes, std::size_t alignment) {
  void* memory = nullptr;
  return posix_memalign(&memory, alignment, bytes) == 0 ? memory : nullptr;
}

void FreeAligned(void* memory) {
  std::free(memory);
}

#endif

} // namespace quent::base
