#include "support/calculations.h"

namespace qvtest {

static const Register rows({
    calculation("qvExpMA", qvExpMA, {14}).mayRunInPlace().refusesPeriods({0}),
    calculation("qvZeroLagExpMA", qvZeroLagExpMA, {14}).refusesPeriods({0}),
    // The seed stands before the first valid index.
    calculation("qvDEMA", qvDEMA, {14}).refusesPeriods({0}).keepsItemsBelowFirstValid(),
    calculation("qvTEMA", qvTEMA, {14}).refusesPeriods({0}).keepsItemsBelowFirstValid(),
    calculation("qvVIDYA", qvVIDYA, {10, 14}).refusesPeriods({0, 1}).keepsItemsBelowFirstValid(),
    calculation("qvVariableMA", qvVariableMA, {14}).refusesPeriods({0}).keepsItemsBelowFirstValid(),
    calculation("qvT3", qvT3, {14, 0.7, 3}).refusesPeriods({0}),
    calculation("qvWellesMA", qvWellesMA, {14}).mayRunInPlace().refusesPeriods({0}),
    calculation("qvWellesSum", qvWellesSum, {14}).mayRunInPlace().refusesPeriods({0}),
    calculation("qvSimpleMA", qvSimpleMA, {14}).mayRunInPlace().refusesPeriods({0}),
    calculation("qvMovingSum", qvMovingSum, {14}).mayRunInPlace().refusesPeriods({0}),
    calculation("qvWeightedMA", qvWeightedMA, {14}).refusesPeriods({0}),
    calculation("qvLstSqrMA", qvLstSqrMA, {14}).refusesPeriods({0}),
    calculation("qvTriangularMA", qvTriangularMA, {14}).refusesPeriods({0}),
    calculation("qvVolAdjustedMA", qvVolAdjustedMA, {14}).refusesPeriods({0}),
    calculation("qvMovingAverage", qvMovingAverage, {2, 14}).mayRunInPlace().refusesPeriods({1}),
    calculation("qvCMO", qvCMO, {14}).refusesPeriods({0}),
});

}  // namespace qvtest
