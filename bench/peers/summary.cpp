// What a whole run comes to: geometric means, the figures behind the peers, and the cells as a file.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "program.h"

namespace qvpeers {

namespace {

constexpr double kFarBehind = 0.85;

bool counts(const Cell& cell) {
  return !std::isnan(cell.ratio) && !(cell.row->flags & kAside);
}

void printMean(const std::string& shape, int n, int period, const std::vector<const Cell*>& cells) {
  double all = 0, same = 0;
  int sameWork = 0, behind = 0, far = 0;
  for (const Cell* cell : cells) {
    all += std::log(cell->ratio);
    behind += cell->ratio < 1;
    far += cell->ratio < kFarBehind;
    if (cell->row->flags & kDiffers) continue;
    same += std::log(cell->ratio);
    ++sameWork;
  }
  if (cells.empty()) return;
  std::printf(
      "geomean %-8s n=%-7d p=%-4d %7.3f over %zu rows, %7.3f over the %d of the same work; below 1.0: %d, "
      "below "
      "%.2f: %d\n",
      shape.c_str(), n, period, std::exp(all / static_cast<double>(cells.size())), cells.size(),
      std::exp(same / std::max(sameWork, 1)), sameWork, behind, kFarBehind, far);
}

// Every figure below 1.0 on the random walk, the worst first, and on the other shapes the worst five rows.
void printBehind(const std::vector<Cell>& cells) {
  std::vector<const Cell*> walk, others;
  for (const Cell& cell : cells)
    if (counts(cell) && cell.ratio < 1) (cell.shape == "walk" ? walk : others).push_back(&cell);
  const auto worse = [](const Cell* a, const Cell* b) { return a->ratio < b->ratio; };
  std::sort(walk.begin(), walk.end(), worse);
  std::sort(others.begin(), others.end(), worse);
  const auto print = [](const Cell* cell) {
    std::printf("  %.3f %s p=%d n=%d %s%s\n", cell->ratio, cell->row->name.c_str(), cell->period, cell->n,
                cell->shape.c_str(), cell->disturbed ? " (disturbed)" : "");
  };
  const auto figures =
      std::count_if(cells.begin(), cells.end(), [](const Cell& c) { return counts(c) && c.shape == "walk"; });
  const auto far =
      std::count_if(walk.begin(), walk.end(), [](const Cell* c) { return c->ratio < kFarBehind; });
  std::printf("random walk: of %td figures %zu are below 1.0, %td of them below %.2f\n", figures, walk.size(),
              far, kFarBehind);
  std::for_each(walk.begin(), walk.end(), print);
  if (others.empty()) return;
  std::printf("other shapes: %zu figures below 1.0; the worst rows:\n", others.size());
  std::set<const Row*> seen;
  for (const Cell* cell : others)
    if (seen.size() < 5 && seen.insert(cell->row).second) print(cell);
}

}  // namespace

void printSummary(const std::vector<Row>& rows, const std::vector<Cell>& cells) {
  std::puts(
      "\nSummary: ratio = better peer / library, geometric means; rows without a period count at every "
      "period; ~ rows "
      "do other work than the peers");
  for (const std::string& shape : options.shapes)
    for (const int n : options.bars)
      for (const int p : options.periods) {
        std::vector<const Cell*> matching;
        for (const Cell& cell : cells)
          if (counts(cell) && cell.shape == shape && cell.n == n && (cell.period == p || cell.period == 0))
            matching.push_back(&cell);
        printMean(shape, n, p, matching);
      }
  printBehind(cells);

  std::set<const Row*> measured;
  for (const Cell& cell : cells) measured.insert(cell.row);
  const auto lacking = std::count_if(rows.begin(), rows.end(), [&](const Row& row) {
    return row.hasPeer() && chosen(row.name, row.functions) && !measured.contains(&row);
  });
  std::printf("rows not measured: %td; cells without a quiet round: %td\n", lacking,
              std::count_if(cells.begin(), cells.end(), [](const Cell& cell) { return cell.disturbed; }));

  std::puts("notes (~ = not the same work):");
  for (const Row& row : rows)
    if (measured.contains(&row) && !row.note.empty())
      std::printf("  %-30s %s\n", (row.name + (row.flags & kDiffers ? " ~" : "")).c_str(), row.note.c_str());
}

void writeTsv(const std::vector<Cell>& cells) {
  std::FILE* file = std::fopen(options.tsv.c_str(), "w");
  if (!file) {
    std::perror(options.tsv.c_str());
    return;
  }
  std::fputs("function\tperiod\tn\tshape\tlibrary\ttalib\ttulip\tratio\tmedian\tran_n\tsame_work\tquiet\n",
             file);
  for (const Cell& c : cells)
    std::fprintf(file, "%s\t%d\t%d\t%s\t%.4f\t%.4f\t%.4f\t%.4f\t%.4f\t%d\t%d\t%d\n", c.row->name.c_str(),
                 c.period, c.n, c.shape.c_str(), c.library, c.taLib, c.tulip, c.ratio, c.median, c.ranBars,
                 !(c.row->flags & kDiffers), !c.disturbed);
  std::fclose(file);
}

// The random walk as the table of docs/performance.md: a line per row and period, the time and, against the
// better peer, the ratio.
void writeMarkdown(const std::vector<Cell>& cells) {
  std::FILE* file = std::fopen(options.markdown.c_str(), "w");
  if (!file) {
    std::perror(options.markdown.c_str());
    return;
  }
  std::fputs("| row | p |", file);
  for (const int n : options.bars) std::fprintf(file, " n = %d: ns | ratio |", n);
  std::fputs("\n|---|---|", file);
  for (std::size_t k = 0; k < options.bars.size(); ++k) std::fputs("---|---|", file);
  std::set<std::pair<const Row*, int>> done;
  for (const Cell& first : cells) {
    if (first.shape != "walk" || !counts(first) || !done.insert({first.row, first.period}).second) continue;
    std::fprintf(file, "\n| %s%s | %s |", first.row->name.c_str(), first.row->flags & kDiffers ? " ~" : "",
                 first.period ? std::to_string(first.period).c_str() : "");
    for (const int n : options.bars) {
      const auto cell = std::find_if(cells.begin(), cells.end(), [&](const Cell& c) {
        return c.row == first.row && c.period == first.period && c.n == n && c.shape == "walk";
      });
      if (cell == cells.end())
        std::fputs(" | |", file);
      else
        std::fprintf(file, " %.2f | %.2f%s |", cell->library, cell->ratio,
                     cell->disturbed ? " disturbed" : "");
    }
  }
  std::fputs("\n", file);
  std::fclose(file);
}

}  // namespace qvpeers
