// Options against worked examples.
#include <gtest/gtest.h>

#include <array>

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
  EXPECT_EQ(qvBlackScholes(nullptr, 1, 1, 1, 1), 0.0);
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
  EXPECT_EQ(qvOptionInit(nullptr), -1);
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

}  // namespace
}  // namespace qvtest
