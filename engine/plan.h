/// \file
/// All decisions of a run, taken before any pixel is read.
#pragma once

#include "catalogue/catalogue.h"
#include "engine/inputraster.h"
#include "engine/memorybudget.h"
#include "engine/nodataplan.h"
#include "engine/outputraster.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quent::rasterops::engine {

/// What the user asks for.
struct Request {
  const catalogue::Operator* op = nullptr;
  std::map<std::string, std::string> parameters; ///< as typed
  std::vector<InputRequest> inputs;              ///< in the operator's order
  OutputRequest output;
  std::optional<Rbuf_PixelType> readAs;
  std::optional<Rbuf_PixelType> writeAs;
  NoDataRequest noData;
  TileRequest tile;
  unsigned threads = 0;              ///< 0: one per processor
  std::optional<std::size_t> memory; ///< none: by the limits of the machine and the control group
};

/// What will be done. Holds the inputs open.
struct RunPlan {
  const catalogue::Operator* op = nullptr;
  catalogue::Arguments arguments;
  std::vector<InputRaster> inputs;
  catalogue::Halo halo;
  Rbuf_PixelType resultType = U8; ///< of the operator; OutputPlan tells that of the file
  OutputPlan output;
  std::unique_ptr<OutputFormat> format;
  TileChoice tiles;
  std::size_t budget = 0;
};

/// \throws Error of any kind but ProcessingError
RASTEROPS_ENGINE_API RunPlan MakePlan(const Request& request);

/// The plan in lines of "name: value", for people.
RASTEROPS_ENGINE_API std::string PlanText(const RunPlan& plan);

} // namespace quent::rasterops::engine
