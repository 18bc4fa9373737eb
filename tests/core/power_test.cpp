#include "core/power.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity(),
                 kNaN = std::numeric_limits<double>::quiet_NaN();

// How many doubles lie between two of one sign.
double steps(double a, double b) {
  if (a == b || (std::isnan(a) && std::isnan(b))) return 0;
  return std::fabs(static_cast<double>(std::bit_cast<std::int64_t>(a) - std::bit_cast<std::int64_t>(b)));
}

TEST(Power, IsWithinOneStepOfTheCLibrary) {
  std::mt19937_64 random(1);
  const auto between = [&random](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  for (int i = 0; i < 20000; ++i) {
    const double base = i % 2 ? between(0, 3) : std::bit_cast<double>(random()), exponent = between(-40, 40);
    ASSERT_LE(steps(qv::powerOf(base, exponent), std::pow(base, exponent)), 2) << base << " " << exponent;
    const double nearOne = 1 + between(-1e-6, 1e-6), many = between(-1e12, 1e12);
    ASSERT_LE(steps(qv::powerOf(nearOne, many), std::pow(nearOne, many)), 2) << nearOne << " " << many;
    const double x = between(-760, 720);
    ASSERT_LE(steps(qv::exponentialOf(x), std::exp(x)), 2) << x;
  }
}

TEST(Power, OfIntegersIsExact) {
  for (int base = 2; base < 40; ++base) {
    double expected = 1;
    for (int k = 0; expected < 0x1p53; ++k, expected *= base) {
      EXPECT_EQ(qv::powerOf(base, k), expected);
      EXPECT_EQ(qv::powerOf(-base, k), k % 2 ? -expected : expected);
    }
  }
}

TEST(Power, AtTheEdgesIsTheCLibrarys) {
  const double bases[] = {0.0, -0.0, 1.0, -1.0, 2.0, -2.0, 0.5, kInf, -kInf, kNaN, 5e-324, 1.7e308};
  const double exponents[] = {
      0.0,   -0.0, 1.0, -1.0, 2.0, 3.0, -3.0, 0.5, -0.5, kInf, -kInf, kNaN, 1e300, -1e300, 9007199254740993.0,
      5e-324};
  for (double base : bases)
    for (double exponent : exponents) {
      const double own = qv::powerOf(base, exponent), expected = std::pow(base, exponent);
      EXPECT_LE(steps(own, expected), 1) << base << " " << exponent;
      EXPECT_TRUE(std::isnan(expected) || std::signbit(own) == std::signbit(expected))
          << base << " " << exponent;
    }
  // A hair within what a double holds, and half of the least one.
  const std::pair<double, double> last[] = {{std::nextafter(16.0, 0.0), 256},
                                            {std::nextafter(32.0, 0.0), -215},
                                            {32.0, -215},
                                            {32.0, -216},
                                            {2.0, 1024}};
  for (const auto& [base, exponent] : last)
    EXPECT_EQ(steps(qv::powerOf(base, exponent), std::pow(base, exponent)), 0) << base << " " << exponent;
  for (double x : {0.0, kInf, -kInf, kNaN, 709.9, -745.2})
    EXPECT_EQ(steps(qv::exponentialOf(x), std::exp(x)), 0) << x;
}

}  // namespace
