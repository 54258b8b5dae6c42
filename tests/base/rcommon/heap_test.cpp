/// The heap of the base library and its pool of large blocks.
#include "rcommon/rsys.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <thread>
#include <vector>

namespace {

constexpr std::size_t kLarge = std::size_t{16} << 20;
constexpr std::size_t kUsualPool = std::size_t{64} << 20;

/// Empties the pool before a test and gives it its usual limit afterwards.
class RsysHeap : public testing::Test {
protected:
  void SetUp() override {
    rsys_HeapSetPoolLimit(0);
    rsys_HeapSetPoolLimit(kUsualPool);
  }
  void TearDown() override {
    rsys_HeapSetPoolLimit(0);
    rsys_HeapSetPoolLimit(kUsualPool);
  }
};

bool AllZero(const void* memory, std::size_t size) {
  const auto* bytes = static_cast<const unsigned char*>(memory);
  return std::all_of(bytes, bytes + size, [](unsigned char byte) { return byte == 0; });
}

TEST_F(RsysHeap, BlocksOfEverySizeAreAlignedToSixtyFourBytes) {
  for (const std::size_t size : {std::size_t{1}, std::size_t{63}, std::size_t{4097}, kLarge, kLarge + 1}) {
    void* block = rsys_HeapMalloc(size);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 64, 0u) << size;
    std::memset(block, 0xA5, size);
    rsys_HeapFree(block);
  }
}

TEST_F(RsysHeap, CallocGivesZeroedMemoryAlsoFromThePool) {
  for (const std::size_t size : {std::size_t{100}, kLarge}) {
    void* first = rsys_HeapCalloc(size, 1);
    EXPECT_TRUE(AllZero(first, size));
    std::memset(first, 0xFF, size);
    rsys_HeapFree(first);
    void* second = rsys_HeapCalloc(1, size);
    EXPECT_TRUE(AllZero(second, size)) << size;
    rsys_HeapFree(second);
  }
}

TEST_F(RsysHeap, CallocOfAProductThatOverflowsGivesNull) {
  constexpr std::size_t half = std::numeric_limits<std::size_t>::max() / 2;
  EXPECT_EQ(rsys_HeapCalloc(half, 3), nullptr);
}

TEST_F(RsysHeap, MallocOfMoreThanThereIsGivesNull) {
  EXPECT_EQ(rsys_HeapMalloc(std::numeric_limits<std::size_t>::max() / 4), nullptr);
  EXPECT_EQ(rsys_HeapMalloc(std::numeric_limits<std::size_t>::max()), nullptr);
}

TEST_F(RsysHeap, FreeAcceptsNull) {
  rsys_HeapFree(nullptr);
}

TEST_F(RsysHeap, NothingCanBeAskedForAndFreed) {
  void* block = rsys_HeapCalloc(0, 8);
  EXPECT_NE(block, nullptr);
  rsys_HeapFree(block);
}

TEST_F(RsysHeap, BlockOfFindsTheBlockThatAnAddressLiesIn) {
  for (const std::size_t size : {std::size_t{200}, kLarge}) {
    auto* block = static_cast<unsigned char*>(rsys_HeapMalloc(size));
    EXPECT_EQ(rsys_HeapBlockOf(block), block);
    EXPECT_EQ(rsys_HeapBlockOf(block + size - 1), block);
    rsys_HeapFree(block);
  }
  int local = 0;
  EXPECT_EQ(rsys_HeapBlockOf(&local), nullptr);
}

TEST_F(RsysHeap, KeepsLargeBlocksForReuseUpToTheLimit) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "sanitizers must see every free, so nothing is kept under them";
#endif
  void* block = rsys_HeapMalloc(kLarge);
  EXPECT_EQ(rsys_HeapPooledBytes(), 0u);
  rsys_HeapFree(block);
  EXPECT_GE(rsys_HeapPooledBytes(), kLarge);
  std::vector<void*> blocks;
  for (int i = 0; i < 6; ++i)
    blocks.push_back(rsys_HeapMalloc(kLarge));
  EXPECT_EQ(rsys_HeapPooledBytes(), 0u);
  for (void* each : blocks)
    rsys_HeapFree(each);
  EXPECT_LE(rsys_HeapPooledBytes(), kUsualPool);
  EXPECT_GT(rsys_HeapPooledBytes(), kUsualPool / 2);
}

TEST_F(RsysHeap, LoweringTheLimitGivesMemoryBackAtOnce) {
  rsys_HeapFree(rsys_HeapMalloc(kLarge));
  rsys_HeapSetPoolLimit(0);
  EXPECT_EQ(rsys_HeapPooledBytes(), 0u);
  rsys_HeapFree(rsys_HeapMalloc(kLarge));
  EXPECT_EQ(rsys_HeapPooledBytes(), 0u);
}

TEST_F(RsysHeap, ABlockInThePoolBelongsToNoOne) {
  void* block = rsys_HeapMalloc(kLarge);
  rsys_HeapFree(block);
  EXPECT_EQ(rsys_HeapBlockOf(block), nullptr);
}

TEST_F(RsysHeap, ServesManyThreadsAtOnce) {
  std::vector<std::thread> threads;
  std::vector<int> failures(4);
  for (std::size_t t = 0; t < failures.size(); ++t)
    threads.emplace_back([t, &failures] {
      for (std::size_t i = 0; i < 40; ++i) {
        const std::size_t size = i % 4 == 0 ? (std::size_t{3} << 20) + t : 100 * i + 1;
        auto* block = static_cast<unsigned char*>(rsys_HeapCalloc(1, size));
        if (!block || block[0] != 0 || block[size - 1] != 0 || rsys_HeapBlockOf(block + size / 2) != block)
          ++failures[t];
        std::memset(block, static_cast<int>(t + 1), size);
        if (block[size / 2] != t + 1)
          ++failures[t];
        rsys_HeapFree(block);
      }
    });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(failures, std::vector<int>(4));
}

} // namespace
