#include "support/calculations.h"

namespace qvtest {
namespace {

// A start date in place of a start index.
Calculation strengthComparison() {
  Calculation c;
  c.name = "qvRSIC";
  c.bars = 2;
  c.outputs = 1;
  c.series = qv::kClose;
  c.params = {14, 36540};
  c.isInteger = {true, false};
  c.call = [](const QvBars* const* b, const QvArray* const*, QvArray* const* out, const double* p, int) {
    return qvRSIC(b[0], b[1], out[0], static_cast<int>(p[0]), p[1]);
  };
  return c.refusesPeriods({0});
}

}  // namespace

static const Register rows({
    calculation("qvRSI", qvRSI, {14}).refusesPeriods({0}),
    calculation("qvRMI", qvRMI, {14, 5}).refusesPeriods({0, 1}),
    calculation("qvUpAverage", qvUpAverage, {14}).refusesPeriods({0}),
    calculation("qvDownAverage", qvDownAverage, {14}).refusesPeriods({0}),
    calculation("qvStochRSI", qvStochRSI, {14}).refusesPeriods({0}),
    calculation("qvMomentum", qvMomentum, {14}).refusesPeriods({0}),
    calculation("qvRateOfChange", qvRateOfChange, {100, 14}).refusesPeriods({1}),
    calculation("qvRatio", qvRatio, {}),
    strengthComparison(),
    calculation("qvMACD", qvMACD, {9}).refusesPeriods({0}),
    calculation("qvMACDx", qvMACDx, {12, 26, 9}).refusesPeriods({0, 1, 2}),
    calculation("qvOscillator", qvOscillator, {}),
    calculation("qvOscillatorPct", qvOscillatorPct, {}),
    calculation("qvPriceOscillator", qvPriceOscillator, {12, 26, 2}).refusesPeriods({0, 1}),
    calculation("qvPriceOscillatorPct", qvPriceOscillatorPct, {12, 26, 3}).refusesPeriods({0, 1}),
    calculation("qvDPO", qvDPO, {14}).refusesPeriods({0}),
    calculation("qvTRIX", qvTRIX, {14}).refusesPeriods({0}),
    calculation("qvTSI", qvTSI, {14, 5}).refusesPeriods({0, 1}),
    calculation("qvUltimateOsc", qvUltimateOsc, {7, 14, 28})
        .reads(qv::kHighLowClose)
        .refusesPeriods({0, 1, 2}),
});

}  // namespace qvtest
