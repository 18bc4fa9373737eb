// Bond price, duration, accrued interest and yield; Treasury-bill yields.
#include <algorithm>
#include <cmath>

#include "core/numbers.h"
#include "core/power.h"
#include "qvlib60/dates.h"
#include "qvlib60/finance.h"

static_assert(sizeof(QvBond) == 36);

using namespace qv;

namespace {

constexpr double kMostPayments = 1'000'000;

int daysToMaturity(const QvBond& b, double settlement) noexcept {
  return qvDateDiff("D", settlement, b.maturity);
}

}  // namespace

extern "C" {

double QVCALL qvBondPricing(const QvBond* bond, double yield, double settlement) noexcept {
  if (!bond) return 0.0;
  const int years = qv::saturatingSum(daysToMaturity(*bond, settlement), 182) / 365;
  const double perYear = bond->paymentsPerYear;
  // Payments without end, or so many that adding them up would take minutes.
  if (perYear < 0 || years * perYear > kMostPayments) return QV_INVALID_PARM;
  const int payments = std::max(qv::truncatedInt(years * perYear), 0);
  const double coupon = bond->coupon / perYear;
  const double step = 1 / perYear;
  double price = 0.0;
  double t = step;
  // Counted, since the times add up to the years only nearly where the step is no binary fraction.
  for (int k = 1; k <= payments; ++k, t += step)
    price += (k == payments ? coupon + bond->face : coupon) / powerOf(1 + yield / 100, t);
  return price;
}

double QVCALL qvBondDuration(const QvBond* bond, double yield, double settlement) noexcept {
  if (!bond) return 0.0;
  const int years = daysToMaturity(*bond, settlement) / 365;
  double sum = 0.0;
  for (int k = 1; k <= years; ++k) {
    const double payment = k < years ? bond->coupon : bond->coupon + bond->face;
    const QvTvm weighted{k * payment, yield, static_cast<double>(k), 1};
    sum += qvPresentValue(&weighted);
  }
  return sum / bond->price;
}

double QVCALL qvBondDurationPriceChg(double a, double y0, double b, double y1) noexcept {
  if (!(y1 >= 1)) return QV_INVALID_PARM;
  return -1 * ((y1 - y0) / 100) / (y1 / 100 + 1) * b * a;
}

double QVCALL qvBondAccrInt(double c, double d1, double d0, double basis) noexcept {
  return (c / 2) * qvDateDiff("D", d0, d1) / (basis / 2);
}

double QVCALL qvYieldtoMaturity(const QvBond* bond, double settlement) noexcept {
  if (!bond) return 0.0;
  const double years = daysToMaturity(*bond, settlement) / 365.0;
  return bond->coupon / bond->price + ((bond->face - bond->price) / bond->price) / years;
}

double QVCALL qvTBillDiscYield(const QvBond* bill, double settlement) noexcept {
  if (!bill) return 0.0;
  return ((bill->face - bill->price) / daysToMaturity(*bill, settlement) * 360) / bill->face;
}

double QVCALL qvTBillBondEqYield(const QvBond* bill, double settlement) noexcept {
  if (!bill) return 0.0;
  return ((bill->face - bill->price) / daysToMaturity(*bill, settlement) * 365) / bill->price;
}

}  // extern "C"
