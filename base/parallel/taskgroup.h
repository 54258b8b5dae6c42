/// \file
/// A group of oneTBB tasks that the thread sanitizer can follow. Not installed.
#pragma once

#include <tbb/task_group.h>

#if defined(__SANITIZE_THREAD__)
#define CONCURRENCY_THREAD_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define CONCURRENCY_THREAD_SANITIZER 1
#endif
#endif

#if defined(CONCURRENCY_THREAD_SANITIZER)
extern "C" {
void __tsan_acquire(void* address);
void __tsan_release(void* address);
}
#endif

namespace Concurrency {

namespace detail {

/// A point where what one thread wrote is handed to another. Costs nothing without the sanitizer.
class Handover {
public:
#if defined(CONCURRENCY_THREAD_SANITIZER)
  void Give() {
    __tsan_release(this);
  }
  void Take() {
    __tsan_acquire(this);
  }
#else
  void Give() {}
  void Take() {}
#endif
};

/// Where tasks start and end. For the process, because a task has to take it before it reads any field.
inline Handover taskStart;
inline Handover taskEnd;

/// A body that oneTBB may copy and run on another thread.
template <class Body> class Task {
public:
  explicit Task(const Body& body) : m_Body(body) {}
  /// oneTBB's own copy is the one that runs: hand over when it is complete.
  Task(const Task& other) : m_Body(afterEndedTasks(other.m_Body)) { taskStart.Give(); }
  Task& operator=(const Task&) = delete;

  void operator()() const {
    taskStart.Take();
    const AtEnd giveBack; // after an exception too
    m_Body();
  }

private:
  struct AtEnd {
    ~AtEnd() { taskEnd.Give(); }
  };

  /// The copy may be laid where a task that has ended lay before.
  static const Body& afterEndedTasks(const Body& body) {
    taskEnd.Take();
    return body;
  }

  Body m_Body;
};

} // namespace detail

/// tbb::task_group. The oneTBB of a distribution is not built for the thread sanitizer, which then does not
/// see that a task runs after Run() and before the end of Wait(), and takes all that passes between them
/// for a data race.
class TaskGroup {
public:
  /// Schedules a call of a copy of `body`.
  template <class Body> void Run(const Body& body) {
    const detail::Task<Body> task(body);
    m_Group.run(task);
  }
  /// Waits for all tasks. \throws what the first failed one threw
  void Wait() {
    m_Group.wait();
    detail::taskEnd.Take();
  }

private:
  tbb::task_group m_Group;
};

} // namespace Concurrency
