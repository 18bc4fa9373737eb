// Options, bonds and the time value of money against worked examples, and wild arguments.
#include <gtest/gtest.h>

#include <array>
#include <climits>

#include "support/expect.h"

namespace qvtest {
namespace {

constexpr double kToday = 39462.0;

// A call of 180 days: half a year of 360 days.
double call(double underlying, double strike, double rate, double variance, double days = 180) {
  const QvOptionLeg leg{0, strike, 1, kToday + days};
  return qvBlackScholes(&leg, underlying, rate, variance, kToday);
}

std::array<double, 7> profileOf(const QvOption& o) {
  return {o.maxProfit, o.maxLoss, o.ratio, o.upperBreakeven, o.lowerBreakeven, o.upperMove, o.lowerMove};
}

TEST(Options, CumulativeNormal) {
  for (double x = -8; x <= 8; x += 0.01)
    ASSERT_NEAR(qvApprxCumProbDist(x), 0.5 * std::erfc(-x / std::sqrt(2.0)), 2e-7) << x;
  EXPECT_EQ(qvApprxCumProbDist(kInf), 1.0);
  EXPECT_EQ(qvApprxCumProbDist(-kInf), 0.0);
}

TEST(Options, BlackScholes) {
  // Hull, Options, Futures and Other Derivatives, the example of the chapter: 4.76.
  EXPECT_NEAR(call(42, 40, 10, 0.04), 4.76, 0.005);
  // Written out with the exact distribution and the exact e, also deep in the money and far out of it.
  const auto normal = [](double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); };
  for (const double underlying : {4.0, 30.0, 42.0, 50.0, 500.0})
    for (const double years : {0.25, 0.5, 2.0}) {
      const double d1 = (std::log(underlying / 40) + (0.1 + 0.02) * years) / (0.2 * std::sqrt(years));
      const double discounted = 40 * std::exp(-0.1 * years);
      EXPECT_NEAR(call(underlying, 40, 10, 0.04, 360 * years),
                  underlying * normal(d1) - discounted * normal(d1 - 0.2 * std::sqrt(years)),
                  1.8e-7 * (underlying + 40));
    }
  const QvOptionLeg put{0, 40, 2, kToday + 180};  // is valued as a call
  EXPECT_EQ(qvBlackScholes(&put, 42, 10, 0.04, kToday), call(42, 40, 10, 0.04));
}

TEST(Options, SpreadsStraddlesAndStrangles) {
  const struct {
    decltype(&qvBullCall) profile;
    double paid, strike, received, writtenStrike;
    double profit, loss, ratio, upper, lower;
  } cases[] = {
      {qvBullCall, 5, 100, 2, 110, 7, 3, 3.0 / 7, 103, 103},  // pays 5 - 2, can gain (110 - 100) - 3
      {qvBullPut, 2, 100, 5, 110, 3, 7, 7.0 / 3, 107, 107},   // receives 3, can lose (110 - 100) - 3
      {qvBearCall, 2, 110, 5, 100, 3, 7, 7.0 / 3, 103, 103},
      {qvBearPut, 5, 110, 2, 100, 7, 3, 3.0 / 7, 107, 107},
      {qvLongStraddle, 5, 100, 2, 110, 0, 8, 0, 108, 92},
      {qvShortStraddle, 5, 100, 2, 110, 6, 0, 0, 116, 104},
      {qvLongStrangle, 5, 100, 2, 110, 0, 8, 0, 108, 82},
      {qvShortStrangle, 5, 100, 2, 110, 6, 0, 0, 116, 89},
  };
  for (const auto& c : cases) {
    QvOption o;
    qvOptionInit(&o);
    o.bought[0] = {c.paid, c.strike, 1, kToday};
    o.bought[1] = {3, 90, 2, kToday};
    o.written[0] = {c.received, c.writtenStrike, 1, kToday};
    o.written[1] = {4, 95, 2, kToday};
    // Without a price of the underlying the moves stay as they were.
    std::array wanted{c.profit, c.loss, c.ratio, c.upper, c.lower, 0.0, 0.0};
    EXPECT_EQ(c.profile(&o), -1);
    EXPECT_EQ(profileOf(o), wanted);
    o.underlying = 100;
    wanted[5] = (c.upper - 100) / 100;
    wanted[6] = (c.lower - 100) / 100;
    EXPECT_EQ(c.profile(&o), 0);
    EXPECT_EQ(profileOf(o), wanted);
    // Only the strangles ask for a call and a put.
    o.bought[1].type = 1;
    o.written[0].type = 2;
    const bool asks = c.profile == qvLongStrangle || c.profile == qvShortStrangle;
    EXPECT_EQ(c.profile(&o), asks ? -1 : 0);
    EXPECT_EQ(c.profile(nullptr), -1);
  }
}

TEST(Bonds, Price) {
  const auto price = [](int payments, double days, double yield, double coupon) {
    const QvBond b{1000, 0, coupon, payments, kToday + days};
    return qvBondPricing(&b, yield, kToday);
  };
  EXPECT_NEAR(price(1, 730, 5, 50), 1000, 1e-9);                      // at par
  EXPECT_NEAR(price(2, 365, 21, 100), 50 / 1.1 + 1050 / 1.21, 1e-9);  // 1.21^0.5 = 1.1
  for (const double days : {183.0, 200.0}) EXPECT_NEAR(price(1, days, 10, 0), 1000 / 1.1, 1e-9);  // a year
  for (const double days : {182.0, -1000.0}) EXPECT_EQ(price(1, days, 10, 100), 0);               // 364 / 365
  // The face falls once, with the last coupon, also where sums of 1 / payments miss the years.
  for (int payments = 1; payments <= 366; ++payments)
    for (const int years : {1, 2, 10, 31}) {
      double wanted = 1000 * std::pow(1.05, -years);
      for (int k = 1; k <= years * payments; ++k)
        wanted += 80.0 / payments * std::pow(1.05, -1.0 * k / payments);
      ASSERT_NEAR(price(payments, 365 * years, 5, 80), wanted, 1e-8) << payments << ' ' << years;
    }
  EXPECT_EQ(price(0, 730, 5, 50), 0);
  for (const int payments : {-1, INT_MAX}) EXPECT_EQ(price(payments, 730, 5, 50), -1);
  EXPECT_EQ(price(1, 1e300, 5, 50), -1);
}

TEST(Bonds, DurationAndPriceChange) {
  QvBond b{1000, 1000, 100, 1, kToday + 730};
  EXPECT_NEAR(qvBondDuration(&b, 10, kToday), (100 / 1.1 + 2 * 1100 / 1.21) / 1000, 1e-12);
  b.maturity = kToday + 729;  // one whole year
  EXPECT_NEAR(qvBondDuration(&b, 10, kToday), 1, 1e-12);
  // -(9 - 8) % / 1.09 * 5 years * 950.
  EXPECT_NEAR(qvBondDurationPriceChg(950, 8, 5, 9), -43.577981651376, 1e-9);
  for (const double y : {0.99, kNaN}) EXPECT_EQ(qvBondDurationPriceChg(950, 8, 5, y), -1);
  EXPECT_EQ(qvBondDurationPriceChg(100, 1.0, 1, 1.0), 0);
}

TEST(Bonds, InterestAndYields) {
  EXPECT_DOUBLE_EQ(qvBondAccrInt(80, kToday + 45, kToday, 360), 10);  // 40 * 45 / 180
  const QvBond b{1000, 950, 50, 2, kToday + 730}, bill{10000, 9800, 0, 0, kToday + 90.75};
  EXPECT_DOUBLE_EQ(qvYieldtoMaturity(&b, kToday), 50 / 950.0 + 50 / 950.0 / 2);
  EXPECT_DOUBLE_EQ(qvTBillDiscYield(&bill, kToday + 0.25), 0.08);  // times of day don't count
  EXPECT_DOUBLE_EQ(qvTBillBondEqYield(&bill, kToday), 200 / 90.0 * 365 / 9800);
  EXPECT_EQ(qvTBillDiscYield(&bill, kToday + 90), kInf);
}

TEST(TimeValue, SumsAndAnnuities) {
  QvTvm t{1000, 12, 1, 12};
  EXPECT_NEAR(qvFutureValue(&t), 1126.825030131970, 1e-9);  // 1.01^12
  EXPECT_NEAR(qvPresentValue(&t), 1000 / 1.126825030131970, 1e-9);
  EXPECT_NEAR(qvFutureValuePrinc(&t, 2253.650060263940), 2000, 1e-9);
  EXPECT_NEAR(double{t.principal}, 2000, 1e-9);
  t = {1000, 0, 2, 0};
  EXPECT_NEAR(qvFutureValueInt(&t, 1210), 10, 1e-12);
  EXPECT_NEAR(double{t.rate}, 10, 1e-12);
  EXPECT_NEAR(qvFutureValueAnnuity(&t), 2100, 1e-9);  // 1000 * 1.1 + 1000
  EXPECT_NEAR(qvPresentValueAnnuity(&t), 1000 / 1.1 + 1000 / 1.21, 1e-9);
  for (const double none : {qvFutureValue(&t), qvPresentValue(&t), qvFutureValuePrinc(&t, 5)})
    EXPECT_EQ(none, -1);
  EXPECT_EQ(t.principal, 1000);
  t.rate = 0;
  EXPECT_EQ(qvPresentValueAnnuity(&t), -1);
  EXPECT_TRUE(std::isnan(qvFutureValueAnnuity(&t)));
}

TEST(Finance, NullRecordsAndWildNumbers) {
  EXPECT_EQ(qvOptionInit(nullptr), -1);
  EXPECT_EQ(qvBlackScholes(nullptr, 1, 1, 1, 1), 0.0);
  for (const auto& f : {qvBondPricing, qvBondDuration}) EXPECT_EQ(f(nullptr, 5, kToday), 0.0);
  for (const auto& f : {qvYieldtoMaturity, qvTBillDiscYield, qvTBillBondEqYield})
    EXPECT_EQ(f(nullptr, kToday), 0.0);
  for (const auto& f : {qvFutureValue, qvPresentValue, qvFutureValueAnnuity, qvPresentValueAnnuity})
    EXPECT_EQ(f(nullptr), 0.0);
  for (const auto& f : {qvFutureValuePrinc, qvFutureValueInt}) EXPECT_EQ(f(nullptr, 1), 0.0);
}

}  // namespace
}  // namespace qvtest
