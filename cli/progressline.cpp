#include "cli/progressline.h"

#include "base/hostsystem/hostsystem.h"

#include <cstdio>

namespace quent::rasterops::cli {

ProgressLine::ProgressLine(const std::string& name, bool wanted)
    : m_Name(name), m_Active(wanted && base::StandardErrorIsTerminal()) {}

ProgressLine::~ProgressLine() {
  if (m_Shown)
    std::fprintf(stderr, "\r%*s\r", static_cast<int>(m_Name.size()) + 8, "");
}

void ProgressLine::Show(double fraction) {
  const auto now = std::chrono::steady_clock::now();
  if (!m_Active || now < m_Next)
    return;
  m_Next = now + std::chrono::milliseconds(100);
  m_Shown = true;
  std::fprintf(stderr, "\r%s %3d %%", m_Name.c_str(), static_cast<int>(fraction * 100.0));
  std::fflush(stderr);
}

} // namespace quent::rasterops::cli
