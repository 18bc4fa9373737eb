// One painting of a graph: what is visible, where everything stands, and the drawing of it.
#pragma once

#include "charting/canvas.h"
#include "charting/date_axis.h"

namespace qv::charting {

// The prices of a chart as they are drawn.
struct Prices {
  Values open, high, low, close, volume;
  // A bar with all four of its prices.
  bool has(int i) const noexcept {
    return isValue(open[i]) && isValue(high[i]) && isValue(low[i]) && isValue(close[i]);
  }
};
Prices pricesOf(const QvBars& bars) noexcept;

class Painting {
 public:
  Painting(QvGraph& graph, const QvPainter& painter, double width, double height) noexcept
      : g_(graph), canvas_(painter, graph.theme), whole_{0.0, 0.0, width, height} {}
  int run() noexcept;

 private:
  // A value that is marked on an axis.
  struct Mark {
    double y;
    uint32_t colour;
    char text[kNumberSize];
  };
  static constexpr int kMostMarks = 32;

  // How a part's values become heights.
  struct Heights {
    const Scale* scale;
    double base;
    double operator()(double v) const noexcept { return scale->y(v, base); }
  };

  // measure.cpp
  void chooseBars() noexcept;
  void placeSubWindows() noexcept;
  void measureItems() noexcept;
  void fitScales() noexcept;
  void fitScale(int subWindow, int side) noexcept;
  double axisWidth(int side) noexcept;
  bool stands(const Item& item, int subWindow, int side) const noexcept;
  bool smooth(Item& item) noexcept;
  double lastValue(const Item& item, int part) const noexcept;
  double baseOf(const Item& item, int part) const noexcept;
  Extent extentOf(const Item& item, int part, bool positive) const noexcept;
  bool restsOnZero(const Item& item, int part) const noexcept;

  // paint.cpp, paint_axes.cpp
  void paintSubWindow(int subWindow) noexcept;
  void paintBackdrops(int subWindow) noexcept;
  void paintItems(int subWindow) noexcept;
  void paintGrid(const SubWindow& s, const DateTick* ticks, int count) noexcept;
  void paintScale(int subWindow, int side) noexcept;
  int collectMarks(int subWindow, int side, Mark (&marks)[kMostMarks]) noexcept;
  void paintDates(const DateTick* ticks, int count) noexcept;
  void paintCursor() noexcept;
  void paintTitle() noexcept;

  // paint_bars.cpp
  void paintChart(const Item& item) noexcept;
  void paintCandles(const Item& item, bool bodies) noexcept;
  void paintVolume(const Item& item) noexcept;
  void paintColumns(const Item& item) noexcept;
  void paintArea(const Item& item) noexcept;

  // paint_lines.cpp
  void paintPart(const Item& item, int part) noexcept;
  void paintSeries(const Values& values, const Heights& y, const Pen& pen) noexcept;
  void paintSteps(const Values& values, const Heights& y, const Pen& pen) noexcept;
  void paintHistogram(const Item& item, int part, double share) noexcept;
  void paintDots(const Values& values, const Heights& y, uint32_t colour, double size) noexcept;
  void paintSignals(const Item& item, int part) noexcept;
  void paintBand(const Item& item, int part) noexcept;
  void paintBandFilling(const Values& a, const Values& b, const Heights& y, uint32_t fill) noexcept;
  void paintZone(const Item& item) noexcept;
  void paintLevels(const Item& item) noexcept;
  void triangle(double x, double y, double size, bool up, uint32_t fill) noexcept;

  // paint_shapes.cpp
  void paintShape(const Item& item) noexcept;
  void paintTrade(const QvGraphShape& shape, const Heights& y, const QvGraphStyle& style) noexcept;
  void paintFibonacci(const QvGraphShape& shape, const Heights& y, const Pen& pen) noexcept;
  void paintRegression(const Item& item, const Heights& y, const Pen& pen) noexcept;
  void paintArrow(double x1, double y1, double x2, double y2, const Pen& pen) noexcept;
  void note(double x, double y, const char* text, uint32_t colour, Align align) noexcept;

  // legend.cpp
  struct Legend;
  double legend(int subWindow, bool draw) noexcept;
  void chartEntry(Legend& legend, const Item& item, const NumberFormat& format) noexcept;
  void lineEntry(Legend& legend, const Item& item, const NumberFormat& format) noexcept;

  Heights heights(const Item& item, int part) const noexcept;
  Pen penOf(const Item& item, int part) const noexcept;
  uint32_t colourOf(const Item& item, int part) const noexcept;
  uint32_t rising(const Item& item) const noexcept;
  uint32_t falling(const Item& item) const noexcept;
  Prices pricesOf(const Item& item) const noexcept { return charting::pricesOf(*item.bars.record); }
  const Item* firstPrices(int subWindow) const noexcept;
  double rowHeight() const noexcept { return canvas_.theme().fontSize * 1.4; }
  bool hasLegend(const SubWindow& s) const noexcept { return s.plot.height() > 2.5 * rowHeight(); }
  // The bars that are both visible and there.
  int firstBar() const noexcept { return std::max(g_.axis.first, 0); }
  int endBar() const noexcept { return std::clamp(g_.axis.last, -1, count_ - 1) + 1; }
  int legendBar() const noexcept;
  // Bars stand so close that a pixel column shows several of them.
  bool isDense() const noexcept { return g_.axis.step < canvas_.pixel(); }

  // Calls visit(from, to, x) for the bars from .. to - 1 of each column of the picture.
  template <typename Visit>
  void forColumns(double width, Visit visit) const noexcept;

  QvGraph& g_;
  Canvas canvas_;
  Rect whole_;
  int count_ = 0;  // bars
  double titleHeight_ = 0.0, datesHeight_ = 0.0;
  bool axes_[2] = {false, false};
  memory::Buffer<QvPoint> points_;
  // Where texts stand in a sub-window: later ones that would overlap are left out.
  static constexpr int kMostNotes = 256;
  Rect notes_[kMostNotes];
  int noteCount_ = 0;
};

template <typename Visit>
void Painting::forColumns(double width, Visit visit) const noexcept {
  const TimeAxis& axis = g_.axis;
  const double perBar = axis.step / width;
  for (int i = firstBar(), end = endBar(); i < end;) {
    const double column = std::max(0.0, (i - axis.first + 0.5) * perBar);
    const double whole = static_cast<double>(static_cast<std::int64_t>(column));
    // The first bar whose middle lies in a later column.
    const double next = (whole + 1.0) / perBar - 0.5 + axis.first;
    const int to =
        std::clamp(next < end ? static_cast<int>(next) + (next > static_cast<int>(next)) : end, i + 1, end);
    visit(i, to, perBar >= 1.0 ? axis.x(i) : axis.left + (whole + 0.5) * width);
    i = to;
  }
}

}  // namespace qv::charting
