// The natural logarithm, the same bits on every machine: that of the C library takes fused steps where the
// processor has them. The polynomial is the one published with FDLIBM (Sun Microsystems, 1993); its error is
// below one unit of the last place.
#pragma once

#include <bit>
#include <cstdint>
#include <limits>

namespace qv {

inline constexpr auto logarithmOf = [](double x) noexcept {
  // x = 2^k m with m between the roots of 1/2 and 2; numbers too small for an exponent are scaled first.
  constexpr std::uint64_t kOne = 0x3ff0000000000000, kRootOfHalf = 0x3fe6a09e667f3bcd;
  const bool tiny = x < std::numeric_limits<double>::min();
  const auto bits = std::bit_cast<std::uint64_t>(tiny ? x * 0x1p54 : x) + (kOne - kRootOfHalf);
  const double k =
      std::bit_cast<double>(0x4330000000000000 | (bits >> 52)) - (0x1p52 + 1023.0) - (tiny ? 54.0 : 0.0);
  const double m = std::bit_cast<double>((bits & 0x000fffffffffffff) + kRootOfHalf);

  const double f = m - 1.0, s = f / (2.0 + f), z = s * s, w = z * z, half = 0.5 * f * f;
  const double even =
      w * (3.999999999940941908e-01 + w * (2.222219843214978396e-01 + w * 1.531383769920937332e-01));
  const double odd =
      z * (6.666666666666735130e-01 +
           w * (2.857142874366239149e-01 + w * (1.818357216161805012e-01 + w * 1.479819860511658591e-01)));
  const double result = k * 6.93147180369123816490e-01 -
                        ((half - (s * (half + (even + odd)) + k * 1.90821492927058770002e-10)) - f);
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  const double atEdge = x == 0.0 ? -kInfinite : x > 0.0 ? x : std::numeric_limits<double>::quiet_NaN();
  return (x > 0.0) & (x < kInfinite) ? result : atEdge;
};

}  // namespace qv
