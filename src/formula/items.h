// The rules of single items: what each operator makes of the items of its operands. Whole series and single
// bars are computed by the same rules.
#pragma once

#include "core/numbers.h"
#include "formula/nodes.h"

namespace qv::formula {

// Calls visit with the rule of an itemwise kind, a function of one to four doubles. Those of CrossesAbove are
// the items of both operands and the items before them.
template <typename Visitor>
auto visitItem(Kind kind, Visitor visit) noexcept {
  switch (kind) {
    case Kind::Negate:
      return visit([](double a) { return -a; });
    case Kind::Absolute:
      return visit([](double a) { return a < 0.0 ? -a : a + 0.0; });
    case Kind::Not:
      return visit([](double a) { return isNonZero(a) ? 0.0 : 1.0; });
    case Kind::Add:
      return visit([](double a, double b) { return a + b; });
    case Kind::Subtract:
      return visit([](double a, double b) { return a - b; });
    case Kind::Multiply:
      return visit([](double a, double b) { return a * b; });
    case Kind::Divide:
      return visit([](double a, double b) { return a / b; });
    case Kind::Smaller:  // not-a-number where either is
      return visit([](double a, double b) { return a != a ? a : b < a ? b : b != b ? b : a; });
    case Kind::Larger:
      return visit([](double a, double b) { return a != a ? a : b > a ? b : b != b ? b : a; });
    case Kind::Less:
      return visit([](double a, double b) { return a < b ? 1.0 : 0.0; });
    case Kind::LessOrEqual:
      return visit([](double a, double b) { return a <= b ? 1.0 : 0.0; });
    case Kind::Equal:
      return visit([](double a, double b) { return a == b ? 1.0 : 0.0; });
    case Kind::NotEqual:  // false for not-a-number, as all comparisons are
      return visit([](double a, double b) { return (a < b) | (a > b) ? 1.0 : 0.0; });
    case Kind::And:
      return visit([](double a, double b) { return isNonZero(a) & isNonZero(b) ? 1.0 : 0.0; });
    case Kind::Or:
      return visit([](double a, double b) { return isNonZero(a) | isNonZero(b) ? 1.0 : 0.0; });
    case Kind::If:
      return visit([](double condition, double a, double b) { return isNonZero(condition) ? a : b; });
    default:
      return visit([](double a, double b, double a1, double b1) { return (a > b) & (a1 <= b1) ? 1.0 : 0.0; });
  }
}

// The rule for one item; operands that a kind does not have are ignored.
inline double itemOf(Kind kind, double a, double b, double c, double d) noexcept {
  return visitItem(kind, [&](auto rule) -> double {
    if constexpr (requires { rule(a); })
      return rule(a);
    else if constexpr (requires { rule(a, b); })
      return rule(a, b);
    else if constexpr (requires { rule(a, b, c); })
      return rule(a, b, c);
    else
      return rule(a, b, c, d);
  });
}

}  // namespace qv::formula
