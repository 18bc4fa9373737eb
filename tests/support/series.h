// Series and bar sets that free themselves, and data of many shapes.
#pragma once

#include <cmath>
#include <initializer_list>
#include <limits>
#include <random>
#include <vector>

#include "qvlib60.hpp"

namespace qvtest {

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInf = std::numeric_limits<double>::infinity();

using Items = std::vector<double>;

inline Items itemsOf(const QvArray& a) {
  return a.data ? Items(a.data, a.data + a.size) : Items{};
}

struct Array : qv::Series {
  Array() = default;
  explicit Array(const Items& items, int first = 0) : qv::Series(std::span(items), first) {}
  Array(std::initializer_list<double> items) : qv::Series(items) {}

  double operator[](int i) const { return i >= 0 && i < size ? data[i] : kNaN; }
  // Emptied, to serve as the output of a longer calculation.
  Array* fresh() { return reset(), this; }
  Items items() const { return itemsOf(*this); }
  // An allocated block full of `value`, as a caller's used output would be.
  static void fill(QvArray& a, int capacity, double value) {
    qvAllocArray(&a, capacity);
    for (int i = 0; i < capacity; ++i) a.data[i] = value;
  }
};

struct Bar {
  double open, high, low, close, volume = 0, openInterest = 0, date = 0;
};

struct Bars : qv::Bars {
  Bars() = default;
  explicit Bars(const std::vector<Bar>& bars) : qv::Bars(static_cast<int>(bars.size())) {
    constexpr double Bar::*kFields[] = {&Bar::date,  &Bar::open,   &Bar::high,        &Bar::low,
                                        &Bar::close, &Bar::volume, &Bar::openInterest};
    for (int k = 0; k < qv::kBarSeries; ++k)
      for (int i = 0; const Bar& b : bars) (this->*qv::kSeriesOfBars[k]).data[i++] = b.*kFields[k];
  }
  Bars(std::initializer_list<Bar> bars) : Bars(std::vector<Bar>(bars)) {}
};

// Bars that trade at their close only, with what else is given.
inline std::vector<Bar> closingAt(const Items& closes, const Items& volumes = {}, const Items& dates = {}) {
  std::vector<Bar> bars;
  for (std::size_t i = 0; i < closes.size(); ++i)
    bars.push_back({closes[i], closes[i], closes[i], closes[i], volumes.empty() ? 0 : volumes[i], 0,
                    dates.empty() ? 0 : dates[i]});
  return bars;
}

// Wilder's smoothing item by item: the mean of the first p items, of which each further one is one p-th.
struct WilderMean {
  int p;
  double mean = 0;
  int count = 0;
  void add(double x) { mean = ++count <= p ? mean + x / p : (mean * (p - 1) + x) / p; }
};

// Shapes that break careless kernels, in the order of `ofShapes`.
enum class Shape { Walk, Flat, Integers, Offset, Rising, Falling, Zeros, NaNs };
inline constexpr Shape kShapes[] = {Shape::Walk,   Shape::Flat,    Shape::Integers, Shape::Offset,
                                    Shape::Rising, Shape::Falling, Shape::Zeros,    Shape::NaNs};

inline Items shaped(Shape shape, int n, unsigned seed = 1) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  Items items(static_cast<std::size_t>(n));
  double walk = 100.0;
  for (int i = 0; i < n; ++i) {
    const double u = unit(random);
    walk += u;
    const double ofShapes[] = {walk,
                               42.125,
                               std::floor(4 * u),  // many ties
                               1e8 + 0.01 * std::floor(10 * u),
                               1.0 + i,
                               2.0 * n - i,
                               u < 0 ? 0.0 : walk,
                               u > 0.9 ? kNaN : walk};
    items[static_cast<std::size_t>(i)] = ofShapes[static_cast<std::size_t>(shape)];
  }
  return items;
}

// Daily bars around a walk, on consistent prices (low <= open, close <= high), dated on weekdays.
inline std::vector<Bar> walkBars(int n, unsigned seed = 1) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  std::vector<Bar> bars(static_cast<std::size_t>(n));
  double close = 100.0, date = 36526.0;  // Saturday, 1 January 2000
  for (Bar& b : bars) {
    do date += 1.0;
    while (qvDayOfWeek(date) > 4);
    b.date = date;
    b.open = close + unit(random) - 0.5;
    close = std::max(1.0, b.open + 2 * unit(random) - 1.0);
    b.close = close;
    b.high = std::max(b.open, b.close) + unit(random);
    b.low = std::min(b.open, b.close) - unit(random);
    b.volume = std::floor(1000 + 9000 * unit(random));
    b.openInterest = std::floor(500 + 1000 * unit(random));
  }
  return bars;
}

}  // namespace qvtest
