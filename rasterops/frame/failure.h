/// \file
/// The two ways in which the library's own checks fail. Not installed.
#pragma once

#include "quentlog/exception.h"
#include "rcommon/rfaultexception.h"

#include <stdexcept>
#include <string>

namespace quent::rasterops {

/// Raises a `QuentLog::CPPException<std::runtime_error>`.
/// \param file     the source file's own name, for instance "divide"
/// \param function the qualified name, for instance "quent::rasterops::Divide::runOnCPU"
[[noreturn]] inline void Raise(const char* file, const char* function, const std::string& message,
                               long line = __builtin_LINE()) {
  QuentLog::CPPException<std::runtime_error>(file, function).Throw(line, message.c_str());
}

/// Raises an `RfaultException`, as code around the C layer does.
[[noreturn]] inline void RaiseFault(const char* file, const char* function, const std::string& message,
                                    long line = __builtin_LINE()) {
  RfaultException(file, function).Throw(line, message.c_str());
}

} // namespace quent::rasterops
