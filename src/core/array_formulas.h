// The formulas of qvDivide and qvMultAddArray.
#pragma once

namespace qv {

constexpr double quotientOf(double a, double b, double factor) noexcept {
  const double quotient = a / b * factor;
  return b != 0.0 ? quotient : 0.0;
}
constexpr double multipleOf(double x, double times, double plus) noexcept {
  return times * x + plus;
}

}  // namespace qv
