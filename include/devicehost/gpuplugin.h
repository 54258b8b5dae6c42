/// \file
/// What a device plug-in offers.
#pragma once

#include "rcommon/api.h"

#include <boost/any.hpp>

#include <string>
#include <vector>

namespace quent {
namespace gpu {

/// A device implementation of one or more operators, found in a shared library at run time.
///
/// A plug-in library exports, with C linkage and default visibility,
/// `quent::gpu::GPUPlugin* rasterops_CreateGPUPlugin()`. It returns a new object, which the library
/// deletes through its destructor before it unloads the plug-in.
class RASTEROPS_API GPUPlugin {
public:
  virtual ~GPUPlugin();
  /// Name for logs.
  virtual std::wstring GetName() const = 0;
  /// Version for logs.
  virtual std::wstring GetVersion() const = 0;
  /// The functions that the plug-in offers, by the names that operators ask for.
  virtual std::vector<std::wstring> GetFunctionNames() const = 0;
  /// False if the plug-in has no device to run on; it is then passed over.
  virtual bool IsAvailable() const = 0;
  /// The device that a run would use, for logs.
  virtual std::wstring GetDeviceName() const = 0;
  /// Runs a function on arguments that its operator documents. Returns false if it did not run.
  virtual bool Run(const std::wstring& functionName, std::vector<boost::any>& arguments) = 0;
};

} // namespace gpu
} // namespace quent
