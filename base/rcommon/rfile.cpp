#include "rcommon/rfile.h"

#include "base/rcommon/report.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

struct _rfile_FdRec {
  std::FILE* stream;
  std::string path;
};

namespace {

std::string reason(const std::string& what, const std::string& path) {
  return what + " " + path + ": " + std::strerror(errno);
}

} // namespace

_rfile_FdRec* rfile_OpenForWriting(const char* path, Rfault_ErrorReport** slot) {
  quent::base::ClearSlot(slot);
  std::FILE* const stream = path ? std::fopen(path, "wb") : nullptr;
  if (!stream) {
    quent::base::Report(slot, "rfile_OpenForWriting",
                        path ? reason("Cannot open", path) : std::string("The path is null"));
    return nullptr;
  }
  return new _rfile_FdRec{stream, path};
}

void rfile_WriteSeq(_rfile_FdRec* file, const void* bytes, std::size_t size, Rfault_ErrorReport** slot) {
  quent::base::ClearSlot(slot);
  if (!file)
    quent::base::Report(slot, "rfile_WriteSeq", "The file is null");
  else if (size > 0 && std::fwrite(bytes, 1, size, file->stream) != size)
    quent::base::Report(slot, "rfile_WriteSeq", reason("Cannot write to", file->path));
}

void rfile_Close(_rfile_FdRec* file, Rfault_ErrorReport** slot) {
  quent::base::ClearSlot(slot);
  if (!file)
    return;
  if (std::fclose(file->stream) != 0)
    quent::base::Report(slot, "rfile_Close", reason("Cannot write to", file->path));
  delete file;
}
