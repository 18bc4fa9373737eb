// What a graph is: its bars, sub-windows and items, and where they stood when it was last painted.
#pragma once

#include <algorithm>
#include <limits>

#include "charting/scale.h"
#include "core/calculation.h"
#include "core/memory.h"
#include "qvlib60/charting.h"

namespace qv::charting {

inline constexpr double kNotKnown = std::numeric_limits<double>::quiet_NaN();

// A series as it is drawn: safe at every index, a gap where there is no value.
class Values {
 public:
  Values() noexcept = default;
  explicit Values(const QvArray& a) noexcept
      : data_(a.data), first_(std::max(a.firstValid, 0)), end_(a.data ? std::max(a.size, 0) : 0) {}

  double operator[](int i) const noexcept { return i >= first_ && i < end_ ? data_[i] : kNotKnown; }
  int first() const noexcept { return first_; }
  int end() const noexcept { return end_; }
  const double* data() const noexcept { return data_; }

 private:
  const double* data_ = nullptr;
  int first_ = 0, end_ = 0;
};

// A record of the caller's, or a copy on the heap. Lies in tables that move: released by hand.
template <typename Record>
struct Kept {
  const Record* record = nullptr;
  bool own = false;
};
using KeptBars = Kept<QvBars>;
using KeptSeries = Kept<QvArray>;

// 0 or -3.
int keep(KeptSeries& kept, const QvArray* series, int how) noexcept;
int keep(KeptBars& kept, const QvBars* bars, int how) noexcept;
void release(KeptSeries& kept) noexcept;
void release(KeptBars& kept) noexcept;
// An empty series on the heap that is the graph's own; null when memory runs out.
QvArray* ownSeries(KeptSeries& kept) noexcept;
QvBars* ownBars(KeptBars& kept) noexcept;

struct Rect {
  double left = 0.0, top = 0.0, right = 0.0, bottom = 0.0;
  double width() const noexcept { return right - left; }
  double height() const noexcept { return bottom - top; }
  bool holds(double x, double y) const noexcept { return x >= left && x < right && y >= top && y < bottom; }
};

struct SubWindow {
  char title[128] = {};
  double weight = 1.0;
  Scale scales[2];
  // The calculation that a formula gave a panel to, and the series of a bar set that stand in it otherwise.
  const QvCatalogueEntry* entry = nullptr;
  unsigned series = 0;
  // As last painted.
  bool shown = false;
  Rect plot;
  double base[2] = {kNotKnown, kNotKnown};  // of percentages: of the first series of a side
};

// One line, or pair of lines, of an item.
struct Part {
  KeptSeries values, other;
  int form = QV_LINE_LINE;
  QvGraphStyle style = {};
  char name[32] = {};  // of an output, behind the item's
  // As last painted: what percentages are taken of, and the visible extremes.
  double base = kNotKnown;
  Extent seen;
};

inline constexpr int kMostParts = 5, kMostLevels = 4;

struct Item {
  enum class Kind { None, Chart, Line, Zone, Shape };

  Kind kind = Kind::None;
  int subWindow = 0;
  int side = QV_SIDE_RIGHT;
  int form = 0;    // of charts: QV_CHART_...
  int colour = 0;  // where its colours begin in the palette
  char name[64] = {};
  KeptBars bars;      // of charts
  KeptBars smoothed;  // their Heikin-Ashi prices, as last painted
  double box = 0.0;
  Part parts[kMostParts];
  int partCount = 1;
  double levels[kMostLevels] = {};  // of zones, from and to; of formulas, where lines are drawn
  int levelCount = 0;
  Extent fixed;  // the range that a calculation's values are known to have
  QvGraphShape shape = {};

  bool hidden(int part) const noexcept { return parts[part].style.hidden == 1; }
  bool allHidden() const noexcept {
    return std::all_of(parts, parts + partCount, [](const Part& p) { return p.style.hidden == 1; });
  }
};

void release(Item& item) noexcept;

// Places of bars: the width, shared out among those that are visible.
struct TimeAxis {
  int first = 0, last = 0;
  double left = 0.0, step = 1.0;

  double x(double bar) const noexcept { return left + (bar - first + 0.5) * step; }
  double bar(double x) const noexcept { return (x - left) / step + first; }  // its fraction: within the place
};

}  // namespace qv::charting

struct QvGraph {
  qv::charting::KeptBars bars;
  char title[128] = {};
  QvGraphTheme theme = {};
  qv::memory::Buffer<qv::charting::SubWindow> subWindows;
  int subWindowCount = 0;
  qv::memory::Buffer<qv::charting::Item> items;
  int itemCount = 0;
  int colours = 0;           // taken of the palette
  int first = 0, last = -1;  // visible bars; all where last is below first
  int cursor = -1;
  // As last painted.
  bool painted = false;
  double width = 0.0, height = 0.0;
  qv::charting::TimeAxis axis;
  qv::charting::Rect area;

  qv::charting::SubWindow& subWindow(int i) noexcept { return subWindows[static_cast<std::size_t>(i)]; }
  const qv::charting::SubWindow& subWindow(int i) const noexcept {
    return subWindows[static_cast<std::size_t>(i)];
  }
  qv::charting::Item& item(int i) noexcept { return items[static_cast<std::size_t>(i)]; }
  const qv::charting::Item& item(int i) const noexcept { return items[static_cast<std::size_t>(i)]; }
};

namespace qv::charting {

// The number of bars on the time axis.
inline int barCount(const QvBars& bars) noexcept {
  return std::max(0, std::min(bars.barsize, Values(bars.date).end()));
}

inline bool hasSubWindow(const QvGraph* graph, int subWindow) noexcept {
  return graph && subWindow >= 0 && subWindow < graph->subWindowCount;
}
inline bool hasItem(const QvGraph* graph, int item) noexcept {
  return graph && item >= 0 && item < graph->itemCount && graph->item(item).kind != Item::Kind::None;
}

// Puts an item under a number, QV_GRAPH_NEW for a new one; gives the number. Where it fails the new item is
// released.
int put(QvGraph& graph, int number, Item& item) noexcept;

// A new sub-window; its number, -1 where there are too many, -3.
int addSubWindow(QvGraph& graph) noexcept;

QvGraphTheme lightTheme() noexcept;

// The bars of a set laid onto the dates of the axis, with gaps where it has none.
int alignBars(const QvBars& axis, const QvBars& bars, KeptBars& kept) noexcept;
bool sameDates(const QvBars& axis, const QvBars& bars) noexcept;

}  // namespace qv::charting
