// Trend and directional indicators.
#include "catalogue/entry.h"
#include "catalogue/sources.h"

namespace qv::catalogue {
namespace {

constexpr const char kDirectional[] =
    "The sums of the movements begin at bar 1, that of the true range at bar 0; tables that begin the "
    "range's at bar 1, "
    "or all three at bar 0, differ until both have forgotten that.";
constexpr const char kChandeAroon[] =
    "Tushar S. Chande, \"A Time Price Oscillator\", Technical Analysis of Stocks & Commodities, 1995";
constexpr const char kEarliest[] =
    "The earliest of equal extremes counts; charts that let the latest count differ where prices tie.";
constexpr std::array kZigZagModes = {"fraction", "percent"};

std::int64_t adxSettles(const History& h) noexcept {
  return History::later(h.wilder(std::max(h[0], h[1]), 2), std::min(h[0], h[1]) + 1);
}

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvTR, "tr", "True Range", "The bar's range, extended to the previous close.")
        .params().gives(panel()).reads(kHighLowClose).source(kWilder),
    ENTRY(qvATR, "atr", "Average True Range", "The true range smoothed by Wilder's average.")
        .params(period("p", 14)).gives(panel()).reads(kHighLowClose).source(kWilder)
        .note("The first average takes in bar 0, whose range is its height; charts that leave that bar out differ until both have forgotten it.")
        .valid<-1, 0>().settles([](const History& h) noexcept { return h.wilder(h[0]); }),
    ENTRY(qvDMIx, "dm", "Directional Movement", "How far the bar's range reaches above and below the previous one, the larger of the two only.")
        .params().gives(panel("plusDM"), panel("minusDM")).reads(kHighLow).source(kWilder).valid<1>()
        .note("The bar's own movement, not smoothed."),
    ENTRY(qvDI, "di", "Directional Indicators", "The smoothed movements up and down in percent of the smoothed true range.")
        .params(period("p", 14)).gives(panel("plusDI").range(0, 100), panel("minusDI").range(0, 100)).reads(kHighLowClose).source(kWilder).note(kDirectional)
        .valid<0, 0>().settles([](const History& h) noexcept { return History::later(h.wilder(h[0], 1, 2), 1); }),
    ENTRY(qvDX, "dx", "Directional Movement Index", "The difference of the directional indicators in percent of their sum.")
        .params(period("p", 14)).gives(panel().range(0, 100)).reads(kHighLowClose).source(kWilder).note(kDirectional)
        .valid<0, 0>().settles([](const History& h) noexcept { return History::later(h.wilder(h[0], 1, 2), 1); }),
    ENTRY(qvADX, "adx", "Average Directional Movement Index", "The directional movement index smoothed by Wilder's average: how strong the trend is, whichever way it goes.")
        .params(period("dxPeriod", 14), period("adxPeriod", 14)).gives(panel().range(0, 100).zone(20).zone(40)).reads(kHighLowClose).source(kWilder).note(kDirectional)
        .valid<-1, 0, 1>().settles(adxSettles),
    ENTRY(qvADXR, "adxr", "Average Directional Movement Rating", "The mean of the average directional movement index and of its value some bars before.")
        .params(period("dxPeriod", 14), period("adxPeriod", 14), integer("lag", 14, 0, 200)).gives(panel().range(0, 100).zone(20).zone(40)).reads(kHighLowClose).source(kWilder).note(kDirectional)
        .valid([](const Valid& v) noexcept { return v[2] < 0 ? -1 : v.start + v[0] + v[1] + v[2] - 1; })
        .settles([](const History& h) noexcept { return h[2] < 0 ? History::kNever : History::later(adxSettles(h), h[2]); }),
    ENTRY(qvDMI, "dmi", "Dynamic Momentum Index", "A relative strength of plain sums that looks back 3 to 30 bars, fewer the livelier the market.")
        .params().gives(panel().range(0, 100).zone(30).zone(70)).source(kChandeKroll).valid<30>()
        .note("Not the directional movement index, which other charts call DMI too: that is dx, with di and adx."),
    ENTRY(qvSAR, "sar", "Parabolic Stop and Reverse", "A trailing stop that closes in on the price the longer the trend lasts, and the side it is on.")
        .params(real("step", 0.02, 0.001, 0.2), real("maximum", 0.2, 0.01, 1)).gives(over("sar").dots(), state("direction")).reads(kHighLowClose).source(kWilder)
        .note("Turns when the close passes the stop, where Wilder's own rule turns when the bar's range touches it, and the new side's extreme begins at the bar's near end; the start differs from chart to chart, too.")
        .valid<2>().neverSettles(),
    ENTRY(qvAroon, "aroon", "Aroon", "How recently the highest high and the lowest low were made: 100 on the bar itself.")
        .params(period("p", 25)).gives(panel("up").range(0, 100).zone(30).zone(70), panel("down").range(0, 100)).reads(kHighLow).source(kChandeAroon).note(kEarliest).valid<0, 0>(),
    ENTRY(qvAroonOscillator, "aroonosc", "Aroon Oscillator", "Aroon up less Aroon down.")
        .params(period("p", 25)).gives(panel().range(-100, 100)).reads(kHighLow).source(kChandeAroon).note(kEarliest).valid<0, 0>(),
    ENTRY(qvVHF, "vhf", "Vertical Horizontal Filter", "The range of the last bars over the sum of their changes: trend or no trend.")
        .params(period("p", 28)).gives(panel()).source("Adam White, in Futures, 1991")
        .note("The sum is of the relative changes, so the level of the price matters; charts that sum the changes themselves show values from 0 to 1.").valid<0, 0>(),
    ENTRY(qvRWI, "rwi", "Random Walk Index", "How much farther highs and lows travelled than a random walk would have.")
        .params(period("p", 9, 2)).gives(panel("high").zone(1), panel("low")).reads(kHighLowClose)
        .source("E. Michael Poulos, \"Of Trends and Random Walks\", Technical Analysis of Stocks & Commodities, 1991")
        .note("The mean range is the plain mean of the j + 1 ranges before the bar, not Wilder's average, and a gap above the previous close does not count.").valid<0, 0>(),
    ENTRY(qvZigZag, "zigzag", "Zigzag", "Straight lines between the swings that exceed a threshold.")
        .params(real("threshold", 5, 0.01, 50), choice("mode", kZigZagModes, QV_ZIGZAG_PERCENT)).gives(over().seesAhead())
        .source("Arthur A. Merrill, Filtered Waves: Basic Theory, 1977")
        .note("A turn is known only when the threshold has been passed: the last legs move until then.").neverSettles(),
    ENTRY(qvSwingIndex, "swing", "Swing Index", "The bar's change from the previous one, weighed against the limit move.")
        .params(real("limitMove", 3, 0.0001, 10000)).gives(panel().histogram()).reads(kPrices).source(kWilder).valid<1>(),
    ENTRY(qvAccumSwingIndex, "accumswing", "Accumulation Swing Index", "The running sum of the swing index.")
        .params(real("limitMove", 3, 0.0001, 10000)).gives(panel()).reads(kPrices).source(kWilder).valid<1>().neverSettles(),
    ENTRY(qvTrendScore, "trendscore", "Trend Score", "Rises less falls among the last changes.")
        .params(period("p", 10)).gives(panel()).valid<0, 0>()
        .source("Tushar S. Chande, \"Rating Trend Strength\", Technical Analysis of Stocks & Commodities, 1993"),
};
// clang-format on

constexpr auto kItems = items<kRows>("Trend");

}  // namespace

constinit const Family trend{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
