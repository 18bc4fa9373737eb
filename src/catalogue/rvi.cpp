// The relative volatility index and what is made of it.
#include "catalogue/entry.h"
#include "catalogue/sources.h"

namespace qv::catalogue {
namespace {

constexpr const char kRefined[] =
    "Donald Dorsey, \"Refining the Relative Volatility Index\", Technical Analysis of Stocks & Commodities, "
    "1995";
constexpr const char kNotVigor[] = "Not the relative vigor index, which other charts call RVI too.";

// Deviations of ten bars, smoothed by Wilder's rule.
std::int64_t volatilitySettles(const History& h) noexcept {
  return History::later(h.wilder(h[0], 1, 2), 9);
}

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvRVIoriginal, "rvioriginal", "Relative Volatility Index, original", "The relative strength index with ten-bar deviations in place of the moves.")
        .params(period("p", 14)).gives(panel().range(0, 100).zone(40).zone(60)).valid<8, 0>().settles(volatilitySettles).note(kNotVigor)
        .source("Donald Dorsey, \"The Relative Volatility Index\", Technical Analysis of Stocks & Commodities, 1993"),
    ENTRY(qvRVI, "rvi", "Relative Volatility Index", "The mean of the relative volatility indices of the highs and of the lows.")
        .params(period("p", 14)).gives(panel().range(0, 100).zone(40).zone(60)).reads(kHighLow).valid<8, 0>().settles(volatilitySettles).source(kRefined).note(kNotVigor),
    ENTRY(qvInertia, "inertia", "Inertia", "The least-squares average of the relative volatility index.")
        .params(period("p", 14), period("q", 20, 2)).gives(panel().range(0, 100).zone(50)).reads(kHighLow).source(kRefined).valid<7, 0, 1>()
        .settles([](const History& h) noexcept { return History::later(volatilitySettles(h), h[1] - 1); }),
};
// clang-format on

constexpr auto kItems = items<kRows>("Relative volatility");

}  // namespace

constinit const Family relativeVolatility{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
