// Volume and money flow.
#include "catalogue/entry.h"
#include "catalogue/sources.h"

namespace qv::catalogue {
namespace {

constexpr const char kGranville[] = "Joseph E. Granville, Granville's New Key to Stock Market Profits, 1963";
constexpr const char kFosback[] = "Norman G. Fosback, Stock Market Logic, 1976, after Paul L. Dysart";
constexpr const char kIndexNote[] =
    "A sum of fractional changes from 0; charts that show an index of 1000 which compounds differ.";

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvOBV, "obv", "On-Balance Volume", "The running sum of volumes, added on rising closes and subtracted on falling ones.")
        .params().gives(panel()).reads(kClose | kVolume).source(kGranville).valid<1>().neverSettles(),
    ENTRY(qvOBVolMv, "obvmv", "On-Balance Volume, moving", "The on-balance volume of the last changes.")
        .params(period("p", 14)).gives(panel()).reads(kClose | kVolume).source(kGranville).valid<0, 0>(),
    ENTRY(qvOBOiMv, "oboimv", "On-Balance Open Interest, moving", "Open interest, added on rising closes and subtracted on falling ones, of the last bars.")
        .params(period("p", 14)).gives(panel()).reads(kClose | kOpenInterest).valid<-1, 0>(),
    ENTRY(qvOBVolExp, "obvswings", "On-Balance Volume with Swings", "On-balance volume, its breakouts from its swings, and the trend that the swings tell.")
        .params(period("p", 4)).gives(panel("volume"), state("breakout"), state("trend")).reads(kClose | kVolume)
        .source("after Joseph E. Granville, New Key to Stock Market Profits, 1963").valid<1>().neverSettles(),
    ENTRY(qvAccumDist, "accumdist", "Accumulation/Distribution", "The running sum of the volume times where the close lies in its bar.")
        .params().gives(panel()).reads(kHighLowClose | kVolume).source("Marc Chaikin; no publication known").neverSettles()
        .note("A bar without height counts whole, as a fall or a rise of its close; charts that leave it out differ."),
    ENTRY(qvAccumulate, "accumulate", "Running Sum", "The sum of all items so far.")
        .params().gives(panel()).neverSettles(),
    ENTRY(qvChaikinMoneyFlow, "cmf", "Chaikin Money Flow", "Volume times where the close lies in its bar, over the volume, of the last bars.")
        .params(period("p", 20)).gives(panel().range(-1, 1).zone(0)).reads(kHighLowClose | kVolume).source("Marc Chaikin; no publication known").valid<-1, 0>(),
    ENTRY(qvChaikinOscillator, "chaikin", "Chaikin Oscillator", "Fast less slow exponential average of the accumulation/distribution line.")
        .params(period("fast", 3), period("slow", 10)).gives(panel().histogram()).reads(kHighLowClose | kVolume).source("Marc Chaikin; no publication known").note(kSeeded)
        .settles([](const History& h) noexcept { return h.exponential(std::max(h.values[0], h.values[1]), 1, 10); }),
    ENTRY(qvChaikinVolatility, "chaikinvolatility", "Chaikin Volatility", "The change of the bars' average height, in percent.")
        .params(period("p", 10)).gives(panel()).reads(kHighLow).source("Marc Chaikin; no publication known").note(kSeeded).valid<0, 0>()
        .settles([](const History& h) noexcept { return History::later(h.exponential(h.values[0]), h[0]); }),
    ENTRY(qvMFI, "facilitation", "Market Facilitation Index", "The bar's height per volume, scaled by the mean volume.")
        .params().gives(panel().histogram().seesAhead()).reads(kHighLow | kVolume).source("Bill Williams, Trading Chaos, 1995").neverSettles()
        .note("Scaled by the mean volume of the whole series, so a later bar changes it; charts that show height over volume as it stands differ. Not the money flow index, which other charts call MFI: that is moneyflow."),
    ENTRY(qvMoneyFlowIndex, "moneyflow", "Money Flow Index", "Positive over negative money flow of the last changes: a relative strength weighed by volume.")
        .params(period("p", 14)).gives(panel().range(0, 100).zone(20).zone(80)).reads(kHighLowClose | kVolume).valid<0, 0>()
        .source("Gene Quong and Avrum Soudack, \"Volume-Weighted RSI: Money Flow\", Technical Analysis of Stocks & Commodities, 1989")
        .note("0, not 100, where nothing flowed down."),
    ENTRY(qvPVT, "pvt", "Price-Volume Trend", "The running sum of volume times the close's relative change.")
        .params().gives(panel()).reads(kClose | kVolume).valid<1>().neverSettles(),
    ENTRY(qvNVI, "nvi", "Negative Volume Index", "The sum of the relative changes on bars of falling volume.")
        .params().gives(panel()).reads(kClose | kVolume).source(kFosback).note(kIndexNote).valid<1>().neverSettles(),
    ENTRY(qvPVI, "pvi", "Positive Volume Index", "The sum of the relative changes on bars of rising volume.")
        .params().gives(panel()).reads(kClose | kVolume).source(kFosback).note(kIndexNote).valid<1>().neverSettles(),
    ENTRY(qvForceIndex, "force", "Force Index", "Volume times the change of the closes' exponential average.")
        .params(period("p", 13)).gives(panel().histogram()).reads(kClose | kVolume).source("Alexander Elder, Trading for a Living, 1993").valid<1>()
        .note("The average is of the closes, and its change is weighed by the bar's volume; charts that average the bars' forces differ with periods above 1.")
        .settles([](const History& h) noexcept { return h.exponential(h.values[0], 1, 10); }),
    ENTRY(qvEMV, "emv", "Ease of Movement", "The bar's midpoint less the previous bar's height, over volume per height, averaged.")
        .params(method(), period("p", 14)).gives(panel()).reads(kHighLow | kVolume).source("Richard W. Arms Jr., Volume Cycles in the Stock Market, 1983")
        .note("Takes the previous bar's height, not its midpoint; Arms' own form is armsemv.").valid<0, 1>()
        .settles([](const History& h) noexcept { return h.average(h[0], h[1]); }),
    ENTRY(qvArmsEMV, "armsemv", "Arms' Ease of Movement", "The change of the midpoint over volume per height.")
        .params(integer("volumeDivisor", 10000, 1, 1000000000)).gives(panel()).reads(kHighLow | kVolume)
        .source("Richard W. Arms Jr., Volume Cycles in the Stock Market, 1983").valid<1>(),
    ENTRY(qvHerrickPayoffIndex, "herrick", "Herrick Payoff Index", "Money flow of a future out of price, volume and open interest, smoothed.")
        .params(real("multiplier", 100, 0.0001, 100000), real("smoothing", 0.1, 0.01, 1)).gives(panel()).reads(kHighLow | kVolume | kOpenInterest).source("John Herrick; no publication known").valid<1>()
        .settles([](const History& h) noexcept { return h.smoothed(h.values[1], 1, 10); }),
    ENTRY(qvVOSC, "vosc", "Volume Oscillator", "A short average of the volume less a long one, in percent.")
        .takes({{{"in", QV_SERIES_VOLUME, 0}}}).params(period("p1", 5), period("p2", 10), method()).gives(panel().histogram())
        .note("The long average is that of one bar before, and the divisor is the short one; charts that take both at the same bar, over the long one, differ.")
        .valid([](const Valid& v) noexcept { return v.start + std::max(v[0], v[1]); })
        .settles([](const History& h) noexcept {
          return History::latest(h.average(h[2], h[0], 10), History::later(h.average(h[2], h[1], 10), 1));
        }),
    ENTRY(qvVR, "vr", "Volume Ratio", "Volume of rising over volume of falling closes of the last changes, in percent.")
        .params(period("p", 26)).gives(panel()).reads(kClose | kVolume).valid<0, 0>(),
};
// clang-format on

constexpr auto kItems = items<kRows>("Volume");

}  // namespace

constinit const Family volume{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
