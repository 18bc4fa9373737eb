// A table of calculations by their common shape, so that the properties that hold for all of them
// are tested once. Each family adds its rows in tests/calculations/.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "core/calculation.h"
#include "qvlib60.h"

namespace qvtest {

struct Calculation {
  std::string name;
  int bars = 0, inputs = 0, outputs = 0;
  unsigned series = qv::kNone;    // the series read of each bar set
  std::vector<double> params;     // ordinary values, `start` left out
  std::vector<bool> isInteger;    // kind of each parameter
  bool inPlace = false;           // accepts one block as input and output
  bool exactFirstValid = true;    // no value below the first valid index
  bool setsFirstValid = true;     // records where the output's values begin
  bool endsInStart = true;        // the last argument is the start index
  std::vector<int> periods = {};  // parameters for which a value below 1 is refused with -1
  std::function<int(const QvBars* const*, const QvArray* const*, QvArray* const*, const double*, int)> call;

  Calculation& reads(unsigned mask) {
    series = mask;
    return *this;
  }
  Calculation& mayRunInPlace() {
    inPlace = true;
    return *this;
  }
  // A documented exception: something is kept below the first valid index.
  Calculation& keepsItemsBelowFirstValid() {
    exactFirstValid = false;
    return *this;
  }
  // A documented exception: the output's first valid index stays as the caller left it.
  Calculation& leavesFirstValid() {
    setsFirstValid = false;
    return *this;
  }
  Calculation& refusesPeriods(std::vector<int> which) {
    periods = std::move(which);
    return *this;
  }
};

inline void PrintTo(const Calculation& c, std::ostream* os) {
  *os << c.name;
}

namespace detail {

struct Cursor {
  const QvBars* const* bars;
  const QvArray* const* inputs;
  QvArray* const* outputs;
  const double* params;
  int start;
  int bar = 0, input = 0, output = 0, param = 0, inputCount, paramCount;

  template <typename T>
  T take() {
    if constexpr (std::is_same_v<T, const QvBars*> || std::is_same_v<T, QvBars*>) {
      return const_cast<T>(bars[bar++]);
    } else if constexpr (std::is_same_v<T, const QvArray*>) {
      return inputs[input++];
    } else if constexpr (std::is_same_v<T, QvArray*>) {
      return outputs[output++];
    } else {
      static_assert(std::is_arithmetic_v<T>, "describe other arguments with a lambda of your own");
      return param < paramCount ? static_cast<T>(params[param++]) : static_cast<T>(start);
    }
  }
};

template <typename T>
inline constexpr bool isInput = std::is_same_v<T, const QvArray*>;
template <typename T>
inline constexpr bool isBars = std::is_same_v<T, const QvBars*>;

}  // namespace detail

// A row of the table out of the function itself: const QvBars* arguments are bar sets, const
// QvArray* inputs, QvArray* outputs, numbers parameters, and the last number `start`.
template <typename... Args>
Calculation calculation(const char* name, int (*function)(Args...) noexcept, std::vector<double> params) {
  Calculation c;
  c.name = name;
  c.bars = (0 + ... + (detail::isBars<Args> ? 1 : 0));
  c.inputs = (0 + ... + (detail::isInput<Args> ? 1 : 0));
  c.outputs = (0 + ... + (std::is_same_v<Args, QvArray*> ? 1 : 0));
  ((std::is_arithmetic_v<Args> ? c.isInteger.push_back(std::is_integral_v<Args>) : void()), ...);
  c.isInteger.resize(params.size());  // the last number is `start`
  const int inputs = c.inputs, count = static_cast<int>(params.size());
  c.params = std::move(params);
  c.call = [function, inputs, count](const QvBars* const* b, const QvArray* const* in, QvArray* const* out,
                                     const double* p, int start) {
    detail::Cursor cursor{b, in, out, p, start, 0, 0, 0, 0, inputs, count};
    return std::apply(function, std::tuple<Args...>{cursor.take<Args>()...});
  };
  return c;
}

inline std::vector<Calculation>& calculations() {
  static std::vector<Calculation> table;
  return table;
}

struct Register {
  Register(std::vector<Calculation> rows) {
    for (Calculation& row : rows) calculations().push_back(std::move(row));
  }
};

}  // namespace qvtest
