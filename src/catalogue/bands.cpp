// Bands and channels.
#include "catalogue/entry.h"
#include "catalogue/sources.h"

namespace qv::catalogue {
namespace {

constexpr const char kWidner[] =
    "Mel Widner, \"Signaling Change with Projection Bands\", Technical Analysis of Stocks & Commodities, "
    "1995";

// Without the argument that the function does not read.
int QVCALL ichimoku(const QvBars* bars, QvArray* conversion, QvArray* base, QvArray* spanA, QvArray* spanB,
                    QvArray* lagging, int p1, int p2, int p3, int shift, int start) noexcept {
  return qvIchimokuKinkoHyo(bars, conversion, base, spanA, spanB, lagging, p1, p2, p3, shift, 0, start);
}

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvBollinger, "bollinger", "Bollinger Bands", "The simple average of the typical price and so many deviations on either side.")
        .params(real("k", 2, 0.1, 10), period("p", 20, 2)).gives(over("upper").band(), over("middle"), over("lower").band()).mainly(1).reads(kHighLowClose)
        .source("John Bollinger, Bollinger on Bollinger Bands, 2001")
        .note("Of the typical price (high + low + close) / 3; charts that take the close differ.").valid<-1, 1>(),
    ENTRY(qvBollingerWidth, "bollingerwidth", "Bollinger Band Width", "The distance between the Bollinger bands, in price units.")
        .params(real("k", 2, 0.1, 10), period("p", 20, 2)).gives(panel()).reads(kHighLowClose)
        .source("John Bollinger, Bollinger on Bollinger Bands, 2001")
        .note("Not divided by the middle band, as other charts do.").valid<-1, 1>(),
    ENTRY(qvEnvelope, "envelope", "Envelope", "One series plus and minus a multiple of another.")
        .takes({{{"a", QV_SERIES_CLOSE, 0}, {"w", 0, 0}}}).params(real("k", 2, 0, 10)).gives(over("upper").band(), over("lower").band()),
    ENTRY(qvEnvelopePct, "envelopepct", "Percentage Envelope", "A series plus and minus a fraction of itself.")
        .params(real("k", 0.05, 0, 1)).gives(over("upper").band(), over("lower").band()),
    ENTRY(qvMAEnvelope, "maenvelope", "Moving Average Envelope", "An average plus and minus a fraction of itself.")
        .params(real("k", 0.05, 0, 1), method(), period("p", 20)).gives(over("upper").band(), over("lower").band())
        .valid([](const Valid& v) noexcept { return v.start + averageBegins(v[1], v[2]); })
        .settles([](const History& h) noexcept { return h.average(h[1], h[2]); }),
    ENTRY(qvMAHighLow, "mahighlow", "Moving Averages of Highs and Lows", "The averages of the highs and of the lows.")
        .params(method(), period("p", 20)).gives(over("high").band(), over("low").band()).reads(kHighLow)
        .valid([](const Valid& v) noexcept { return v.start + averageBegins(v[0], v[1]); })
        .settles([](const History& h) noexcept { return h.average(h[0], h[1]); }),
    ENTRY(qvPriceChannels, "channels", "Price Channels", "The highest and the lowest price of the bars before.")
        .params(period("p", 20)).gives(over("upper").band(), over("lower").band()).reads(kPrices)
        .source("Richard Donchian's four-week rule; no publication known")
        .note("The bar is not part of its own channel, so that it can break it; charts that include it differ.").valid<0, 0>(),
    ENTRY(qvProjectionBands, "projection", "Projection Bands", "The highest high and the lowest low of the last bars, each carried forward along the slope of the highs and lows.")
        .params(period("p", 14, 2)).gives(over("upper").band(), over("lower").band()).reads(kHighLow).source(kWidner).valid<-2, 0, 0>(),
    ENTRY(qvProjectionBandwidth, "projectionwidth", "Projection Bandwidth", "The distance between the projection bands in percent of their middle.")
        .params(period("p", 14, 2)).gives(panel()).reads(kHighLow).source(kWidner).valid<-2, 0, 0>(),
    ENTRY(qvProjectionOscillator, "projectionosc", "Projection Oscillator", "Where the close lies between the projection bands, smoothed.")
        .params(period("p", 14, 2), integer("smoothing", 3, 1, 100)).gives(panel().range(0, 100).zone(20).zone(80)).reads(kHighLowClose).source(kWidner).valid<-2, 0, 0>()
        .settles([](const History& h) noexcept {
          return h[1] > 1 ? History::later(h.exponential(h.values[1]), 2 * h[0] - 2) : 0;
        }),
    ENTRY(qvStdErrBands, "stderrbands", "Standard Error Bands", "The least-squares average and so many standard errors on either side.")
        .params(real("k", 2, 0.1, 10), period("p", 21, 3)).gives(over("upper").band(), over("middle"), over("lower").band()).mainly(1)
        .source("Jon Andersen, \"Standard Error Bands\", Technical Analysis of Stocks & Commodities, 1996")
        .note("The middle is the line's forecast of one bar; charts that read the line at its last bar differ by one slope.")
        .valid([](const Valid& v) noexcept { return (v.output == 1 ? 0 : v.start) + v[1] - 1; }),
    ADAPTED(qvIchimokuKinkoHyo, ichimoku, "ichimoku", "Ichimoku Kinko Hyo", "The middles of three ranges, two of them carried ahead as a cloud, and the close carried back.")
        .params(period("p1", 9), period("p2", 26), period("p3", 52), integer("shift", 26, 1, 200))
        .gives(over("conversion"), over("base"), over("spanA").band(), over("spanB").band(), over("lagging").seesAhead()).reads(kHighLowClose)
        .source("Goichi Hosoda, late 1960s; the work is not known to us")
        .note("The spans stand p2 - 1 bars ahead, 25 for the usual 26; charts that count the bar itself stand 26 ahead.")
        .valid([](const Valid& v) noexcept {
          const std::int64_t lines[] = {v[0] - 1, v[1] - 1, std::max(v[0], v[1]) + v[1] - 2, v[2] + v[1] - 2, 0};
          return v.start + lines[v.output];
        }),
};
// clang-format on

constexpr auto kItems = items<kRows>("Bands and channels");

}  // namespace

constinit const Family bands{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
