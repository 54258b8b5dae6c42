#include "base/hostsystem/hostsystem.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <limits>
#include <random>
#include <stdexcept>
#include <system_error>
#include <thread>

#if defined(_WIN32)
#include <io.h>
#include <windows.h>
// After windows.h, which it needs.
#include <psapi.h>
#else
#include <cerrno>
#include <cstdio>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace quent::base {

namespace {

// Signal handlers may only touch lock-free atomics.
std::atomic<bool> cancelRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free);

[[noreturn]] void fail(const std::string& action, const std::error_code& reason) {
  throw std::runtime_error(action + ": " + reason.message());
}

/// Makes a folder that must not exist yet. False if it did.
bool makeFolder(const fs::path& folder) {
#if defined(_WIN32)
  std::error_code error;
  const bool made = fs::create_directory(folder, error);
  if (error)
    fail("cannot make the folder " + folder.string(), error);
  return made;
#else
  if (mkdir(folder.c_str(), 0777) == 0)
    return true;
  if (errno == EEXIST)
    return false;
  fail("cannot make the folder " + folder.string(), std::error_code(errno, std::generic_category()));
#endif
}

} // namespace

bool CancelRequested() {
  return cancelRequested.load(std::memory_order_relaxed);
}

std::string MakeTemporaryFolderBeside(const std::string& path) {
  const fs::path target(path);
  // Most systems take names of up to 255 bytes; this one is longer than the target's.
  const std::string shown = target.filename().string().substr(0, 200);
  std::random_device source;
  constexpr char letters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::uniform_int_distribution<std::size_t> letter(0, sizeof(letters) - 2);
  for (int attempt = 0; attempt < 100; ++attempt) {
    std::string name = "." + shown + ".rasterops-";
    for (int i = 0; i < 6; ++i)
      name += letters[letter(source)];
    const fs::path folder = target.parent_path() / name;
    if (makeFolder(folder))
      return folder.string();
  }
  throw std::runtime_error("cannot make a temporary folder beside " + path + ": no free name found");
}

void ReplaceFile(const std::string& from, const std::string& to) {
  // On every supported system this replaces an existing file in one step.
  std::error_code error;
  fs::rename(from, to, error);
  if (error)
    fail("cannot put the finished file in its place " + to, error);
}

#if defined(_WIN32)

std::size_t ResidentBytes() {
  PROCESS_MEMORY_COUNTERS counters{};
  counters.cb = sizeof(counters);
  return GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters)) ? counters.WorkingSetSize : 0;
}

std::size_t MemoryLimit() {
  MEMORYSTATUSEX status{};
  status.dwLength = sizeof(status);
  return GlobalMemoryStatusEx(&status) ? static_cast<std::size_t>(status.ullTotalPhys)
                                       : std::numeric_limits<std::size_t>::max();
}

unsigned AvailableProcessors() {
  return std::max(1U, std::thread::hardware_concurrency());
}

bool StandardErrorIsTerminal() {
  return _isatty(2) != 0;
}

extern "C" void rasteropsCatchSignal(int signal) {
  cancelRequested.store(true);
  std::signal(signal, rasteropsCatchSignal); // the system has undone it
}

void CatchCancelRequests() {
  std::signal(SIGINT, rasteropsCatchSignal);
  std::signal(SIGTERM, rasteropsCatchSignal);
}

#else

std::size_t ResidentBytes() {
  // The second number of statm is the resident set in pages.
  unsigned long total = 0;
  unsigned long resident = 0;
  if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%lu %lu", &total, &resident) != 2)
      resident = 0;
    std::fclose(file);
  }
  return static_cast<std::size_t>(resident) * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

std::size_t MemoryLimit() {
  const auto pages = static_cast<std::size_t>(std::max(0L, sysconf(_SC_PHYS_PAGES)));
  const std::size_t machine = pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return std::min(machine == 0 ? std::numeric_limits<std::size_t>::max() : machine,
                  ControlGroupMemoryLimit("/proc/self/cgroup", "/sys/fs/cgroup"));
}

unsigned AvailableProcessors() {
#if defined(__linux__)
  cpu_set_t set;
  CPU_ZERO(&set);
  if (sched_getaffinity(0, sizeof(set), &set) == 0)
    return static_cast<unsigned>(std::max(1, CPU_COUNT(&set)));
#endif
  return std::max(1U, std::thread::hardware_concurrency());
}

bool StandardErrorIsTerminal() {
  return isatty(STDERR_FILENO) != 0;
}

void CatchCancelRequests() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before {};
    // A signal that the caller chose to ignore, as nohup does, stays ignored.
    if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_IGN)
      continue;
    struct sigaction action {};
    action.sa_handler = [](int) { cancelRequested.store(true); };
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
  }
}

#endif

} // namespace quent::base
