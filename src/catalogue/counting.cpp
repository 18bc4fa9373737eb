// Counting and accumulation indicators.
#include "catalogue/entry.h"
#include "catalogue/sources.h"

namespace qv::catalogue {
namespace {

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvPsychologyLine, "psychology", "Psychological Line", "The share of rises among the last changes.")
        .params(period("p", 12)).gives(panel().range(0, 100).zone(25).zone(75)).valid<0, 0>().beginsLater(1)
        .note("The first valid index holds 0; the values begin one bar later."),
    ENTRY(qvWilliamsAD, "williamsad", "Williams' Accumulation/Distribution", "The running sum of how far the close stands above the true low on rises, or below the true high on falls.")
        .params().gives(panel()).reads(kHighLowClose).valid<1>().neverSettles()
        .source("Larry R. Williams, How I Made One Million Dollars ... Last Year ... Trading Commodities, 1973"),
    ENTRY(qvPVrank, "pvrank", "Price-Volume Rank", "1 price and volume up, 2 price alone up, 3 both down, 4 volume alone up.")
        .params().gives(panel().range(1, 4)).reads(kClose | kVolume).valid<1>()
        .source("Anthony J. Macek, \"Price and Volume Rank\", Technical Analysis of Stocks & Commodities, 1994"),
    ENTRY(qvLineOsc, "lineosc", "Line Oscillator", "The simple average of one series less that of another.")
        .takes({{{"a", QV_SERIES_CLOSE, 0}, {"b", 0, 0}}}).params(period("p", 10)).gives(panel()).valid<-1, 0>(),
    ENTRY(qvNMO, "nmo", "Normalised Momentum Oscillator", "The relative strength index stretched from -100 to 100.")
        .params(period("p", 14)).gives(panel().range(-100, 100).zone(-40).zone(40)).source(kWilder).valid<0, 0>()
        .settles([](const History& h) noexcept { return h.wilder(h[0], 1, 4); }),
};
// clang-format on

constexpr auto kItems = items<kRows>("Counting");

}  // namespace

constinit const Family counting{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
