/// The operator frame: which path runs, and how plug-ins are found.
#include "devicehost/gpuoperation.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <unistd.h>

namespace {

using quent::gpu::GPUOperation;
using quent::gpu::GPUPlugin;

/// Records which path ran.
class Recorder : public GPUOperation {
public:
  explicit Recorder(const std::wstring& folder = L"", const std::wstring& function = L"")
      : GPUOperation(folder, function) {}
  boost::shared_ptr<Parameters> CreateParams() override { return boost::make_shared<Parameters>(); }
  bool runOnCPU(boost::shared_ptr<Parameters>) override {
    m_Paths += "cpu ";
    return m_CPUResult;
  }
  bool runOnGPU(boost::shared_ptr<Parameters>) override {
    m_Paths += "gpu ";
    if (m_GPUThrows)
      throw std::out_of_range("device");
    return m_GPUResult;
  }
  bool prefersGPU(boost::shared_ptr<Parameters> params) override {
    EXPECT_TRUE(params);
    return m_Prefers;
  }
  using GPUOperation::GetGPUPlugin;

  std::string m_Paths;
  bool m_Prefers = false;
  bool m_GPUResult = false;
  bool m_GPUThrows = false;
  bool m_CPUResult = true;
};

/// Leaves both device slots as they come.
class HostOnly : public GPUOperation {
public:
  HostOnly() : GPUOperation(L"", L"") {}
  boost::shared_ptr<Parameters> CreateParams() override { return boost::make_shared<Parameters>(); }
  bool runOnCPU(boost::shared_ptr<Parameters>) override { return true; }
};

TEST(GPUOperationFrame, DefaultDeviceSlotsReleaseTheParametersAndReturnFalse) {
  HostOnly operation;
  const auto params = operation.CreateParams();
  EXPECT_FALSE(operation.runOnGPU(params));
  EXPECT_FALSE(operation.prefersGPU(params));
  EXPECT_EQ(params.use_count(), 1);
  EXPECT_TRUE(operation.Run(params));
  EXPECT_EQ(params.use_count(), 1);
}

TEST(GPUOperationFrame, RunsOnTheHostUnlessTheDeviceIsPreferred) {
  Recorder operation;
  EXPECT_TRUE(operation.Run(operation.CreateParams()));
  EXPECT_EQ(operation.m_Paths, "cpu ");
  operation.m_CPUResult = false;
  EXPECT_FALSE(operation.Run(operation.CreateParams())) << "the result of the host path is handed on";
}

TEST(GPUOperationFrame, RunsOnTheDeviceIfPreferred) {
  Recorder operation;
  operation.m_Prefers = operation.m_GPUResult = true;
  EXPECT_TRUE(operation.Run(operation.CreateParams()));
  EXPECT_EQ(operation.m_Paths, "gpu ");
}

TEST(GPUOperationFrame, RunsOnTheHostWhenTheDevicePathReturnsFalse) {
  Recorder operation;
  operation.m_Prefers = true;
  EXPECT_TRUE(operation.Run(operation.CreateParams()));
  EXPECT_EQ(operation.m_Paths, "gpu cpu ");
}

TEST(GPUOperationFrame, ExceptionsPassThrough) {
  Recorder operation;
  operation.m_Prefers = operation.m_GPUThrows = true;
  EXPECT_THROW(operation.Run(operation.CreateParams()), std::out_of_range);
  EXPECT_EQ(operation.m_Paths, "gpu ");
}

/// A folder to which the tests copy the plug-ins that the build made.
class PluginFolder : public testing::Test {
protected:
  void SetUp() override {
    m_Folder = std::filesystem::path(testing::TempDir()) / ("plugins_" + std::to_string(::getpid()));
    std::filesystem::create_directories(m_Folder);
  }
  void TearDown() override { std::filesystem::remove_all(m_Folder); }

  void Add(const char* built, const std::string& name) const {
    std::filesystem::copy_file(built, m_Folder / (name + ".so"));
  }
  boost::shared_ptr<GPUPlugin> Find(const std::wstring& function) const {
    return Recorder(m_Folder.wstring(), function).GetGPUPlugin();
  }

  std::filesystem::path m_Folder;
};

TEST_F(PluginFolder, ThatIsAbsentOrEmptyIsNoError) {
  EXPECT_FALSE(Find(L"Common"));
  std::filesystem::remove_all(m_Folder);
  EXPECT_FALSE(Find(L"Common"));
  EXPECT_FALSE(Recorder(L"", L"Common").GetGPUPlugin());
  EXPECT_FALSE(Recorder(L"$RASTEROPS_TEST_UNSET/lib/GPUPlugins", L"Common").GetGPUPlugin());
}

TEST_F(PluginFolder, OfferingTheFunctionGivesAPluginThatRuns) {
  Add(RASTEROPS_PLUGIN_FIRST, "first");
  int sum = 40;
  int deleted = 0;
  {
    const auto plugin = Find(L"Common");
    ASSERT_TRUE(plugin);
    EXPECT_EQ(plugin->GetName(), L"first");
    std::vector<boost::any> arguments = {&sum, 2, &deleted};
    EXPECT_TRUE(plugin->Run(L"Common", arguments));
    EXPECT_EQ(sum, 42);
    EXPECT_EQ(deleted, 0);
  }
  EXPECT_EQ(deleted, 1) << "deleted, before the library is unloaded";
}

TEST_F(PluginFolder, GivesTheFirstByFileNameThatOffersTheFunction) {
  Add(RASTEROPS_PLUGIN_SECOND, "a_second");
  Add(RASTEROPS_PLUGIN_FIRST, "b_first");
  EXPECT_EQ(Find(L"Common")->GetName(), L"second");
  EXPECT_EQ(Find(L"OnlyFirst")->GetName(), L"first");
  EXPECT_EQ(Find(L"OnlySecond")->GetName(), L"second");
  EXPECT_FALSE(Find(L"Neither"));
}

TEST_F(PluginFolder, PassesOverPluginsThatAreNotAvailable) {
  Add(RASTEROPS_PLUGIN_UNAVAILABLE, "a_unavailable");
  EXPECT_FALSE(Find(L"Common"));
  Add(RASTEROPS_PLUGIN_FIRST, "b_first");
  EXPECT_EQ(Find(L"Common")->GetName(), L"first");
}

TEST_F(PluginFolder, PassesOverWhatIsNoPlugin) {
  Add(RASTEROPS_NO_PLUGIN, "a_noplugin");
  std::ofstream(m_Folder / "b_broken.so") << "not a library at all";
  std::ofstream(m_Folder / "c_notes.txt") << "read me";
  std::filesystem::create_directories(m_Folder / "d_folder.so");
  EXPECT_FALSE(Find(L"Common"));
  Add(RASTEROPS_PLUGIN_FIRST, "e_first");
  EXPECT_EQ(Find(L"Common")->GetName(), L"first");
}

TEST_F(PluginFolder, IsNotSearchedWithoutAFunctionName) {
  Add(RASTEROPS_PLUGIN_FIRST, "first");
  EXPECT_FALSE(Find(L""));
}

TEST_F(PluginFolder, MayBeNamedByEnvironmentVariables) {
  Add(RASTEROPS_PLUGIN_FIRST, "first");
  ::setenv("RASTEROPS_TEST_PLUGINS", m_Folder.parent_path().c_str(), 1);
  const std::wstring folder = L"$RASTEROPS_TEST_PLUGINS/" + m_Folder.filename().wstring();
  EXPECT_TRUE(Recorder(folder, L"Common").GetGPUPlugin());
  ::unsetenv("RASTEROPS_TEST_PLUGINS");
}

} // namespace
