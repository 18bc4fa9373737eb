// What a calculation's cost depends on: the period, and the shape of the data.
#include <algorithm>
#include <cstdio>

#include "program.h"
#include "timing.h"

namespace qvpeers {

namespace {

constexpr double kTooMuch = 1.5;  // ratio above which a row is counted

double secondsOf(const Row& row, int n, int period) {
  Data& d = dataOf(n, "walk");
  if (!works(row, d, period)) return -1.0;
  const double begin = now();
  row.library(d, period);
  return (now() - begin) / 1e9;
}

// Cost at each of the periods, ns per bar.
std::vector<double> byPeriod(const Row& row, int n) {
  Data& d = dataOf(n, "walk");
  std::vector<Contender> contenders;
  for (const int p : options.costPeriods) contenders.push_back({[&row, &d, p] { row.library(d, p); }, &d});
  return interleave(contenders, n, options.rounds, options.budget).best;
}

// Cost on each shape.
std::vector<double> byShape(const Row& row, int n) {
  std::vector<Contender> contenders;
  for (const std::string& shape : kShapes) {
    Data& d = dataOf(n, shape);
    if (row.flags & kCount) d.candles();
    contenders.push_back({[&row, &d] { row.library(d, 200); }, &d});
  }
  return interleave(contenders, n, options.rounds, options.budget).best;
}

}  // namespace

void measureCosts(const std::vector<Row>& rows) {
  const int longest = *std::max_element(options.costPeriods.begin(), options.costPeriods.end());
  const int n = std::max(options.costBars, 5 * longest);
  std::printf(
      "\nCosts, library alone, n=%d: ns/bar by period on the random walk, the last over the first; then the "
      "slowest shape over "
      "the random walk at p=200\n%-30s",
      n, "function");
  for (const int p : options.costPeriods) std::printf(" %10s", ("p=" + std::to_string(p)).c_str());
  std::printf(" %8s %8s\n", "ratio", "shape");
  int steep = 0, shaped = 0, count = 0;
  for (const Row& row : rows) {
    if (!chosen(row.name, row.functions) || !present(row.functions) || (!row.hasPeer() && !options.extra))
      continue;
    running(row.functions + ", costs");
    const double probe = secondsOf(row, 5000, 200);
    if (probe < 0) continue;
    if (probe * longest / 200 * n / 5000 > options.cap &&
        secondsOf(row, 5 * longest, longest) * n / (5 * longest) > options.cap) {
      std::printf("%-30s too slow at p=%d: one call takes more than %.0f s\n", row.name.c_str(), longest,
                  options.cap);
      continue;
    }
    std::printf("%-30s", row.name.c_str());
    double ratio = 1;
    if (row.flags & kPeriod) {
      const std::vector<double> cost = byPeriod(row, n);
      for (const double ns : cost) std::printf(" %10.2f", ns);
      ratio = cost.back() / cost.front();
      std::printf(" %8.2f", ratio);
    } else {
      std::printf(" %*s", static_cast<int>(options.costPeriods.size()) * 11 + 8, "-");
    }
    const std::vector<double> shape = byShape(row, n);
    const auto worst = std::max_element(shape.begin() + 1, shape.end());
    std::printf(" %8.2f %s\n", *worst / shape[0],
                kShapes[static_cast<std::size_t>(worst - shape.begin())].c_str());
    std::fflush(stdout);
    ++count;
    steep += ratio > kTooMuch;
    shaped += *worst / shape[0] > kTooMuch;
  }
  std::printf(
      "%d of %d rows cost more than %.1f times as much at the last period as at the first; %d on another "
      "shape than on the "
      "random walk\n",
      steep, count, kTooMuch, shaped);
}

}  // namespace qvpeers
