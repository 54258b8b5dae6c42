/// Error reports that nest, and the exception around them.
#include "rcommon/rfault.h"

#include "support/errorslot.h"
#include "support/failures.h"

namespace {

using namespace testsupport;

TEST(Rfault, AReportTellsWhoSaysWhatAtWhichLine) {
  Rfault_ErrorReport* report =
      rfault_CreateErrorReport("rbuf_Something", 42, 2, nullptr, "no such thing", nullptr);
  EXPECT_STREQ(rfault_FunctionName(report), "rbuf_Something");
  EXPECT_EQ(rfault_Line(report), 42);
  EXPECT_EQ(rfault_Severity(report), 2);
  EXPECT_STREQ(rfault_Message(report), "no such thing");
  EXPECT_EQ(rfault_Inner(report), nullptr);
  rfault_DeleteErrorReportEx(&report);
  EXPECT_EQ(report, nullptr);
}

TEST(Rfault, WideArgumentsReplaceThePlaceholdersAsUtf8) {
  Rfault_ErrorReport* report = rfault_CreateErrorReport("f", 1, 2, nullptr, "Invalid pixel type:  %s of %s!",
                                                        L"M\u00fcll", L"\u20ac", nullptr);
  EXPECT_STREQ(rfault_Message(report), "Invalid pixel type:  M\u00fcll of \u20ac!");
  rfault_DeleteErrorReportEx(&report);
}

TEST(Rfault, APlaceholderInAnArgumentIsPlainText) {
  Rfault_ErrorReport* report = rfault_CreateErrorReport("f", 1, 2, nullptr, "name: %s", L"%s %d %n", nullptr);
  EXPECT_STREQ(rfault_Message(report), "name: %s %d %n");
  rfault_DeleteErrorReportEx(&report);
}

TEST(Rfault, ReportsNestAndTextJoinsThemFromTheOutside) {
  Rfault_ErrorReport* report = rfault_CreateErrorReport("inner", 1, 2, nullptr, "no memory", nullptr);
  report = rfault_CreateErrorReport("middle", 2, 2, report, "cannot create", nullptr);
  report = rfault_CreateErrorReport("outer", 3, 2, report, "cannot run", nullptr);
  EXPECT_EQ(rfault_Text(report), "cannot run: cannot create: no memory");
  EXPECT_STREQ(rfault_Message(report), "cannot run");
  EXPECT_STREQ(rfault_FunctionName(rfault_Inner(rfault_Inner(report))), "inner");
  rfault_DeleteErrorReportEx(&report);
}

TEST(Rfault, ACopyIsDeep) {
  Rfault_ErrorReport* inner = rfault_CreateErrorReport("inner", 1, 3, nullptr, "deep", nullptr);
  Rfault_ErrorReport* report = rfault_CreateErrorReport("outer", 2, 2, inner, "shallow", nullptr);
  Rfault_ErrorReport* copy = rfault_CopyErrorReport(report);
  rfault_DeleteErrorReportEx(&report);
  EXPECT_EQ(rfault_Text(copy), "shallow: deep");
  EXPECT_EQ(rfault_Severity(rfault_Inner(copy)), 3);
  rfault_DeleteErrorReportEx(&copy);
  EXPECT_EQ(rfault_CopyErrorReport(nullptr), nullptr);
}

TEST(Rfault, DeletingNothingIsFine) {
  Rfault_ErrorReport* none = nullptr;
  rfault_DeleteErrorReportEx(&none);
  rfault_DeleteErrorReportEx(nullptr);
}

TEST(RfaultExceptionClass, CarriesFileFunctionLineAndMessage) {
  const Failure failure =
      FailureOf([] { RfaultException("somefile", "ns::Some::function").Throw(7, "broken"); });
  EXPECT_EQ(failure.kind, Kind::Rfault);
  EXPECT_EQ(failure.what, "broken");
  EXPECT_EQ(failure.file, "somefile");
  EXPECT_EQ(failure.function, "ns::Some::function");
  EXPECT_EQ(failure.line, 7);
}

TEST(RfaultExceptionClass, CheckOfAnEmptySlotDoesNothing) {
  RfaultException ex("file", "function");
  ex.Check(1);
  ex.Check(2, true);
  EXPECT_EQ(ex.GetReport(), nullptr);
  EXPECT_STREQ(ex.get_What(), "Unspecified");
  EXPECT_EQ(ex.get_LineNum(), 0);
}

TEST(RfaultExceptionClass, CheckThrowsTheReportWithTheReportsInside) {
  try {
    RfaultException ex("file", "function");
    Rfault_ErrorReport* inner = rfault_CreateErrorReport("inner", 1, 2, nullptr, "cause", nullptr);
    *ex.GetErrorSlot() = rfault_CreateErrorReport("outer", 2, 2, inner, "effect", nullptr);
    ex.Check(99);
    FAIL() << "nothing was thrown";
  } catch (const RfaultException& caught) { // the first object, and its report, are gone
    EXPECT_STREQ(caught.get_What(), "effect: cause");
    EXPECT_STREQ(caught.what(), "effect: cause");
    EXPECT_EQ(caught.get_LineNum(), 99);
    ASSERT_NE(caught.GetReport(), nullptr);
    EXPECT_STREQ(rfault_FunctionName(rfault_Inner(caught.GetReport())), "inner");
  }
}

TEST(RfaultExceptionClass, CopiesCarryACopyOfTheReport) {
  RfaultException second;
  {
    RfaultException first("file");
    *first.GetErrorSlot() = rfault_CreateErrorReport("f", 1, 2, nullptr, "kept", nullptr);
    const RfaultException copy(first);
    second = copy;
    EXPECT_NE(copy.GetReport(), first.GetReport());
  }
  ASSERT_NE(second.GetReport(), nullptr);
  EXPECT_EQ(rfault_Text(second.GetReport()), "kept");
}

TEST(RfaultExceptionClass, IsAnUnthrownExceptionAndAStandardOne) {
  EXPECT_THROW(RfaultException("f", "g").Throw(1, "m"), QuentLog::UnthrownException);
  EXPECT_THROW(RfaultException("f", "g").Throw(1, "m"), QuentLog::Exception);
  EXPECT_THROW(RfaultException("f", "g").Throw(1, "m"), std::exception);
}

TEST(RfaultExceptionClass, CheckThatLogsWritesTheFailureFirst) {
  RfaultException ex("file", "function");
  *ex.GetErrorSlot() = rfault_CreateErrorReport("f", 1, 2, nullptr, "to be logged", nullptr);
  testing::internal::CaptureStderr();
  EXPECT_THROW(ex.Check(5, true), RfaultException);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("to be logged"), std::string::npos);
}

} // namespace
