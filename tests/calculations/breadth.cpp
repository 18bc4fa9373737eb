#include "support/calculations.h"

namespace qvtest {

// The last argument of qvArmsIdx is an end.
static int armsIdxTo(const QvArray* adv, const QvArray* dec, const QvArray* advVol, const QvArray* decVol,
                     QvArray* out, int end, int start) noexcept {
  return qvArmsIdx(adv, dec, advVol, decVol, out, start, end);
}

// qvBretzTRIN5, which always answers 0, is tested by hand.
static const Register rows({
    calculation("qvADIssues", qvADIssues, {}),
    calculation("qvADLine", qvADLine, {}).keepsItemsBelowFirstValid(),
    calculation("qvCVI", qvCVI, {}),
    calculation("qvADLineBreadth", qvADLineBreadth, {}),
    calculation("qvADRatio", qvADRatio, {}),
    calculation("qvUpDownRatio", qvUpDownRatio, {}),
    calculation("qvUpDownVolume", qvUpDownVolume, {}),
    calculation("qvABI", qvABI, {}),
    calculation("qvBreadthThrust", qvBreadthThrust, {}),
    calculation("qvOverBoughtSold", qvOverBoughtSold, {}),
    calculation("qvSTIX", qvSTIX, {21}).refusesPeriods({0}),
    calculation("qvTRIN", qvTRIN, {}),
    calculation("qvOpen10TRIN", qvOpen10TRIN, {}),
    calculation("qvArmsIdx", armsIdxTo, {100}),
    calculation("qvBoltonTremblay", qvBoltonTremblay, {}),
    calculation("qvMcClellanOscillator", qvMcClellanOscillator, {19, 39}).refusesPeriods({0, 1}),
    calculation("qvMcClellanSummation", qvMcClellanSummation, {19, 39}).refusesPeriods({0, 1}),
    calculation("qvMcClellanOscSum", qvMcClellanOscSum, {19, 39})
        .refusesPeriods({0, 1})
        .keepsItemsBelowFirstValid(),
});

}  // namespace qvtest
