/// Channels and levels, as QUENTLOG_LEVEL chooses them for a process.
#include "quentlog/log.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

/// What the log writer prints, on standard error and standard output, under a level.
std::string Written(const char* level, const std::string& redirection = "2>&1") {
  const std::string setting =
      level ? "QUENTLOG_LEVEL='" + std::string(level) + "' " : "env -u QUENTLOG_LEVEL ";
  const std::string command = setting + "'" RASTEROPS_LOG_WRITER "' " + redirection;
  std::FILE* pipe = ::popen(command.c_str(), "r");
  if (!pipe)
    return "(did not start)";
  std::string text;
  char buffer[4096];
  for (std::size_t size; (size = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
    text.append(buffer, size);
  EXPECT_EQ(::pclose(pipe), 0);
  return text;
}

bool Has(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

/// The lowest level that a channel of the writer printed, or "off". All higher ones must be there too.
std::string LowestLevel(const std::string& text, const std::string& channel) {
  std::string lowest = "off";
  bool missing = false;
  for (const char* level : {"error", "warning", "info", "trace"}) {
    if (!Has(text, (channel + ".Channel-" + level).c_str())) {
      missing = true;
      continue;
    }
    EXPECT_FALSE(missing) << level << " is printed but not all above it: " << text;
    lowest = level;
  }
  return lowest;
}

TEST(Log, PrintsWarningsAndErrorsByDefault) {
  const std::string text = Written(nullptr);
  EXPECT_EQ(LowestLevel(text, "one"), "warning") << text;
  EXPECT_FALSE(Has(text, "Channel-info"));
  EXPECT_FALSE(Has(text, "Channel-trace"));
}

TEST(Log, ALevelAloneHoldsForAllChannels) {
  EXPECT_EQ(LowestLevel(Written("trace"), "one"), "trace");
  EXPECT_EQ(LowestLevel(Written("info"), "one"), "info");
  EXPECT_EQ(LowestLevel(Written("info"), "two"), "info");
  EXPECT_EQ(LowestLevel(Written("debug"), "two"), "info");
  EXPECT_EQ(LowestLevel(Written("error"), "two"), "error");
  EXPECT_EQ(LowestLevel(Written("off"), "two"), "off");
}

TEST(Log, AListGivesSingleChannelsTheirLevel) {
  const std::string text = Written("one.Channel=trace,two.Channel=error");
  EXPECT_EQ(LowestLevel(text, "one"), "trace") << text;
  EXPECT_EQ(LowestLevel(text, "two"), "error") << text;
}

TEST(Log, ALevelInAListHoldsForTheRest) {
  for (const char* list : {"error,one.Channel=trace", "one.Channel=trace,error"}) {
    const std::string text = Written(list);
    EXPECT_EQ(LowestLevel(text, "one"), "trace") << text;
    EXPECT_EQ(LowestLevel(text, "two"), "error") << text;
  }
}

TEST(Log, ChannelsOutsideAListKeepTheDefault) {
  EXPECT_EQ(LowestLevel(Written("one.Channel=trace"), "two"), "warning");
}

TEST(Log, IsEnabledTellsWhatWouldBePrinted) {
  const std::string text = Written("info,two.Channel=error");
  for (const char* line : {"one=2\n", "one=3\n", "one=4\n", "two=4\n"})
    EXPECT_TRUE(Has(text, line)) << line << text;
  for (const char* line : {"one=0\n", "one=1\n", "two=0\n", "two=1\n", "two=2\n", "two=3\n"})
    EXPECT_FALSE(Has(text, line)) << line << text;
}

TEST(Log, WideMessagesArriveAsUtf8AndAreNotTakenForAFormat) {
  EXPECT_TRUE(Has(Written("error"), "\xC3\xBC\xE2\x82\xAC 100% {} {0} %s"));
}

TEST(Log, MessagesGoToStandardErrorAlone) {
  EXPECT_FALSE(Has(Written("trace", "2>/dev/null"), "Channel-error"));
}

TEST(Log, NamesTheChannel) {
  EXPECT_TRUE(Has(Written("error"), "one.Channel"));
  EXPECT_TRUE(Has(Written("error"), "unthrown"));
  EXPECT_FALSE(Has(Written("error,rasterops=off"), "unthrown")); // it goes to the channel "rasterops"
}

} // namespace
