#include "core/power.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace qv {

namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kLn2 = 6.93147180559945286227e-01, kLn2High = 6.93147182464599609375e-01,
                 kLn2Low = -1.90465429995776804525e-09;

// The upper half of a double's bits: a product of two of them is exact.
double upper(double x) noexcept {
  return std::bit_cast<double>(std::bit_cast<std::uint64_t>(x) & 0xffffffff00000000);
}
double ofUpperBits(std::uint32_t bits) noexcept {
  return std::bit_cast<double>(std::uint64_t{bits} << 32);
}
std::uint32_t upperBits(double x) noexcept {
  return static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(x) >> 32);
}

// What x (exp(x) + 1) / (exp(x) - 1) lacks to 2, for |x| up to half of ln 2.
double remez(double x) noexcept {
  const double t = x * x;
  return x - t * (1.66666666666666019037e-01 +
                  t * (-2.77777777770155933842e-03 +
                       t * (6.61375632143793436117e-05 +
                            t * (-1.65339022054652515390e-06 + t * 4.13813679705723846039e-08))));
}

// A number in two parts, the first of which has the upper half of the bits.
struct Parts {
  double high, low;
};

// log2 of a positive finite x. x = 2^n m, and s = (m - b) / (m + b) for the nearer b of 1 and 3/2.
Parts log2Of(double x) noexcept {
  int n = 0;
  if (x < std::numeric_limits<double>::min()) {
    x *= 0x1p53;
    n = -53;
  }
  std::uint32_t bits = upperBits(x);
  n += static_cast<int>(bits >> 20) - 1023;
  const std::uint32_t fraction = bits & 0xfffff;
  bits = fraction | 0x3ff00000;
  const bool nearHalf = fraction > 0x3988e && fraction < 0xbb67a;
  if (fraction >= 0xbb67a) {
    ++n;
    bits -= 0x00100000;
  }
  const double m =
      std::bit_cast<double>((std::uint64_t{bits} << 32) | (std::bit_cast<std::uint64_t>(x) & 0xffffffff));
  const double b = nearHalf ? 1.5 : 1.0;
  const double u = m - b, v = 1.0 / (m + b), s = u * v, sHigh = upper(s);
  double high = ofUpperBits(((bits >> 1) | 0x20000000) + 0x00080000 + (nearHalf ? 0x40000 : 0));
  double low = m - (high - b);
  const double sLow = v * ((u - sHigh * high) - sHigh * low);

  double s2 = s * s;
  double r = s2 * s2 *
             (5.99999999999994648725e-01 +
              s2 * (4.28571428578550184252e-01 +
                    s2 * (3.33333329818377432918e-01 +
                          s2 * (2.72728123808534006489e-01 +
                                s2 * (2.30660745775561754067e-01 + s2 * 2.06975017800338417784e-01)))));
  r += sLow * (sHigh + s);
  s2 = sHigh * sHigh;
  high = upper(3.0 + s2 + r);
  low = r - ((high - 3.0) - s2);
  const double product = sHigh * high, rest = sLow * high + low * s;
  const double pHigh = upper(product + rest), pLow = rest - (pHigh - product);
  // 2 / (3 ln 2), and log2 of b, in two parts each.
  const double zHigh = 9.61796700954437255859e-01 * pHigh;
  const double zLow = -7.02846165095275826516e-09 * pHigh + pLow * 9.61796693925975554329e-01 +
                      (nearHalf ? 1.35003920212974897128e-08 : 0.0);
  const double bHigh = nearHalf ? 5.84962487220764160156e-01 : 0.0;
  const double first = upper(((zHigh + zLow) + bHigh) + n);
  return {first, zLow - (((first - n) - bHigh) - zHigh)};
}

// 2^(high + low)
double exp2Of(double high, double low) noexcept {
  const double z = high + low;
  if (z >= 1024.0 && (z > 1024.0 || low + 8.0085662595372944372e-17 > z - high)) return kInfinite;
  if (z <= -1075.0 && (z < -1075.0 || low <= z - high)) return 0.0;
  const double whole = std::abs(z) > 0.5 ? std::floor(z + 0.5) : 0.0;
  high -= whole;
  const double t = upper(low + high);
  const double u = t * kLn2High, v = (low - (t - high)) * kLn2 + t * kLn2Low;
  const double x = u + v, w = v - (x - u), c = remez(x);
  const double r = (x * c) / (c - 2.0) - (w + x * w);
  return std::scalbn(1.0 - (r - x), static_cast<int>(whole));
}

bool isWhole(double y) noexcept {
  return std::floor(y) == y;
}
bool isOdd(double y) noexcept {
  return isWhole(y) && std::abs(y) < 0x1p53 && !isWhole(y / 2);
}

}  // namespace

double exponentialOf(double x) noexcept {
  if (std::isnan(x)) return x;
  if (x > 7.09782712893383973096e+02) return kInfinite;
  if (x < -7.45133219101941108420e+02) return 0.0;
  const double k = std::abs(x) > 0.5 * kLn2 ? std::floor(1.44269504088896338700e+00 * x + 0.5) : 0.0;
  const double high = x - k * 6.93147180369123816490e-01, low = k * 1.90821492927058770002e-10;
  const double reduced = high - low, c = remez(reduced);
  const double y = 1.0 - ((low - (reduced * c) / (2.0 - c)) - high);
  return std::scalbn(y, static_cast<int>(k));
}

double powerOf(double base, double exponent) noexcept {
  if (exponent == 0.0 || base == 1.0) return 1.0;
  if (std::isnan(base) || std::isnan(exponent)) return kNoNumber;
  const double size = std::abs(base);
  if (std::isinf(exponent)) return size == 1.0 ? 1.0 : (size > 1.0) == (exponent > 0.0) ? kInfinite : 0.0;
  const double sign = std::signbit(base) && isOdd(exponent) ? -1.0 : 1.0;
  if (size == 0.0 || std::isinf(size)) return sign * ((size == 0.0) == (exponent > 0.0) ? 0.0 : kInfinite);
  if (base < 0.0 && !isWhole(exponent)) return kNoNumber;
  if (size == 1.0) return sign;

  const Parts log = log2Of(size);
  const double y1 = upper(exponent);
  return sign * exp2Of(y1 * log.high, (exponent - y1) * log.high + exponent * log.low);
}

}  // namespace qv
