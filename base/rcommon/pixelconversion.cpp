// Conversion tables. Every conversion is one inline function of a single pixel; the tables hold the loops
// over it, contiguous and with increments.
#include "base/rcommon/pixelelement.h"
#include "base/rcommon/report.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

namespace {

using quent::base::PixelElement;

template <class T> constexpr bool isComplex = false;
template <class T> constexpr bool isComplex<std::complex<T>> = true;

/// Greatest value of an integer pixel type.
template <Rbuf_PixelType type> constexpr auto highest() {
  if constexpr (type <= U4)
    return PixelElement<type>::highest;
  else
    return std::numeric_limits<typename PixelElement<type>::Element>::max();
}

/// Rounds half away from zero and saturates; NaN gives 0. F holds every value of D with room for its
/// half. Adding the number just below one half, not one half itself, keeps values just below a tie from
/// reaching it by the rounding of the sum.
template <class D, class F> D roundSaturated(F value, F low, F high) {
  constexpr F belowHalf = F{0.5} - std::numeric_limits<F>::epsilon() / 4;
  F v = value == value ? value : F{0};
  v = v > low ? v : low;
  v = v < high ? v : high;
  v += std::copysign(belowHalf, v);
  if constexpr (sizeof(D) < 4)
    return static_cast<D>(static_cast<int>(v)); // int holds all narrower types, and its casts are vector code
  else
    return static_cast<D>(v);
}

/// Double to single that saturates finite values.
inline float toSingle(double value) {
  constexpr double greatest = std::numeric_limits<float>::max();
  constexpr double infinity = std::numeric_limits<double>::infinity();
  // A NaN fails every comparison and passes; so does an infinity, by the last choice.
  const double size = std::fabs(value);
  const double capped = size > greatest ? std::copysign(greatest, value) : value;
  return static_cast<float>(size == infinity ? value : capped);
}

template <Rbuf_PixelType to, class S> auto convertOne(S value) {
  using D = typename PixelElement<to>::Element;
  if constexpr (isComplex<D>) {
    using Part = typename D::value_type;
    if constexpr (isComplex<S> && std::is_same_v<Part, float>)
      return D(toSingle(value.real()), toSingle(value.imag()));
    else if constexpr (isComplex<S>)
      return D(value.real(), value.imag());
    else if constexpr (std::is_same_v<S, double> && std::is_same_v<Part, float>)
      return D(toSingle(value), 0.0F);
    else
      return D(static_cast<Part>(value), Part{0});
  } else if constexpr (isComplex<S>) {
    return convertOne<to>(value.real());
  } else if constexpr (std::is_same_v<D, float> && std::is_same_v<S, double>) {
    return toSingle(value);
  } else if constexpr (std::is_floating_point_v<D>) {
    return static_cast<D>(value);
  } else if constexpr (std::is_floating_point_v<S>) {
    using F = std::conditional_t<(sizeof(D) < 4), S, double>;
    return roundSaturated<D, F>(value, static_cast<F>(std::numeric_limits<D>::min()), highest<to>());
  } else {
    constexpr long long low = std::numeric_limits<D>::min();
    constexpr long long high = highest<to>();
    // Wide only where a 32-bit operand needs it: narrow arithmetic makes faster vector code.
    using W = std::conditional_t<sizeof(S) == 4 || sizeof(D) == 4, long long, int>;
    const auto wide = static_cast<W>(value);
    return static_cast<D>(wide < low ? low : wide > high ? high : wide);
  }
}

template <Rbuf_PixelType from, Rbuf_PixelType to>
void convert(const void* source, void* destination, std::size_t count) {
  using S = typename PixelElement<from>::Element;
  using D = typename PixelElement<to>::Element;
  if constexpr (from == to) {
    if (source != destination)
      std::memcpy(destination, source, count * sizeof(S));
  } else {
    const S* const in = static_cast<const S*>(source);
    D* const out = static_cast<D*>(destination);
    for (std::size_t i = 0; i < count; ++i)
      out[i] = convertOne<to>(in[i]);
  }
}

template <Rbuf_PixelType from, Rbuf_PixelType to>
void convertInc(const void* source, std::ptrdiff_t sourceStep, void* destination,
                std::ptrdiff_t destinationStep, std::size_t count) {
  const auto* in = static_cast<const unsigned char*>(source);
  auto* out = static_cast<unsigned char*>(destination);
  // Through local copies: pixels that lie apart need not be aligned.
  for (std::size_t i = 0; i < count; ++i, in += sourceStep, out += destinationStep) {
    typename PixelElement<from>::Element value;
    std::memcpy(&value, in, sizeof(value));
    if constexpr (from == to) {
      std::memcpy(out, &value, sizeof(value));
    } else {
      const typename PixelElement<to>::Element converted = convertOne<to>(value);
      std::memcpy(out, &converted, sizeof(converted));
    }
  }
}

using Indices = std::make_integer_sequence<int, rbuf_PixelTypeCount>;

template <class Function> struct Table { Function entries[rbuf_PixelTypeCount][rbuf_PixelTypeCount]; };

template <int from, int... to>
constexpr void fillRow(Table<Rbuf_ConvertFunction>& table, std::integer_sequence<int, to...>) {
  ((table.entries[from][to] = &convert<Rbuf_PixelType(from), Rbuf_PixelType(to)>), ...);
}
template <int from, int... to>
constexpr void fillRow(Table<Rbuf_ConvertIncFunction>& table, std::integer_sequence<int, to...>) {
  ((table.entries[from][to] = &convertInc<Rbuf_PixelType(from), Rbuf_PixelType(to)>), ...);
}
template <class Function, int... from> constexpr auto makeTable(std::integer_sequence<int, from...>) {
  Table<Function> table{};
  (fillRow<from>(table, Indices{}), ...);
  return table;
}

constexpr auto convertTable = makeTable<Rbuf_ConvertFunction>(Indices{});
constexpr auto convertIncTable = makeTable<Rbuf_ConvertIncFunction>(Indices{});

bool isPixelType(Rbuf_PixelType type) {
  return type >= 0 && type < rbuf_PixelTypeCount;
}

} // namespace

const Rbuf_ConvertFunction (*rsys_AddressOf_rbuf_Convert())[rbuf_PixelTypeCount] {
  return convertTable.entries;
}

const Rbuf_ConvertIncFunction (*rsys_AddressOf_rbuf_ConvertInc())[rbuf_PixelTypeCount] {
  return convertIncTable.entries;
}

void rbuf_ConvertPixels(void* destination, Rbuf_PixelType destinationType, const void* source,
                        Rbuf_PixelType sourceType, std::size_t count, Rfault_ErrorReport** slot) {
  quent::base::ClearSlot(slot);
  if (!isPixelType(sourceType) || !isPixelType(destinationType))
    quent::base::Report(slot, "rbuf_ConvertPixels", "Invalid pixel type");
  else if (count > 0 && (!source || !destination))
    quent::base::Report(slot, "rbuf_ConvertPixels", "The source or the destination is null");
  else if (count > 0)
    convertTable.entries[sourceType][destinationType](source, destination, count);
}
