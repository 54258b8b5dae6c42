/// \file
/// The exception around calls to the C layer.
#pragma once

#include "quentlog/exception.h"
#include "rcommon/rfault.h"

#include <exception>

/// Owns the error slot of the C calls of one function and turns a report in it into a throw.
///
/// ```cpp
/// RfaultException ex("pixelblock", "tilx::PixelBlock::Clone");
/// copy = rbuf_BaseDataCopy(source, nullptr, ex.GetErrorSlot());
/// ex.Check(__LINE__);
/// ```
class RASTEROPS_API RfaultException : public QuentLog::UnthrownException, public std::exception {
public:
  RfaultException();
  explicit RfaultException(const char* file);
  RfaultException(const char* file, const char* function);
  /// Copies carry a copy of the report.
  RfaultException(const RfaultException& other);
  RfaultException& operator=(const RfaultException& other);
  /// Releases the report.
  ~RfaultException() override;

  /// The slot to pass as the last argument of a C call.
  virtual Rfault_ErrorReport** GetErrorSlot();
  /// The report in the slot, or null.
  const Rfault_ErrorReport* GetReport() const noexcept { return m_Report; }

  /// Stores the line and the message and throws a copy of this object.
  [[noreturn]] void Throw(long line, const char* message);
  /// If the slot holds a report, throws with the report's text, inner reports included.
  void Check(long line);
  /// The same; with `log` the failure is written to the log first.
  void Check(long line, bool log);

  /// The same text as get_What().
  const char* what() const noexcept override { return get_What(); }

private:
  Rfault_ErrorReport* m_Report = nullptr;
};
