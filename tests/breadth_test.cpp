// Market breadth.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "core/memory.h"
#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

TEST(Breadth, EachBar) {
  Array adv({9, 6, 2, 0, 3}, 1), dec{9, 2, 6, 0, 0}, out;
  qvADIssues(&adv, &dec, &out, 0);
  expectItems(out, {0, 4, -4, 0, 3});
  EXPECT_EQ(out.firstValid, 1);
  qvUpDownVolume(&adv, &dec, &out, 2);
  expectItems(out, {0, 0, -4, 0, 3});
  qvABI(&adv, &dec, &out, 0);
  expectItems(out, {0, 4, 4, 0, 3});
  qvADLineBreadth(&adv, &dec, &out, 0);
  expectItems(out, {0, 0.75, 0.25, 0, 1});
  qvADRatio(&adv, &dec, &out, 0);
  expectItems(out, {0, 3, 1.0 / 3, 0, 0});
  dec.data[2] = kNaN;
  qvUpDownRatio(&adv, &dec, &out, 0);
  expectItems(out, {0, 3, 0, 0, 0});
}

TEST(Breadth, RunningSums) {
  Array adv({9, 6, 2, 5}, 1), dec{9, 2, 6, 0}, line, cumulative;
  ASSERT_EQ(qvADLine(&adv, &dec, &line, 0), 0);
  ASSERT_EQ(qvCVI(&adv, &dec, &cumulative, 0), 0);
  expectItems(line, {0, 4, 0, 5});
  expectItems(cumulative, {0, 4, 0, 5});
  EXPECT_EQ(line.firstValid, 2);
  EXPECT_EQ(cumulative.firstValid, 1);

  // Roots of (8 - 4) / 1 and, downwards, of (2 - 20) / 2; no unchanged issues add nothing.
  Array a{1, 8, 2, 5}, d{1, 4, 20, 4}, even{1, 1, 2, 0}, out;
  ASSERT_EQ(qvBoltonTremblay(&a, &d, &even, &out, 0), 0);
  expectItems(out, {0, 2, -1, -1});
  EXPECT_EQ(out.firstValid, 1);
}

TEST(Breadth, Smoothed) {
  Array adv({0, 0, 30, 10, 30, 0}, 2), dec({0, 0, 10, 30, 10, 0}), out;
  ASSERT_EQ(qvOverBoughtSold(&adv, &dec, &out, 0), 0);
  const double k = 2.0 / 11, e1 = 20, e2 = k * -20 + (1 - k) * e1, e3 = k * 20 + (1 - k) * e2;
  expectItems(out, {0, 0, e1, e2, e3, (1 - k) * e3});
  EXPECT_EQ(out.firstValid, 2);
  ASSERT_EQ(qvSTIX(&adv, &dec, &out, 3, 0), 0);
  expectItems(out, {0, 0, 75, 50, 62.5, 31.25});

  std::vector<double> up(12), down(12);
  for (int i = 0; i < 12; ++i)
    up[static_cast<std::size_t>(i)] = i, down[static_cast<std::size_t>(i)] = 20 - i;
  Array rising(up), falling(down);
  ASSERT_EQ(qvBreadthThrust(&rising, &falling, out.fresh(), 1), 0);
  expectItems(out, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5.5 / 20, 6.5 / 20});
  EXPECT_EQ(out.firstValid, 10);
}

TEST(TradingIndex, NeedsAllFourTotals) {
  Array adv{4, 0, 6, 2}, dec{2, 5, 3, 4}, advVol{30, 1, 20, 30}, decVol{10, 1, 0, 30}, out;
  ASSERT_EQ(qvTRIN(&adv, &dec, &advVol, &decVol, &out, 0), 0);
  expectItems(out, {2.0 / 3, 0, 0, 0.5});
  ASSERT_EQ(qvArmsIdx(&adv, &dec, &advVol, &decVol, &out, 0, 2), 0);
  expectItems(out, {2.0 / 3, 0, 0, 0});
  ASSERT_EQ(qvArmsIdx(&adv, &dec, &advVol, &decVol, &out, 0, INT_MAX), 0);
  EXPECT_EQ(out[3], 0.5);
  ASSERT_EQ(qvArmsIdx(&adv, &dec, &advVol, &decVol, &out, 0, -1), 0);
  expectItems(out, {0, 0, 0, 0});
  EXPECT_EQ(qvArmsIdx(nullptr, &dec, &advVol, &decVol, &out, 0, 1), -1);
  EXPECT_EQ(qvArmsIdx(&adv, &dec, &advVol, &decVol, &adv, 0, 1), -1);
}

TEST(TradingIndex, FiveBarSumAnswersZeroWhateverHappens) {
  Array one(std::vector<double>(7, 1.0)), out;
  ASSERT_EQ(qvBretzTRIN5(&one, &one, &one, &one, &out, 1), 0);
  expectItems(out, {0, 0, 0, 0, 0, 5, 5});
  EXPECT_EQ(out.firstValid, 5);
  Array held{1, 2, 3, 4, 5, 6};  // refused inputs: the sum of what the output holds
  EXPECT_EQ(qvBretzTRIN5(nullptr, &one, &one, &one, &held, 0), 0);
  expectItems(held, {0, 0, 0, 0, 15, 20});
  EXPECT_EQ(qvBretzTRIN5(nullptr, nullptr, nullptr, nullptr, nullptr, 0), 0);
  const long before = qv::memory::liveBlocks();
  for (long k = 1; k < 5; ++k) {
    Array none;
    qv::memory::failAllocation(k);
    EXPECT_EQ(qvBretzTRIN5(&one, &one, &one, &one, &none, 0), 0);
    qv::memory::failAllocation(0);
    EXPECT_LE(none.size, none.capacity);
  }
  EXPECT_EQ(qv::memory::liveBlocks(), before);
}

TEST(TradingIndex, OpenIndexIsTheQuotientOfTenBarSums) {
  const std::vector<double> shape = shaped(Shape::Integers, 30, 5);
  std::vector<double> items[4];
  for (std::size_t k = 0; k < 4; ++k)
    for (std::size_t i = 0; i < 30; ++i) items[k].push_back(10 + shape[(i * (k + 3)) % 30]);
  Array adv(items[0], 2), dec(items[1]), advVol(items[2]), decVol(items[3]), out;
  ASSERT_EQ(qvOpen10TRIN(&adv, &dec, &advVol, &decVol, &out, 0), 0);
  EXPECT_EQ(out.firstValid, 11);
  for (int i = 11; i < 30; ++i) {
    double sum[4] = {};
    for (int j = i - 9; j <= i; ++j)
      for (std::size_t k = 0; k < 4; ++k) sum[k] += items[k][static_cast<std::size_t>(j)];
    EXPECT_NEAR(out[i], (sum[0] / sum[1]) / (sum[2] / sum[3]), 1e-12) << i;
  }
  // Fewer than ten bars: the one value at the last bar. Only three zero sums are guarded.
  Array a{3, 3}, d{1, 2}, u{2, 2}, v{1, 1}, zero{0, 0};
  ASSERT_EQ(qvOpen10TRIN(&a, &d, &u, &v, &out, 0), 0);
  expectItems(out, {0, (6.0 / 3) / (4.0 / 2)});
  ASSERT_EQ(qvOpen10TRIN(&a, &zero, &zero, &zero, &out, 0), 0);
  expectItems(out, {0, 0});
  ASSERT_EQ(qvOpen10TRIN(&a, &zero, &u, &v, &out, 0), 0);
  EXPECT_TRUE(std::isinf(out[1]));
}

TEST(McClellan, OscillatorAndItsSums) {
  Array adv({0, 0, 30, 10, 30}, 2), dec{0, 0, 10, 30, 10}, osc, sum, both, bothSum;
  ASSERT_EQ(qvMcClellanOscillator(&adv, &dec, &osc, 1, 3, 0), 0);  // k = 1 and 1/2: 20 -20 20 and 20 0 10
  expectItems(osc, {0, 0, 0, -20, 10});
  EXPECT_EQ(osc.firstValid, 2);
  ASSERT_EQ(qvMcClellanSummation(&adv, &dec, &sum, 1, 3, 0), 0);
  expectItems(sum, {0, 0, 0, -20, -10});
  EXPECT_EQ(sum.firstValid, 2);
  ASSERT_EQ(qvMcClellanOscSum(&adv, &dec, &both, &bothSum, 1, 3, 0), 0);
  EXPECT_EQ(both.items(), osc.items());
  expectItems(bothSum, {0, 0, 0, -20, -10});
  EXPECT_EQ(bothSum.firstValid, 3);
  ASSERT_EQ(qvMcClellanSummation(&adv, &dec, &sum, 1, 3, 3), 0);
  EXPECT_EQ(sum[3], 0.0) << "the averages are seeded at bar 3";
}

}  // namespace
}  // namespace qvtest
