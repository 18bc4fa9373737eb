// Sentiment and ray indicators.
#include "catalogue/entry.h"
#include "catalogue/sources.h"

namespace qv::catalogue {
namespace {

constexpr const char kElder[] = "Alexander Elder, Trading for a Living, 1993";

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvAR, "ar", "Popularity Ratio", "The bars' reach above their opens over that below, in percent.")
        .params(period("p", 26)).gives(panel()).reads(kOpen | kHighLow).valid<-1, 0>().neverSettles()
        .note("The sums hold the first bar for good beside the newest ones."),
    ENTRY(qvBR, "br", "Willingness Ratio", "The reach above over the reach below the previous close, in percent.")
        .params(period("p", 26)).gives(panel()).reads(kHighLowClose).valid<0, 0>(),
    ENTRY(qvERAYBull, "bullpower", "Elder Ray, Bull Power", "The high less the exponential average of the closes.")
        .params(period("p", 13)).gives(panel().histogram()).reads(kHigh | kClose).source(kElder).note(kSeeded)
        .settles([](const History& h) noexcept { return h.exponential(h.values[0], 1, 10); }),
    ENTRY(qvERAYBear, "bearpower", "Elder Ray, Bear Power", "The low less the exponential average of the closes.")
        .params(period("p", 13)).gives(panel().histogram()).reads(kLow | kClose).source(kElder).note(kSeeded)
        .settles([](const History& h) noexcept { return h.exponential(h.values[0], 1, 10); }),
    ENTRY(qvSONAR, "sonar", "SONAR", "The change of an exponential average over some bars, in percent.")
        .params(period("p", 13), integer("lag", 9, 0, 200)).gives(panel()).source("Okamoto; no publication known").note(kSeeded)
        .valid([](const Valid& v) noexcept { return v[1] < 0 ? -1 : v.start + v[0] + v[1]; })
        .settles([](const History& h) noexcept { return h[1] < 0 ? History::kNever : History::later(h.exponential(h.values[0], 1, 10), h[1]); }),
};
// clang-format on

constexpr auto kItems = items<kRows>("Sentiment");

}  // namespace

constinit const Family sentiment{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
