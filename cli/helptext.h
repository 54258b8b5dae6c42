/// \file
/// How help looks.
#pragma once

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <string>
#include <vector>

namespace quent::rasterops::cli {

/// Shows the positional arguments of a usage line plainly, as "DIVIDEND DIVISOR OUTPUT".
class HelpFormatter : public CLI::Formatter {
public:
  HelpFormatter() { column_width(32); }
  std::string make_option_usage(const CLI::Option* option) const override { return option->get_name(true); }
  /// One blank line before a group, not two.
  std::string make_group(std::string group, bool isPositional,
                         std::vector<const CLI::Option*> options) const override;
};

/// Breaks a paragraph into lines of at most 79 characters.
std::string Wrapped(const std::string& text);

} // namespace quent::rasterops::cli
