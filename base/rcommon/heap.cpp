// Small blocks come from the C heap. Large ones are mapped by themselves, so that they can lie on large
// pages and are known to be zero when fresh, and are kept for reuse when freed: touching a fresh page
// costs more than most operators do. Every block is listed, which tells a free its size and lets
// rsys_HeapBlockOf answer whether two planes share an allocation.
#include "base/rcommon/pages.h"
#include "rcommon/rsys.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <map>
#include <mutex>
#include <new>
#include <utility>

namespace {

constexpr std::size_t alignment = 64;
// Sanitizers must see every allocation and every free, so nothing is large under them.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t largeSize = std::numeric_limits<std::size_t>::max();
#else
constexpr std::size_t largeSize = std::size_t{256} << 10;
#endif
constexpr std::size_t granule = std::size_t{64} << 10;

class Heap {
public:
  void* allocate(std::size_t size, bool zeroed) {
    if (size > std::numeric_limits<std::size_t>::max() - granule)
      return nullptr;
    // Rounded first: a free knows only the capacity, and must come to the same decision.
    const std::size_t small = roundUp(size == 0 ? 1 : size, alignment);
    const bool large = isLarge(small);
    const std::size_t capacity = large ? roundUp(small, granule) : small;
    void* block = large ? takePooled(capacity) : nullptr;
    const bool fresh = block == nullptr;
    if (fresh)
      block = large ? quent::base::MapPages(capacity) : quent::base::AllocateAligned(capacity, alignment);
    if (!block)
      return nullptr;
    if (fresh && !list(block, capacity)) {
      release(block, capacity);
      return nullptr;
    }
    if (zeroed && !(fresh && large))
      std::memset(block, 0, size);
    return block;
  }

  void free(void* block) {
    std::unique_lock guard(m_Lock);
    const auto found = m_Live.find(address(block));
    if (found == m_Live.end())
      std::abort(); // not of this heap, or freed before: the heap cannot be trusted any more
    const std::size_t capacity = found->second;
    m_Live.erase(found);
    if (isLarge(capacity) && m_Pooled + capacity <= m_Limit) {
      try {
        m_Pool.emplace(capacity, block);
        m_Pooled += capacity;
        return;
      } catch (const std::bad_alloc&) {
        // Not kept then, but given back.
      }
    }
    guard.unlock();
    release(block, capacity);
  }

  const void* blockOf(const void* pointer) {
    const std::lock_guard guard(m_Lock);
    auto next = m_Live.upper_bound(address(pointer));
    if (next == m_Live.begin())
      return nullptr;
    --next;
    return address(pointer) - next->first < next->second ? reinterpret_cast<const void*>(next->first)
                                                         : nullptr;
  }

  void setLimit(std::size_t bytes) {
    const std::lock_guard guard(m_Lock);
    m_Limit = bytes;
    while (m_Pooled > m_Limit) {
      const auto largest = std::prev(m_Pool.end());
      m_Pooled -= largest->first;
      quent::base::UnmapPages(largest->second, largest->first);
      m_Pool.erase(largest);
    }
  }

  std::size_t pooled() {
    const std::lock_guard guard(m_Lock);
    return m_Pooled;
  }

private:
  static std::uintptr_t address(const void* pointer) { return reinterpret_cast<std::uintptr_t>(pointer); }

  static std::size_t roundUp(std::size_t size, std::size_t unit) { return (size + unit - 1) / unit * unit; }
  static bool isLarge(std::size_t capacity) { return capacity >= largeSize; }

  /// Gives a block that is not listed back to the system.
  static void release(void* block, std::size_t capacity) {
    if (isLarge(capacity))
      quent::base::UnmapPages(block, capacity);
    else
      quent::base::FreeAligned(block);
  }

  /// False if there is no memory to list the block.
  bool list(void* block, std::size_t capacity) {
    try {
      const std::lock_guard guard(m_Lock);
      m_Live.emplace(address(block), capacity);
      return true;
    } catch (const std::bad_alloc&) {
      return false;
    }
  }

  /// A pooled block of the capacity or up to an eighth more, listed as live; null if there is none.
  void* takePooled(std::size_t capacity) {
    std::pair<std::size_t, void*> taken;
    {
      const std::lock_guard guard(m_Lock);
      const auto found = m_Pool.lower_bound(capacity);
      if (found == m_Pool.end() || found->first - capacity > capacity / 8)
        return nullptr;
      taken = *found;
      m_Pooled -= found->first;
      m_Pool.erase(found);
    }
    if (list(taken.second, taken.first))
      return taken.second;
    release(taken.second, taken.first);
    return nullptr;
  }

  std::mutex m_Lock;
  std::map<std::uintptr_t, std::size_t> m_Live;
  std::multimap<std::size_t, void*> m_Pool;
  std::size_t m_Pooled = 0;
  std::size_t m_Limit = std::size_t{64} << 20;
};

/// Never destroyed: blocks of static objects are freed after any order of destruction.
Heap& heap() {
  static Heap& instance = *new Heap;
  return instance;
}

} // namespace

void* rsys_HeapMalloc(std::size_t size) {
  return heap().allocate(size, false);
}

void* rsys_HeapCalloc(std::size_t count, std::size_t size) {
  if (size != 0 && count > std::numeric_limits<std::size_t>::max() / size)
    return nullptr;
  return heap().allocate(count * size, true);
}

void rsys_HeapFree(void* memory) {
  if (memory)
    heap().free(memory);
}

const void* rsys_HeapBlockOf(const void* address) {
  return heap().blockOf(address);
}

void rsys_HeapSetPoolLimit(std::size_t bytes) {
  heap().setLimit(bytes);
}

std::size_t rsys_HeapPooledBytes() {
  return heap().pooled();
}
