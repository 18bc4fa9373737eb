#include "support/calculations.h"

namespace qvtest {

using qv::kHighLow, qv::kHighLowClose, qv::kPrices;

static const Register rows({
    calculation("qvBollinger", qvBollinger, {2.0, 20}).reads(kHighLowClose).refusesPeriods({1}),
    calculation("qvBollingerWidth", qvBollingerWidth, {2.0, 20}).reads(kHighLowClose).refusesPeriods({1}),
    calculation("qvEnvelope", qvEnvelope, {2.0}),
    calculation("qvEnvelopePct", qvEnvelopePct, {0.05}),
    calculation("qvMAEnvelope", qvMAEnvelope, {0.05, 2, 14}).refusesPeriods({2}),
    calculation("qvMAHighLow", qvMAHighLow, {2, 14}).reads(kHighLow).refusesPeriods({1}),
    calculation("qvPriceChannels", qvPriceChannels, {14}).reads(kPrices).refusesPeriods({0}),
    calculation("qvProjectionBands", qvProjectionBands, {14}).reads(kHighLow).refusesPeriods({0}),
    calculation("qvProjectionBandwidth", qvProjectionBandwidth, {14}).reads(kHighLow).refusesPeriods({0}),
    calculation("qvProjectionOscillator", qvProjectionOscillator, {14, 3})
        .reads(kHighLowClose)
        .refusesPeriods({0}),
    calculation("qvStdErrBands", qvStdErrBands, {2.0, 14}).refusesPeriods({1}).keepsItemsBelowFirstValid(),
    calculation("qvIchimokuKinkoHyo", qvIchimokuKinkoHyo, {9, 26, 52, 26, 0})
        .reads(kHighLowClose)
        .refusesPeriods({0, 1, 2})
        .keepsItemsBelowFirstValid(),
});

}  // namespace qvtest
