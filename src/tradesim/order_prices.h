// The prices stored for orders without one of their own. They put market orders first when orders
// are sorted by price, buys from below and sells from above.
#pragma once

#include <cfloat>

namespace qv::tradesim {

inline constexpr double kMarketBuyPrice = 0.0;
inline constexpr double kMarketSellPrice = static_cast<double>(FLT_MAX);

}  // namespace qv::tradesim
