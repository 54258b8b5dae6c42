/// What the engine asks of the operating system.
#include "base/hostsystem/hostsystem.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <limits>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace quent::base;

/// An empty folder for the length of a test.
class HostSystem : public testing::Test {
protected:
  void SetUp() override {
    m_Folder = fs::path(testing::TempDir()) / ("hostsystem_" + std::to_string(::getpid()));
    fs::create_directories(m_Folder);
  }
  void TearDown() override { fs::remove_all(m_Folder); }

  fs::path Write(const fs::path& name, const std::string& text) const {
    const fs::path path = m_Folder / name;
    fs::create_directories(path.parent_path());
    std::ofstream(path) << text;
    return path;
  }
  static std::string Read(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  std::size_t Limit() const {
    return ControlGroupMemoryLimit((m_Folder / "cgroup").string(), (m_Folder / "fs").string());
  }

  fs::path m_Folder;
};

TEST_F(HostSystem, ResidentBytesAndLimitArePlausible) {
  EXPECT_GT(ResidentBytes(), std::size_t{1} << 20);
  EXPECT_GT(MemoryLimit(), ResidentBytes());
  EXPECT_GE(AvailableProcessors(), 1u);
}

TEST_F(HostSystem, ControlGroupLimitIsTheSmallestOfTheGroups) {
  Write("cgroup", "0::/user/job\n");
  Write("fs/user/job/memory.max", "3000000\n");
  EXPECT_EQ(Limit(), 3000000u);
}

TEST_F(HostSystem, ControlGroupLimitHoldsForTheGroupsBelow) {
  Write("cgroup", "0::/user/job\n");
  Write("fs/user/memory.max", "2000000\n");
  Write("fs/user/job/memory.max", "max\n");
  EXPECT_EQ(Limit(), 2000000u);
}

TEST_F(HostSystem, WithoutControlGroupsThereIsNoLimit) {
  EXPECT_EQ(Limit(), std::numeric_limits<std::size_t>::max());
  Write("cgroup", "0::/\n");
  EXPECT_EQ(Limit(), std::numeric_limits<std::size_t>::max());
}

TEST_F(HostSystem, TemporaryFolderLiesBesideThePath) {
  const fs::path target = m_Folder / "out.tif";
  const fs::path first = MakeTemporaryFolderBeside(target.string());
  const fs::path second = MakeTemporaryFolderBeside(target.string());
  EXPECT_TRUE(fs::is_directory(first));
  EXPECT_TRUE(fs::is_empty(first));
  EXPECT_NE(first, second);
  EXPECT_EQ(first.parent_path(), m_Folder);
  const std::string name = first.filename().string();
  EXPECT_EQ(name.rfind(".out.tif.rasterops-", 0), 0u) << name;
  EXPECT_EQ(name.size(), std::string(".out.tif.rasterops-").size() + 6);
}

TEST_F(HostSystem, TemporaryFolderInNoFolderRaises) {
  EXPECT_THROW(MakeTemporaryFolderBeside((m_Folder / "absent" / "out.tif").string()), std::runtime_error);
}

TEST_F(HostSystem, ReplacesAFile) {
  const fs::path from = Write("new", "new");
  const fs::path to = Write("old", "old");
  ReplaceFile(from.string(), to.string());
  EXPECT_EQ(Read(to), "new");
  EXPECT_FALSE(fs::exists(from));
}

TEST_F(HostSystem, AFailedReplacementLosesNothing) {
  const fs::path to = Write("old", "old");
  EXPECT_THROW(ReplaceFile((m_Folder / "absent").string(), to.string()), std::runtime_error);
  EXPECT_EQ(Read(to), "old");
}

TEST(HostSystemDeathTest, TheFirstCancelRequestSetsAFlag) {
  EXPECT_EXIT(
      {
        CatchCancelRequests();
        const bool before = CancelRequested();
        std::raise(SIGTERM);
        ::_exit(!before && CancelRequested() ? 42 : 1);
      },
      testing::ExitedWithCode(42), "");
}

TEST(HostSystemDeathTest, FurtherCancelRequestsDoNotCutTheCleanUpShort) {
  EXPECT_EXIT(
      {
        CatchCancelRequests();
        std::raise(SIGINT);
        std::raise(SIGINT);
        std::raise(SIGTERM);
        ::_exit(CancelRequested() ? 42 : 1);
      },
      testing::ExitedWithCode(42), "");
}

TEST(HostSystemDeathTest, ASignalThatIsIgnoredStaysIgnored) {
  EXPECT_EXIT(
      {
        std::signal(SIGHUP, SIG_IGN);
        CatchCancelRequests();
        std::raise(SIGHUP);
        std::raise(SIGHUP);
        ::_exit(CancelRequested() ? 1 : 42);
      },
      testing::ExitedWithCode(42), "");
}

} // namespace
