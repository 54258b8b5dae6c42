#include "rcommon/rstring.h"

#include "base/rcommon/report.h"
#include "rcommon/rsys.h"
#include "rcommon/rtext.h"

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>

namespace {

bool isNameCharacter(wchar_t c) {
  return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'_';
}

std::wstring expand(const std::wstring& path) {
  std::wstring out;
  for (std::size_t i = 0; i < path.size();) {
    std::size_t end = i + 1;
    while (path[i] == L'$' && end < path.size() && isNameCharacter(path[end]))
      ++end;
    const std::wstring piece = path.substr(i, end - i);
    const char* value = end > i + 1 ? std::getenv(rtext::narrow(piece.c_str() + 1).c_str()) : nullptr;
    out += value ? rtext::twiden(value) : piece;
    i = end;
  }
  return out;
}

} // namespace

wchar_t* rstring_Duplicate(const wchar_t* text) {
  if (!text)
    return nullptr;
  const std::size_t size = (std::wcslen(text) + 1) * sizeof(wchar_t);
  void* const copy = rsys_HeapMalloc(size);
  return copy ? static_cast<wchar_t*>(std::memcpy(copy, text, size)) : nullptr;
}

wchar_t* rstring_PathExpand(const wchar_t* path, Rfault_ErrorReport** slot) {
  quent::base::ClearSlot(slot);
  if (!path) {
    quent::base::Report(slot, "rstring_PathExpand", "The path is null");
    return nullptr;
  }
  wchar_t* const expanded = rstring_Duplicate(expand(path).c_str());
  if (!expanded)
    quent::base::Report(slot, "rstring_PathExpand", "No memory");
  return expanded;
}
