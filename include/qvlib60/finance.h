/* Options, bonds, Treasury bills and the time value of money: closed formulas over small records of
   the caller's. Nothing is kept between calls.

   Dates are date numbers; days between them ignore the times of day. A null record is -1 from the
   position calculators and 0.0 from the functions that return a double. A division by zero (price,
   years, days, strike or variance of 0) is not guarded: the result is what floating-point infinities and
   not-a-numbers make of it. Without a source are the textbook formulas of yields and of present values. */
#ifndef QVLIB60_FINANCE_H
#define QVLIB60_FINANCE_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

#pragma pack(push, 4)

/* One option. */
typedef struct QvOptionLeg {
  double premium; /* price paid or received */
  double strike;
  int32_t type;  /* QV_OPTION_CALL 1, QV_OPTION_PUT 2 */
  double expiry; /* date number */
} QvOptionLeg;

/* A position of up to four options on one underlying, and its risk profile. */
typedef struct QvOption {
  double underlying;      /* current price */
  QvOptionLeg bought[2];  /* long: first, second */
  QvOptionLeg written[2]; /* short: first, second */
  double maxProfit;       /* 0 where it is unlimited */
  double ratio;           /* maxLoss / maxProfit of a spread, else 0 */
  double maxLoss;         /* 0 where it is unlimited */
  double upperBreakeven;  /* prices of the underlying at expiry */
  double lowerBreakeven;
  double upperMove; /* from the current price, as fractions of it */
  double lowerMove;
} QvOption;

/* A bond, or a Treasury bill (face, price and maturity). */
typedef struct QvBond {
  double face;   /* repaid at maturity */
  double price;  /* current price */
  double coupon; /* a year, in money */
  int32_t paymentsPerYear;
  double maturity; /* date number */
} QvBond;

/* Time value of money. */
typedef struct QvTvm {
  double principal;
  double rate; /* a year, in percent */
  double years;
  int32_t periodsPerYear; /* compounding periods */
} QvTvm;

#pragma pack(pop)

/* ---- Options --------------------------------------------------------------------------------- */

/* Cumulative probability of the standard normal distribution, 0 .. 1, by a polynomial of fifth degree; the
   error is below 2e-7.
   Source: Cecil Hastings Jr., Approximations for Digital Computers, 1955, with shortened coefficients. */
QVAPI double QVCALL qvApprxCumProbDist(double x) QVNOEXCEPT;

/* Value of a European call, in money. Rate in percent a year; variance is the square of the yearly
   volatility; years have 360 days. The leg's type is not looked at: a put's value follows by put-call
   parity. Shortened constants (of the distribution, and 2.71828 for e) cost up to 4e-5 at prices of 100.
   Source: Fischer Black and Myron Scholes, "The Pricing of Options and Corporate Liabilities", Journal of
   Political Economy, 1973. */
QVAPI double QVCALL qvBlackScholes(const QvOptionLeg* leg, double underlying, double rate, double variance,
                                   double date) QVNOEXCEPT;

/* Sets every field to 0. 0; -1 for a null record. */
QVAPI int QVCALL qvOptionInit(QvOption* option) QVNOEXCEPT;

/* Risk profiles of two-option positions. Each reads premiums and strikes of the legs that its position
   has and sets maxProfit to lowerBreakeven; then, when the underlying is above 0, both moves. 0; -1
   when the underlying is 0 or below, with the moves left as they were.

   The spreads have one bought and one written leg (the first of each) and one break-even price, stored
   as upper and lower.
   Source: no published source known. */
QVAPI int QVCALL qvBullCall(QvOption* option) QVNOEXCEPT;
QVAPI int QVCALL qvBullPut(QvOption* option) QVNOEXCEPT;
QVAPI int QVCALL qvBearCall(QvOption* option) QVNOEXCEPT;
QVAPI int QVCALL qvBearPut(QvOption* option) QVNOEXCEPT;

/* Straddles: two bought or two written legs; the strike is the first one's. Types are not looked at.
   Source: no published source known. */
QVAPI int QVCALL qvLongStraddle(QvOption* option) QVNOEXCEPT;
QVAPI int QVCALL qvShortStraddle(QvOption* option) QVNOEXCEPT;

/* Strangles: as straddles, with a call as the first leg and a put as the second; else -1 with nothing
   changed.
   Source: no published source known. */
QVAPI int QVCALL qvLongStrangle(QvOption* option) QVNOEXCEPT;
QVAPI int QVCALL qvShortStrangle(QvOption* option) QVNOEXCEPT;

/* ---- Bonds and Treasury bills ---------------------------------------------------------------- */

/* Price at a yield in percent: the coupons of the whole years to maturity (rounded; 365 days each) and
   the face with the last, discounted by the annual yield with fractional exponents. No payments a year,
   or less than half a year to maturity, price at 0. -1 for negative payments a year and for more than
   1,000,000 payments in all. */
QVAPI double QVCALL qvBondPricing(const QvBond* bond, double yield, double settlement) QVNOEXCEPT;

/* Duration in years: years weighted by present value at a yield in percent, over the bond's price. Annual
   payments, whole years of 365 days (not rounded: a bond of less than a year has 0).
   Source: Frederick R. Macaulay, Some Theoretical Problems Suggested by the Movements of Interest Rates,
   1938. */
QVAPI double QVCALL qvBondDuration(const QvBond* bond, double yield, double settlement) QVNOEXCEPT;

/* Change in price when the yield goes from y0 to y1 percent; a and b are price and duration in either
   order. -1 when y1 is below 1 or not a number. */
QVAPI double QVCALL qvBondDurationPriceChg(double a, double y0, double b, double y1) QVNOEXCEPT;

/* Interest accrued from d0 to d1 on an annual coupon c paid twice a year; basis is the days of a year. */
QVAPI double QVCALL qvBondAccrInt(double c, double d1, double d0, double basis) QVNOEXCEPT;

/* Approximate yield to maturity as a fraction: current yield plus the yearly share of the gain to face. */
QVAPI double QVCALL qvYieldtoMaturity(const QvBond* bond, double settlement) QVNOEXCEPT;

/* Discount yield (years of 360 days, on the face) and bond-equivalent yield (365 days, on the price) of
   a Treasury bill, as fractions. */
QVAPI double QVCALL qvTBillDiscYield(const QvBond* bill, double settlement) QVNOEXCEPT;
QVAPI double QVCALL qvTBillBondEqYield(const QvBond* bill, double settlement) QVNOEXCEPT;

/* ---- Time value of money --------------------------------------------------------------------- */

/* Value of the principal after `years`, and what has to be paid in now to have the principal then. -1
   when periodsPerYear is below 1. */
QVAPI double QVCALL qvFutureValue(const QvTvm* tvm) QVNOEXCEPT;
QVAPI double QVCALL qvPresentValue(const QvTvm* tvm) QVNOEXCEPT;

/* The principal that grows to futureValue; stored in the record too. -1 when periodsPerYear is below 1. */
QVAPI double QVCALL qvFutureValuePrinc(QvTvm* tvm, double futureValue) QVNOEXCEPT;

/* The rate in percent, compounded yearly, at which the principal grows to futureValue; stored in the
   record too. */
QVAPI double QVCALL qvFutureValueInt(QvTvm* tvm, double futureValue) QVNOEXCEPT;

/* Values of a yearly payment of `principal` at each year's end, compounded yearly. The present value is
   -1 when the rate is 0 or below; the future value at a rate of 0 is not a number. */
QVAPI double QVCALL qvFutureValueAnnuity(const QvTvm* tvm) QVNOEXCEPT;
QVAPI double QVCALL qvPresentValueAnnuity(const QvTvm* tvm) QVNOEXCEPT;

QV_END_DECLS

#endif
