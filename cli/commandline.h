/// \file
/// The whole command.
#pragma once

#include "cli/operatorcommand.h"

#include <memory>
#include <string>
#include <vector>

namespace quent::rasterops::cli {

/// Parses the command line and does what it asks for.
class CommandLine {
public:
  CommandLine();

  /// \param arguments without the program's name
  /// \return the exit status
  int Run(std::vector<std::string> arguments);

private:
  int dispatch();
  int runOperator(const OperatorCommand& command);
  void addSubcommands();

  CLI::App m_App;
  std::vector<std::unique_ptr<OperatorCommand>> m_Operators;
  CLI::App* m_List = nullptr;
  CLI::App* m_Describe = nullptr;
  CLI::App* m_Plan = nullptr;
  CLI::App* m_Info = nullptr;
  CLI::App* m_Scene = nullptr;
  CLI::App* m_Completion = nullptr;
  std::string m_Name; ///< of what is being done, for messages
  bool m_PlanOnly = false;
  bool m_Json = false;
  std::string m_Text; ///< positional argument of a subcommand that has one
  std::vector<std::string> m_OpenOptions;
  unsigned m_Seed = 1;
};

} // namespace quent::rasterops::cli
