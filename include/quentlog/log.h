/// \file
/// Logging channels.
///
/// What is printed, to standard error, is chosen by the environment variable `QUENTLOG_LEVEL`, read
/// once at the first use of a channel: a level for all channels ("info"), or a list of
/// "channel=level" with an optional level for the rest ("warning,rasterops.Divide=trace"). Levels are
/// "trace", "debug", "info", "warning", "error" and "off". Without it, warnings and errors are printed.
#pragma once

#include "rcommon/api.h"

#include <memory>
#include <string>

namespace QuentLog {

/// Gravity of a message.
enum LOGGING_LEVEL {
  LEVEL_TRACE = 0,   ///< steps of a run
  LEVEL_DEBUG = 1,   ///< for the library's developers
  LEVEL_INFO = 2,    ///< choices that a user may want to know
  LEVEL_WARNING = 3, ///< something went wrong and was worked around
  LEVEL_ERROR = 4    ///< something went wrong
};

/// A named channel. Messages are wide strings and are printed as UTF-8.
/// Threads: all operations may be called from any thread.
class RASTEROPS_API Log {
public:
  /// Opens a channel, for instance "rasterops.Divide". Channels of one name share their level.
  explicit Log(const std::wstring& channel);
  ~Log();

  /// True if a message of this level would be printed. Ask before building a message.
  bool IsEnabled(LOGGING_LEVEL level) const;

  void LogTrace(const std::wstring& message) const;   ///< Prints at trace level.
  void LogInfo(const std::wstring& message) const;    ///< Prints at info level.
  void LogWarning(const std::wstring& message) const; ///< Prints at warning level.
  void LogError(const std::wstring& message) const;   ///< Prints at error level.

private:
  void Write(LOGGING_LEVEL level, const std::wstring& message) const;

  struct Channel;
  std::shared_ptr<Channel> m_Channel;
};

} // namespace QuentLog
