// The averages with an unlimited memory.
#include "indicators/averages_exponential.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/averages.h"

using namespace qv;

extern "C" {

double QVCALL qvPeriodToExp(double period) noexcept {
  return shareOf(period);
}

double QVCALL qvExpToPeriod(double exponent) noexcept {
  return (2.0 - exponent) / exponent;
}

double QVCALL qvEMA(double previous, double value, double period) noexcept {
  return previous + (2.0 / (period + 1.0)) * (value - previous);
}

int QVCALL qvExpMA(const QvArray* in, QvArray* out, double period, int start) noexcept {
  if (!isPeriod(period)) return QV_INVALID_PARM;
  return calculate<chain::ExpMA>({in}, {out}, start, period);
}

int QVCALL qvZeroLagExpMA(const QvArray* in, QvArray* out, double period, int start) noexcept {
  if (!isPeriod(period)) return QV_INVALID_PARM;
  return calculate<chain::ZeroLagExpMA>({in}, {out}, start, period);
}

int QVCALL qvDEMA(const QvArray* in, QvArray* out, double period, int start) noexcept {
  if (!isPeriod(period)) return QV_INVALID_PARM;
  return calculate<chain::DEMA>({in}, {out}, start, period);
}

int QVCALL qvTEMA(const QvArray* in, QvArray* out, double period, int start) noexcept {
  if (!isPeriod(period)) return QV_INVALID_PARM;
  return calculate<chain::TEMA>({in}, {out}, start, period);
}

int QVCALL qvT3(const QvArray* in, QvArray* out, double period, double volumeFactor, int passes,
                int start) noexcept {
  if (!isPeriod(period)) return QV_INVALID_PARM;
  return calculate<chain::T3>({in}, {out}, start, period, volumeFactor, passes);
}

int QVCALL qvWellesMA(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  return calculate<chain::WellesMA>({in}, {out}, start, period);
}

int QVCALL qvWellesSum(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  return calculate<chain::WellesSum>({in}, {out}, start, period);
}

}  // extern "C"
