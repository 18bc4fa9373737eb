// Before anything is drawn: which bars are visible, where the sub-windows stand, and what their scales span.
#include <cmath>

#include "charting/painting.h"

namespace qv::charting {

namespace {

// The extremes of items from .. to - 1; only of those above 0 where `positive`.
Extent extremes(const Values& v, int from, int to, bool positive) noexcept {
  from = std::max(from, v.first());
  to = std::min(to, v.end());
  const double least = positive ? std::numeric_limits<double>::min() : -kMostValue;
  const double* data = v.data();
  Extent e;
  for (int i = from; i < to; ++i) {
    const double x = data[i];
    const bool counts = x >= least && x <= kMostValue;
    e.low = counts && x < e.low ? x : e.low;
    e.high = counts && x > e.high ? x : e.high;
  }
  return e;
}

}  // namespace

Prices pricesOf(const QvBars& bars) noexcept {
  return {Values(bars.open), Values(bars.high), Values(bars.low), Values(bars.close), Values(bars.volume)};
}

void Painting::chooseBars() noexcept {
  count_ = barCount(*g_.bars.record);
  const bool all = g_.last < g_.first;
  g_.axis.first = all ? 0 : g_.first;
  g_.axis.last = all ? std::max(count_ - 1, 0) : g_.last;
}

bool Painting::stands(const Item& item, int subWindow, int side) const noexcept {
  return item.subWindow == subWindow && item.kind != Item::Kind::None && item.kind != Item::Kind::Shape &&
         (item.side == side || side < 0);
}

// Heikin-Ashi prices, which begin anew behind a bar without prices. False when memory runs out.
bool Painting::smooth(Item& item) noexcept {
  const Prices p = pricesOf(item);
  QvBars* out = item.smoothed.own ? const_cast<QvBars*>(item.smoothed.record) : ownBars(item.smoothed);
  if (!out || qvReAllocBars(out, endBar()) != QV_OK) return false;
  double open = kNotKnown, close = kNotKnown;
  for (int i = 0; i < endBar(); ++i) {
    const bool has = p.has(i), follows = close == close;
    const double o = p.open[i], c = p.close[i];
    open = !has ? kNotKnown : follows ? (open + close) / 2.0 : (o + c) / 2.0;
    close = has ? o / 4.0 + p.high[i] / 4.0 + p.low[i] / 4.0 + c / 4.0 : kNotKnown;
    out->open.data[i] = open;
    out->close.data[i] = close;
    out->high.data[i] = has ? std::max({p.high[i], open, close}) : kNotKnown;
    out->low.data[i] = has ? std::min({p.low[i], open, close}) : kNotKnown;
  }
  return true;
}

double Painting::lastValue(const Item& item, int part) const noexcept {
  const Values v = item.kind != Item::Kind::Chart      ? Values(*item.parts[part].values.record)
                   : item.form == QV_CHART_VOLUME      ? pricesOf(item).volume
                   : item.form == QV_CHART_HEIKIN_ASHI ? Values(item.smoothed.record->close)
                                                       : pricesOf(item).close;
  return v[endBar() - 1];
}

double Painting::baseOf(const Item& item, int part) const noexcept {
  if (item.kind == Item::Kind::Zone || item.kind == Item::Kind::Shape) return kNotKnown;
  const Values v = item.kind != Item::Kind::Chart ? Values(*item.parts[part].values.record)
                   : item.form == QV_CHART_VOLUME ? pricesOf(item).volume
                                                  : pricesOf(item).close;
  for (int i = firstBar(); i < endBar(); ++i)
    if (isValue(v[i])) return v[i];
  return kNotKnown;
}

bool Painting::restsOnZero(const Item& item, int part) const noexcept {
  const int form = item.parts[part].form;
  return item.kind == Item::Kind::Chart ? item.form == QV_CHART_VOLUME
                                        : form == QV_LINE_HISTOGRAM || form == QV_LINE_STATE;
}

Extent Painting::extentOf(const Item& item, int part, bool positive) const noexcept {
  const int from = firstBar(), to = endBar();
  Extent e;
  if (item.kind == Item::Kind::Chart) {
    const Prices p =
        charting::pricesOf(item.form == QV_CHART_HEIKIN_ASHI ? *item.smoothed.record : *item.bars.record);
    const bool closes = item.form == QV_CHART_LINE || item.form == QV_CHART_AREA;
    if (item.form == QV_CHART_VOLUME) return extremes(p.volume, from, to, positive);
    e = extremes(closes ? p.close : p.low, from, to, positive);
    e.take(extremes(closes ? p.close : p.high, from, to, positive));
  } else if (item.kind == Item::Kind::Line && item.parts[part].form != QV_LINE_SIGNAL) {
    e = extremes(Values(*item.parts[part].values.record), from, to, positive);
    if (const QvArray* other = item.parts[part].other.record)
      e.take(extremes(Values(*other), from, to, positive));
  }
  return e;
}

// What is seen of every item, once: all else is made of it.
void Painting::measureItems() noexcept {
  for (int i = 0; i < g_.itemCount; ++i) {
    Item& item = g_.item(i);
    if (item.kind == Item::Kind::None) continue;
    if (item.kind == Item::Kind::Chart && item.form == QV_CHART_HEIKIN_ASHI && !smooth(item))
      return canvas_.fail(QV_MALLOC);
    const int kind = g_.subWindow(item.subWindow).scales[item.side].kind;
    for (int k = 0; k < item.partCount; ++k) {
      item.parts[k].base = kind == QV_SCALE_PERCENT ? baseOf(item, k) : kNotKnown;
      item.parts[k].seen = extentOf(item, k, kind == QV_SCALE_LOG);
    }
  }
}

void Painting::fitScale(int subWindow, int side) noexcept {
  SubWindow& s = g_.subWindow(subWindow);
  Scale& scale = s.scales[side];
  const bool log = scale.kind == QV_SCALE_LOG, percent = scale.kind == QV_SCALE_PERCENT;
  Extent all, fixed;
  bool onZero = false;
  s.base[side] = kNotKnown;
  for (int i = 0; i < g_.itemCount; ++i) {
    const Item& item = g_.item(i);
    if (!stands(item, subWindow, side)) continue;
    for (int k = 0; k < item.partCount; ++k) {
      if (item.hidden(k)) continue;
      const Part& part = item.parts[k];
      if (s.base[side] != s.base[side]) s.base[side] = part.base;
      const Extent e = part.seen;
      onZero |= e.known() && restsOnZero(item, k);
      if (!percent) {
        all.take(e);
        fixed.take(item.fixed);
      } else if (e.known()) {
        all.take(scale.measure(e.low, part.base));
        all.take(scale.measure(e.high, part.base));
      }
    }
  }
  // Zones do not make a scale by themselves, but levels that a calculation has are in sight.
  for (int i = 0; i < g_.itemCount && all.known() && !percent; ++i) {
    const Item& item = g_.item(i);
    if (!stands(item, subWindow, side) || item.kind != Item::Kind::Line || item.allHidden()) continue;
    for (int k = 0; k < item.levelCount; ++k)
      if (!log || item.levels[k] > 0.0) all.take(item.levels[k]);
  }
  // What else stands there may leave the range that a calculation has.
  const bool exact = all.known() && fixed.known() && !log && all.low >= fixed.low && all.high <= fixed.high;
  if (exact) all.take(fixed);
  if (onZero && !log && !percent) all.take(0.0);
  const double legendHeight = hasLegend(s) ? legend(subWindow, false) : 0.0;
  scale.fit(all, exact || (onZero && all.low == 0.0), exact,
            s.plot.top + (legendHeight > 0.0 ? legendHeight + 4.0 : 4.0), s.plot.bottom - 3.0);
}

// Twice: the legend's values are written as the scale tells, and it takes room from the scale.
void Painting::fitScales() noexcept {
  for (int i = 0; i < g_.subWindowCount; ++i) {
    SubWindow& s = g_.subWindow(i);
    for (Scale& scale : s.scales) scale.forget();
    if (!s.shown) continue;
    for (int pass = 0; pass < 2; ++pass)
      for (const int side : {QV_SIDE_RIGHT, QV_SIDE_LEFT}) fitScale(i, side);
  }
}

double Painting::axisWidth(int side) noexcept {
  double widest = 0.0;
  for (int i = 0; i < g_.subWindowCount; ++i) {
    const SubWindow& s = g_.subWindow(i);
    if (!s.shown || !s.scales[side].known()) continue;
    Tick ticks[Scale::kMostTicks];
    NumberFormat format;
    char text[kNumberSize];
    const bool percent = s.scales[side].kind == QV_SCALE_PERCENT;
    const int count = s.scales[side].ticks(rowHeight() * 1.8, ticks, format);
    for (int k = 0; k < count; ++k) {
      writeNumber(text, ticks[k].value, format, percent);
      widest = std::max(widest, canvas_.extent(text));
    }
    Mark marks[kMostMarks];
    const int marked = collectMarks(i, side, marks);
    for (int k = 0; k < marked; ++k) widest = std::max(widest, canvas_.extent(marks[k].text));
  }
  constexpr double kAir = 14.0;
  return widest > 0.0 ? std::ceil(widest + kAir) : 0.0;
}

void Painting::placeSubWindows() noexcept {
  const double font = canvas_.fontSize(), width = whole_.width(), height = whole_.height();
  titleHeight_ = g_.title[0] && height >= 10.0 * font ? std::ceil(font * 2.0) : 0.0;
  datesHeight_ = height >= 7.0 * font ? std::ceil(font * 1.9) : 0.0;
  const double margin = std::min(std::floor(std::min(width, height) / 40.0), 8.0);
  Rect area = {margin, margin + titleHeight_, width - margin,
               height - (datesHeight_ > 0.0 ? datesHeight_ : margin)};
  double weights = 0.0;
  int shown = 0;
  for (int i = 0; i < g_.subWindowCount; ++i) {
    weights += g_.subWindow(i).weight;
    shown += g_.subWindow(i).weight > 0.0;
  }
  const double gap = std::min(6.0, std::floor(area.height() / (shown + 1) / 6.0));
  const double room = area.height() - gap * std::max(shown - 1, 0);
  // First with the whole width; then with the axes beside it, whose labels are known by then.
  for (int pass = 0;; ++pass) {
    double used = 0.0;
    int before = 0;
    for (int i = 0; i < g_.subWindowCount; ++i) {
      SubWindow& s = g_.subWindow(i);
      s.shown = s.weight > 0.0 && room > 1.0;
      if (!s.shown) continue;
      const double top = area.top + used / weights * room + before * gap;
      used += s.weight;
      ++before;
      const double bottom = area.top + used / weights * room + (before - 1) * gap;
      s.plot = {area.left, canvas_.snapped(top), area.right, canvas_.snapped(bottom)};
    }
    g_.area = area;
    g_.axis.left = area.left;
    g_.axis.step = area.width() / (static_cast<double>(g_.axis.last) - g_.axis.first + 1.0);
    fitScales();
    if (pass == 1) return;
    const double widths[] = {axisWidth(QV_SIDE_RIGHT), axisWidth(QV_SIDE_LEFT)};
    constexpr double kMostShare = 0.4;
    axes_[QV_SIDE_RIGHT] = widths[0] > 0.0 && widths[0] < kMostShare * width;
    axes_[QV_SIDE_LEFT] = widths[1] > 0.0 && widths[0] + widths[1] < kMostShare * width;
    if (axes_[QV_SIDE_RIGHT]) area.right = width - widths[0];
    if (axes_[QV_SIDE_LEFT]) area.left = widths[1];
  }
}

}  // namespace qv::charting
