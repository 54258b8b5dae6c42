/// Parallel loops: every item once, chunks as laid down, failures handed on.
#include "base/parallel/concurrency.h"

#include <gtest/gtest.h>
#include <tbb/global_control.h>

#include <atomic>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

std::vector<int> Items(int count) {
  std::vector<int> items(static_cast<std::size_t>(count));
  std::iota(items.begin(), items.end(), 0);
  return items;
}

/// Lets TBB start as many threads as the tests ask for, whatever the machine has.
const tbb::global_control allowThreads(tbb::global_control::max_allowed_parallelism, 4);

TEST(Concurrency, VisitsEveryItemOnce) {
  for (const int count : {0, 1, 2, 3, 7, 1000}) {
    const std::vector<int> items = Items(count);
    std::vector<std::atomic<int>> visits(items.size());
    Concurrency::parallel_for_each(items.begin(), items.end(),
                                   [&](int item) { ++visits[static_cast<std::size_t>(item)]; });
    for (const auto& visit : visits)
      EXPECT_EQ(visit.load(), 1) << count << " items";
  }
}

TEST(Concurrency, LoopVisitsTheIndicesOfAHalfOpenRange) {
  std::vector<std::atomic<int>> visits(10);
  Concurrency::parallel_for(3, 8, [&](int i) { ++visits[static_cast<std::size_t>(i)]; });
  for (std::size_t i = 0; i < visits.size(); ++i)
    EXPECT_EQ(visits[i].load(), i >= 3 && i < 8 ? 1 : 0);
  Concurrency::parallel_for(5, 5, [](int) { FAIL(); });
  Concurrency::parallel_for(5, 2, [](int) { FAIL(); });
  std::atomic<long> sum{0};
  Concurrency::parallel_for(-2L, 2L, [&](long i) { sum += i; });
  EXPECT_EQ(sum.load(), -2);
}

TEST(Concurrency, OneItemRunsInPlace) {
  std::thread::id ran;
  Concurrency::parallel_for(7, 8, [&](int) { ran = std::this_thread::get_id(); });
  EXPECT_EQ(ran, std::this_thread::get_id());
}

TEST(Concurrency, SplitsIntoOneChunkPerProcessorTheFirstOnesLonger) {
  // Ten items on three processors: 4, 3 and 3. The last chunk is the caller's.
  tbb::task_arena arena(3);
  arena.execute([] {
    std::vector<std::thread::id> threads(10);
    Concurrency::parallel_for(
        0, 10, [&](int i) { threads[static_cast<std::size_t>(i)] = std::this_thread::get_id(); });
    for (const auto& [first, end] : {std::pair{0u, 4u}, std::pair{4u, 7u}, std::pair{7u, 10u}})
      for (std::size_t i = first; i < end; ++i)
        EXPECT_EQ(threads[i], threads[first]) << i;
    EXPECT_EQ(threads[9], std::this_thread::get_id());
  });
}

TEST(Concurrency, ItemsOfAChunkRunInOrder) {
  tbb::task_arena arena(2);
  arena.execute([] {
    std::vector<int> order[2];
    Concurrency::parallel_for(0, 9, [&](int i) { order[i < 5 ? 0 : 1].push_back(i); });
    EXPECT_EQ(order[0], (std::vector<int>{0, 1, 2, 3, 4}));
    EXPECT_EQ(order[1], (std::vector<int>{5, 6, 7, 8}));
  });
}

TEST(Concurrency, AFailureOfAScheduledChunkIsThrownAtTheWait) {
  EXPECT_THROW(Concurrency::parallel_for(0, 64,
                                         [](int i) {
                                           if (i == 0)
                                             throw std::out_of_range("first item");
                                         }),
               std::out_of_range);
}

TEST(Concurrency, AFailureOfTheCallersChunkWaitsForTheOthers) {
  tbb::task_arena arena(2);
  arena.execute([] {
    std::atomic<int> done{0};
    EXPECT_THROW(Concurrency::parallel_for(0, 2,
                                           [&](int i) {
                                             if (i == 1)
                                               throw std::out_of_range("last item");
                                             std::this_thread::sleep_for(std::chrono::milliseconds(20));
                                             ++done;
                                           }),
                 std::out_of_range);
    EXPECT_EQ(done.load(), 1);
  });
}

TEST(Concurrency, AFailureOfOneItemIsThrownInPlace) {
  EXPECT_THROW(Concurrency::parallel_for(0, 1, [](int) { throw std::out_of_range("only item"); }),
               std::out_of_range);
}

TEST(Concurrency, LoopsNest) {
  std::atomic<int> count{0};
  Concurrency::parallel_for(0, 8, [&](int) { Concurrency::parallel_for(0, 8, [&](int) { ++count; }); });
  EXPECT_EQ(count.load(), 64);
}

} // namespace
