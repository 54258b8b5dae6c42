/// \file
/// Sequential output to a file.
///
/// Threads: a file belongs to one thread at a time.
#pragma once

#include "rcommon/rfault.h"

#include <cstddef>

/// An open file.
struct _rfile_FdRec;

extern "C" {

/// Creates or empties a file for writing; null with a report when it cannot. `path` is UTF-8.
RASTEROPS_API _rfile_FdRec* rfile_OpenForWriting(const char* path, Rfault_ErrorReport** slot);

/// Appends `size` bytes. A report means that not all of them were written.
RASTEROPS_API void rfile_WriteSeq(_rfile_FdRec* file, const void* bytes, std::size_t size,
                                  Rfault_ErrorReport** slot);

/// Writes what is buffered, closes the file and frees its record. A null file is fine.
RASTEROPS_API void rfile_Close(_rfile_FdRec* file, Rfault_ErrorReport** slot);
}
