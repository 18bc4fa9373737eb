// Stochastic oscillators and their kin.
#include "catalogue/entry.h"
#include "catalogue/sources.h"

namespace qv::catalogue {
namespace {

constexpr const char kLane[] =
    "George C. Lane, \"Lane's Stochastics\", Technical Analysis of Stocks & Commodities, 1984";
constexpr const char kNoRange[] =
    "A window without a range reads 100, fully overbought; other charts show 0 or 50.";
constexpr const char kSmoothedK[] =
    "Smoothed exponentially from the first %K on; charts that take simple averages differ.";

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvRawK, "rawk", "Stochastic %K", "Where the close lies between the lowest low and the highest high of the last bars.")
        .params(period("p", 14)).gives(panel().range(0, 100).zone(20).zone(80)).reads(kHighLowClose).source(kLane).note(kNoRange).valid<-1, 0>(),
    ENTRY(qvFastD, "fastd", "Fast Stochastic %D", "The exponential average of %K.")
        .params(period("k", 14), period("d", 3)).gives(panel().range(0, 100).zone(20).zone(80)).reads(kHighLowClose).source(kLane).note(kSmoothedK).valid<-1, 0>()
        .settles([](const History& h) noexcept { return History::later(h.exponential(h.values[1]), h[0] - 1); }),
    ENTRY(qvSlowD, "slowd", "Slow Stochastic %D", "The exponential average of the fast %D.")
        .params(period("k", 14), period("d1", 3), period("d2", 3)).gives(panel().range(0, 100).zone(20).zone(80)).reads(kHighLowClose).source(kLane).note(kSmoothedK).valid<-1, 0>()
        .settles([](const History& h) noexcept { return History::later(h.exponential(std::max(h.values[1], h.values[2]), 2), h[0] - 1); }),
    ENTRY(qvStochastic, "stochseries", "Stochastic of a Series", "Where an item lies between the lowest and the highest of the last ones.")
        .params(period("p", 14)).gives(panel().range(0, 100).zone(20).zone(80)).source(kLane).note(kNoRange).valid<-1, 0>(),
    ENTRY(qvStochasticFast, "stochfast", "Fast Stochastic", "%K within all four prices of the last bars, and its average.")
        .params(method(), period("k", 14), period("d", 3)).gives(panel("k").range(0, 100).zone(20).zone(80), panel("d").range(0, 100)).reads(kPrices).source(kLane).note(kNoRange)
        .valid([](const Valid& v) noexcept { return v.start + v[1] - 1 + (v.output == 1 ? averageBegins(v[0], v[2]) : 0); })
        .settles([](const History& h) noexcept { return History::later(h.average(h[0], h[2]), h[1] - 1); }),
    ENTRY(qvStochasticOscillator, "stochastic", "Stochastic Oscillator", "%K within all four prices of the last bars, smoothed, and its average.")
        .params(method(), period("k", 14), period("slowing", 3), period("d", 3)).gives(panel("k").range(0, 100).zone(20).zone(80), panel("d").range(0, 100)).reads(kPrices).source(kLane).note(kNoRange)
        .valid([](const Valid& v) noexcept {
          return v.start + v[1] - 1 + averageBegins(v[0], v[2]) + (v.output == 1 ? averageBegins(v[0], v[3]) : 0);
        })
        .settles([](const History& h) noexcept {
          const std::int64_t both = History::latest(h.average(h[0], h[2]), h.average(h[0], h[3]));
          return History::later(both == History::kNever ? both : h.average(h[0], h[2]) + h.average(h[0], h[3]), h[1] - 1);
        }),
    ENTRY(qvSMI, "smi", "Stochastic Momentum Index", "The close's distance from the middle of its range over half the range, both smoothed twice.")
        .params(period("p", 10), period("r", 3), period("s", 3), period("signal", 10)).gives(panel().range(-100, 100).zone(-40).zone(40), panel("signal").range(-100, 100)).reads(kHighLowClose)
        .source("William Blau, \"Stochastic Momentum\", Technical Analysis of Stocks & Commodities, 1993").valid<-1, 0>()
        .settles([](const History& h) noexcept {
          return History::later(h.exponential(std::max({h.values[1], h.values[2], h.values[3]}), 3), h[0] - 1);
        }),
    ENTRY(qvWilliamsR, "williamsr", "Williams' %R", "How far the close lies below the highest high, in percent of the range of the last bars.")
        .params(period("p", 14)).gives(panel().range(0, 100).zone(20).zone(80)).reads(kHighLowClose)
        .source("Larry R. Williams, How I Made One Million Dollars ... Last Year ... Trading Commodities, 1973")
        .note("A positive number, 0 at the high; other charts show it from -100 to 0.").valid<-1, 0>(),
    ENTRY(qvCCI, "cci", "Commodity Channel Index", "The typical price less its average, over 0.015 mean deviations.")
        .params(period("p", 20)).gives(panel().zone(-100).zone(100)).reads(kHighLowClose)
        .source("Donald R. Lambert, \"Commodity Channel Index\", Commodities, 1980")
        .note("All deviations are from the average of the window's last bar; charts that measure each from the average of its own bar differ.").valid<-1, 0>(),
};
// clang-format on

constexpr auto kItems = items<kRows>("Stochastics");

}  // namespace

constinit const Family stochastics{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
