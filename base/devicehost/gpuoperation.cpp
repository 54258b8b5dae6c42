#include "devicehost/gpuoperation.h"

#include "base/devicehost/pluginfolder.h"

namespace quent::gpu {

GPUPlugin::~GPUPlugin() = default;

GPUOperation::Parameters::~Parameters() = default;

GPUOperation::GPUOperation(const std::wstring& pluginFolder, const std::wstring& functionName)
    : m_PluginFolder(pluginFolder), m_FunctionName(functionName) {}

GPUOperation::~GPUOperation() = default;

bool GPUOperation::runOnGPU(boost::shared_ptr<Parameters> params) {
  params.reset();
  return false;
}

bool GPUOperation::prefersGPU(boost::shared_ptr<Parameters> params) {
  params.reset();
  return false;
}

bool GPUOperation::Run(boost::shared_ptr<Parameters> params) {
  if (prefersGPU(params) && runOnGPU(params))
    return true;
  return runOnCPU(params);
}

boost::shared_ptr<GPUPlugin> GPUOperation::GetGPUPlugin() const {
  if (m_FunctionName.empty())
    return boost::shared_ptr<GPUPlugin>();
  return base::FindPlugin(m_PluginFolder, m_FunctionName);
}

} // namespace quent::gpu
