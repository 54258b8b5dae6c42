/// Sequential output to files.
#include "rcommon/rfile.h"

#include "support/errorslot.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

using testsupport::ErrorSlot;

std::string Contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(Rfile, AppendsPieceByPieceAndEmptiesWhatWasThere) {
  const std::string path = testing::TempDir() + "rfile_\u00fcmlaut.txt";
  std::ofstream(path) << "something longer that was there before";
  ErrorSlot slot;
  _rfile_FdRec* file = rfile_OpenForWriting(path.c_str(), slot);
  ASSERT_NE(file, nullptr) << slot.Text();
  rfile_WriteSeq(file, "one ", 4, slot);
  EXPECT_FALSE(slot.Failed());
  rfile_WriteSeq(file, "", 0, slot);
  EXPECT_FALSE(slot.Failed());
  rfile_WriteSeq(file, "two\0!", 5, slot);
  EXPECT_FALSE(slot.Failed());
  rfile_Close(file, slot);
  EXPECT_FALSE(slot.Failed());
  EXPECT_EQ(Contents(path), std::string("one two\0!", 9));
  std::filesystem::remove(path);
}

TEST(Rfile, AFileThatCannotBeMadeIsReported) {
  ErrorSlot slot;
  const std::string path = testing::TempDir() + "no such folder/file.txt";
  EXPECT_EQ(rfile_OpenForWriting(path.c_str(), slot), nullptr);
  EXPECT_NE(slot.Text().find("no such folder"), std::string::npos) << slot.Text();
}

TEST(Rfile, ClosingNothingIsFine) {
  ErrorSlot slot;
  rfile_Close(nullptr, slot);
  EXPECT_FALSE(slot.Failed());
}

TEST(Rfile, AFullDiskIsReportedByWriteOrClose) {
  if (!std::filesystem::exists("/dev/full"))
    GTEST_SKIP() << "needs /dev/full";
  ErrorSlot slot;
  _rfile_FdRec* file = rfile_OpenForWriting("/dev/full", slot);
  ASSERT_NE(file, nullptr);
  const std::string text(100000, 'x');
  rfile_WriteSeq(file, text.data(), text.size(), slot);
  const bool failedToWrite = slot.Failed();
  rfile_Close(file, slot);
  EXPECT_TRUE(failedToWrite || slot.Failed());
}

} // namespace
