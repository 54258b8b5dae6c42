#include "base/rcommon/report.h"
#include "rcommon/rbuf.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

template <std::size_t pixelBytes> struct Pixel { unsigned char bytes[pixelBytes]; };

template <std::size_t pixelBytes> void fill(void* destination, const void* value, std::size_t count) {
  using P = Pixel<pixelBytes>;
  P pixel;
  std::memcpy(&pixel, value, pixelBytes);
  std::fill_n(static_cast<P*>(destination), count, pixel);
}

template <> void fill<1>(void* destination, const void* value, std::size_t count) {
  std::memset(destination, *static_cast<const unsigned char*>(value), count);
}

template <std::size_t pixelBytes>
void fillInc(void* destination, std::ptrdiff_t step, const void* value, std::size_t count) {
  auto* out = static_cast<unsigned char*>(destination);
  for (std::size_t i = 0; i < count; ++i, out += step)
    std::memcpy(out, value, pixelBytes);
}

constexpr Rbuf_FillFunction fills[rbuf_PixelTypeCount] = {fill<1>, fill<1>, fill<1>, fill<1>, fill<1>,
                                                          fill<2>, fill<2>, fill<4>, fill<4>, fill<4>,
                                                          fill<8>, fill<8>, fill<16>};
constexpr Rbuf_FillIncFunction fillIncs[rbuf_PixelTypeCount] = {
    fillInc<1>, fillInc<1>, fillInc<1>, fillInc<1>, fillInc<1>, fillInc<2>, fillInc<2>,
    fillInc<4>, fillInc<4>, fillInc<4>, fillInc<8>, fillInc<8>, fillInc<16>};

} // namespace

const Rbuf_FillFunction* rsys_AddressOf_rbuf_Fill() {
  return fills;
}

const Rbuf_FillIncFunction* rsys_AddressOf_rbuf_FillInc() {
  return fillIncs;
}

void rbuf_FillPixels(void* data, Rbuf_PixelType pixelType, const void* value, std::size_t count,
                     Rfault_ErrorReport** slot) {
  quent::base::ClearSlot(slot);
  if (pixelType < 0 || pixelType >= rbuf_PixelTypeCount)
    quent::base::Report(slot, "rbuf_FillPixels", "Invalid pixel type");
  else if (count > 0 && (!data || !value))
    quent::base::Report(slot, "rbuf_FillPixels", "The pixels or the value are null");
  else if (count > 0)
    fills[pixelType](data, value, count);
}
