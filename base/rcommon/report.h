/// \file
/// How functions of the C layer report. Not installed.
#pragma once

#include "rcommon/rfault.h"

#include <string>

namespace quent::base {

/// Says that a call succeeded.
inline void ClearSlot(Rfault_ErrorReport** slot) {
  if (slot)
    *slot = nullptr;
}

/// Puts a report into the slot; without a slot the failure is silent.
inline void Report(Rfault_ErrorReport** slot, const char* function, const std::string& message,
                   long line = __builtin_LINE()) {
  if (slot)
    *slot = rfault_CreateErrorReport(function, line, 2, nullptr, message.c_str(), nullptr);
}

} // namespace quent::base
