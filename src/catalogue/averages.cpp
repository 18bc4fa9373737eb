// Moving averages and smoothing sums.
#include "catalogue/entry.h"
#include "catalogue/sources.h"

namespace qv::catalogue {
namespace {

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvSimpleMA, "sma", "Simple Moving Average", "The plain average of the last bars.")
        .params(period("period", 20)).gives(over()).inPlace().valid<-1, 0>(),
    ENTRY(qvExpMA, "ema", "Exponential Moving Average",
          "An average in which the weight of a value fades by a constant share with every bar.")
        .params(period("period", 20)).gives(over()).inPlace().note(kSeeded)
        .source("Robert G. Brown, Statistical Forecasting for Inventory Control, 1959, for the smoothing")
        .settles([](const History& h) noexcept { return h.exponential(h.values[0]); }),
    ENTRY(qvWeightedMA, "wma", "Weighted Moving Average",
          "The average of the last bars with weights that rise from 1 to the period.")
        .params(period("period", 20)).gives(over()).valid<-1, 0>(),
    ENTRY(qvWellesMA, "wilder", "Wilder's Smoothing",
          "Wilder's average: the plain average of the first bars, then an exponential one of share 1 / period.")
        .params(period("period", 14)).gives(over()).inPlace().source(kWilder).valid<-1, 0>()
        .settles([](const History& h) noexcept { return h.wilder(h[0]); }),
    ENTRY(qvLstSqrMA, "lsma", "Least-Squares Moving Average",
          "The least-squares line through the last bars, read one bar beyond its end.")
        .params(period("period", 20, 2)).gives(over()).valid<-1, 0>()
        .note("A forecast: charts that read the line at its last bar differ by one slope."),
    ENTRY(qvTriangularMA, "trima", "Triangular Moving Average",
          "A simple average of a simple average: the middle of the window weighs most.")
        .params(period("period", 20)).gives(over()).valid<-1, 0>(),
    ENTRY(qvVolAdjustedMA, "vwma", "Volume-Adjusted Moving Average",
          "The average of the last prices weighted with their volumes.")
        .takes({{{"price", QV_SERIES_CLOSE, 0}, {"volume", QV_SERIES_VOLUME, 0}}})
        .params(period("period", 20)).gives(over()).valid<-1, 0>(),
    ENTRY(qvZeroLagExpMA, "zlema", "Zero-Lag Exponential Moving Average",
          "An exponential average of the series carried forward by its own change over half the period.")
        .params(period("period", 20)).gives(over()).source("John F. Ehlers and Ric Way, \"Zero Lag (Well, Almost)\", Technical Analysis of Stocks & Commodities, 2010")
        .note("Seeded with the first value of the series, from which the first items carried forward differ.")
        .valid([](const Valid& v) noexcept { return v.start + lagOf(v.values[0]) - 1; })
        .settles([](const History& h) noexcept {
          return History::later(h.exponential(h.values[0]), lagOf(h.values[0]) - 1);
        }),
    ENTRY(qvDEMA, "dema", "Double Exponential Moving Average",
          "Twice an exponential average less its own average, which lags less.")
        .params(period("period", 20)).gives(over()).valid<1>().note(kCascade)
        .source("Patrick G. Mulloy, \"Smoothing Data with Faster Moving Averages\", Technical Analysis of Stocks & Commodities, 1994")
        .settles([](const History& h) noexcept { return h.exponential(h.values[0], 2); }),
    ENTRY(qvTEMA, "tema", "Triple Exponential Moving Average",
          "Three exponential averages one of the other, combined so that most of the lag cancels.")
        .params(period("period", 20)).gives(over()).valid<1>().note(kCascade)
        .source("Patrick G. Mulloy, \"Smoothing Data with Faster Moving Averages\", Technical Analysis of Stocks & Commodities, 1994")
        .settles([](const History& h) noexcept { return h.exponential(h.values[0], 3); }),
    ENTRY(qvT3, "t3", "Tillson T3",
          "A double exponential average with adjustable overshoot, applied several times over.")
        .params(period("period", 5), real("volumeFactor", 0.7, 0, 1), integer("passes", 3, 1, 6)).gives(over())
        .source("Tim Tillson, \"Smoothing Techniques for More Accurate Signals\", Technical Analysis of Stocks & Commodities, 1998").note(kSeeded)
        .settles([](const History& h) noexcept {
          const auto passes = static_cast<int>(std::clamp<std::int64_t>(h[2], 1, 10000));
          return h.exponential(h.values[0], 2 * passes);
        }),
    ENTRY(qvVIDYA, "vidya", "Variable Index Dynamic Average",
          "An exponential average that follows faster the more one-sided the last moves were.")
        .params(period("cmoPeriod", 9), period("period", 12)).gives(over()).source(kChandeKroll)
        .note("The oscillator that drives it is made of plain sums, not of Wilder's averages.")
        .valid([](const Valid& v) noexcept { return v.start + v[0] + (v[0] == 9 ? 13 : 0); }).neverSettles(),
    ENTRY(qvVariableMA, "vma", "Variable Moving Average",
          "The variable index dynamic average with an oscillator of nine bars.")
        .params(period("period", 12)).gives(over()).source(kChandeKroll)
        .note("The oscillator that drives it is made of plain sums, not of Wilder's averages.")
        .valid<22>().neverSettles(),
    ENTRY(qvMovingAverage, "ma", "Moving Average", "The average of a method, by its code.")
        .params(method(), period("period", 20)).gives(over()).inPlace()
        .valid([](const Valid& v) noexcept { return v.start + averageBegins(v[0], v[1]); })
        .settles([](const History& h) noexcept { return h.average(h[0], h[1]); }),
    ENTRY(qvMovingSum, "sum", "Moving Sum", "The sum of the last bars.")
        .params(period("period", 20)).gives(panel()).inPlace().valid<-1, 0>(),
    ENTRY(qvWellesSum, "wildersum", "Wilder's Sum",
          "Wilder's smoothed sum: the sum of the first bars, then each time less its own share of 1 / period.")
        .params(period("period", 14)).gives(panel()).inPlace().source(kWilder).valid<-1, 0>()
        .settles([](const History& h) noexcept { return h.wilder(h[0]); }),
};
// clang-format on

constexpr auto kItems = items<kRows>("Averages");

}  // namespace

constinit const Family averages{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
