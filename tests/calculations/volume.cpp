#include "support/calculations.h"

namespace qvtest {

using qv::kClose, qv::kHighLow, qv::kHighLowClose, qv::kOpenInterest, qv::kVolume;

static const Register rows({
    calculation("qvOBV", qvOBV, {}).reads(kClose | kVolume),
    calculation("qvOBVolMv", qvOBVolMv, {14}).reads(kClose | kVolume).refusesPeriods({0}),
    calculation("qvOBOiMv", qvOBOiMv, {14}).reads(kClose | kOpenInterest).refusesPeriods({0}),
    calculation("qvOBVolExp", qvOBVolExp, {4}).reads(kClose | kVolume).refusesPeriods({0}),
    calculation("qvAccumDist", qvAccumDist, {}).reads(kHighLowClose | kVolume),
    calculation("qvAccumulate", qvAccumulate, {}),
    calculation("qvChaikinMoneyFlow", qvChaikinMoneyFlow, {14})
        .reads(kHighLowClose | kVolume)
        .refusesPeriods({0}),
    calculation("qvChaikinOscillator", qvChaikinOscillator, {3, 10})
        .reads(kHighLowClose | kVolume)
        .refusesPeriods({0, 1}),
    calculation("qvChaikinVolatility", qvChaikinVolatility, {10}).reads(kHighLow).refusesPeriods({0}),
    calculation("qvMFI", qvMFI, {}).reads(kHighLow | kVolume),
    calculation("qvMoneyFlowIndex", qvMoneyFlowIndex, {14})
        .reads(kHighLowClose | kVolume)
        .refusesPeriods({0}),
    calculation("qvPVT", qvPVT, {}).reads(kClose | kVolume),
    calculation("qvNVI", qvNVI, {}).reads(kClose | kVolume),
    calculation("qvPVI", qvPVI, {}).reads(kClose | kVolume),
    calculation("qvForceIndex", qvForceIndex, {13})
        .reads(kClose | kVolume)
        .refusesPeriods({0})
        .needsMoreThan(13),
    calculation("qvEMV", qvEMV, {2, 14})
        .reads(kHighLow | kVolume)
        .refusesPeriods({1})
        .keepsItemsBelowFirstValid()
        .needsMoreThan(14),
    calculation("qvArmsEMV", qvArmsEMV, {10000}).reads(kHighLow | kVolume),
    calculation("qvHerrickPayoffIndex", qvHerrickPayoffIndex, {100.0, 0.1})
        .reads(kHighLow | kVolume | kOpenInterest),
    calculation("qvVOSC", qvVOSC, {5, 10, 2}).refusesPeriods({0, 1}).needsMoreThan(10),
    calculation("qvVR", qvVR, {14}).reads(kClose | kVolume).refusesPeriods({0}).needsMoreThan(14),
});

}  // namespace qvtest
