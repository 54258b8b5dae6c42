#include "rcommon/rfaultexception.h"

RfaultException::RfaultException() : RfaultException("", "") {}

RfaultException::RfaultException(const char* file) : RfaultException(file, "") {}

RfaultException::RfaultException(const char* file, const char* function)
    : QuentLog::UnthrownException(file, function) {}

RfaultException::RfaultException(const RfaultException& other)
    : QuentLog::UnthrownException(other), std::exception(other),
      m_Report(rfault_CopyErrorReport(other.m_Report)) {}

RfaultException& RfaultException::operator=(const RfaultException& other) {
  if (this != &other) {
    QuentLog::UnthrownException::operator=(other);
    rfault_DeleteErrorReportEx(&m_Report);
    m_Report = rfault_CopyErrorReport(other.m_Report);
  }
  return *this;
}

RfaultException::~RfaultException() {
  rfault_DeleteErrorReportEx(&m_Report);
}

Rfault_ErrorReport** RfaultException::GetErrorSlot() {
  return &m_Report;
}

void RfaultException::Throw(long line, const char* message) {
  set_Failure(line, message);
  throw *this;
}

void RfaultException::Check(long line) {
  Check(line, false);
}

void RfaultException::Check(long line, bool log) {
  if (!m_Report)
    return;
  const std::string text = rfault_Text(m_Report);
  if (log)
    Log(line, text.c_str());
  Throw(line, text.c_str());
}
