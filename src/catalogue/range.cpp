// Range, efficiency and volatility-system indicators.
#include "catalogue/entry.h"
#include "catalogue/sources.h"

namespace qv::catalogue {
namespace {

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvRangeIndicator, "rangeindicator", "Range Indicator", "The stochastic of the true range per point of advance, smoothed.")
        .params(period("p", 10), period("smoothing", 3)).gives(panel().range(0, 100).zone(20).zone(70)).reads(kHighLowClose).valid<0, 0>()
        .source("Jack Weinberg, \"The Range Indicator\", Technical Analysis of Stocks & Commodities, 1995")
        .settles([](const History& h) noexcept { return History::later(h.exponential(h.values[1]), h[0]); }),
    ENTRY(qvPFE, "pfe", "Polarized Fractal Efficiency", "The straight way over the last bars in percent of the way travelled, smoothed.")
        .params(period("p", 10), period("smoothing", 5)).gives(panel().range(-100, 100)).valid<0, 0>()
        .source("Hans Hannula, \"Polarized Fractal Efficiency\", Technical Analysis of Stocks & Commodities, 1994")
        .settles([](const History& h) noexcept { return History::later(h.exponential(h.values[1]), h[0]); }),
    ENTRY(qvWellesVolatility, "volatility", "Wilder's Volatility System", "Significant close, average range, the stop made of both, and its turns.")
        .params(real("constant", 3, 0.5, 10), period("p", 7)).gives(over("sic"), panel("arc"), over("stop").dots(), signal("signal")).mainly(2).reads(kHighLowClose).source(kWilder)
        .valid([](const Valid& v) noexcept {
          const std::int64_t m = std::max<std::int64_t>(v.start + v[1] - 2, 0);
          const std::int64_t lines[] = {m, v.start + v[1] - 1, m + 1, m + 1};
          return lines[v.output];
        })
        .neverSettles(),
};
// clang-format on

constexpr auto kItems = items<kRows>("Range and efficiency");

}  // namespace

constinit const Family range{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
