#include "cli/helptext.h"

#include <sstream>

namespace quent::rasterops::cli {

std::string HelpFormatter::make_group(std::string group, bool isPositional,
                                      std::vector<const CLI::Option*> options) const {
  const std::string text = Formatter::make_group(group, isPositional, options);
  // The base class ends every group but the last with a line break of its own.
  const bool first = isPositional || group == get_label("Options");
  return first ? text : text.substr(1);
}

std::string Wrapped(const std::string& text) {
  constexpr std::size_t width = 79;
  std::istringstream words(text);
  std::string result;
  std::size_t column = 0;
  for (std::string word; words >> word;) {
    if (column > 0 && column + 1 + word.size() > width) {
      result += "\n";
      column = 0;
    } else if (column > 0) {
      result += " ";
      ++column;
    }
    result += word;
    column += word.size();
  }
  return result;
}

} // namespace quent::rasterops::cli
