// Counts of rises and ranks of price and volume.
#include <gtest/gtest.h>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

struct Counting : testing::Test {
  // Up: 12 - min(9, 10) = 3; down: max(11, 12) - 8 = 4; equal; up with a gap: 12 - min(10, 8) = 4.
  const Bars ranks{{0, 0, 0, 10, 5}, {0, 13, 9, 12, 5},  {0, 11, 7, 8, 9},
                   {0, 9, 7, 8, 3},  {0, 13, 10, 12, 2}, {0, 9, 8, 8, 1}};
  Array out;
};

TEST_F(Counting, PsychologyLine) {
  const Array rising{1, 2, 3, 4, 5, 6, 7}, mixed({9, 1, 2, 2, 1, 3, 4}, 1);  // mixed rises at 2, 5 and 6
  expectGives(qvPsychologyLine(&rising, &out, 2, 0), out, {0, 0, 0, 100, 100, 100, 100}, 2);
  expectGives(qvPsychologyLine(&mixed, &out, 2, 0), out, {0, 0, 0, 0, 0, 50, 100}, 3);
  expectGives(qvPsychologyLine(&mixed, &out, 5, 0), out, Items(7, 0.0), 6);
}

TEST_F(Counting, WilliamsAD) {
  expectGives(qvWilliamsAD(&ranks, &out, 0), out, {0, 3, -1, -1, 3, -1}, 1);
}

TEST_F(Counting, PVrank) {
  expectGives(qvPVrank(&ranks, &out, 0), out, {0, 1, 4, 2, 2, 3}, 1);
}

TEST_F(Counting, LineOsc) {
  const Array a({9, 2, 4, 8}, 1), b{1, 1, 2, 4};
  expectGives(qvLineOsc(&a, &b, &out, 2, 0), out, {0, 0, 1.5, 3}, 2);
}

TEST_F(Counting, NMO) {
  // Strength 100 and 0, stretched from bar 2 on whatever the first valid index.
  const Array moved({0, 0, 10, 16, 14}, 2), flat(Items(4, 3.0));
  expectGives(qvNMO(&moved, &out, 1, 1), out, {0, 0, -100, 100, -100}, 3);
  expectGives(qvNMO(&flat, out.fresh(), 2, 0), out, {0, 0, -100, -100}, 2);
}

}  // namespace
}  // namespace qvtest
