#include "support/candles.h"
#include "support/calculations.h"

namespace qvtest {
namespace {

// The candles are made for the call. The fill leaves the first valid index of its output alone.
Calculation fill() {
  Calculation c;
  c.name = "qvCandleFill";
  c.bars = c.outputs = 1;
  c.series = qv::kPrices;
  c.call = [](const QvBars* const* bars, const QvArray* const*, QvArray* const* out, const double*,
              int start) {
    Candles candles;
    if (const int status = qvCandleConstruct(bars[0], &candles)) return status;
    const int found = qvCandleFill(bars[0], &candles, out[0], "qvHighWave", start, INT32_MAX);
    if (found >= 0) out[0]->firstValid = 0;
    return found < 0 ? found : 0;
  };
  return c;
}

const Register rows({fill()});

}  // namespace
}  // namespace qvtest
