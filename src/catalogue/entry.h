// How the table of calculations is written. A family's source lists rows made by ENTRY; the shape of a
// call is read off the function's own type, so a row cannot disagree with its function. items() packs the
// rows into the constant records that callers see.
#pragma once

#include <array>
#include <cstddef>
#include <tuple>
#include <type_traits>

#include "catalogue/row.h"
#include "core/calculation.h"
#include "core/numbers.h"
#include "qvlib60/indicators.h"
#include "qvlib60/patterns.h"

namespace qv::catalogue {

// ---- The shape of a function --------------------------------------------------------------------

template <auto function, typename = decltype(function)>
struct Shape;

template <auto function, typename... Args>
struct Shape<function, int(QVCALL*)(Args...) noexcept> {
  template <typename T>
  static constexpr int count = (0 + ... + std::is_same_v<Args, T>);
  static constexpr int numbers = (0 + ... + std::is_arithmetic_v<Args>)-1;  // the last one is `start`

  static int call(const QvBars* const* bars, const QvArray* const* inputs, QvArray* const* outputs,
                  const double* values, int start) noexcept {
    int left = numbers;
    const auto take = [&]<typename T>(std::type_identity<T>) -> T {
      if constexpr (std::is_same_v<T, const QvBars*>) {
        return *bars++;
      } else if constexpr (std::is_same_v<T, const QvArray*>) {
        return *inputs++;
      } else if constexpr (std::is_same_v<T, QvArray*>) {
        return *outputs++;
      } else if (left-- == 0) {
        return static_cast<T>(start);
      } else if constexpr (std::is_same_v<T, int>) {
        return truncatedInt(*values++);
      } else {
        static_assert(std::is_same_v<T, double>, "an adapter function takes other arguments");
        return *values++;
      }
    };
    // Braces keep the order of the arguments.
    const std::tuple<Args...> arguments{take(std::type_identity<Args>{})...};
    return std::apply([](Args... args) noexcept { return function(args...); }, arguments);
  }

  static constexpr std::array<bool, kMostParams> integers() {
    std::array<bool, kMostParams> result{};
    std::size_t k = 0;
    ((std::is_arithmetic_v<Args> && k < result.size() ? void(result[k++] = std::is_same_v<Args, int>)
                                                      : void()),
     ...);
    return result;
  }
};

template <auto function>
constexpr Row describe(const char* name, const char* shortName, const char* title, const char* summary) {
  using S = Shape<function>;
  constexpr int inputs = S::template count<const QvArray*>;
  Row r{name,       shortName,
        title,      summary,
        S::call,    S::template count<const QvBars*>,
        inputs,     S::template count<QvArray*>,
        S::numbers, S::integers()};
  if constexpr (inputs == 1) r.inputList = {{{"in", QV_SERIES_CLOSE, 0}}};
  return r;
}

#define ENTRY(function, ...) describe<function>(#function, __VA_ARGS__)
// Of a function whose arguments are not in the common order, by an adapter of the common shape and calling
// convention.
#define ADAPTED(function, adapter, ...) describe<adapter>(#function, __VA_ARGS__)

// ---- Packing ------------------------------------------------------------------------------------

// The parts of all rows of a family one behind the other, without the room that rows leave free.
template <const auto& rows, auto list, auto count>
consteval auto pooled() {
  constexpr auto total = [] {
    std::size_t n = 0;
    for (const Row& row : rows) n += static_cast<std::size_t>(row.*count);
    return n;
  }();
  std::array<typename std::decay_t<decltype(std::declval<Row>().*list)>::value_type, total> pool{};
  std::size_t next = 0;
  for (const Row& row : rows)
    for (std::size_t k = 0; k < static_cast<std::size_t>(row.*count); ++k) pool[next++] = (row.*list)[k];
  return pool;
}

template <const auto& rows>
struct Pools {
  static constexpr auto params = pooled<rows, &Row::paramList, &Row::paramCount>();
  static constexpr auto inputs = pooled<rows, &Row::inputList, &Row::inputCount>();
  static constexpr auto outputs = pooled<rows, &Row::outputList, &Row::outputCount>();
};

// The records of a family's rows.
template <const auto& rows>
consteval auto items(const char* group) {
  std::array<Item, std::size(rows)> result{};
  const QvCatalogueParam* params = Pools<rows>::params.data();
  const QvCatalogueInput* inputs = Pools<rows>::inputs.data();
  const QvCatalogueOutput* outputs = Pools<rows>::outputs.data();
  for (std::size_t k = 0; k < result.size(); ++k) {
    const Row& r = rows[k];
    int flags = r.flags;
    bool signals = true, ahead = true;
    for (int o = 0; o < r.outputCount; ++o) {
      if (!outputs[o].name || outputs[o].name[0] == 0) rowDoesNotFitItsFunction();
      if (outputs[o].repaints) flags |= QV_CALC_WHOLE_SERIES;
      signals = signals && outputs[o].style == QV_STYLE_SIGNAL;
      ahead = ahead && outputs[o].repaints;
    }
    for (int p = 0; p < r.paramCount; ++p)
      if (!params[p].name) rowDoesNotFitItsFunction();
    for (int i = 0; i < r.inputCount; ++i)
      if (!inputs[i].name) rowDoesNotFitItsFunction();
    if (signals) flags |= QV_CALC_SIGNALS;
    if (ahead) flags |= QV_CALC_NO_STREAM;
    if (r.barsCount == 2) flags |= QV_CALC_TWO_BARS;
    result[k] = {{r.name, r.shortName, r.title, group, r.summary, r.origin, r.remark, params, inputs, outputs,
                  r.barsCount, r.inputCount, r.outputCount, r.paramCount, r.main, r.series, flags, 0},
                 r.call,
                 r.firstValid,
                 r.settledAt,
                 r.lateItems};
    params += r.paramCount;
    inputs += r.inputCount;
    outputs += r.outputCount;
  }
  return result;
}

}  // namespace qv::catalogue
