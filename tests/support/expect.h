// Comparison of a whole series with the values worked out by hand.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

#include "core/memory.h"
#include "support/series.h"

namespace qvtest {

using Pair = std::pair<double, double>;

// The two outputs of a function.
template <typename T = double, typename Function, typename In, typename... Args>
Pair bothOf(Function function, const In& in, Args... args) {
  T first = -7, second = -7;
  EXPECT_EQ(function(&in, &first, &second, args...), 0);
  return {first, second};
}

inline bool sameBits(double a, double b) {  // a not-a-number equals itself
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (a != a && b != b);
}

// A call that answers 0 and leaves exactly these items; not-a-number equals itself.
inline void expectGives(int status, const QvArray& out, const Items& wanted,
                        std::optional<int> firstValid = {}, int line = __builtin_LINE()) {
  SCOPED_TRACE(line);
  EXPECT_EQ(status, 0);
  const Items got = itemsOf(out);
  EXPECT_TRUE(std::equal(got.begin(), got.end(), wanted.begin(), wanted.end(),
                         [](double a, double b) { return a == b || (a != a && b != b); }))
      << testing::PrintToString(got) << " instead of " << testing::PrintToString(wanted);
  EXPECT_EQ(out.firstValid, firstValid.value_or(out.firstValid)) << testing::PrintToString(wanted);
}

// The same for values that no double has, to a few roundings.
inline void expectNear(int status, const QvArray& out, const Items& wanted, int firstValid,
                       int line = __builtin_LINE()) {
  SCOPED_TRACE(line);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(out.firstValid, firstValid) << testing::PrintToString(wanted);
  ASSERT_EQ(out.size, static_cast<int>(wanted.size()));
  for (int i = 0; i < out.size; ++i)
    EXPECT_NEAR(out.data[i], wanted[static_cast<std::size_t>(i)], 1e-12) << "item " << i;
}

// A call that answers 0 and gives, from its first valid index on, what a plain loop gives for each item:
// to `tolerance` of 1, or of the item where that is larger.
inline void expectEach(int status, const QvArray& out, int firstValid, double tolerance,
                       const std::function<double(int)>& wanted, int line = __builtin_LINE()) {
  SCOPED_TRACE(line);
  ASSERT_EQ(status, 0);
  ASSERT_GT(out.size, 0);
  EXPECT_EQ(out.firstValid, firstValid);
  for (int i = firstValid; i < out.size; ++i) {
    const double got = out.data[i], x = wanted(i);
    ASSERT_TRUE(got == x || (got != got && x != x) ||
                std::fabs(got - x) <= tolerance * std::fmax(1, std::fabs(x)))
        << "item " << i << ": " << got << " instead of " << x;
  }
}

// Makes every allocation of a call fail in turn: -3 with nothing leaked, whichever it is.
inline void expectAnswersExhaustedMemory(const char* name, const std::function<int()>& call) {
  for (long k = 1;; ++k) {
    ASSERT_LT(k, 1000) << name;
    const long live = qv::memory::liveBlocks();
    qv::memory::failAllocation(k);
    const int status = call();
    if (qv::memory::failAllocation(0) > 0) {
      EXPECT_TRUE(k > 1 && status >= 0) << name << ": " << status;
      return;
    }
    EXPECT_EQ(status, -3) << name << " at allocation " << k;
    EXPECT_EQ(qv::memory::liveBlocks(), live) << name << " at allocation " << k;
  }
}

}  // namespace qvtest
