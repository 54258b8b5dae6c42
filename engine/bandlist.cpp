#include "engine/bandlist.h"

#include <charconv>
#include <stdexcept>
#include <string_view>

namespace quent::rasterops::engine {

namespace {

constexpr int largestBand = 65535; // more than any format holds; bounds what a range can ask for

int band(std::string_view text, const std::string& list) {
  int value = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || stop != text.data() + text.size() || value < 1 || value > largestBand)
    throw std::invalid_argument("'" + list + "' is no list of bands such as 1,3-5");
  return value;
}

} // namespace

std::vector<int> ParseBandList(const std::string& text) {
  std::vector<int> bands;
  std::string_view rest = text;
  while (true) {
    const std::size_t comma = rest.find(',');
    const std::string_view item = rest.substr(0, comma);
    const std::size_t dash = item.find('-');
    const int first = band(item.substr(0, dash), text);
    const int last = dash == std::string_view::npos ? first : band(item.substr(dash + 1), text);
    for (int i = first; i != last; i += first < last ? 1 : -1)
      bands.push_back(i);
    bands.push_back(last);
    if (comma == std::string_view::npos)
      return bands;
    rest.remove_prefix(comma + 1);
  }
}

} // namespace quent::rasterops::engine
