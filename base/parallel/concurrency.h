/// \file
/// Parallel loops on oneTBB. Not installed.
///
/// A loop splits its items into one chunk per processor: n / processors items each, the first
/// n % processors chunks one more. All chunks but the last are scheduled, the last runs on the calling
/// thread, which then waits. An exception in the body is thrown again at the wait; the first one, if
/// there are several. One item runs in place, without tasks.
#pragma once

#include "base/parallel/taskgroup.h"

#include <tbb/task_arena.h>

#include <cstddef>
#include <exception>
#include <iterator>

namespace Concurrency {

namespace detail {

/// Chunk `index` of `count` items in `chunks` chunks.
struct Chunk {
  std::size_t first;
  std::size_t end;

  Chunk(std::size_t count, std::size_t chunks, std::size_t index) {
    const std::size_t size = count / chunks;
    const std::size_t longer = count % chunks;
    first = index * size + (index < longer ? index : longer);
    end = first + size + (index < longer ? 1 : 0);
  }
};

/// Calls `body(i)` for each i below `count`.
template <class Body> void ForEachIndex(std::size_t count, const Body& body) {
  if (count == 0)
    return;
  if (count == 1)
    return body(std::size_t{0});
  const auto processors = static_cast<std::size_t>(tbb::this_task_arena::max_concurrency());
  const std::size_t chunks = processors < count ? processors : count;
  const auto runChunk = [&](std::size_t index) {
    const Chunk chunk(count, chunks, index);
    for (std::size_t i = chunk.first; i < chunk.end; ++i)
      body(i);
  };
  TaskGroup tasks;
  for (std::size_t index = 0; index + 1 < chunks; ++index)
    tasks.Run([&runChunk, index] { runChunk(index); });
  std::exception_ptr own;
  try {
    runChunk(chunks - 1);
  } catch (...) {
    own = std::current_exception(); // the other chunks use this frame: wait for them first
  }
  tasks.Wait();
  if (own)
    std::rethrow_exception(own);
}

} // namespace detail

/// Calls `body(item)` for each item of a random-access range.
template <class Iterator, class Body>
void parallel_for_each(Iterator first, Iterator last, const Body& body) {
  detail::ForEachIndex(static_cast<std::size_t>(last - first), [&](std::size_t i) {
    body(first[static_cast<typename std::iterator_traits<Iterator>::difference_type>(i)]);
  });
}

/// Calls `body(i)` for each i from `first` up to, not including, `last`.
template <class Index, class Body> void parallel_for(Index first, Index last, const Body& body) {
  if (first < last)
    detail::ForEachIndex(static_cast<std::size_t>(last - first),
                         [&](std::size_t i) { body(static_cast<Index>(first + static_cast<Index>(i))); });
}

} // namespace Concurrency
