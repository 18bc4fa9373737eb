// The text chart of point-and-figure columns.
#include <cmath>

#include "core/calculation.h"
#include "core/numbers.h"
#include "core/output_file.h"
#include "core/stretch.h"
#include "qvlib60/core/arrays.h"
#include "qvlib60/pnf.h"

namespace {

// More rows than anybody reads: a box that is too small for the prices is refused.
constexpr double kMostRows = 100'000;

qv::StretchStats statsOfAll(const QvArray& a, int n) noexcept {
  return qv::statsOf(a.data, qv::stretchOf(0, n - 1, {&a}), false);
}

}  // namespace

extern "C" {

int QVCALL qvPNFchart(const QvBars* columns, double box, const char* file, int append) noexcept {
  const int n = qv::prepareOutputs({{columns, qv::kHighLow | qv::kOpenInterest}}, {}, {});
  if (n < 1) return n;
  if (!file || !(box > 0)) return QV_INVALID_PARM;

  const qv::StretchStats highs = statsOfAll(columns->high, n), lows = statsOfAll(columns->low, n);
  if (!highs.count || !lows.count) return QV_INVALID_PARM;
  const double margin = box / 10;
  const double highest = highs.maximum + margin, lowest = lows.minimum;
  const double top = highest - std::fmod(highest, box);
  const double bottom = lowest - std::fmod(lowest, box) - margin;
  const double rows = std::floor((top - bottom) / box) + 1;
  if (!(rows <= kMostRows)) return QV_INVALID_PARM;

  const qv::OutputFile out(file, append != 0, qv::StdoutName::kFile);
  if (!out.ok()) return QV_FILE_OPEN;
  const double *high = columns->high.data, *low = columns->low.data, *direction = columns->openInterest.data;
  for (int row = 0; row < rows; ++row) {
    const double level = top - row * box;
    std::fprintf(out.stream(), "\n%5lli.%03i ", static_cast<long long>(qv::truncatedInt64(level)),
                 qvDecimals(level, 3));
    for (int c = 0; c < n; ++c) {
      const bool reached = level >= low[c] - margin && level <= high[c] + margin;
      std::fputc(!reached ? ' ' : direction[c] > 0 ? 'X' : 'O', out.stream());
    }
  }
  return QV_OK;
}

}  // extern "C"
