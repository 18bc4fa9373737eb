// Momentum oscillators: strength indices, rates of change, differences of averages, smoothed changes.
#include "catalogue/entry.h"
#include "catalogue/sources.h"

namespace qv::catalogue {
namespace {

int QVCALL strengthChange(const QvBars* bars1, const QvBars* bars2, QvArray* out, int p, double date,
                          int) noexcept {
  return qvRSIC(bars1, bars2, out, p, date);
}

constexpr const char kStrengthNote[] =
    "The first averages are the plain means of the first p moves; tables that start both from nothing at the "
    "first "
    "bar differ for the first hundred bars or so.";

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvRSI, "rsi", "Relative Strength Index", "The share of the rises in all moves, both smoothed by Wilder's average.")
        .params(period("p", 14)).gives(panel().range(0, 100).zone(30).zone(70)).source(kWilder).note(kStrengthNote)
        .valid<0, 0>().settles([](const History& h) noexcept { return h.wilder(h[0], 1, 2); }),
    ENTRY(qvRMI, "rmi", "Relative Momentum Index", "The relative strength index of moves over several bars.")
        .params(period("p", 20), period("m", 5)).gives(panel().range(0, 100).zone(30).zone(70))
        .source("Roger Altman, \"Relative Momentum Index: Modifying RSI\", Technical Analysis of Stocks & Commodities, 1993").note(kStrengthNote)
        .valid<-1, 0, 1>().settles([](const History& h) noexcept { return History::later(h.wilder(h[0], 1, 2), h[1]); }),
    ENTRY(qvUpAverage, "upaverage", "Up Average", "Wilder's average of the rises, other bars counting as 0.")
        .params(period("p", 14)).gives(panel()).source(kWilder).note(kStrengthNote)
        .valid<0, 0>().settles([](const History& h) noexcept { return h.wilder(h[0]); }),
    ENTRY(qvDownAverage, "downaverage", "Down Average", "Wilder's average of the falls as positive numbers.")
        .params(period("p", 14)).gives(panel()).source(kWilder).note(kStrengthNote)
        .valid<0, 0>().settles([](const History& h) noexcept { return h.wilder(h[0]); }),
    ENTRY(qvStochRSI, "stochrsi", "Stochastic RSI", "Where the relative strength index lies in its own range of the last bars.")
        .params(period("p", 14)).gives(panel().range(0, 100).zone(20).zone(80)).source(kChandeKroll).note(kStrengthNote)
        .valid<-1, 0, 0>()
        .settles([](const History& h) noexcept { return History::later(h.wilder(h[0], 1, 10), h[0]); }),
    ENTRY(qvCMO, "cmo", "Chande Momentum Oscillator", "Rises less falls over all moves of the last bars.")
        .params(period("period", 14)).gives(panel().range(-100, 100).zone(-50).zone(50)).source(kChandeKroll)
        .note("Plain sums; charts that smooth rises and falls by Wilder's rule show other values.").valid<0, 0>(),
    ENTRY(qvMomentum, "momentum", "Momentum", "The change over the last bars.")
        .params(period("p", 10)).gives(panel()).valid<0, 0>(),
    ENTRY(qvRateOfChange, "roc", "Rate of Change", "The change over the last bars, in percent with a scale of 100.")
        .params(real("scale", 100, 0, 100), period("p", 10)).gives(panel()).valid<0, 1>(),
    ENTRY(qvRatio, "ratio", "Ratio", "One series over another, 0 where that is zero.")
        .takes({{{"a", QV_SERIES_CLOSE, 0}, {"b", 0, 0}}}).params().gives(panel()),
    ADAPTED(qvRSIC, strengthChange, "rsic", "Relative Strength, Comparative", "The change over the last bars of one security's strength against another.")
        .params(period("p", 14), date("startDate")).gives(panel()).reads(kClose)
        .setsNoFirstValid(),
    ENTRY(qvMACD, "macdfixed", "MACD, fixed", "Appel's moving average convergence-divergence with the smoothing constants 0.15 and 0.075, and its signal line.")
        .params(period("signal", 9)).gives(panel("macd"), panel("signal")).valid<1>()
        .source("Gerald Appel, The Moving Average Convergence-Divergence Method, 1979")
        .note("The constants are those of 12.3 and 25.7 bars; averages are seeded with the first value, and the signal line starts at bar 1, not where the slow average of other charts begins.")
        .settles([](const History& h) noexcept {
          const double slow = 0.075, line = 2 / (h.values[0] + 1);
          return h.smoothed(std::min(slow, line), 2, 10);
        }),
    ENTRY(qvMACDx, "macd", "Moving Average Convergence-Divergence", "Fast less slow exponential average, its signal line, and their crossings.")
        .params(period("p1", 12), period("p2", 26), period("signal", 9)).mainly(2)
        .gives(over("fast"), over("slow"), panel("macd"), panel("signal"), signal("cross").seesAhead())
        .source("Gerald Appel, The Moving Average Convergence-Divergence Method, 1979")
        .note("Averages are seeded with the first value, and the signal line starts at bar 1: charts that begin it where they begin to print the difference (bar 25) differ until both have forgotten that. The crossings leave out the series' last bar.")
        .valid([](const Valid& v) noexcept { return v.start + (v.output >= 3); })
        .settles([](const History& h) noexcept {
          return h.exponential(std::max({h.values[0], h.values[1], h.values[2]}), 2, 10);
        }),
    ENTRY(qvOscillator, "oscillator", "Oscillator", "One series less another.")
        .takes({{{"a", QV_SERIES_CLOSE, 0}, {"b", 0, 0}}}).params().gives(panel()),
    ENTRY(qvOscillatorPct, "oscillatorpct", "Percentage Oscillator", "One series less another, in percent of the latter.")
        .takes({{{"a", QV_SERIES_CLOSE, 0}, {"b", 0, 0}}}).params().gives(panel()),
    ENTRY(qvPriceOscillator, "apo", "Price Oscillator", "The difference of two averages of the series.")
        .params(period("p1", 12), period("p2", 26), method(QV_MA_EXPONENTIAL)).gives(panel()).note(kSeeded)
        .valid(pairBegins).settles(pairSettles),
    ENTRY(qvPriceOscillatorPct, "ppo", "Percentage Price Oscillator", "The difference of two averages of the series, in percent of the second.")
        .params(period("p1", 12), period("p2", 26), method(QV_MA_EXPONENTIAL)).gives(panel()).note(kSeeded)
        .valid(pairBegins).settles(pairSettles),
    ENTRY(qvDPO, "dpo", "Detrended Price Oscillator", "The series less an average centred on it: cycles without the trend.")
        .params(period("p", 20)).gives(panel().seesAhead())
        .note("The average ends p / 2 + 1 bars later, so a value uses later bars and the last ones have none; charts that subtract an average of bars before differ.")
        .valid([](const Valid& v) noexcept { return std::max<std::int64_t>(v.start + v[0] - (v[0] / 2 + 1) - 1, 0); }),
    ENTRY(qvTRIX, "trix", "TRIX", "The change of a triple exponential average from bar to bar, in percent.")
        .params(period("p", 15)).gives(panel().histogram()).source("Jack K. Hutson, \"Good TRIX\", Technical Analysis of Stocks & Commodities, 1983").valid<1>()
        .note("Divided by the new value, not the old one; every smoothing begins with the first value.")
        .settles([](const History& h) noexcept { return h.exponential(h.values[0], 3, 10); }),
    ENTRY(qvTSI, "tsi", "True Strength Index", "Moves smoothed twice over their absolute values smoothed alike.")
        .params(period("r", 25), period("s", 13)).gives(panel().range(-1, 1))
        .source("William Blau, \"True Strength Index\", Technical Analysis of Stocks & Commodities, 1991").valid<1>()
        .note("A ratio, not scaled by 100; averages are seeded with the first move.")
        .settles([](const History& h) noexcept { return h.exponential(std::max(h.values[0], h.values[1]), 2); }),
    ENTRY(qvUltimateOsc, "ultimate", "Ultimate Oscillator", "Buying pressure over true range, of three periods, weighted 4, 2 and 1.")
        .params(period("p1", 7), period("p2", 14), period("p3", 28)).gives(panel().range(0, 1).zone(0.3).zone(0.7)).reads(kHighLowClose)
        .source("Larry Williams, \"The Ultimate Oscillator\", Technical Analysis of Stocks & Commodities, 1985").note("A fraction; other charts show it times 100.")
        .valid([](const Valid& v) noexcept { return std::max({v[0], v[1], v[2]}); }),
};
// clang-format on

constexpr auto kItems = items<kRows>("Momentum");

}  // namespace

constinit const Family momentum{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
