/// \file
/// `rasterops list` and `rasterops describe`.
#pragma once

#include "catalogue/catalogue.h"

#include <string>

namespace quent::rasterops::cli {

/// One line for each operator.
std::string ListText();
/// All that the catalogue says of an operator, for people.
std::string DescriptionText(const catalogue::Operator& op);
/// The same for programs.
std::string DescriptionJson(const catalogue::Operator& op);

} // namespace quent::rasterops::cli
