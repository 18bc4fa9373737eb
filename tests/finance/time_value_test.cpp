// The time value of money against worked examples.
#include <gtest/gtest.h>

#include "support/expect.h"

namespace qvtest {
namespace {

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

TEST(TimeValue, NullRecords) {
  for (const auto& f : {qvFutureValue, qvPresentValue, qvFutureValueAnnuity, qvPresentValueAnnuity})
    EXPECT_EQ(f(nullptr), 0.0);
  for (const auto& f : {qvFutureValuePrinc, qvFutureValueInt}) EXPECT_EQ(f(nullptr, 1), 0.0);
}

}  // namespace
}  // namespace qvtest
