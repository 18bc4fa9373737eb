// How the table of calculations is written. A family's source lists rows made by ENTRY; the shape of a
// call is read off the function's own type, so a row cannot disagree with its function. Rows exist while
// compiling only: family() packs them into the constant records that callers see.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <type_traits>

#include "catalogue/history.h"
#include "core/calculation.h"
#include "core/numbers.h"
#include "qvlib60/catalogue.h"
#include "qvlib60/indicators.h"
#include "qvlib60/patterns.h"

namespace qv::catalogue {

// ---- What the library keeps of an entry ---------------------------------------------------------

using Call = int (*)(const QvBars* const* bars, const QvArray* const* inputs, QvArray* const* outputs,
                     const double* numbers, int start) noexcept;

// Where the values of one output begin: numbers are read as the calculation reads them.
struct Valid : Numbers {
  std::int64_t start;
  int output;
};
using FirstValid = std::int64_t (*)(const Valid&) noexcept;
// The bars that a zero-lag average looks back, and where the average of a method code begins.
inline std::int64_t lagOf(double period) noexcept {
  return truncatedInt(std::max(1.0, (period - 1) / 2));
}
inline std::int64_t averageBegins(std::int64_t method, std::int64_t period) noexcept {
  switch (method) {
    case QV_MA_EXPONENTIAL:
      return 0;
    case QV_MA_VARIABLE:
      return 22;
    case QV_MA_ZERO_LAG:
      return lagOf(static_cast<double>(period)) - 1;
    default:
      return period - 1;
  }
}

// The index, counted from where the data begin, from which on the values have forgotten that.
using Settled = std::int64_t (*)(const History&) noexcept;

// Of the difference of two averages, parameters 0 and 1, by the method of parameter 2: it is a small part of
// a price.
inline std::int64_t pairSettles(const History& h) noexcept {
  return History::latest(h.average(h[2], h[0], 10), h.average(h[2], h[1], 10));
}
inline std::int64_t pairBegins(const Valid& v) noexcept {
  const std::int64_t first = std::max(averageBegins(v[2], v[0]), averageBegins(v[2], v[1]));
  return v.start + std::max({v[0] - 1, v[1] - 1, first});
}

struct Item {
  QvCatalogueEntry entry;
  Call call;
  FirstValid firstValid;  // null: the calculation sets none
  Settled settled;        // null: a calculation over a window
};

struct Family {
  const Item* items;
  int count;
};

// ---- Parts of a row -----------------------------------------------------------------------------

struct Output : QvCatalogueOutput {
  constexpr Output range(double from, double to) const {
    return with(&Output::low, from).with(&Output::high, to);
  }
  constexpr Output zone(double at) const {
    Output o = *this;
    o.zones[o.zoneCount++] = at;
    return o;
  }
  constexpr Output histogram() const { return with(&Output::style, int32_t{QV_STYLE_HISTOGRAM}); }
  constexpr Output dots() const { return with(&Output::style, int32_t{QV_STYLE_DOTS}); }
  constexpr Output band() const { return with(&Output::style, int32_t{QV_STYLE_BAND}); }
  constexpr Output seesAhead() const { return with(&Output::repaints, 1); }

 private:
  template <typename T>
  constexpr Output with(T QvCatalogueOutput::*field, T value) const {
    Output o = *this;
    o.*field = value;
    return o;
  }
};

constexpr Output over(const char* name = "value") {
  return Output{{name, 0, 0, {0, 0}, 0, QV_PLACE_PRICE, QV_STYLE_LINE, 0}};
}
constexpr Output panel(const char* name = "value") {
  return Output{{name, 0, 0, {0, 0}, 0, QV_PLACE_PANEL, QV_STYLE_LINE, 0}};
}
constexpr Output signal(const char* name = "value") {
  return Output{{name, -1, 1, {0, 0}, 0, QV_PLACE_PRICE, QV_STYLE_SIGNAL, 0}};
}

// Unless a row says otherwise a search goes from half the default to its double.
constexpr QvCatalogueParam real(const char* name, double usual, double least, double greatest) {
  const double from = usual / 2 < least ? least : usual / 2, to = usual * 2 > greatest ? greatest : usual * 2;
  return {name, nullptr, usual, least, greatest, from, to, usual / 4, QV_PARAM_REAL, 0, 0, 0};
}
constexpr QvCatalogueParam integer(const char* name, int usual, int least, int greatest) {
  const int from = usual / 2 < least ? least : usual / 2, to = usual * 2 > greatest ? greatest : usual * 2;
  const double step = from == to ? 0 : usual < 15 ? 1 : usual / 10;
  return {name,
          nullptr,
          double(usual),
          double(least),
          double(greatest),
          double(from),
          double(to),
          step,
          QV_PARAM_INTEGER,
          0,
          0,
          0};
}
constexpr QvCatalogueParam period(const char* name, int usual, int least = 1, int greatest = 1000) {
  QvCatalogueParam p = integer(name, usual, least, greatest);
  p.kind = QV_PARAM_PERIOD;
  return p;
}
constexpr QvCatalogueParam date(const char* name) {
  return {name, nullptr, 0, 0, 100000, 0, 0, 0, QV_PARAM_DATE, 0, 0, 0};  // into the year 2173
}
template <std::size_t count>
constexpr QvCatalogueParam choice(const char* name, const std::array<const char*, count>& names, int usual) {
  return {name,
          names.data(),
          double(usual),
          0,
          double(count - 1),
          double(usual),
          double(usual),
          0,
          QV_PARAM_CHOICE,
          0,
          int{count},
          0};
}

inline constexpr std::array kMethodNames = {"exponential", "least squares", "simple",   "weighted",
                                            "wilder",      "triangular",    "variable", "zero lag"};
constexpr QvCatalogueParam method(int usual = QV_MA_SIMPLE) {
  QvCatalogueParam p = choice("method", kMethodNames, usual);
  p.kind = QV_PARAM_METHOD;
  return p;
}

inline constexpr std::array kOffOn = {"off", "on"};

// ---- A row --------------------------------------------------------------------------------------

// Not constant, so that a row which does not fit its function does not compile.
void rowDoesNotFitItsFunction();

struct Row {
  const char *name, *shortName, *title, *summary;
  Call call;
  int barsCount, inputCount, outputCount, paramCount;
  std::array<bool, 5> isInteger{};
  std::array<QvCatalogueParam, 5> paramList{};
  std::array<QvCatalogueInput, 4> inputList{};
  std::array<QvCatalogueOutput, 5> outputList{};
  const char *origin = "", *remark = "";
  int series = 0, flags = 0, main = 0;
  FirstValid firstValid = [](const Valid& v) noexcept { return v.start; };
  Settled settledAt = nullptr;

  template <typename... Params>
  constexpr Row params(const Params&... list) const {
    if (sizeof...(list) != static_cast<std::size_t>(paramCount)) rowDoesNotFitItsFunction();
    Row r = *this;
    r.paramList = {list...};
    for (std::size_t k = 0; k < sizeof...(list); ++k) {
      QvCatalogueParam& p = r.paramList[k];
      p.isInteger = isInteger[k];
      const bool mayBeReal = p.kind == QV_PARAM_REAL || p.kind == QV_PARAM_DATE || p.kind == QV_PARAM_PERIOD;
      if (!p.isInteger && !mayBeReal) rowDoesNotFitItsFunction();
    }
    return r;
  }
  template <typename... Outputs>
  constexpr Row gives(const Outputs&... list) const {
    if (sizeof...(list) != static_cast<std::size_t>(outputCount)) rowDoesNotFitItsFunction();
    Row r = *this;
    r.outputList = {list...};
    return r;
  }
  constexpr Row takes(std::array<QvCatalogueInput, 4> list) const { return with(&Row::inputList, list); }
  constexpr Row reads(unsigned mask) const { return with(&Row::series, static_cast<int>(mask)); }
  constexpr Row mainly(int output) const { return with(&Row::main, output); }
  constexpr Row source(const char* text) const { return with(&Row::origin, text); }
  constexpr Row note(const char* text) const { return with(&Row::remark, text); }
  constexpr Row inPlace() const { return with(&Row::flags, flags | QV_CALC_IN_PLACE); }

  // The first valid index: start plus a constant plus the parameters of these positions.
  template <int constant, int... positions>
  constexpr Row valid() const {
    return valid([](const Valid& v) noexcept { return ((v.start + constant) + ... + v[positions]); });
  }
  constexpr Row valid(FirstValid f) const { return with(&Row::firstValid, f); }
  constexpr Row setsNoFirstValid() const { return with(&Row::firstValid, FirstValid{nullptr}); }

  constexpr Row settles(Settled s) const { return with(&Row::settledAt, s); }
  constexpr Row neverSettles() const {
    return settles([](const History&) noexcept { return History::kNever; });
  }

 private:
  template <typename T>
  constexpr Row with(T Row::*field, T value) const {
    Row r = *this;
    r.*field = value;
    return r;
  }
};

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

  static constexpr std::array<bool, 5> integers() {
    std::array<bool, 5> result{};
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
// Of a function whose arguments are not in the common order, by an adapter of the common shape.
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
    bool signals = true;
    for (int o = 0; o < r.outputCount; ++o) {
      if (!outputs[o].name || outputs[o].name[0] == 0) rowDoesNotFitItsFunction();
      if (outputs[o].repaints) flags |= QV_CALC_WHOLE_SERIES;
      signals = signals && outputs[o].style == QV_STYLE_SIGNAL;
    }
    for (int p = 0; p < r.paramCount; ++p)
      if (!params[p].name) rowDoesNotFitItsFunction();
    for (int i = 0; i < r.inputCount; ++i)
      if (!inputs[i].name) rowDoesNotFitItsFunction();
    if (signals) flags |= QV_CALC_SIGNALS;
    if (r.settledAt) flags |= QV_CALC_RECURSIVE;
    if (r.barsCount == 2) flags |= QV_CALC_TWO_BARS;
    result[k] = {{r.name, r.shortName, r.title, group, r.summary, r.origin, r.remark, params, inputs, outputs,
                  r.barsCount, r.inputCount, r.outputCount, r.paramCount, r.main, r.series, flags, 0},
                 r.call,
                 r.firstValid,
                 r.settledAt};
    params += r.paramCount;
    inputs += r.inputCount;
    outputs += r.outputCount;
  }
  return result;
}

extern const Family averages, bands, barShape, breadth, counting, momentum, patterns, range,
    relativeVolatility, sentiment, statistics, stochastics, transforms, trend, volume;

}  // namespace qv::catalogue
