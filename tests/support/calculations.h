// A table of calculations by their common shape, so that the properties that hold for all of them
// are tested once: one row each in calculations.cpp.
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
  std::vector<int> periods = {};  // parameters for which a value below 1 is refused with -1
  int tooShort = 0;               // up to so many bars the parameters do not fit
  std::function<int(const QvBars* const*, const QvArray* const*, QvArray* const*, const double*, int)> call;

  Calculation& reads(unsigned mask) { return series = mask, *this; }
  Calculation& mayRunInPlace() { return inPlace = true, *this; }
  // A documented exception: something stands below the first valid index.
  Calculation& keepsEarlierItems() { return exactFirstValid = false, *this; }
  // A documented exception: the output's first valid index stays as the caller left it.
  Calculation& leavesFirstValid() { return setsFirstValid = false, *this; }
  // A documented exception: where the periods do not fit the answer is the number of bars.
  Calculation& needsMoreThan(int count) { return tooShort = count, *this; }
  Calculation& refusesPeriods(std::vector<int> which) { return periods = std::move(which), *this; }
};

inline void PrintTo(const Calculation& c, std::ostream* os) {
  *os << c.name;
}

// A row of the table out of the function itself: const QvBars* arguments are bar sets, const
// QvArray* inputs, QvArray* outputs, numbers parameters, and the last number `start`.
template <typename... Args>
Calculation calculation(const char* name, int (*function)(Args...) noexcept, std::vector<double> params) {
  Calculation c;
  c.name = name;
  c.bars = (0 + ... + std::is_same_v<Args, const QvBars*>);
  c.inputs = (0 + ... + std::is_same_v<Args, const QvArray*>);
  c.outputs = (0 + ... + std::is_same_v<Args, QvArray*>);
  ((std::is_arithmetic_v<Args> ? c.isInteger.push_back(std::is_integral_v<Args>) : void()), ...);
  c.isInteger.resize(params.size());  // the last number is `start`
  c.params = std::move(params);
  c.call = [function, count = c.params.size()](const QvBars* const* bars, const QvArray* const* inputs,
                                               QvArray* const* outputs, const double* numbers, int start) {
    std::size_t left = count;
    const auto take = [&]<typename T>(std::type_identity<T>) -> T {
      if constexpr (std::is_same_v<T, const QvBars*>) {
        return *bars++;
      } else if constexpr (std::is_same_v<T, const QvArray*>) {
        return *inputs++;
      } else if constexpr (std::is_same_v<T, QvArray*>) {
        return *outputs++;
      } else {
        static_assert(std::is_arithmetic_v<T>, "describe other arguments with a lambda of your own");
        return left > 0 ? static_cast<T>(numbers[count - left--]) : static_cast<T>(start);
      }
    };
    return std::apply(function, std::tuple<Args...>{take(std::type_identity<Args>{})...});
  };
  return c;
}

const std::vector<Calculation>& calculations();

}  // namespace qvtest
