// Price transforms, simple changes, comparisons of two securities, and array steps.
#include "indicators/transforms.h"
#include "catalogue/entry.h"
#include "catalogue/sources.h"
#include "kernels/calculate.h"

namespace qv::catalogue {
namespace {

int QVCALL strength(const QvBars* bars1, const QvBars* bars2, QvArray* out, double date, int) noexcept {
  return qvCompStrength(bars1, bars2, out, date);
}
int QVCALL performance(const QvBars* bars1, const QvBars* bars2, QvArray* out, double date, int) noexcept {
  return qvCompPerformance(bars1, bars2, out, date);
}
int QVCALL spread(const QvBars* bars1, const QvBars* bars2, QvArray* out, double w1, double w2, double date,
                  int) noexcept {
  return qvSpread(bars1, bars2, out, w1, w2, date);
}
// The steps of arrays are no chains where they stand: a stream takes these.
int QVCALL divide(const QvArray* a, const QvArray* b, QvArray* out, double factor, int start) noexcept {
  return openingOf(out) ? calculate<chain::Divide>({a, b}, {out}, start, factor)
                        : qvDivide(a, b, out, factor, start);
}
int QVCALL multAdd(const QvArray* in, QvArray* out, double mult, double add, int start) noexcept {
  return openingOf(out) ? calculate<chain::MultAddArray>({in}, {out}, start, mult, add)
                        : qvMultAddArray(in, out, mult, add, start);
}

constexpr const char kByDate[] =
    "Bars are matched by their dates; the start is that of the dates, not of a call.";

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvAvgPrices, "avgprice", "Average Price", "The mean of open, high, low and close.")
        .params().gives(over()).reads(kPrices).note("Without an open (0) the mean of the other three."),
    ENTRY(qvMedianPrices, "median", "Median Price", "The mean of high and low.").params().gives(over()).reads(kHighLow).source(kAchelis),
    ENTRY(qvTypicalPrices, "typical", "Typical Price", "The mean of high, low and close.").params().gives(over()).reads(kHighLowClose).source(kAchelis),
    ENTRY(qvWeightedCloses, "weightedclose", "Weighted Close", "The mean of high, low and twice the close.").params().gives(over()).reads(kHighLowClose).source(kAchelis),
    ENTRY(qvPerformancePct, "performance", "Performance", "The change since the first item, in percent.").params().gives(panel()).source(kAchelis).neverSettles(),
    ENTRY(qvDiffValue, "diff", "Difference", "The change over the last bars.").params(period("p", 1)).gives(panel())
        .valid([](const Valid& v) noexcept { return v[0]; }),
    ADAPTED(qvDivide, divide, "divide", "Quotient", "One series over another times a factor, 0 where that is zero.")
        .takes({{{"a", QV_SERIES_CLOSE, 0}, {"b", 0, 0}}}).params(real("factor", 1, 0.0001, 10000)).gives(panel()),
    ADAPTED(qvMultAddArray, multAdd, "multadd", "Multiple and Sum", "A multiple of the series plus a constant.")
        .params(real("mult", 1, -1000, 1000), real("add", 0, -1000, 1000)).gives(over()).inPlace().setsNoFirstValid(),
    ENTRY(qvScaleArray, "scale", "Scaled Series", "The series mapped from one range onto another.")
        .params(real("oldMin", 0, -1000000, 1000000), real("oldMax", 0, -1000000, 1000000), real("newMin", 0, -1000000, 1000000), real("newMax", 100, -1000000, 1000000), choice("skipZeros", kOffOn, 0))
        .gives(panel().seesAhead()).inPlace().setsNoFirstValid()
        .note("With an old range of 0 and 0 it becomes that of the whole series, so a later bar changes every value.")
        .settles([](const History& h) noexcept { return h.values[0] == 0 && h.values[1] == 0 ? History::kNever : 0; }),
    ENTRY(qvFillInterval, "fillinterval", "Lines between Marks", "The values at the marked items, joined by straight lines.")
        .takes({{{"values", QV_SERIES_CLOSE, 0}, {"marks", 0, 0}}}).params().gives(over().seesAhead()).neverSettles(),
    ADAPTED(qvCompStrength, strength, "compstrength", "Comparative Strength", "One security's close over another's.")
        .params(date("startDate")).gives(panel()).reads(kClose).source(kAchelis).setsNoFirstValid().note(kByDate),
    ADAPTED(qvCompPerformance, performance, "compperformance", "Comparative Performance", "Comparative strength relative to its value at the first common date.")
        .params(date("startDate")).gives(panel()).reads(kClose).setsNoFirstValid().note(kByDate).neverSettles(),
    ADAPTED(qvSpread, spread, "spread", "Spread", "A multiple of one security's close less a multiple of another's.")
        .params(real("w1", 1, -1000, 1000), real("w2", 1, -1000, 1000), date("startDate")).gives(panel()).reads(kClose).setsNoFirstValid().note(kByDate),
};
// clang-format on

constexpr auto kItems = items<kRows>("Transforms and comparisons");

}  // namespace

constinit const Family transforms{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
