/// The exceptions of the library.
#include "quentlog/exception.h"

#include "support/failures.h"

namespace {

using namespace testsupport;

TEST(QuentLogException, SaysUnspecifiedBeforeAnythingFailed) {
  const QuentLog::Exception e("divide", "quent::rasterops::Divide::runOnCPU");
  EXPECT_STREQ(e.get_What(), "Unspecified");
  EXPECT_EQ(e.get_LineNum(), 0);
  EXPECT_STREQ(e.get_File(), "divide");
  EXPECT_STREQ(e.get_Function(), "quent::rasterops::Divide::runOnCPU");
}

TEST(QuentLogException, OfAStandardTypeSaysUnspecifiedInItsStandardPartToo) {
  const QuentLog::CPPException<std::runtime_error> e("divide", "f");
  EXPECT_STREQ(e.what(), "Unspecified");
}

TEST(QuentLogException, ThrowsACopyWithLineAndMessageInBothParts) {
  const Failure failure = FailureOf(
      [] { QuentLog::CPPException<std::runtime_error>("divide", "ns::f").Throw(17, "does not fit"); });
  EXPECT_EQ(failure.kind, Kind::Cpp);
  EXPECT_EQ(failure.what, "does not fit");
  EXPECT_EQ(failure.file, "divide");
  EXPECT_EQ(failure.function, "ns::f");
  EXPECT_EQ(failure.line, 17);
}

TEST(QuentLogException, CanBeCaughtAsEitherOfItsBases) {
  const auto raise = [] { QuentLog::CPPException<std::runtime_error>("f", "g").Throw(1, "m"); };
  EXPECT_THROW(raise(), QuentLog::Exception);
  EXPECT_THROW(raise(), std::runtime_error);
}

TEST(QuentLogException, TextNamesFileFunctionLineAndWhat) {
  try {
    QuentLog::CPPException<std::runtime_error>("divide", "ns::f").Throw(17, "does not fit");
  } catch (const QuentLog::Exception& e) {
    EXPECT_EQ(e.ToString(), "divide: ns::f:17: does not fit");
    return;
  }
  FAIL() << "nothing was thrown";
}

TEST(QuentLogException, ThatIsNotThrownCanBeLogged) {
  QuentLog::UnthrownException e("somefile", "somefunction");
  testing::internal::CaptureStderr();
  e.Log(23, "could not free");
  const std::string text = testing::internal::GetCapturedStderr();
  EXPECT_NE(text.find("could not free"), std::string::npos) << text;
  EXPECT_STREQ(e.get_What(), "could not free");
  EXPECT_EQ(e.get_LineNum(), 23);
}

} // namespace
