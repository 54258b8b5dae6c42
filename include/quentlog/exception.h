/// \file
/// Exceptions that carry source file, function and line.
#pragma once

#include "rcommon/api.h"

#include <stdexcept>
#include <string>

namespace QuentLog {

/// Base of all exceptions of the library. It is no `std::exception` itself, so that
/// CPPException can add a standard exception without ambiguity.
class RASTEROPS_API Exception {
public:
  /// \param file     the source file's own name, for instance "divide"
  /// \param function the qualified function name
  Exception(const char* file, const char* function);
  Exception(const Exception&) = default;
  Exception& operator=(const Exception&) = default;
  virtual ~Exception();

  /// What went wrong; "Unspecified" before anything did. Lives as long as the exception.
  const char* get_What() const noexcept { return m_What.c_str(); }
  /// Source line of the failure; 0 before anything failed.
  long get_LineNum() const noexcept { return m_LineNum; }
  /// The source file that was given to the constructor.
  const char* get_File() const noexcept { return m_File.c_str(); }
  /// The function that was given to the constructor.
  const char* get_Function() const noexcept { return m_Function.c_str(); }
  /// "file: function:line: what", for a log.
  std::string ToString() const;

protected:
  /// Stores line and message.
  void set_Failure(long line, const char* message);

private:
  std::string m_File;
  std::string m_Function;
  std::string m_What = "Unspecified";
  long m_LineNum = 0;
};

/// An exception that can also be reported without being thrown.
class RASTEROPS_API UnthrownException : public Exception {
public:
  using Exception::Exception;
  ~UnthrownException() override;

  /// Stores line and message and writes them to the log channel "rasterops" as an error.
  void Log(long line, const char* message);
};

/// An Exception that is also a standard exception `T`, for instance `std::runtime_error`.
template <class T> class RASTEROPS_API CPPException : public Exception, public T {
public:
  /// The standard part first holds "Unspecified".
  CPPException(const char* file, const char* function) : Exception(file, function), T("Unspecified") {}

  /// Stores the line and the message and throws a copy of this object.
  [[noreturn]] void Throw(long line, const char* message) {
    set_Failure(line, message);
    T::operator=(T(get_What()));
    throw *this;
  }
};

} // namespace QuentLog
