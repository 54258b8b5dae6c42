#include "quentlog/exception.h"

#include "quentlog/log.h"
#include "rcommon/rtext.h"

namespace QuentLog {

Exception::Exception(const char* file, const char* function)
    : m_File(file ? file : ""), m_Function(function ? function : "") {}

Exception::~Exception() = default;

void Exception::set_Failure(long line, const char* message) {
  m_LineNum = line;
  m_What = message ? message : "";
}

std::string Exception::ToString() const {
  return m_File + ": " + m_Function + ":" + std::to_string(m_LineNum) + ": " + m_What;
}

UnthrownException::~UnthrownException() = default;

void UnthrownException::Log(long line, const char* message) {
  set_Failure(line, message);
  const QuentLog::Log log(L"rasterops");
  if (log.IsEnabled(LEVEL_ERROR))
    log.LogError(rtext::twiden(ToString().c_str()));
}

} // namespace QuentLog
