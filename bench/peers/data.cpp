#include "data.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <random>

#include "library.h"

namespace qvpeers {

namespace {

// Enough bars that a window is forgotten before it comes again, and few enough that all of them stay
// in the second-level cache.
constexpr int kFreshBars = 80'000;

int windowsOf(int n) {
  return std::max(1, kFreshBars / n);
}

QvArray* seriesOf(QvBars& bars, int k) {
  QvArray* const series[] = {&bars.date,  &bars.open,   &bars.high,        &bars.low,
                             &bars.close, &bars.volume, &bars.openInterest};
  return series[k];
}

}  // namespace

Block touchedBlock(int n) {
  const std::size_t bytes = (static_cast<std::size_t>(n) * sizeof(double) + 63) / 64 * 64;
  return Block(static_cast<double*>(std::memset(std::aligned_alloc(64, bytes), 0, bytes)));
}

Data::Data(int n_, const std::string& shape_)
    : n(n_), shape(shape_), windows_(windowsOf(n)), stride_((n + 7) / 8 * 8) {
  for (Block& block : series_) block = touchedBlock(windows_ * stride_);
  for (int k = 0; k < 5; ++k) {
    room[k] = touchedBlock(n + 64);
    out[k] = {room[k].get(), n, n, 0};
  }
  peerInts.resize(static_cast<std::size_t>(n) + 64);
  bars.barsize = bars.datasize = n;
  fill();
  show(0);
}

Data::~Data() {
  for (QvCandles& c : candles_) QV_CALL(qvCandleFree, &c);
  for (QvArray& a : wide_) QV_CALL(qvFreeArray, &a);
}

void Data::show(int window) {
  window_ = window;
  const std::ptrdiff_t offset = std::ptrdiff_t{window} * stride_;
  for (int k = 0; k < 7; ++k) *seriesOf(bars, k) = {series_[k].get() + offset, n, n, 0};
  second = {series_[7].get() + offset, n, n, 0};
}

void Data::fill() {
  double *const date = series_[0].get(), *const open = series_[1].get(), *const high = series_[2].get(),
                *const low = series_[3].get(), *const close = series_[4].get(),
                *const volume = series_[5].get(), *const interest = series_[6].get(),
                *const other = series_[7].get();
  std::mt19937_64 random(12345);
  std::normal_distribution<double> normal(0, 1);
  const bool walk = shape == "walk";
  const double drift = shape == "rising" ? 1e-6 : shape == "falling" ? -1e-6 : 0;
  double logClose = std::log(100.0), logOther = logClose;
  for (int i = 0; i < windows_ * stride_; ++i) {
    const double z = normal(random), z2 = normal(random), before = std::exp(logClose);
    logClose += walk ? 0.001 * z : drift;
    logOther += walk ? 0.001 * (0.6 * z + 0.8 * z2) : drift;
    const double c = std::exp(logClose);
    const double o = i == 0 ? c : walk ? before * (1 + 0.0002 * normal(random)) : before;
    date[i] = 30000 + i;
    open[i] = o;
    close[i] = c;
    other[i] = std::exp(logOther);
    high[i] = std::max(o, c) * (1 + (walk ? 0.0005 * std::fabs(normal(random)) : 1e-5));
    low[i] = std::min(o, c) * (1 - (walk ? 0.0005 * std::fabs(normal(random)) : 1e-5));
    volume[i] = walk ? 1e5 * std::exp(0.5 * normal(random)) : 1e5 + (i % 7) * 100;
    interest[i] = 1000 + i % 11;
  }
}

QvCandles* Data::candles() {
  if (candles_.empty()) {  // of all windows at once, so that no timed call builds them
    const int present = window_;
    candles_.resize(static_cast<std::size_t>(windows_));
    for (int k = 0; k < windows_; ++k) {
      show(k);
      QV_CALL(qvCandleConstruct, &bars, &candles_[static_cast<std::size_t>(k)]);
    }
    show(present);
  }
  return &candles_[static_cast<std::size_t>(window_)];
}

QvArray* Data::wideOut(int k, int room) {
  if (wide_[k].capacity < n + room) {
    QV_CALL(qvFreeArray, &wide_[k]);
    QV_CALL(qvAllocArray, &wide_[k], n + room);
  }
  return &wide_[k];
}

Data& dataOf(int n, const std::string& shape) {
  static std::map<std::pair<int, std::string>, std::unique_ptr<Data>> small;
  static std::unique_ptr<Data> large;
  if (n <= 200'000) {
    auto& data = small[{n, shape}];
    if (!data) data = std::make_unique<Data>(n, shape);
    return *data;
  }
  if (!large || large->n != n || large->shape != shape) {
    large.reset();
    large = std::make_unique<Data>(n, shape);
  }
  return *large;
}

}  // namespace qvpeers
