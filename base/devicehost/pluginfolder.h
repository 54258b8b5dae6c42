/// \file
/// Search for device plug-ins. Not installed.
#pragma once

#include "devicehost/gpuplugin.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace quent::base {

/// The first library in a folder, by file name, whose plug-in is available and offers a function; empty
/// if there is none. Each search looks at the folder anew, and a plug-in keeps its library loaded.
boost::shared_ptr<gpu::GPUPlugin> FindPlugin(const std::wstring& folder, const std::wstring& functionName);

} // namespace quent::base
