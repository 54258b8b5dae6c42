// result = dividend / divisor, pixel by pixel. Integers truncate toward zero, floats follow IEEE. A pixel
// whose divisor is zero or of which an input is masked is invalid: its mask byte is 0 and its value is
// not written, unless the result has a NODATA value, which the release of its mask accessor fills in.
#include "rasterops/divide.h"

#include "rasterops/frame/divide_kernels.h"
#include "rasterops/frame/failure.h"
#include "rasterops/frame/plugins.h"
#include "rasterops/pixelblock.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstring>
#include <vector>

namespace quent::rasterops {

using tilx::IPixelBlock;

namespace {

const std::wstring pluginFolder = gpuPluginFolder;
const std::wstring functionName;

constexpr char file[] = "divide";
constexpr char runName[] = "quent::rasterops::Divide::runOnCPU";

/// Rows of an input plane with their mask. A plane of one element is spread over a row of its own, which
/// stands for every row.
class InputRows {
public:
  /// \param mask null when every pixel is valid
  InputRows(const _Rbuf_BaseData& plane, tilx::BufferAccessor* mask, int columns)
      : m_Data(plane.data), m_Pitch(plane.pitch), m_Mask(mask) {
    if (plane.numElements != 1)
      return;
    m_Spread.resize(static_cast<std::size_t>(columns) * plane.pixelBytes);
    rbuf_FillPixels(m_Spread.data(), plane.pixelType, plane.data, static_cast<std::size_t>(columns), nullptr);
    m_Data = m_Spread.data();
    m_Pitch = 0;
    if (mask)
      m_SpreadMask.assign(static_cast<std::size_t>(columns),
                          *static_cast<unsigned char*>(mask->GetRowPtr(0)));
  }

  const unsigned char* Pixels(int row) const { return m_Data + m_Pitch * row; }
  const unsigned char* Mask(int row) const {
    if (!m_Mask)
      return nullptr;
    return m_SpreadMask.empty() ? static_cast<const unsigned char*>(m_Mask->GetRowPtr(row))
                                : m_SpreadMask.data();
  }

private:
  const unsigned char* m_Data;
  std::ptrdiff_t m_Pitch;
  tilx::BufferAccessor* m_Mask;
  std::vector<unsigned char> m_Spread;
  std::vector<unsigned char> m_SpreadMask;
};

/// The plane of an input that goes into result plane `i`.
long planeFor(const IPixelBlock& input, long i) {
  return input.getNumOfPlanes() == 1 ? 0 : i;
}

/// An input must be one element or as large as the other; the result must hold the larger.
void checkSizes(const _Rbuf_BaseData& x, const _Rbuf_BaseData& y, const _Rbuf_BaseData& out) {
  if (x.numElements != 1 && y.numElements != 1 && (x.rows != y.rows || x.columns != y.columns))
    Raise(file, runName, "Divide: dividend and divisor differ in size, and neither is a single pixel");
  if (x.numElements == 0 || y.numElements == 0) // nothing to do, unless a single pixel stands beside it
    if (x.numElements == 1 || y.numElements == 1)
      Raise(file, runName, "Divide: an input has no pixels, and the other has one");
  if (out.rows < std::max(x.rows, y.rows) || out.columns < std::max(x.columns, y.columns))
    Raise(file, runName, "Divide: the result block is smaller than its inputs");
}

void dividePlane(IPixelBlock& dividend, long a, IPixelBlock& divisor, long b, IPixelBlock& result, long i) {
  const bool allData = dividend.getCondition(a) == tilx::ALLDATA && divisor.getCondition(b) == tilx::ALLDATA;
  const TilxPixelRectStack dividendStack(dividend.asPixelRectStack());
  const TilxPixelRectStack divisorStack(divisor.asPixelRectStack());
  const TilxPixelRectStack resultStack(result.asPixelRectStack());
  const _Rbuf_BaseData& x = *dividendStack.datalayer(static_cast<int>(a));
  const _Rbuf_BaseData& y = *divisorStack.datalayer(static_cast<int>(b));
  const _Rbuf_BaseData& out = *resultStack.datalayer(static_cast<int>(i));
  checkSizes(x, y, out);

  boost::shared_ptr<tilx::BufferAccessor> dividendMask;
  boost::shared_ptr<tilx::BufferAccessor> divisorMask;
  if (!allData) {
    dividendMask = dividend.getMaskAccessor(a, true);
    divisorMask = divisor.getMaskAccessor(b, true);
  }
  const boost::shared_ptr<tilx::BufferAccessor> resultMask = result.getMaskAccessor(i);

  const int rows = std::max(x.rows, y.rows);
  const int columns = std::max(x.columns, y.columns);
  const InputRows xRows(x, dividendMask.get(), columns);
  const InputRows yRows(y, divisorMask.get(), columns);
  const kernels::DivideRowFunction divideRow = kernels::DivideRowOf(x.pixelType);
  unsigned seen = 0;
  for (int r = 0; r < rows; ++r)
    seen |=
        divideRow(xRows.Pixels(r), xRows.Mask(r), yRows.Pixels(r), yRows.Mask(r),
                  out.data + static_cast<std::ptrdiff_t>(out.pitch) * r,
                  static_cast<unsigned char*>(resultMask->GetRowPtr(r)), static_cast<std::size_t>(columns));
  // An invalid pixel alone gives SOMEDATA here; the scan at the accessor's release has the last word.
  result.setCondition(i, (seen & 2) ? tilx::SOMEDATA : (seen & 1) ? tilx::ALLDATA : tilx::NODATA);
}

void checkBlocks(const DivideParams* params) {
  if (!params)
    Raise(file, runName, "Divide: the parameters are no DivideParams");
  if (!params->GetDividendBlock() || !params->GetDivisorBlock() ||
      !const_cast<DivideParams*>(params)->GetResultBlock())
    Raise(file, runName, "Divide: dividend, divisor and result block must be set");
}

} // namespace

DivideParams::~DivideParams() = default;

Divide::Divide() : GPUOperation(pluginFolder, functionName) {}

Divide::~Divide() = default;

boost::shared_ptr<Divide::Parameters> Divide::CreateParams() {
  return boost::make_shared<DivideParams>();
}

bool Divide::operator()(boost::shared_ptr<Parameters> params) {
  return Run(params);
}

bool Divide::runOnCPU(boost::shared_ptr<Parameters> params) {
  const auto divideParams = boost::dynamic_pointer_cast<DivideParams>(params);
  checkBlocks(divideParams.get());
  const boost::shared_ptr<IPixelBlock> dividend = divideParams->GetDividendBlock();
  const boost::shared_ptr<IPixelBlock> divisor = divideParams->GetDivisorBlock();
  const boost::shared_ptr<IPixelBlock> result = divideParams->GetResultBlock();

  if (dividend->getDataType() != divisor->getDataType())
    Raise(file, runName, "Data types for divide must match!");
  if (!kernels::DivideRowOf(dividend->getDataType()))
    Raise(file, runName, "Unsupported DataType");
  const long planes = std::max(dividend->getNumOfPlanes(), divisor->getNumOfPlanes());
  // Of the result's type only what keeps writes inside it is tested.
  if (result->getNumBytes() != dividend->getNumBytes() || result->getNumOfPlanes() < planes)
    Raise(file, runName,
          "Divide: the result block must have the inputs' pixel type and a plane for each of theirs");
  for (const IPixelBlock* const input : {dividend.get(), divisor.get()})
    if (input->getNumOfPlanes() != 1 && input->getNumOfPlanes() != planes)
      Raise(file, runName, "Divide: an input must have one plane or as many as the other");

  for (long i = 0; i < planes; ++i) {
    const long a = planeFor(*dividend, i);
    const long b = planeFor(*divisor, i);
    if (dividend->getCondition(a) == tilx::NODATA && divisor->getCondition(b) == tilx::NODATA)
      result->setCondition(i, tilx::NODATA);
    else
      dividePlane(*dividend, a, *divisor, b, *result, i);
  }
  return true;
}

} // namespace quent::rasterops
