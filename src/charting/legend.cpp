// The legend: what stands in a sub-window, with its values at a bar.
#include <cmath>
#include <cstdio>

#include "charting/painting.h"

namespace qv::charting {

namespace {

// Pieces of text from left to right, row by row. What does not fit into the rows is left out.
class Rows {
 public:
  Rows(Canvas& canvas, const Rect& plot, double height, bool draw) noexcept
      : canvas_(canvas), plot_(plot), height_(height), draw_(draw), x_(plot.left + kIndent) {
    most_ = std::max(1, static_cast<int>(plot.height() * 0.35 / height));
  }

  // A piece that begins a new entry may begin a row, others stay with it where that is possible.
  void add(const char* text, uint32_t colour, bool bold, double gap) noexcept {
    if (full_ || !*text) return;
    const double width = canvas_.extent(text, bold);
    if (x_ + gap + width > plot_.right - kIndent && x_ > plot_.left + kIndent) {
      if (rows_ == most_) {
        full_ = true;
        return;
      }
      ++rows_;
      x_ = plot_.left + kIndent;
    }
    if (x_ + width > plot_.right - kIndent) return;  // wider than a whole row
    if (x_ > plot_.left + kIndent) x_ += gap;
    if (draw_)
      canvas_.text(x_, plot_.top + 2.0 + (rows_ - 1) * height_ + canvas_.fontSize() * 1.05, text, colour,
                   Align::Left, bold);
    x_ += width;
    any_ = true;
  }
  double height() const noexcept { return any_ ? rows_ * height_ + 2.0 : 0.0; }

 private:
  static constexpr double kIndent = 6.0;
  Canvas& canvas_;
  const Rect& plot_;
  double height_;
  bool draw_;
  double x_;
  int rows_ = 1, most_;
  bool full_ = false, any_ = false;
};

constexpr double kWord = 5.0, kEntry = 14.0;

}  // namespace

// What a bar's entry in the legend is made of.
struct Painting::Legend {
  Rows rows;
  int bar;
  bool known;  // there is such a bar

  void value(const char* label, double v, const NumberFormat& format, uint32_t colour) noexcept {
    if (!isValue(v)) return;
    char number[kNumberSize], text[kNumberSize + 8];
    writeNumber(number, v, format, false);
    std::snprintf(text, sizeof text, "%s%s", label, number);
    rows.add(text, colour, false, kWord);
  }
};

void Painting::chartEntry(Legend& legend, const Item& item, const NumberFormat& format) noexcept {
  const char* own = item.parts[0].style.name;
  legend.rows.add(own[0] ? own : item.name, g_.theme.text, false, kEntry);
  if (!legend.known) return;
  const bool smoothed = item.form == QV_CHART_HEIKIN_ASHI;
  const Prices p = charting::pricesOf(smoothed ? *item.smoothed.record : *item.bars.record);
  const int bar = legend.bar;
  const uint32_t colour = p.close[bar] < p.open[bar] ? falling(item) : rising(item);
  if (item.form == QV_CHART_VOLUME) return legend.value("", p.volume[bar], format, colour);
  if (item.form == QV_CHART_LINE || item.form == QV_CHART_AREA)
    return legend.value("", p.close[bar], format, rising(item));
  legend.value("O ", p.open[bar], format, colour);
  legend.value("H ", p.high[bar], format, colour);
  legend.value("L ", p.low[bar], format, colour);
  legend.value("C ", p.close[bar], format, colour);
}

void Painting::lineEntry(Legend& legend, const Item& item, const NumberFormat& format) noexcept {
  const char* name = item.name;
  for (int k = 0; k < item.partCount; ++k) {
    if (item.hidden(k)) continue;
    const Part& part = item.parts[k];
    const bool named = part.style.name[0] != '\0';
    const uint32_t colour = colourOf(item, k);
    legend.rows.add(named ? part.style.name : name, colour, false, kEntry);
    if (!named) name = "";  // once
    if (item.partCount > 1 && !named) legend.rows.add(part.name, colour, false, kWord);
    if (!legend.known || part.form == QV_LINE_SIGNAL) continue;
    if (!part.seen.known()) legend.rows.add("no values", g_.theme.faint, false, kWord);
    legend.value("", Values(*part.values.record)[legend.bar], format, colour);
    if (part.other.record) legend.value("", Values(*part.other.record)[legend.bar], format, colour);
  }
}

// Gives the height that the legend takes.
double Painting::legend(int subWindow, bool draw) noexcept {
  const SubWindow& s = g_.subWindow(subWindow);
  const int bar = legendBar();
  Legend legend = {{canvas_, s.plot, rowHeight(), draw}, bar, bar >= 0};
  legend.rows.add(s.title, g_.theme.text, true, kEntry);
  if (subWindow == 0 && legend.known) {
    char date[32];
    const QvBars& bars = *g_.bars.record;
    writeDate(date, bars.date.data[bar], hasTimes(bars, g_.axis.first, g_.axis.last));
    legend.rows.add(date, g_.theme.faint, false, kEntry);
  }
  for (int i = 0; i < g_.itemCount; ++i) {
    const Item& item = g_.item(i);
    if (!stands(item, subWindow, -1) || item.kind == Item::Kind::Zone) continue;
    const Scale& scale = s.scales[item.side];
    NumberFormat format = scale.fineFormat();
    if (scale.kind == QV_SCALE_PERCENT) {  // the legend has the values themselves
      Extent seen;
      for (int k = 0; k < item.partCount; ++k) seen.take(item.parts[k].seen);
      const double greatest = seen.known() ? std::max(std::fabs(seen.low), std::fabs(seen.high)) : 1.0;
      format = formatFor(std::max(greatest, 1e-9), std::max((seen.high - seen.low) / 2000.0, 1e-8));
    }
    if (item.kind == Item::Kind::Line) lineEntry(legend, item, format);
    if (item.kind == Item::Kind::Chart && !item.hidden(0)) chartEntry(legend, item, format);
  }
  return legend.rows.height();
}

}  // namespace qv::charting
