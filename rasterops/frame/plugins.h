/// \file
/// Where operators look for device plug-ins. Not installed.
#pragma once

namespace quent::rasterops {

/// Folder of the device plug-ins, as every operator hands it to its frame.
inline constexpr wchar_t gpuPluginFolder[] = L"$SOLVANE_HOME/usr/lib/$ARCHM/GPUPlugins";

} // namespace quent::rasterops
