#include "engine/errors.h"

#include <algorithm>

namespace quent::rasterops::engine {

namespace {

/// Reasons that come from elsewhere may hold line breaks.
std::string oneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
  while (!text.empty() && text.back() == ' ')
    text.pop_back();
  return text;
}

} // namespace

Error::Error(ExitCode code, const std::string& message)
    : std::runtime_error(oneLine(message)), m_Code(code) {}
Error::~Error() = default;

ProcessingError::ProcessingError(const std::string& message) : Error(ExitCode::Processing, message) {}
ProcessingError::~ProcessingError() = default;

UsageError::UsageError(const std::string& message) : Error(ExitCode::Usage, message) {}
UsageError::~UsageError() = default;

InputError::InputError(const std::string& message) : Error(ExitCode::Input, message) {}
InputError::~InputError() = default;

OutputError::OutputError(const std::string& message) : Error(ExitCode::Output, message) {}
OutputError::~OutputError() = default;

MemoryError::MemoryError(const std::string& message) : Error(ExitCode::Memory, message) {}
MemoryError::~MemoryError() = default;

Cancelled::Cancelled() : Error(ExitCode::Cancelled, "cancelled; no output was left") {}
Cancelled::~Cancelled() = default;

} // namespace quent::rasterops::engine
