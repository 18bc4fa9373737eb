// Market breadth.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "core/memory.h"
#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

struct Breadth : testing::Test {
  const Array adv{{9, 6, 2, 0, 3}, 1}, dec{9, 2, 6, 0, 0};
  const Array rising{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
  const Array falling{20, 19, 18, 17, 16, 15, 14, 13, 12, 11, 10, 9};
  Array out, second;
};

TEST_F(Breadth, ADIssues) {
  expectGives(qvADIssues(&adv, &dec, &out, 0), out, {0, 4, -4, 0, 3}, 1);
}

TEST_F(Breadth, UpDownVolume) {
  expectGives(qvUpDownVolume(&adv, &dec, &out, 2), out, {0, 0, -4, 0, 3}, 2);
}

TEST_F(Breadth, ABI) {
  expectGives(qvABI(&adv, &dec, &out, 0), out, {0, 4, 4, 0, 3}, 1);
}

TEST_F(Breadth, ADLineBreadth) {
  expectGives(qvADLineBreadth(&adv, &dec, &out, 0), out, {0, 0.75, 0.25, 0, 1}, 1);
}

TEST_F(Breadth, ADRatio) {
  expectGives(qvADRatio(&adv, &dec, &out, 0), out, {0, 3, 1.0 / 3, 0, 0}, 1);
}

TEST_F(Breadth, UpDownRatio) {
  const Array wild{9, 2, kNaN, 0, 0};
  expectGives(qvUpDownRatio(&adv, &wild, &out, 0), out, {0, 3, 0, 0, 0}, 1);
}

TEST_F(Breadth, ADLine) {
  expectGives(qvADLine(&adv, &dec, &out, 0), out, {0, 4, 0, 0, 3}, 2);
}

TEST_F(Breadth, CVI) {
  expectGives(qvCVI(&adv, &dec, &out, 0), out, {0, 4, 0, 0, 3}, 1);
}

TEST_F(Breadth, BoltonTremblay) {
  // Roots of (8 - 4) / 1 and, downwards, of (2 - 20) / 2; no unchanged issues add nothing.
  const Array a{1, 8, 2, 5}, d{1, 4, 20, 4}, even{1, 1, 2, 0};
  expectGives(qvBoltonTremblay(&a, &d, &even, &out, 0), out, {0, 2, -1, -1}, 1);
}

TEST_F(Breadth, BreadthThrust) {
  // The shares rise by a twentieth from bar 1 on: means of ten.
  expectNear(qvBreadthThrust(&rising, &falling, &out, 1), out,
             {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5.5 / 20, 6.5 / 20}, 10);
}

struct SmoothedBreadth : Breadth {
  const Array a{{0, 0, 30, 10, 30, 0}, 2}, d{0, 0, 10, 30, 10, 0};
};

TEST_F(SmoothedBreadth, OverBoughtSold) {
  const double k = 2.0 / 11, e1 = 20, e2 = k * -20 + (1 - k) * e1, e3 = k * 20 + (1 - k) * e2;
  expectNear(qvOverBoughtSold(&a, &d, &out, 0), out, {0, 0, e1, e2, e3, (1 - k) * e3}, 2);
}

TEST_F(SmoothedBreadth, STIX) {
  expectNear(qvSTIX(&a, &d, &out, 3, 0), out, {0, 0, 75, 50, 62.5, 31.25}, 2);
}

// With k = 1 and 1/2: averages 20 -20 20 0 and 20 0 10 5.
TEST_F(SmoothedBreadth, McClellanOscillator) {
  expectGives(qvMcClellanOscillator(&a, &d, &out, 1, 3, 0), out, {0, 0, 0, -20, 10, -5}, 2);
}

TEST_F(SmoothedBreadth, McClellanSummation) {
  expectGives(qvMcClellanSummation(&a, &d, &out, 1, 3, 0), out, {0, 0, 0, -20, -10, -15}, 2);
  expectGives(qvMcClellanSummation(&a, &d, &out, 1, 3, 3), out, {0, 0, 0, 0, 20, 20}, 3);  // seeded at bar 3
}

TEST_F(SmoothedBreadth, McClellanOscSum) {
  expectGives(qvMcClellanOscSum(&a, &d, &out, &second, 1, 3, 0), out, {0, 0, 0, -20, 10, -5}, 2);
  expectGives(0, second, {0, 0, 0, -20, -10, -15}, 3);
}

struct TradingIndices : Breadth {
  const Array a{4, 0, 6, 2}, d{2, 5, 3, 4}, up{30, 1, 20, 30}, down{10, 1, 0, 30};
};

TEST_F(TradingIndices, TRIN) {
  expectNear(qvTRIN(&a, &d, &up, &down, &out, 0), out, {2.0 / 3, 0, 0, 0.5}, 0);
}

TEST_F(TradingIndices, ArmsIdx) {
  for (const auto& [end, last] : {std::pair{INT_MAX, 0.5}, {2, 0.0}})
    expectNear(qvArmsIdx(&a, &d, &up, &down, &out, 0, end), out, {2.0 / 3, 0, 0, last}, 0);
  expectNear(qvArmsIdx(&a, &d, &up, &down, &out, 0, -1), out, {0, 0, 0, 0}, 0);
}

TEST_F(TradingIndices, Open10TRIN) {
  // Sums of the rising series 45 55 65, of the falling 155 145 135.
  expectNear(
      qvOpen10TRIN(&rising, &falling, &falling, &rising, &out, 0), out,
      {0, 0, 0, 0, 0, 0, 0, 0, 0, std::pow(45 / 155.0, 2), std::pow(55 / 145.0, 2), std::pow(65 / 135.0, 2)},
      9);
  // Fewer than ten bars: the one value at the last bar. Only three zero sums are guarded.
  const Array b{3, 3}, c{1, 2}, two{2, 2}, one{1, 1}, zero{0, 0};
  expectGives(qvOpen10TRIN(&b, &c, &two, &one, &second, 0), second, {0, (6.0 / 3) / (4.0 / 2)}, 9);
  expectGives(qvOpen10TRIN(&b, &zero, &zero, &zero, &second, 0), second, {0, 0}, 9);
  expectGives(qvOpen10TRIN(&b, &zero, &two, &one, &second, 0), second, {0, kInf}, 9);
}

TEST_F(TradingIndices, BretzTRIN5) {
  // The five-bar sum answers 0 whatever happens.
  const Array ones(Items(7, 1.0));
  expectGives(qvBretzTRIN5(&ones, &ones, &ones, &ones, &out, 1), out, {0, 0, 0, 0, 0, 5, 5}, 5);
  Array held{1, 2, 3, 4, 5, 6}, none;  // refused inputs: the sum of what the output holds
  expectGives(qvBretzTRIN5(nullptr, &ones, &ones, &ones, &held, 0), held, {0, 0, 0, 0, 15, 20}, 4);
  EXPECT_EQ(qvBretzTRIN5(nullptr, nullptr, nullptr, nullptr, nullptr, 0), 0);
  for (long k : {1, 2, 3, 4, 0}) {
    qv::memory::failAllocation(k);
    EXPECT_EQ(qvBretzTRIN5(&ones, &ones, &ones, &ones, none.fresh(), 0), 0);
  }
}

}  // namespace
}  // namespace qvtest
