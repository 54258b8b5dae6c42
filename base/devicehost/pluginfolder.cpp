#include "base/devicehost/pluginfolder.h"

#include "quentlog/log.h"
#include "rcommon/rstring.h"
#include "rcommon/rsys.h"
#include "rcommon/rtext.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace quent::base {

namespace {

namespace fs = std::filesystem;

using CreatePlugin = gpu::GPUPlugin* (*)();
constexpr char entryPoint[] = "rasterops_CreateGPUPlugin";

/// A loaded shared library; empty if it could not be loaded.
class SharedLibrary {
public:
  explicit SharedLibrary(const fs::path& path) {
#if defined(_WIN32)
    m_Handle = LoadLibraryW(path.c_str());
#else
    m_Handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
#endif
  }
  SharedLibrary(const SharedLibrary&) = delete;
  SharedLibrary& operator=(const SharedLibrary&) = delete;
  ~SharedLibrary() {
    if (!m_Handle)
      return;
#if defined(_WIN32)
    FreeLibrary(m_Handle);
#else
    dlclose(m_Handle);
#endif
  }

  CreatePlugin EntryPoint() const {
    if (!m_Handle)
      return nullptr;
#if defined(_WIN32)
    return reinterpret_cast<CreatePlugin>(GetProcAddress(m_Handle, entryPoint));
#else
    return reinterpret_cast<CreatePlugin>(dlsym(m_Handle, entryPoint));
#endif
  }

private:
#if defined(_WIN32)
  HMODULE m_Handle = nullptr;
#else
  void* m_Handle = nullptr;
#endif
};

std::vector<fs::path> filesIn(const std::wstring& folder) {
  std::vector<fs::path> files;
  const std::unique_ptr<wchar_t, void (*)(void*)> expanded(rstring_PathExpand(folder.c_str(), nullptr),
                                                           rsys_HeapFree);
  if (!expanded)
    return files;
  const std::string utf8 = rtext::narrow(expanded.get());
  std::error_code error; // a folder that is absent or cannot be read holds no plug-ins
  fs::directory_iterator entry(fs::path(std::u8string(utf8.begin(), utf8.end())), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error))
    if (std::error_code unreadable; entry->is_regular_file(unreadable))
      files.push_back(entry->path());
  std::sort(files.begin(), files.end());
  return files;
}

/// The plug-in of a library. It goes before the library is unloaded.
boost::shared_ptr<gpu::GPUPlugin> pluginOf(const fs::path& path) {
  const auto library = std::make_shared<SharedLibrary>(path);
  const CreatePlugin create = library->EntryPoint();
  gpu::GPUPlugin* const plugin = create ? create() : nullptr;
  if (!plugin) {
    const QuentLog::Log log(L"devicehost");
    if (log.IsEnabled(QuentLog::LEVEL_INFO))
      log.LogInfo(L"No plug-in in " + rtext::twiden(path.string().c_str()));
    return boost::shared_ptr<gpu::GPUPlugin>();
  }
  return boost::shared_ptr<gpu::GPUPlugin>(plugin, [library](gpu::GPUPlugin* p) { delete p; });
}

bool offers(const gpu::GPUPlugin& plugin, const std::wstring& functionName) {
  const std::vector<std::wstring> names = plugin.GetFunctionNames();
  return std::find(names.begin(), names.end(), functionName) != names.end() && plugin.IsAvailable();
}

} // namespace

boost::shared_ptr<gpu::GPUPlugin> FindPlugin(const std::wstring& folder, const std::wstring& functionName) {
  for (const fs::path& path : filesIn(folder))
    if (auto plugin = pluginOf(path); plugin && offers(*plugin, functionName))
      return plugin;
  return boost::shared_ptr<gpu::GPUPlugin>();
}

} // namespace quent::base
