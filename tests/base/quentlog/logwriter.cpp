/// Writes one message of each level to two channels: run by the tests of QUENTLOG_LEVEL.
#include "quentlog/exception.h"
#include "quentlog/log.h"

#include <cstdio>

namespace {

void WriteAll(const wchar_t* name, const char* printed) {
  const QuentLog::Log log(name);
  const std::wstring prefix = std::wstring(name) + L"-";
  log.LogTrace(prefix + L"trace");
  log.LogInfo(prefix + L"info");
  log.LogWarning(prefix + L"warning");
  log.LogError(prefix + L"error");
  for (int level = 0; level <= 4; ++level)
    if (log.IsEnabled(static_cast<QuentLog::LOGGING_LEVEL>(level)))
      std::printf("%s=%d\n", printed, level);
}

} // namespace

int main() {
  WriteAll(L"one.Channel", "one");
  WriteAll(L"two.Channel", "two");
  QuentLog::Log(L"text").LogError(L"\u00fc\u20ac 100% {} {0} %s");
  QuentLog::UnthrownException("file", "function").Log(1, "unthrown");
}
