/// \file
/// `rasterops completion bash`.
#pragma once

#include <CLI/App.hpp>

#include <string>

namespace quent::rasterops::cli {

/// A script for bash that completes subcommands, their options and file names.
std::string BashCompletion(const CLI::App& app);

} // namespace quent::rasterops::cli
