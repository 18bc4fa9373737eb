// The averages and sums over a window, and the dispatcher over all averages.
#include "indicators/averages.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/averages.h"

using namespace qv;

extern "C" {

int QVCALL qvMovingAverage(const QvArray* in, QvArray* out, int method, int period, int start) noexcept {
  switch (method) {
    case QV_MA_EXPONENTIAL:
      return qvExpMA(in, out, period, start);
    case QV_MA_LEAST_SQUARES:
      return qvLstSqrMA(in, out, period, start);
    case QV_MA_SIMPLE:
      return qvSimpleMA(in, out, period, start);
    case QV_MA_WEIGHTED:
      return qvWeightedMA(in, out, period, start);
    case QV_MA_WILDER:
      return qvWellesMA(in, out, period, start);
    case QV_MA_TRIANGULAR:
      return qvTriangularMA(in, out, period, start);
    case QV_MA_VARIABLE:
      return qvVariableMA(in, out, period, start);
    case QV_MA_ZERO_LAG:
      return qvZeroLagExpMA(in, out, period, start);
    default:
      return QV_INVALID_PARM;
  }
}

int QVCALL qvSimpleMA(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  return calculate<chain::SimpleMA>({in}, {out}, start, period);
}

int QVCALL qvMovingSum(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  return calculate<chain::MovingSum>({in}, {out}, start, period);
}

int QVCALL qvWeightedMA(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  return calculate<chain::WeightedMA>({in}, {out}, start, period);
}

int QVCALL qvLstSqrMA(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  return calculate<chain::LstSqrMA>({in}, {out}, start, period);
}

int QVCALL qvTriangularMA(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  return calculate<chain::TriangularMA>({in}, {out}, start, period);
}

}  // extern "C"
