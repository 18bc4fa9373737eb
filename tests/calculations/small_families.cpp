// Bar shape, counting, sentiment, range and relative volatility.
#include "support/calculations.h"

namespace qvtest {

using qv::kClose, qv::kHigh, qv::kHighLow, qv::kHighLowClose, qv::kLow, qv::kOpen, qv::kPrices, qv::kVolume;

// The fitted range of qvDeTrend ends in an index, so its start is not the last argument.
static int deTrendToTheEnd(const QvArray* in, QvArray* out, int end, int start) noexcept {
  return qvDeTrend(in, out, start, end);
}

static const Register rows({
    calculation("qvBOP", qvBOP, {2, 14})
        .reads(kPrices)
        .refusesPeriods({1})
        .keepsItemsBelowFirstValid()
        .needsMoreThan(14),
    calculation("qvQstick", qvQstick, {8}).reads(kOpen | kClose).refusesPeriods({0}),
    calculation("qvIMI", qvIMI, {14}).reads(kOpen | kClose).refusesPeriods({0}),
    calculation("qvMassIndex", qvMassIndex, {25}).reads(kHighLow).refusesPeriods({0}),
    calculation("qvPVO", qvPVO, {12, 26, 0}).reads(kVolume).refusesPeriods({0, 1}),
    calculation("qvForecastOscillator", qvForecastOscillator, {14, 3}).refusesPeriods({0, 1}),
    calculation("qvDeTrend", deTrendToTheEnd, {119}),
    calculation("qvPsychologyLine", qvPsychologyLine, {12}).refusesPeriods({0}),
    calculation("qvWilliamsAD", qvWilliamsAD, {}).reads(kHighLowClose),
    calculation("qvPVrank", qvPVrank, {}).reads(kClose | kVolume),
    calculation("qvLineOsc", qvLineOsc, {10}).refusesPeriods({0}),
    calculation("qvNMO", qvNMO, {14}).refusesPeriods({0}).keepsItemsBelowFirstValid(),
    calculation("qvAR", qvAR, {26}).reads(kOpen | kHighLow).refusesPeriods({0}).needsMoreThan(26),
    calculation("qvBR", qvBR, {26}).reads(kHighLowClose).refusesPeriods({0}).needsMoreThan(26),
    calculation("qvERAYBull", qvERAYBull, {13}).reads(kHigh | kClose).refusesPeriods({0}).needsMoreThan(13),
    calculation("qvERAYBear", qvERAYBear, {13}).reads(kLow | kClose).refusesPeriods({0}).needsMoreThan(13),
    calculation("qvSONAR", qvSONAR, {13, 9}).refusesPeriods({0}).needsMoreThan(22),
    calculation("qvRangeIndicator", qvRangeIndicator, {10, 3}).reads(kHighLowClose).refusesPeriods({0, 1}),
    calculation("qvPFE", qvPFE, {10, 5}).refusesPeriods({0, 1}).keepsItemsBelowFirstValid(),
    calculation("qvWellesVolatility", qvWellesVolatility, {3.0, 7}).reads(kHighLowClose).refusesPeriods({1}),
    calculation("qvRVIoriginal", qvRVIoriginal, {14}).refusesPeriods({0}),
    calculation("qvRVI", qvRVI, {14}).reads(kHighLow).refusesPeriods({0}),
    calculation("qvInertia", qvInertia, {14, 20}).reads(kHighLow).refusesPeriods({0, 1}),
});

}  // namespace qvtest
