/// Blocks that are read from several threads.
#include "rasterops/pixelblock.h"

#include "support/blocks.h"
#include "support/simdtest.h"

#include <thread>

namespace {

using namespace testsupport;
using reference::Bytes;

RASTEROPS_SIMD_SUITE(PixelBlockThreads);

TEST_P(PixelBlockThreads, AMissingMaskThatSeveralThreadsAskForIsMadeOnce) {
  for (int round = 0; round < 50; ++round) {
    tilx::PixelBlock::pixelBlockData state(1, 64, 64, U8, nullptr, 0, 0, nullptr, nullptr);
    std::vector<std::thread> threads;
    std::vector<int> made(4);
    for (int& each : made)
      threads.emplace_back([&] { each = state.InitMask(0); });
    for (std::thread& thread : threads)
      thread.join();
    EXPECT_EQ(made[0] + made[1] + made[2] + made[3], 1);
    ASSERT_NE(state.Mask(0), nullptr);
    EXPECT_EQ(state.Mask(0)->columns, 64);
  }
}

TEST_P(PixelBlockThreads, ABlockWithMasksCanBeReadFromManyThreads) {
  const BlockPtr block = MakeBlockWithNoData(S16, 3, 1, {7, 1, 2, 3, 7, 5}, 7);
  block->computeMasks();
  std::vector<int> good(4);
  std::vector<std::thread> threads;
  for (int& each : good)
    threads.emplace_back([&] {
      for (int i = 0; i < 200; ++i) {
        const auto pixels = block->getPixelAccessor(0, true);
        const auto mask = block->getMaskAccessor(1, true);
        each += static_cast<std::int16_t*>(pixels->GetRowPtr(0))[0] == 7 &&
                static_cast<unsigned char*>(mask->GetRowPtr(0))[1] == 0 &&
                block->getCondition(0) == tilx::SOMEDATA;
      }
    });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(good, std::vector<int>(4, 200));
}

TEST_P(PixelBlockThreads, PlanesCanBeWrittenFromDifferentThreads) {
  const BlockPtr block = MakeBlockWithNoData(U8, 32, 32, std::vector<double>(4 * 1024, 1), 7);
  block->computeMasks();
  std::vector<std::thread> threads;
  for (int plane = 0; plane < 4; ++plane)
    threads.emplace_back([&block, plane] {
      const auto pixels = block->getPixelAccessor(plane);
      for (int row = 0; row < 32; ++row)
        static_cast<unsigned char*>(pixels->GetRowPtr(row))[plane] = 7;
    });
  for (std::thread& thread : threads)
    thread.join();
  for (long plane = 0; plane < 4; ++plane) {
    EXPECT_EQ(StoredCondition(*block, plane), tilx::SOMEDATA);
    EXPECT_EQ(MaskOf(*block, plane)[static_cast<std::size_t>(plane)], 0);
  }
}

} // namespace
