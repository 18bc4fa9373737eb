// Bonds and bills against worked examples.
#include <gtest/gtest.h>

#include <climits>

#include "support/expect.h"

namespace qvtest {
namespace {

constexpr double kToday = 39462.0;

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
  EXPECT_EQ(price(INT_MAX, -1e300, 5, 50), 0);
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

TEST(Bonds, NullRecords) {
  for (const auto& f : {qvBondPricing, qvBondDuration}) EXPECT_EQ(f(nullptr, 5, kToday), 0.0);
  for (const auto& f : {qvYieldtoMaturity, qvTBillDiscYield, qvTBillBondEqYield})
    EXPECT_EQ(f(nullptr, kToday), 0.0);
}

}  // namespace
}  // namespace qvtest
