// Comparison of a whole series with the values worked out by hand.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "qvlib60.h"

namespace qvtest {

inline void expectItems(const QvArray& a, const std::vector<double>& wanted, double tolerance = 1e-12) {
  ASSERT_EQ(a.size, static_cast<int>(wanted.size()));
  for (int i = 0; i < a.size; ++i)
    EXPECT_NEAR(a.data[i], wanted[static_cast<std::size_t>(i)], tolerance) << "item " << i;
}

}  // namespace qvtest
