// A row of the table: what it tells of its calculation, and the shape of the call. Rows exist while compiling
// only.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "catalogue/item.h"
#include "qvlib60/codes.h"

namespace qv::catalogue {

// ---- Parts -----------------------------------------------------------------------------

struct Output : QvCatalogueOutput {
  template <typename T>
  constexpr Output with(T QvCatalogueOutput::*field, T value) const {
    Output o = *this;
    o.*field = value;
    return o;
  }
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
};

constexpr Output over(const char* name = "value") {
  return Output{{name, 0, 0, {0, 0}, 0, QV_PLACE_PRICE, QV_STYLE_LINE, 0}};
}
constexpr Output panel(const char* name = "value") {
  return Output{{name, 0, 0, {0, 0}, 0, QV_PLACE_PANEL, QV_STYLE_LINE, 0}};
}
constexpr Output state(const char* name) {
  return Output{{name, -1, 1, {0, 0}, 0, QV_PLACE_PRICE, QV_STYLE_STATE, 0}};
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
  std::array<bool, kMostParams> isInteger{};
  std::array<QvCatalogueParam, kMostParams> paramList{};
  std::array<QvCatalogueInput, kMostInputs> inputList{};
  std::array<QvCatalogueOutput, kMostOutputs> outputList{};
  const char *origin = "", *remark = "";
  int series = 0, flags = 0, main = 0, lateItems = 0;
  FirstValid firstValid = [](const Valid& v) noexcept { return v.start; };
  Settled settledAt = nullptr;

  template <typename T>
  constexpr Row with(T Row::*field, T value) const {
    Row r = *this;
    r.*field = value;
    return r;
  }
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
  constexpr Row takes(std::array<QvCatalogueInput, kMostInputs> list) const {
    return with(&Row::inputList, list);
  }
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

  constexpr Row settles(Settled s) const {
    return with(&Row::settledAt, s).with(&Row::flags, flags | QV_CALC_RECURSIVE);
  }
  constexpr Row neverSettles() const {
    return settles([](const History&) noexcept { return History::kNever; });
  }
  // A window whose first items hold 0.0 at and after the first valid index.
  constexpr Row beginsLater(int bars) const { return with(&Row::lateItems, bars); }
};

}  // namespace qv::catalogue
