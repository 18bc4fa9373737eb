#include "support/calculations.h"

namespace qvtest {

static const Register rows({
    calculation("qvRawK", qvRawK, {14}).reads(qv::kHighLowClose).refusesPeriods({0}),
    calculation("qvFastD", qvFastD, {14, 3}).reads(qv::kHighLowClose).refusesPeriods({0, 1}),
    calculation("qvSlowD", qvSlowD, {14, 3, 5}).reads(qv::kHighLowClose).refusesPeriods({0, 1, 2}),
    calculation("qvStochastic", qvStochastic, {14}).refusesPeriods({0}),
    calculation("qvStochasticFast", qvStochasticFast, {2, 14, 3}).reads(qv::kPrices).refusesPeriods({1, 2}),
    calculation("qvStochasticOscillator", qvStochasticOscillator, {3, 14, 3, 5})
        .reads(qv::kPrices)
        .refusesPeriods({1, 2, 3}),
    calculation("qvSMI", qvSMI, {14, 3, 5, 9}).reads(qv::kHighLowClose).refusesPeriods({0, 1, 2, 3}),
    calculation("qvWilliamsR", qvWilliamsR, {14}).reads(qv::kHighLowClose).refusesPeriods({0}),
    calculation("qvCCI", qvCCI, {14}).reads(qv::kHighLowClose).refusesPeriods({0}),
});

}  // namespace qvtest
