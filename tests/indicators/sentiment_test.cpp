// Bulls and bears.
#include <gtest/gtest.h>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

struct Sentiment : testing::Test {
  const Bars rays{{0, 5, 1, 4}, {0, 9, 3, 8}, {0, 8, 2, 2}, {0, 8, 2, 2}};  // averages (k = 1/2): 4 6 4 3
  Array out;
};

TEST_F(Sentiment, AR) {
  // Above the open 1 2 3 4, below it 2 2 1 3. p = 2: bars 0 1, then 0 2, then 0 3: the first bar stays.
  const Bars opens{{10, 11, 8, 0}, {10, 12, 8, 0}, {10, 13, 9, 0}, {10, 14, 7, 0}};
  expectNear(qvAR(&opens, &out, 2, 0), out, {0, 75, 400.0 / 3, 100}, 1);
  expectGives(qvAR(&opens, &out, 3, 2), out, {0, 0, 0, 0}, 4);
}

TEST_F(Sentiment, BR) {
  // Above the previous close 2 3 1 4, below it 1 2 2 1. p = 3: the two newest bars from bar 3 on.
  const Bars closes{{0, 0, 0, 10}, {0, 12, 9, 10}, {0, 13, 8, 10}, {0, 11, 8, 10}, {0, 14, 9, 10}};
  expectNear(qvBR(&closes, &out, 3, 0), out, {0, 0, 0, 100, 500.0 / 3}, 3);
}

TEST_F(Sentiment, ERAYBull) {
  expectNear(qvERAYBull(&rays, &out, 3, 0), out, {1, 3, 4, 5}, 0);
}

TEST_F(Sentiment, ERAYBear) {
  expectNear(qvERAYBear(&rays, &out, 3, 1), out, {0, -5, -3, -1.5}, 1);  // begun at bar 1: 8 5 3.5
}

TEST_F(Sentiment, SONAR) {
  const Array in{4, 8, 2, 2, 0, 0, 0};  // averages (p = 1): the items
  expectNear(qvSONAR(&in, &out, 1, 2, 0), out, {0, 0, 0, -75, -100, -100, 0}, 3);
  expectGives(qvSONAR(&in, &out, 3, 0, 0), out, Items(7, 0.0), 3);
  EXPECT_EQ(qvSONAR(&in, &out, 4, 3, 0), 7);
  EXPECT_EQ(qvSONAR(&in, &out, 4, -1, 0), -1);
}

}  // namespace
}  // namespace qvtest
