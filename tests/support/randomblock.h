/// \file
/// Random blocks over all layouts, conditions, NODATA values and masks.
#pragma once

#include "support/blocks.h"
#include "support/pixelvalues.h"
#include "support/random.h"

#include <array>

namespace testsupport {

inline constexpr std::array<Rbuf_PixelType, 13> kAllTypes = {U1,  U2,  U4,  U8,  S8,  U16, S16,
                                                             U32, S32, F32, F64, C64, C128};

/// How the pixels of a block lie in memory.
enum class Layout {
  Allocated,       ///< the block's own pixels
  Padded,          ///< the caller's, with bytes between rows and between planes
  LineInterleaved, ///< the caller's, with the rows of all planes in turn
  Window           ///< a derived window inside a larger block
};

struct Size {
  int width;
  int height;
};

/// A random size: 1, odd, around two vectors, or long and thin.
Size RandomSize(Random& random);

Layout RandomLayout(Random& random);

/// A block and the memory that it wraps.
class MadeBlock {
public:
  BlockPtr block;
  std::shared_ptr<reference::Bytes> storage; ///< null if the block has its own pixels

  /// The wrapped bytes with those of the block's pixels set to 0: what nothing may write.
  reference::Bytes BytesOutside() const;
};

/// A block of random pixels; every plane is UNKNOWN and dirty, without NODATA value or mask (windows have
/// a current mask of all 255 and are ALLDATA).
MadeBlock MakePlainBlock(Random& random, Rbuf_PixelType type, int planes, Size size, Layout layout);

/// Gives every plane a random NODATA value or none, a random condition, mask and flags. About one plane in
/// ten is left in a state from which its mask cannot be computed.
void RandomizeState(Random& random, tilx::PixelBlock& block);

/// Both of the above.
MadeBlock MakeRandomBlock(Random& random, Rbuf_PixelType type, int planes, Size size, Layout layout);

} // namespace testsupport
