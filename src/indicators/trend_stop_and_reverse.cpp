// Parabolic stop-and-reverse.
#include "indicators/trend_stop_and_reverse.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/trend.h"

using namespace qv;

extern "C" {

int QVCALL qvSAR(const QvBars* bars, QvArray* outSAR, QvArray* outDirection, double step, double maximum,
                 int start) noexcept {
  return calculate<chain::SAR>(bars, {outSAR, outDirection}, start, step, maximum);
}

}  // extern "C"
