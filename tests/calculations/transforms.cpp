#include "support/calculations.h"

namespace qvtest {
namespace {

// A comparison takes a start date where others take a start index.
template <typename Call>
Calculation comparison(const char* name, std::vector<double> params, Call call) {
  Calculation c;
  c.name = name;
  c.bars = 2;
  c.outputs = 1;
  c.series = qv::kClose;
  c.isInteger.assign(params.size(), false);
  c.params = std::move(params);
  c.call = [call](const QvBars* const* b, const QvArray* const*, QvArray* const* out, const double* p, int) {
    const int status = call(b, out[0], p);
    return status == QV_RECORD_NOT_FOUND ? 0 : status;  // a wild date is no failure
  };
  return c;
}

}  // namespace

static const Register rows({
    calculation("qvAvgPrices", qvAvgPrices, {}).reads(qv::kPrices),
    calculation("qvMedianPrices", qvMedianPrices, {}).reads(qv::kHighLow),
    calculation("qvTypicalPrices", qvTypicalPrices, {}).reads(qv::kHighLowClose),
    calculation("qvWeightedCloses", qvWeightedCloses, {}).reads(qv::kHighLowClose),
    calculation("qvPerformancePct", qvPerformancePct, {}),
    calculation("qvDiffValue", qvDiffValue, {14}).refusesPeriods({0}),
    comparison("qvCompStrength", {36540},
               [](const QvBars* const* b, QvArray* out, const double* p) {
                 return qvCompStrength(b[0], b[1], out, p[0]);
               }),
    comparison("qvCompPerformance", {36540},
               [](const QvBars* const* b, QvArray* out, const double* p) {
                 return qvCompPerformance(b[0], b[1], out, p[0]);
               }),
    comparison("qvSpread", {2, 3, 36540},
               [](const QvBars* const* b, QvArray* out, const double* p) {
                 return qvSpread(b[0], b[1], out, p[0], p[1], p[2]);
               }),
});

}  // namespace qvtest
