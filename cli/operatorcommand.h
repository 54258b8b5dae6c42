/// \file
/// The subcommand of one operator.
#pragma once

#include "engine/plan.h"

#include <CLI/App.hpp>

#include <deque>
#include <map>
#include <string>
#include <vector>

namespace quent::rasterops::cli {

/// Declares the options that follow from an operator's description, and reads them.
class OperatorCommand {
public:
  OperatorCommand(CLI::App& app, const catalogue::Operator& op);
  OperatorCommand(const OperatorCommand&) = delete;
  OperatorCommand& operator=(const OperatorCommand&) = delete;

  /// True if the command line names this operator.
  bool Chosen() const { return m_Command->parsed(); }
  const catalogue::Operator& Operator() const { return m_Operator; }
  /// What the command line asks for. \throws engine::UsageError
  engine::Request MakeRequest() const;
  bool Quiet() const { return m_Quiet; }

private:
  void addFiles();
  void addParameters();
  void addReading();
  void addWriting();
  void addRunning();
  void addText(const std::string& names, std::string& value, const std::string& type, const std::string& help,
               const char* group);
  void fillInputs(engine::Request& request) const;

  const catalogue::Operator& m_Operator;
  CLI::App* m_Command;
  std::deque<std::string> m_Files; ///< as typed, empty where none was; the options keep their addresses
  std::vector<std::string> m_InputBands;
  std::vector<std::string> m_InputValues;
  std::map<std::string, std::string> m_Parameters;
  std::string m_ReadAs;
  std::string m_WriteAs;
  std::vector<std::string> m_OpenOptions;
  std::string m_Driver;
  std::vector<std::string> m_CreationOptions;
  std::string m_NoData;
  bool m_Overwrite = false;
  std::string m_Tile = "auto";
  unsigned m_Threads = 0;
  std::string m_Memory;
  bool m_Quiet = false;
};

} // namespace quent::rasterops::cli
