/// \file
/// Takes tiles from the inputs to the output on one thread.
#pragma once

#include "engine/inputreader.h"
#include "engine/outputraster.h"
#include "engine/plan.h"
#include "engine/tilefinisher.h"

#include <vector>

namespace quent::rasterops::engine {

/// The readers and blocks of one thread, used again from tile to tile.
class Lane {
public:
  /// \param handles one for each input
  Lane(const RunPlan& plan, std::vector<GDALDatasetUniquePtr> handles);

  /// \throws InputError; OutputError; ProcessingError
  void Process(const Tile& tile, OutputRaster& output);
  const TileCounts& Counts() const { return m_Finisher.Counts(); }

private:
  void runOperator(const Tile& tile, const std::vector<catalogue::Operator::Block>& inputs);

  const RunPlan& m_Plan;
  std::vector<InputReader> m_Readers;
  TileBlock m_Result;
  TileBlock m_Written; ///< the result in the type of the file, where that differs
  TileFinisher m_Finisher;
  std::vector<unsigned char> m_Scratch;
};

} // namespace quent::rasterops::engine
