/// \file
/// Options in the form that GDAL takes.
#pragma once

#include <string>
#include <vector>

namespace quent::rasterops::engine {

/// Pointers to the texts, which must outlive them, ended by a null pointer.
inline std::vector<const char*> OptionPointers(const std::vector<std::string>& items) {
  std::vector<const char*> result;
  result.reserve(items.size() + 1);
  for (const std::string& item : items)
    result.push_back(item.c_str());
  result.push_back(nullptr);
  return result;
}

} // namespace quent::rasterops::engine
