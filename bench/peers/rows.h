// The rows of the comparison: a calculation of the library and the same of the peers.
#pragma once

#include <ta_libc.h>

#include <functional>
#include <string>
#include <vector>

#include "data.h"
#include "library.h"

namespace qvpeers {

enum RowFlags {
  kFixed = 0,        // no period
  kPeriod = 1,       // measured at each period
  kWindow = 3,       // with a period; the cost may depend on it and on the data's shape
  kDiffers = 4,      // not the same work as the peers', marked ~
  kCount = 8,        // answers a count: above 0 is no failure
  kZeroIsFine = 16,  // the first output may be zero throughout
  kAside = 32,       // not in the means
  kScaling = 64      // only in the table of costs by period and shape
};

using Call = std::function<int(Data&, int period)>;

struct Row {
  std::string name;
  std::string functions;  // of the library, with commas
  int flags;
  Call library, taLib, tulip;  // the peers' may be empty
  std::string note;

  bool hasPeer() const { return taLib || tulip; }
  bool is(int flag) const { return (flags & flag) == flag; }
};

std::vector<Row> averageRows();
std::vector<Row> oscillatorRows();
std::vector<Row> trendRows();
std::vector<Row> volumeRows();
std::vector<Row> priceRows();
std::vector<Row> candleRows();
std::vector<Row> libraryRows();

inline int half(int p) {
  return p / 2 > 2 ? p / 2 : 2;
}
inline int quarter(int p) {
  return p / 4 > 2 ? p / 4 : 2;
}

// Calls a function of Tulip Indicators over the first n bars; its outputs begin with the peers' output
// `firstOut`.
template <typename Function>
int callTulip(Function function, Data& d, int n, std::initializer_list<const double*> in,
              std::initializer_list<double> options, int firstOut = 0) {
  const double* ins[6] = {};
  double values[6] = {};
  double* outs[3];
  int k = 0;
  for (const double* series : in) ins[k++] = series;
  k = 0;
  for (const double value : options) values[k++] = value;
  for (int i = 0; i < 3; ++i) outs[i] = d.room[(firstOut + i) % 4].get();
  return function(n, ins, values, outs);
}

}  // namespace qvpeers

// What a row is written with. In the library's words:
#define LIBRARY(f, ...) [](Data& d, [[maybe_unused]] int p) -> int { return QV_CALL(f, __VA_ARGS__); }
#define BARS &d.bars
#define CLOSE &d.bars.close
#define VOLUME &d.bars.volume
#define OUT &d.out[0]
#define OUT2 &d.out[0], &d.out[1]
#define OUT3 &d.out[0], &d.out[1], &d.out[2]
// In the peers': one or several TA_ calls joined by |, or one Tulip function.
#define TALIB(...)                             \
  [](Data& d, [[maybe_unused]] int p) -> int { \
    int begin_, count_;                        \
    return static_cast<int>(__VA_ARGS__);      \
  }
#define TULIP(f, ...) [](Data& d, [[maybe_unused]] int p) -> int { return callTulip(f, d, d.n, __VA_ARGS__); }
#define TULIPS(...) [](Data& d, [[maybe_unused]] int p) -> int { return __VA_ARGS__; }
#define ALL 0, d.n - 1
#define SPAN &begin_, &count_
#define PERIOD static_cast<double>(p)
#define OPENS d.bars.open.data
#define HIGHS d.bars.high.data
#define LOWS d.bars.low.data
#define CLOSES d.bars.close.data
#define SECOND d.second.data
#define VOLUMES d.bars.volume.data
#define TO(k) d.room[k].get()
