// Present and future values of a sum and of a yearly payment.
#include <cmath>

#include "core/power.h"
#include "qvlib60/finance.h"

static_assert(sizeof(QvTvm) == 28);

using namespace qv;

namespace {

// What 1 becomes in `exponent` of the record's compounding periods.
double growth(const QvTvm& t, double exponent) noexcept {
  return powerOf(1 + t.rate / 100 / t.periodsPerYear, exponent);
}

double periods(const QvTvm& t) noexcept {
  return t.periodsPerYear * t.years;
}

}  // namespace

extern "C" {

double QVCALL qvFutureValue(const QvTvm* tvm) noexcept {
  if (!tvm) return 0.0;
  if (tvm->periodsPerYear < 1) return QV_INVALID_PARM;
  return tvm->principal * growth(*tvm, periods(*tvm));
}

double QVCALL qvPresentValue(const QvTvm* tvm) noexcept {
  if (!tvm) return 0.0;
  if (tvm->periodsPerYear < 1) return QV_INVALID_PARM;
  return tvm->principal * growth(*tvm, -periods(*tvm));
}

double QVCALL qvFutureValuePrinc(QvTvm* tvm, double futureValue) noexcept {
  if (!tvm) return 0.0;
  if (tvm->periodsPerYear < 1) return QV_INVALID_PARM;
  return tvm->principal = futureValue / growth(*tvm, periods(*tvm));
}

double QVCALL qvFutureValueInt(QvTvm* tvm, double futureValue) noexcept {
  if (!tvm) return 0.0;
  return tvm->rate = (powerOf(futureValue / tvm->principal, 1 / tvm->years) - 1) * 100;
}

double QVCALL qvFutureValueAnnuity(const QvTvm* tvm) noexcept {
  if (!tvm) return 0.0;
  const double r = tvm->rate / 100;
  return tvm->principal * (powerOf(1 + r, tvm->years) - 1) / r;
}

double QVCALL qvPresentValueAnnuity(const QvTvm* tvm) noexcept {
  if (!tvm) return 0.0;
  if (tvm->rate <= 0) return QV_INVALID_PARM;
  const double r = tvm->rate / 100;
  return tvm->principal * (1 - 1 / powerOf(1 + r, tvm->years)) / r;
}

}  // extern "C"
