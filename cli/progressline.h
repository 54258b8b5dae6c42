/// \file
/// Progress of a run on a terminal.
#pragma once

#include <chrono>
#include <string>

namespace quent::rasterops::cli {

/// One line on standard error that is written over again and wiped at the end. Shows nothing unless standard
/// error is a terminal.
class ProgressLine {
public:
  ProgressLine(const std::string& name, bool wanted);
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ~ProgressLine();

  /// Tells the fraction that is done. Not to be called from two threads at once.
  void Show(double fraction);

private:
  std::string m_Name;
  bool m_Active;
  bool m_Shown = false;
  std::chrono::steady_clock::time_point m_Next{};
};

} // namespace quent::rasterops::cli
