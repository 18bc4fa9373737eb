// Bar-shape and regression oscillators.
#include "catalogue/entry.h"
#include "catalogue/sources.h"

namespace qv::catalogue {
namespace {

int QVCALL deTrend(const QvArray* in, QvArray* out, int start) noexcept {
  return qvDeTrend(in, out, start, INT32_MAX);
}

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvBOP, "bop", "Balance of Power", "The close less the previous open, over the bar's height, averaged.")
        .params(method(), period("p", 14)).gives(panel()).reads(kPrices)
        .source("Igor Livshin, \"Balance of Market Power\", Technical Analysis of Stocks & Commodities, 2001")
        .note("Looks at the previous bar's open; charts that take the bar's own differ, and stay between -1 and 1.").valid<0, 1>()
        .settles([](const History& h) noexcept { return h.average(h[0], h[1]); }),
    ENTRY(qvQstick, "qstick", "Qstick", "The exponential average of close less open.")
        .params(period("p", 8)).gives(panel().histogram()).reads(kOpen | kClose).source(kChandeKroll)
        .note("Smoothed exponentially; charts that take a simple average differ.")
        .settles([](const History& h) noexcept { return h.exponential(h.values[0], 1, 2); }),
    ENTRY(qvIMI, "imi", "Intraday Momentum Index", "The share of the white bodies in all bodies of the last bars.")
        .params(period("p", 14)).gives(panel().range(0, 100).zone(30).zone(70)).reads(kOpen | kClose).source(kChandeKroll).valid<-1, 0>(),
    ENTRY(qvMassIndex, "mass", "Mass Index", "The sum of the bars' smoothed height over its own smoothing: a bulge warns of a reversal.")
        .params(period("p", 25)).gives(panel().zone(26.5).zone(27)).reads(kHighLow)
        .source("Donald Dorsey, \"The Mass Index\", Technical Analysis of Stocks & Commodities, 1992").note(kCascade).valid<0, 0>()
        .settles([](const History& h) noexcept { return History::later(h.exponential(9, 2), h[0] - 1); }),
    ENTRY(qvPVO, "pvo", "Percentage Volume Oscillator", "The difference of two averages of the volume, in percent of the second.")
        .params(period("p1", 12), period("p2", 26), method(QV_MA_EXPONENTIAL)).gives(panel().histogram()).reads(kVolume).note(kSeeded)
        .valid(pairBegins).settles(pairSettles),
    ENTRY(qvForecastOscillator, "forecast", "Forecast Oscillator", "The item less the value forecast for it by the line through the items before, in percent; and its average.")
        .params(period("p", 14, 2), period("signalPeriod", 3)).gives(panel(), panel("signal")).source(kChandeKroll).valid<0, 0>()
        .settles([](const History& h) noexcept { return History::later(h.exponential(h.values[1]), h[0]); }),
    ADAPTED(qvDeTrend, deTrend, "detrend", "Detrended Series", "The series less one least-squares line through all of it.")
        .params().gives(panel().seesAhead()).neverSettles()
        .note("The line is read one step behind its fit, so every value carries one extra slope; and it is fitted to the whole series, so a later bar changes every value."),
};
// clang-format on

constexpr auto kItems = items<kRows>("Bar shape and regression");

}  // namespace

constinit const Family barShape{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
