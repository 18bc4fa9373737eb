#include "support/calculations.h"

namespace qvtest {

static const Register rows({
    calculation("qvTR", qvTR, {}).reads(qv::kHighLowClose),
    calculation("qvATR", qvATR, {14}).reads(qv::kHighLowClose).refusesPeriods({0}),
    calculation("qvDMIx", qvDMIx, {}).reads(qv::kHighLow),
    calculation("qvDI", qvDI, {14}).reads(qv::kHighLowClose).refusesPeriods({0}),
    calculation("qvDX", qvDX, {14}).reads(qv::kHighLowClose).refusesPeriods({0}),
    calculation("qvADX", qvADX, {14, 10}).reads(qv::kHighLowClose).refusesPeriods({0, 1}),
    calculation("qvADXR", qvADXR, {14, 10, 5}).reads(qv::kHighLowClose).refusesPeriods({0, 1}),
    calculation("qvDMI", qvDMI, {}),
    calculation("qvSAR", qvSAR, {0.02, 0.2}).reads(qv::kHighLowClose),
    calculation("qvAroon", qvAroon, {14}).reads(qv::kHighLow).refusesPeriods({0}),
    calculation("qvAroonOscillator", qvAroonOscillator, {14}).reads(qv::kHighLow).refusesPeriods({0}),
    calculation("qvVHF", qvVHF, {14}).refusesPeriods({0}),
    calculation("qvRWI", qvRWI, {14}).reads(qv::kHighLowClose).refusesPeriods({0}),
    calculation("qvZigZag", qvZigZag, {0.02, 0}).keepsItemsBelowFirstValid(),
    calculation("qvSwingIndex", qvSwingIndex, {3.0}).reads(qv::kPrices),
    calculation("qvAccumSwingIndex", qvAccumSwingIndex, {3.0}).reads(qv::kPrices),
    calculation("qvTrendScore", qvTrendScore, {14}).refusesPeriods({0}),
});

}  // namespace qvtest
