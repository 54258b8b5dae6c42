#include "rcommon/rfault.h"

#include "rcommon/rtext.h"

#include <cstdarg>
#include <memory>

struct Rfault_ErrorReport {
  std::string function;
  std::string message;
  long line = 0;
  int severity = 0;
  std::unique_ptr<Rfault_ErrorReport> inner;
};

Rfault_ErrorReport* rfault_CreateErrorReport(const char* functionName, long line, int severity,
                                             Rfault_ErrorReport* inner, const char* message, ...) {
  auto report = std::make_unique<Rfault_ErrorReport>();
  report->inner.reset(inner);
  report->function = functionName ? functionName : "";
  report->line = line;
  report->severity = severity;

  std::va_list arguments;
  va_start(arguments, message);
  bool exhausted = false;
  for (const char* c = message ? message : ""; *c; ++c) {
    if (c[0] != '%' || c[1] != 's') {
      report->message += *c;
      continue;
    }
    ++c;
    // The list ends with a null pointer: nothing may be read behind it.
    const wchar_t* argument = exhausted ? nullptr : va_arg(arguments, const wchar_t*);
    exhausted = argument == nullptr;
    report->message += argument ? rtext::narrow(argument) : "%s";
  }
  va_end(arguments);
  return report.release();
}

void rfault_DeleteErrorReportEx(Rfault_ErrorReport** slot) {
  if (!slot)
    return;
  delete *slot;
  *slot = nullptr;
}

Rfault_ErrorReport* rfault_CopyErrorReport(const Rfault_ErrorReport* report) {
  if (!report)
    return nullptr;
  auto copy = std::make_unique<Rfault_ErrorReport>();
  copy->function = report->function;
  copy->message = report->message;
  copy->line = report->line;
  copy->severity = report->severity;
  copy->inner.reset(rfault_CopyErrorReport(report->inner.get()));
  return copy.release();
}

const char* rfault_Message(const Rfault_ErrorReport* report) {
  return report->message.c_str();
}

const char* rfault_FunctionName(const Rfault_ErrorReport* report) {
  return report->function.c_str();
}

long rfault_Line(const Rfault_ErrorReport* report) {
  return report->line;
}

int rfault_Severity(const Rfault_ErrorReport* report) {
  return report->severity;
}

const Rfault_ErrorReport* rfault_Inner(const Rfault_ErrorReport* report) {
  return report->inner.get();
}

std::string rfault_Text(const Rfault_ErrorReport* report) {
  std::string text;
  for (; report; report = report->inner.get()) {
    if (!text.empty())
      text += ": ";
    text += report->message;
  }
  return text;
}
