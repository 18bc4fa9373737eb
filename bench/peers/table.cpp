// The table: library and peers at each number of bars, shape and period.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "program.h"
#include "timing.h"

namespace qvpeers {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// The bars of a cell: n, or fewer when one call of the library on n bars would pass the cap.
int affordable(const Row& row, int n, int period, const std::string& shape) {
  const int probe = std::max(5000, 4 * period);
  if (n <= 4 * probe) return n;
  Data& d = dataOf(probe, shape);
  const double begin = now();
  row.library(d, period);
  return (now() - begin) / 1e9 * n / probe <= options.cap ? n : probe;
}

Cell measure(const Row& row, int n, int period, const std::string& shape, int ran) {
  Data& d = dataOf(ran, shape);
  std::vector<Contender> contenders;
  for (const Call* call : {&row.library, &row.taLib, &row.tulip})
    if (*call) contenders.push_back({[&d, period, call] { (*call)(d, period); }, &d});
  const Timings t = interleave(contenders, ran, options.rounds, options.budget, true);

  Cell cell{&row,  row.flags & kPeriod ? period : 0,  n,   shape,      t.best[0], kNone, kNone, kNone,
            kNone, static_cast<int>(t.rounds.size()), ran, t.disturbed};
  std::size_t k = 1;
  if (row.taLib) cell.taLib = t.best[k++];
  if (row.tulip) cell.tulip = t.best[k++];
  if (row.hasPeer()) {
    const std::size_t best = k == 3 && t.best[2] < t.best[1] ? 2 : 1;
    cell.ratio = t.best[best] / cell.library;
    std::vector<double> each;
    for (const auto& round : t.rounds) each.push_back(round[best] / round[0]);
    cell.median = median(std::move(each));
  }
  return cell;
}

std::string number(double x) {
  if (std::isnan(x)) return "-";
  char text[32];
  std::snprintf(text, sizeof text, x < 0.1 ? "%.3f" : "%.2f", x);
  return text;
}

void print(const Cell& cell) {
  const std::string name = cell.row->name + (cell.row->flags & kDiffers ? " ~" : "");
  std::printf("%-30s %6s %8d %-9s %9s %9s %9s %7s %7s %4d", name.c_str(),
              cell.period ? std::to_string(cell.period).c_str() : "-", cell.n, cell.shape.c_str(),
              number(cell.library).c_str(), number(cell.taLib).c_str(), number(cell.tulip).c_str(),
              number(cell.ratio).c_str(), number(cell.median).c_str(), cell.rounds);
  if (cell.ranBars != cell.n) std::printf(" on %d bars", cell.ranBars);
  if (cell.disturbed) std::printf(" disturbed");
  std::puts("");
  std::fflush(stdout);
}

bool belongs(const Row& row, const std::string& shape, bool peers) {
  return row.hasPeer() == peers && (peers || options.extra) && !row.is(kScaling) &&
         (shape == "walk" || row.is(kWindow)) && chosen(row.name, row.functions) && present(row.functions);
}

// The periods that the series is long enough for; one where the row has none.
std::vector<int> periodsOf(const Row& row, int n) {
  if (!(row.flags & kPeriod)) return {options.periods[0]};
  std::vector<int> fitting = options.periods;
  std::erase_if(fitting, [n](int p) { return 4 * p + 10 > n; });
  return fitting;
}

}  // namespace

bool works(const Row& row, Data& d, int period) {
  const bool filled = !row.is(kZeroIsFine);
  if (filled) std::memset(d.out[0].data, 0, static_cast<std::size_t>(d.n) * sizeof(double));
  const int status = row.library(d, period);
  if (status < 0 || (status > 0 && !row.is(kCount))) {
    findings.failed.insert(row.functions + " returned " + std::to_string(status));
    return false;
  }
  if (!filled || d.shape != "walk") return true;
  const double* end = d.out[0].data + d.n;
  if (std::any_of(end - d.n / 2, end, [](double x) { return x != 0; })) return true;
  findings.failed.insert(row.functions + " wrote nothing but zeros");
  return false;
}

std::vector<Cell> measureTable(const std::vector<Row>& rows) {
  std::printf("\n%-30s %6s %8s %-9s %9s %9s %9s %7s %7s %4s\n", "function", "period", "n", "shape", "library",
              "TA-Lib", "Tulip", "ratio", "median", "runs");
  std::vector<Cell> cells;
  for (const int n : options.bars)
    for (const std::string& shape : options.shapes)
      for (const bool peers : {true, false})
        for (const Row& row : rows) {
          if (!belongs(row, shape, peers)) continue;
          for (const int p : periodsOf(row, n)) {
            running(row.name + " p=" + std::to_string(p) + " n=" + std::to_string(n) + " " + shape);
            const int ran = affordable(row, n, p, shape);
            if (!works(row, dataOf(ran, shape), p)) continue;
            cells.push_back(measure(row, n, p, shape, ran));
            print(cells.back());
          }
        }
  const auto disturbed = [](const Cell& cell) { return cell.disturbed; };
  if (std::any_of(cells.begin(), cells.end(), disturbed)) std::puts("\nOnce more, what had no quiet round:");
  for (Cell& cell : cells) {
    if (!cell.disturbed) continue;
    const int period = cell.period ? cell.period : options.periods[0];
    cell = measure(*cell.row, cell.n, period, cell.shape, cell.ranBars);
    print(cell);
  }
  return cells;
}

}  // namespace qvpeers
