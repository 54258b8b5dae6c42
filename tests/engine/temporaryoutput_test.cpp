#include "engine/temporaryoutput.h"

#include "engine/errors.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace fs = std::filesystem;

namespace quent::rasterops::engine {

namespace {

class Output : public testing::Test {
protected:
  fs::path folder =
      fs::path(testing::TempDir()) /
      (std::string("rasterops-") + testing::UnitTest::GetInstance()->current_test_info()->name());

  void SetUp() override {
    fs::remove_all(folder);
    fs::create_directories(folder);
  }
  void TearDown() override { fs::remove_all(folder); }

  static void write(const fs::path& path, const std::string& text) { std::ofstream(path) << text; }
  static std::string read(const fs::path& path) {
    std::ifstream in(path);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  std::set<std::string> names() const {
    std::set<std::string> result;
    for (const auto& entry : fs::directory_iterator(folder))
      result.insert(entry.path().filename().string());
    return result;
  }
  std::string target() const { return (folder / "out.tif").string(); }
};

using Names = std::set<std::string>;

} // namespace

TEST_F(Output, NothingIsLeftWithoutCommit) {
  {
    TemporaryOutput output(target(), false);
    write(output.Path(), "new");
    write(output.ScratchPath(), "scratch");
    EXPECT_EQ(names().size(), 1U) << "one hidden folder";
  }
  EXPECT_EQ(names(), Names{});
}

TEST_F(Output, CommitMovesAllButScratch) {
  {
    TemporaryOutput output(target(), false);
    write(output.Path(), "new");
    write(output.Path() + ".msk", "mask");
    write(output.ScratchPath(), "scratch");
    output.Commit();
  }
  EXPECT_EQ(names(), (Names{"out.tif", "out.tif.msk"}));
  EXPECT_EQ(read(target()), "new");
}

TEST_F(Output, AnExistingFileIsRefused) {
  write(target(), "old");
  EXPECT_THROW(TemporaryOutput(target(), false), OutputError);
  EXPECT_EQ(read(target()), "old");
}

TEST_F(Output, OverwritingKeepsTheOldFileUntilCommit) {
  write(target(), "old");
  TemporaryOutput output(target(), true);
  write(output.Path(), "new");
  EXPECT_EQ(read(target()), "old");
  output.Commit();
  EXPECT_EQ(read(target()), "new");
}

TEST_F(Output, SidecarsOfAnEarlierRasterGo) {
  write(target(), "old");
  write(target() + ".aux.xml", "old");
  write(target() + ".msk", "old");
  {
    TemporaryOutput output(target(), true);
    write(output.Path(), "new");
    write(output.Path() + ".msk", "new");
    output.Commit();
  }
  EXPECT_EQ(names(), (Names{"out.tif", "out.tif.msk"}));
  EXPECT_EQ(read(target() + ".msk"), "new");
}

TEST_F(Output, ASecondFileOfTheOutputIsNotOverwrittenUnasked) {
  write(folder / "out.hdr", "someone else's");
  {
    TemporaryOutput output(target(), false);
    write(output.Path(), "new");
    write(fs::path(output.Path()).parent_path() / "out.hdr", "ours");
    EXPECT_THROW(output.Commit(), OutputError);
  }
  EXPECT_EQ(names(), (Names{"out.hdr"}));
  EXPECT_EQ(read(folder / "out.hdr"), "someone else's");
}

TEST_F(Output, AMainFileThatWasNotWrittenIsAnError) {
  TemporaryOutput output(target(), false);
  EXPECT_THROW(output.Commit(), OutputError);
}

TEST_F(Output, ALinkStaysALink) {
  fs::create_directory(folder / "elsewhere");
  write(folder / "elsewhere" / "real.tif", "old");
  fs::create_symlink(folder / "elsewhere" / "real.tif", target());
  {
    TemporaryOutput output(target(), true);
    write(output.Path(), "new");
    output.Commit();
  }
  EXPECT_TRUE(fs::is_symlink(target()));
  EXPECT_EQ(read(folder / "elsewhere" / "real.tif"), "new");
}

TEST_F(Output, TargetsThatAreNoFilesAreRefused) {
  EXPECT_THROW(TemporaryOutput(folder.string(), true), OutputError) << "a folder";
  EXPECT_THROW(TemporaryOutput("/dev/null", true), OutputError) << "a device";
  EXPECT_THROW(TemporaryOutput("/vsimem/out.tif", true), OutputError) << "no file of this machine";
  EXPECT_THROW(TemporaryOutput((folder / "absent" / "out.tif").string(), false), OutputError);
  EXPECT_THROW(TemporaryOutput("", false), OutputError);
  EXPECT_EQ(names(), Names{});
}

} // namespace quent::rasterops::engine
