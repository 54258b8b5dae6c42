/// \file
/// The frame of operators that take a parameter object.
#pragma once

#include "devicehost/gpuplugin.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

namespace quent {
namespace gpu {

/// An operator: makes its parameter object, and runs on the host or on a device.
///
/// Threads: an operator holds no state of a run, so runs may go on at once on one object. Two runs may
/// not share an output block.
class RASTEROPS_API GPUOperation : private boost::noncopyable {
public:
  /// Base of the parameter classes. Holds the blocks of one run until it is released.
  class RASTEROPS_API Parameters {
  public:
    virtual ~Parameters();
  };

  /// \param pluginFolder where device plug-ins are looked for; `$NAME` stands for an environment variable
  /// \param functionName what the operator asks a plug-in for; empty if it has no device form
  GPUOperation(const std::wstring& pluginFolder, const std::wstring& functionName);
  virtual ~GPUOperation();

  /// A new parameter object of the operator's own class.
  virtual boost::shared_ptr<Parameters> CreateParams() = 0;
  /// The host path. True, or an exception.
  virtual bool runOnCPU(boost::shared_ptr<Parameters> params) = 0;
  /// The device path. False if it did not run. By default it does not.
  virtual bool runOnGPU(boost::shared_ptr<Parameters> params);
  /// True if the device path is to be tried first. By default it is not.
  virtual bool prefersGPU(boost::shared_ptr<Parameters> params);

  /// Tries the device path if the operator prefers it; runs the host path if that was not wanted or
  /// returned false. Exceptions of either pass through.
  bool Run(boost::shared_ptr<Parameters> params);

protected:
  /// The first plug-in in the folder, by file name, that is available and offers the function. Empty if
  /// the function name is empty, or there is no folder or no such plug-in; none of these is an error.
  /// A library in the folder that is no plug-in is passed over with an info message.
  boost::shared_ptr<GPUPlugin> GetGPUPlugin() const;

private:
  std::wstring m_PluginFolder;
  std::wstring m_FunctionName;
};

} // namespace gpu
} // namespace quent
