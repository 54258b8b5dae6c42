/// \file
/// Error reports of the C layer.
///
/// A C function takes, as its last argument, the address of a slot (`Rfault_ErrorReport**`). A report
/// in the slot after the call means failure. Reports nest: a function that calls another one wraps
/// the report it got. Whoever owns the slot deletes the report with rfault_DeleteErrorReportEx().
///
/// Threads: a report belongs to one thread at a time; the functions hold no shared state.
#pragma once

#include "rcommon/api.h"

#include <string>

/// One failure: who reports it, at which line, how grave, in which words, and what caused it.
struct Rfault_ErrorReport;

extern "C" {

/// Makes a report.
///
/// \param functionName the function that reports; copied.
/// \param line         source line of the failure.
/// \param severity     2 for an error; higher is graver.
/// \param inner        the report that caused this one, or null; the new report owns it.
/// \param message      text in UTF-8; each "%s" takes the next wide string argument.
/// \param ...          wide strings (`const wchar_t*`), ended by a null pointer.
/// \return the new report; the caller owns it.
RASTEROPS_API Rfault_ErrorReport* rfault_CreateErrorReport(const char* functionName, long line, int severity,
                                                           Rfault_ErrorReport* inner, const char* message,
                                                           ...);

/// Deletes a report with all that it wraps, and clears the slot. A null slot or an empty one is fine.
RASTEROPS_API void rfault_DeleteErrorReportEx(Rfault_ErrorReport** slot);

/// A deep copy of a report; null for null. The caller owns it.
RASTEROPS_API Rfault_ErrorReport* rfault_CopyErrorReport(const Rfault_ErrorReport* report);

/// The report's own words, without those of the report inside. Lives as long as the report.
RASTEROPS_API const char* rfault_Message(const Rfault_ErrorReport* report);

/// The function that made the report. Lives as long as the report.
RASTEROPS_API const char* rfault_FunctionName(const Rfault_ErrorReport* report);

/// The source line that the report names.
RASTEROPS_API long rfault_Line(const Rfault_ErrorReport* report);

/// The severity that the report was made with.
RASTEROPS_API int rfault_Severity(const Rfault_ErrorReport* report);

/// The report that this one wraps, or null. Owned by the outer report.
RASTEROPS_API const Rfault_ErrorReport* rfault_Inner(const Rfault_ErrorReport* report);
}

/// All messages from the outermost report to the innermost, joined by ": ".
RASTEROPS_API std::string rfault_Text(const Rfault_ErrorReport* report);
