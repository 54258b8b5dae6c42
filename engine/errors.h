/// \file
/// Failures of a run, sorted by what the user can do about them.
#pragma once

#include "catalogue/api.h"

#include <stdexcept>
#include <string>

namespace quent::rasterops::engine {

/// Exit status of the command.
enum class ExitCode : int {
  Done = 0,
  Processing = 1,
  Usage = 2,
  Input = 3,
  Output = 4,
  Memory = 5,
  Cancelled = 130
};

/// Base of all failures that the engine reports. The text is one line, names the file, and says what to do.
class RASTEROPS_ENGINE_API Error : public std::runtime_error {
public:
  Error(ExitCode code, const std::string& message);
  ~Error() override;
  ExitCode Code() const { return m_Code; }

private:
  ExitCode m_Code;
};

/// An operator failed on good input.
class RASTEROPS_ENGINE_API ProcessingError : public Error {
public:
  explicit ProcessingError(const std::string& message);
  ~ProcessingError() override;
};

/// The command line, or a combination of options, makes no sense.
class RASTEROPS_ENGINE_API UsageError : public Error {
public:
  explicit UsageError(const std::string& message);
  ~UsageError() override;
};

/// An input cannot be read, or the inputs do not fit together.
class RASTEROPS_ENGINE_API InputError : public Error {
public:
  explicit InputError(const std::string& message);
  ~InputError() override;
};

/// The output cannot be written.
class RASTEROPS_ENGINE_API OutputError : public Error {
public:
  explicit OutputError(const std::string& message);
  ~OutputError() override;
};

/// Not even one tile fits into the memory budget.
class RASTEROPS_ENGINE_API MemoryError : public Error {
public:
  explicit MemoryError(const std::string& message);
  ~MemoryError() override;
};

/// The user asked the run to stop.
class RASTEROPS_ENGINE_API Cancelled : public Error {
public:
  Cancelled();
  ~Cancelled() override;
};

} // namespace quent::rasterops::engine
