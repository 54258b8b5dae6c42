/// A device plug-in for tests. The build makes several of it, which differ in name, functions and whether
/// they are available.
#include "devicehost/gpuplugin.h"

namespace {

class TestPlugin : public quent::gpu::GPUPlugin {
public:
  ~TestPlugin() override {
    if (m_Deleted)
      ++*m_Deleted;
  }
  std::wstring GetName() const override { return L"" RASTEROPS_PLUGIN_NAME; }
  std::wstring GetVersion() const override { return L"1.0"; }
  std::vector<std::wstring> GetFunctionNames() const override {
    return {L"Common", L"" RASTEROPS_PLUGIN_FUNCTION};
  }
  bool IsAvailable() const override { return RASTEROPS_PLUGIN_AVAILABLE; }
  std::wstring GetDeviceName() const override { return L"abacus"; }
  /// Adds the second argument to the first, and counts in the third when the plug-in is deleted.
  bool Run(const std::wstring& functionName, std::vector<boost::any>& arguments) override {
    if (functionName != L"Common" || arguments.size() != 3)
      return false;
    *boost::any_cast<int*>(arguments[0]) += boost::any_cast<int>(arguments[1]);
    m_Deleted = boost::any_cast<int*>(arguments[2]);
    return true;
  }

private:
  int* m_Deleted = nullptr;
};

} // namespace

#if defined(_WIN32)
#define PLUGIN_EXPORT __declspec(dllexport)
#else
#define PLUGIN_EXPORT __attribute__((visibility("default")))
#endif

extern "C" PLUGIN_EXPORT quent::gpu::GPUPlugin* rasterops_CreateGPUPlugin() {
  return new TestPlugin;
}
