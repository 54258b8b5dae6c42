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

/// Processors that this process may run on.
RASTEROPS_API unsigned AvailableProcessors();

/// True if standard error is a terminal.
RASTEROPS_API bool StandardErrorIsTerminal();

/// From now on Ctrl-C and a request to terminate only set a flag; a second one ends the process.
RASTEROPS_API void CatchCancelRequests();
/// True once one was caught. Safe from any thread.
RASTEROPS_API bool CancelRequested();

/// Makes a new empty folder beside a path, named after it and this process, and returns its path.
/// \throws std::runtime_error with the system's reason
RASTEROPS_API std::string MakeTemporaryFolderBeside(const std::string& path);

/// Puts a file in the place of another one, of which nothing is lost should this fail.
/// \throws std::runtime_error with the system's reason
RASTEROPS_API void ReplaceFile(const std::string& from, const std::string& to);

} // namespace quent::base
