#include "engine/lane.h"

#include "engine/errors.h"

#include <tbb/task_arena.h>

#include <new>

namespace quent::rasterops::engine {

namespace {

std::vector<std::optional<PixelValue>> noValues(long planes) {
  return std::vector<std::optional<PixelValue>>(static_cast<std::size_t>(planes));
}

} // namespace

Lane::Lane(const RunPlan& plan, std::vector<GDALDatasetUniquePtr> handles)
    : m_Plan(plan), m_Result(plan.resultType, noValues(plan.output.shape.bands)),
      m_Written(plan.output.shape.type, noValues(plan.output.shape.bands)), m_Finisher(plan.output.noData) {
  m_Readers.reserve(plan.inputs.size());
  for (std::size_t i = 0; i < plan.inputs.size(); ++i)
    m_Readers.emplace_back(plan.inputs[i], std::move(handles[i]));
}

void Lane::Process(const Tile& tile, OutputRaster& output) {
  std::vector<catalogue::Operator::Block> inputs;
  for (InputReader& reader : m_Readers)
    inputs.push_back(reader.Read(tile));
  const auto& result = m_Result.Shape({tile.width, tile.height});
  for (long plane = 0; plane < result->getNumOfPlanes(); ++plane)
    result->setCondition(plane, tilx::NODATA);
  runOperator(tile, inputs);
  boost::shared_ptr<tilx::PixelBlock> written = result;
  if (m_Plan.output.shape.type != m_Plan.resultType) {
    written = m_Written.Shape({tile.width, tile.height});
    for (long plane = 0; plane < written->getNumOfPlanes(); ++plane)
      written->setPlaneFromPixelBlock(plane, *result, plane);
  }
  const unsigned char* const mask = m_Finisher.Finish(*written);
  output.Write(tile, *written, mask, m_Scratch);
}

void Lane::runOperator(const Tile& tile, const std::vector<catalogue::Operator::Block>& inputs) {
  const auto fail = [&](const char* reason) {
    throw ProcessingError(m_Plan.output.request.path + ": " + m_Plan.op->name + " failed at column " +
                          std::to_string(tile.x) + ", row " + std::to_string(tile.y) + " (" + reason +
                          "); this is a defect of rasterops, please report it");
  };
  try {
    // An operator that waits for tasks of its own must not pick up another tile meanwhile.
    tbb::this_task_arena::isolate([&] { m_Plan.op->runTile(inputs, m_Result.Get(), m_Plan.arguments); });
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& e) {
    fail(e.what());
  } catch (const QuentLog::Exception& e) {
    fail(e.get_What());
  }
}

} // namespace quent::rasterops::engine
