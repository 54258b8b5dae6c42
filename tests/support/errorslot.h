/// \file
/// An error slot for C calls in tests.
#pragma once

#include "rcommon/rfault.h"

#include <string>

namespace testsupport {

/// Owns the report of one C call. `rbuf_...(..., slot)`, then ask it.
class ErrorSlot {
public:
  ErrorSlot() = default;
  ErrorSlot(const ErrorSlot&) = delete;
  ErrorSlot& operator=(const ErrorSlot&) = delete;
  ~ErrorSlot() { rfault_DeleteErrorReportEx(&m_Report); }

  /// Empties the slot and hands it out.
  operator Rfault_ErrorReport**() {
    rfault_DeleteErrorReportEx(&m_Report);
    return &m_Report;
  }
  const Rfault_ErrorReport* Report() const { return m_Report; }
  bool Failed() const { return m_Report != nullptr; }
  std::string Text() const { return m_Report ? rfault_Text(m_Report) : std::string(); }

private:
  Rfault_ErrorReport* m_Report = nullptr;
};

} // namespace testsupport
