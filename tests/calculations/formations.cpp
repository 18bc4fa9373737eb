#include <algorithm>

#include "support/calculations.h"

namespace qvtest {
namespace {

// Counts of signals are a success of the common properties.
Calculation formation(const char* name, unsigned series) {
  Calculation c;
  c.name = std::string("qvFormationFill_") + name;
  c.bars = c.outputs = 1;
  c.series = series;
  c.params = {200};
  c.isInteger = {true};
  c.call = [name](const QvBars* const* bars, const QvArray* const*, QvArray* const* out, const double* p,
                  int start) {
    return std::min(qvFormationFill(bars[0], out[0], name, start, static_cast<int>(p[0])), 0);
  };
  return c;
}

Calculation signals(const char* name, int inputs,
                    int (*fill)(const QvArray* const*, QvArray*, int start, int end)) {
  Calculation c;
  c.name = name;
  c.inputs = inputs;
  c.outputs = 1;
  c.params = {200};
  c.isInteger = {true};
  c.call = [fill](const QvBars* const*, const QvArray* const* in, QvArray* const* out, const double* p,
                  int start) { return fill(in, out[0], start, static_cast<int>(p[0])); };
  return c;
}

}  // namespace

static const Register rows({
    formation("qvCPR", qv::kHighLowClose),
    formation("qvGap", qv::kHighLow),
    formation("qvGapDown", qv::kHighLow),
    formation("qvGapUp", qv::kHighLow),
    formation("qvIslandReversal", qv::kHighLowClose),
    formation("qvInsideBar", qv::kHighLow),
    formation("qvKeyReversal", qv::kHighLowClose),
    formation("qvOutsideBar", qv::kHighLow),
    signals("qvCrossOverFill", 2,
            [](const QvArray* const* in, QvArray* out, int start, int end) {
              return qvCrossOverFill(in[0], in[1], out, start, end);
            }),
    signals("qvTurnFill", 1,
            [](const QvArray* const* in, QvArray* out, int start, int end) {
              return qvTurnFill(in[0], out, start, end);
            }),
});

}  // namespace qvtest
