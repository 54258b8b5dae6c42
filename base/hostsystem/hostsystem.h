/// \file
/// What the engine asks of the operating system. Not installed.
#pragma once

#include "rcommon/api.h"

#include <cstddef>
#include <string>

namespace quent::base {

/// Bytes of memory that this process holds now.
RASTEROPS_API std::size_t ResidentBytes();

/// Bytes that this process may take at most: the smaller of the machine's memory and the limit of its
/// control group.
RASTEROPS_API std::size_t MemoryLimit();

/// Smallest memory limit of the control groups that `groupsFile` lists ("/proc/self/cgroup"), whose folders
/// lie under `root` ("/sys/fs/cgroup"); the largest number if there is none.
RASTEROPS_API std::size_t ControlGroupMemoryLimit(const std::string& groupsFile, const std::string& root);

/// Processors that this process may run on.
RASTEROPS_API unsigned AvailableProcessors();

/// True if standard error is a terminal.
RASTEROPS_API bool StandardErrorIsTerminal();

/// From now on Ctrl-C, a request to terminate and a hang-up only set a flag, however often they come.
/// Those that the process was started to ignore stay ignored.
RASTEROPS_API void CatchCancelRequests();
/// True once one was caught. Safe from any thread.
RASTEROPS_API bool CancelRequested();

/// Makes a new empty folder beside a path and returns its path: ".NAME.rasterops-" and six letters, where
/// NAME is the last part of the path.
/// \throws std::runtime_error with the system's reason
RASTEROPS_API std::string MakeTemporaryFolderBeside(const std::string& path);

/// Puts a file in the place of another one, of which nothing is lost should this fail.
/// \throws std::runtime_error with the system's reason
RASTEROPS_API void ReplaceFile(const std::string& from, const std::string& to);

} // namespace quent::base
