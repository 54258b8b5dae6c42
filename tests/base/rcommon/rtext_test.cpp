/// Text helpers: UTF-8 and wide text, copies, paths with variables.
#include "rcommon/rtext.h"

#include "rcommon/rstring.h"
#include "rcommon/rsys.h"
#include "support/errorslot.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using testsupport::ErrorSlot;

std::wstring Expanded(const wchar_t* path) {
  ErrorSlot slot;
  wchar_t* expanded = rstring_PathExpand(path, slot);
  EXPECT_FALSE(slot.Failed()) << slot.Text();
  const std::wstring text = expanded ? expanded : L"(null)";
  rsys_HeapFree(expanded);
  return text;
}

TEST(Rtext, WidensAndNarrowsUtf8) {
  EXPECT_EQ(rtext::twiden("U16"), L"U16");
  EXPECT_EQ(rtext::twiden("\xC3\xBC\xE2\x82\xAC"), L"\u00fc\u20ac");
  EXPECT_EQ(rtext::narrow(L"\u00fc\u20ac"), "\xC3\xBC\xE2\x82\xAC");
  const char* rocket = "\xF0\x9F\x9A\x80";
  EXPECT_EQ(rtext::narrow(rtext::twiden(rocket).c_str()), rocket);
  EXPECT_EQ(rtext::twiden(""), L"");
}

TEST(Rtext, BytesThatAreNotUtf8BecomeReplacementCharacters) {
  EXPECT_EQ(rtext::twiden("a\xFFz"), L"a\uFFFDz");
  EXPECT_EQ(rtext::twiden("\x80"), L"\uFFFD");
  EXPECT_EQ(rtext::twiden("\xC3").back(), L'\uFFFD');                  // cut short
  EXPECT_EQ(rtext::twiden("\xC0\xAF").find(L'/'), std::wstring::npos); // longer than need be
}

TEST(Rtext, ValuesThatAreNoCodePointsBecomeReplacementCharacters) {
  if (sizeof(wchar_t) < 4)
    GTEST_SKIP() << "every value is part of a code point here";
  const wchar_t text[] = {L'a', static_cast<wchar_t>(0x110000), static_cast<wchar_t>(0xD800), L'z', 0};
  EXPECT_EQ(rtext::narrow(text), "a\xEF\xBF\xBD\xEF\xBF\xBDz");
}

TEST(Rtext, ComparesCodeByCode) {
  EXPECT_EQ(rtext_Text_strcmp(L"U16", L"U16"), 0);
  EXPECT_LT(rtext_Text_strcmp(L"S16", L"U16"), 0);
  EXPECT_GT(rtext_Text_strcmp(L"U16", L"U1"), 0);
  EXPECT_NE(rtext_Text_strcmp(L"u16", L"U16"), 0);
}

TEST(Rstring, DuplicatesOnTheHeap) {
  wchar_t* copy = rstring_Duplicate(L"plug-ins");
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(std::wstring(copy), L"plug-ins");
  EXPECT_EQ(rsys_HeapBlockOf(copy), copy);
  rsys_HeapFree(copy);
  EXPECT_EQ(rstring_Duplicate(nullptr), nullptr);
}

TEST(Rstring, ExpandsVariablesInPaths) {
  ::setenv("RASTEROPS_TEST_HOME", "/opt/\xC3\xBC", 1);
  ::setenv("RASTEROPS_TEST_ARCH2", "linux", 1);
  ::unsetenv("RASTEROPS_TEST_UNSET");
  EXPECT_EQ(Expanded(L"$RASTEROPS_TEST_HOME/lib/$RASTEROPS_TEST_ARCH2/x"), L"/opt/\u00fc/lib/linux/x");
  EXPECT_EQ(Expanded(L"$RASTEROPS_TEST_UNSET/lib"), L"$RASTEROPS_TEST_UNSET/lib");
  EXPECT_EQ(Expanded(L"a$"), L"a$");
  EXPECT_EQ(Expanded(L"$$RASTEROPS_TEST_ARCH2"), L"$linux");
  EXPECT_EQ(Expanded(L""), L"");
}

TEST(Rstring, AVariableThatHoldsADollarIsNotExpandedAgain) {
  ::setenv("RASTEROPS_TEST_HOME", "$RASTEROPS_TEST_HOME", 1);
  EXPECT_EQ(Expanded(L"$RASTEROPS_TEST_HOME/x"), L"$RASTEROPS_TEST_HOME/x");
}

} // namespace
