#include "engine/bandlist.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace quent::rasterops::engine {

using Bands = std::vector<int>;

TEST(BandList, KeepsOrderAndRepeats) {
  EXPECT_EQ(ParseBandList("3"), (Bands{3}));
  EXPECT_EQ(ParseBandList("1,3-5"), (Bands{1, 3, 4, 5}));
  EXPECT_EQ(ParseBandList("2,2,1"), (Bands{2, 2, 1}));
  EXPECT_EQ(ParseBandList("5-3"), (Bands{5, 4, 3}));
  EXPECT_EQ(ParseBandList("4-4"), (Bands{4}));
}

TEST(BandList, RefusesWhatIsNoList) {
  for (const char* text :
       {"", ",", "1,", ",1", "0", "-1", "1-", "-", "a", "1 2", "1.5", "1-2-3", "99999999999", "70000"})
    EXPECT_THROW(ParseBandList(text), std::invalid_argument) << text;
}

} // namespace quent::rasterops::engine
