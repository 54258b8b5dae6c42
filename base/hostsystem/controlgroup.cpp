// Memory limits of Linux control groups, versions 1 and 2. The limit of a group binds all groups below
// it, so every folder from the process's own group up to the root counts.
#include "base/hostsystem/hostsystem.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>

namespace fs = std::filesystem;

namespace quent::base {

namespace {

constexpr std::size_t noLimit = std::numeric_limits<std::size_t>::max();

/// The number in a limit file; no limit for "max", for a missing file, and for the huge number by which
/// version 1 says the same.
std::size_t readLimit(const fs::path& file) {
  std::ifstream in(file);
  unsigned long long value = 0;
  if (!(in >> value) || value > (1ULL << 60))
    return noLimit;
  return static_cast<std::size_t>(value);
}

/// Smallest limit of a group folder and those above it, `root` included. In a container the path names
/// folders that are not there; the root then stands for the container's own group.
std::size_t smallestLimit(const fs::path& root, const std::string& group, const char* fileName) {
  std::size_t limit = readLimit(root / fileName);
  fs::path folder = root;
  for (const fs::path& part : fs::path(group).relative_path()) {
    folder /= part;
    limit = std::min(limit, readLimit(folder / fileName));
  }
  return limit;
}

} // namespace

std::size_t ControlGroupMemoryLimit(const std::string& groupsFile, const std::string& root) {
  std::size_t limit = noLimit;
  std::ifstream in(groupsFile);
  // A line is "number:controllers:path"; version 2 has number 0 and no controllers.
  for (std::string line; std::getline(in, line);) {
    const std::size_t first = line.find(':');
    const std::size_t second = first == std::string::npos ? first : line.find(':', first + 1);
    if (second == std::string::npos)
      continue;
    const std::string controllers = "," + line.substr(first + 1, second - first - 1) + ",";
    const std::string group = line.substr(second + 1);
    if (controllers == ",,")
      limit = std::min(limit, smallestLimit(root, group, "memory.max"));
    else if (controllers.find(",memory,") != std::string::npos)
      limit = std::min(limit, smallestLimit(fs::path(root) / "memory", group, "memory.limit_in_bytes"));
  }
  return limit;
}

} // namespace quent::base
