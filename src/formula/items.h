// The rules of single items: what each operator makes of the items of its operands. Whole series and single
// bars are computed by the same rules.
#pragma once

#include <cmath>

#include "formula/nodes.h"

namespace qv::formula {

// Whether a number counts as a rule that holds: neither 0 nor not-a-number. 1.0 or 0.0, for loops of these
// are vector code and those of truth values are not.
inline double holds(double a) noexcept {
  return std::fabs(a) > 0.0 ? 1.0 : 0.0;
}

// Calls visit with the rule of a comparison, and of And or Or.
template <typename Visitor>
auto visitComparison(Kind kind, Visitor visit) noexcept {
  switch (kind) {
    case Kind::Less:
      return visit([](double a, double b) { return a < b ? 1.0 : 0.0; });
    case Kind::LessOrEqual:
      return visit([](double a, double b) { return a <= b ? 1.0 : 0.0; });
    case Kind::Equal:
      return visit([](double a, double b) { return a == b ? 1.0 : 0.0; });
    default:  // NotEqual: false for not-a-number, as all comparisons are
      return visit([](double a, double b) { return ((a < b) | (a > b)) ? 1.0 : 0.0; });
  }
}
template <typename Visitor>
auto visitLogic(Kind kind, Visitor visit) noexcept {
  if (kind == Kind::And) return visit([](double a, double b) { return holds(a) * holds(b); });
  return visit([](double a, double b) { return holds(holds(a) + holds(b)); });
}

// Calls visit with the rule of an itemwise kind, a function of one to four doubles. Those of CrossesAbove are
// the items of both operands and the items before them.
template <typename Visitor>
auto visitItem(Kind kind, Visitor visit) noexcept {
  switch (kind) {
    case Kind::Negate:
      return visit([](double a) { return -a; });
    case Kind::Absolute:
      return visit([](double a) { return std::fabs(a); });
    case Kind::Not:
      return visit([](double a) { return 1.0 - holds(a); });
    case Kind::Add:
      return visit([](double a, double b) { return a + b; });
    case Kind::Subtract:
      return visit([](double a, double b) { return a - b; });
    case Kind::Multiply:
      return visit([](double a, double b) { return a * b; });
    case Kind::Divide:
      return visit([](double a, double b) { return a / b; });
    case Kind::Smaller:  // not-a-number where either is
      return visit([](double a, double b) { return b != b ? b : b < a ? b : a; });
    case Kind::Larger:
      return visit([](double a, double b) { return b != b ? b : b > a ? b : a; });
    case Kind::Less:
    case Kind::LessOrEqual:
    case Kind::Equal:
    case Kind::NotEqual:
      return visitComparison(kind, visit);
    case Kind::And:
    case Kind::Or:
      return visitLogic(kind, visit);
    case Kind::If:
      return visit([](double condition, double a, double b) { return std::fabs(condition) > 0.0 ? a : b; });
    default:
      return visit(
          [](double a, double b, double a1, double b1) { return ((a > b) & (a1 <= b1)) ? 1.0 : 0.0; });
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
