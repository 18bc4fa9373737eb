// Lines of series: every kind of QV_LINE_..., zones and levels.
#include <cmath>

#include "charting/painting.h"

namespace qv::charting {

namespace {

Extent extremesOf(const Values& v, int from, int to) noexcept {
  Extent e;
  for (int i = from; i < to; ++i) e.take(v[i]);
  return e;
}

}  // namespace

void Painting::paintPart(const Item& item, int part) noexcept {
  const Part& p = item.parts[part];
  const Values values(*p.values.record);
  const Heights y = heights(item, part);
  const Pen pen = penOf(item, part);
  switch (p.form) {
    case QV_LINE_HISTOGRAM:
      return paintHistogram(item, part, 0.6);
    case QV_LINE_STATE:
      return paintHistogram(item, part, 1.0);
    case QV_LINE_DOTS:
      return paintDots(values, y, pen.colour, p.style.width > 0.0 ? +p.style.width : 3.0);
    case QV_LINE_SIGNAL:
      return paintSignals(item, part);
    case QV_LINE_STEPS:
      return isDense() ? paintSeries(values, y, pen) : paintSteps(values, y, pen);
    case QV_LINE_BAND:
      paintSeries(values, y, {pen.colour, std::min(pen.width, 1.0), pen.dash});
      return paintSeries(Values(*p.other.record), y, {pen.colour, std::min(pen.width, 1.0), pen.dash});
    default:
      return paintSeries(values, y, pen);
  }
}

// From bar to bar; in a column of many the line runs through the first, the extremes in their order, and the
// last.
void Painting::paintSeries(const Values& values, const Heights& y, const Pen& pen) noexcept {
  canvas_.begin(pen);
  forColumns(canvas_.pixel(), [&](int from, int to, double x) {
    if (to - from == 1) return canvas_.to(x, y(values[from]));
    int low = -1, high = -1, first = -1, last = -1;
    double least = 0.0, greatest = 0.0;
    for (int i = from; i < to; ++i) {
      const double v = values[i];
      if (!isValue(v)) continue;
      if (first < 0) first = low = high = i, least = greatest = v;
      if (v < least) low = i, least = v;
      if (v > greatest) high = i, greatest = v;
      last = i;
    }
    if (first < 0) return canvas_.to(x, kNotKnown);
    canvas_.to(x, y(values[first]));
    canvas_.to(x, y(values[std::min(low, high)]));
    canvas_.to(x, y(values[std::max(low, high)]));
    canvas_.to(x, y(values[last]));
  });
  canvas_.end();
}

void Painting::paintSteps(const Values& values, const Heights& y, const Pen& pen) noexcept {
  canvas_.begin(pen);
  for (int i = firstBar(); i < endBar(); ++i) {
    const double at = y(values[i]), x = g_.axis.x(i), half = g_.axis.step / 2;
    canvas_.to(x - half, at);
    canvas_.to(x + half, at);
  }
  canvas_.end();
}

void Painting::paintHistogram(const Item& item, int part, double share) noexcept {
  const Values values(*item.parts[part].values.record);
  const Heights y = heights(item, part);
  const double pixel = canvas_.pixel(), zero = y(0.0);
  const double foot = zero == zero ? zero : g_.subWindow(item.subWindow).plot.bottom;
  const double width =
      std::max(pixel, std::floor(g_.axis.step * share / pixel + (share < 1.0 ? 0.0 : 0.5)) * pixel);
  const uint32_t above = colourOf(item, part), own = item.parts[part].style.colour2;
  for (const bool positive : {true, false}) {
    const uint32_t fill = withOpacity(positive || !own ? above : own, share < 1.0 ? 0.8 : 0.35);
    forColumns(pixel, [&](int from, int to, double x) {
      const Extent e = extremesOf(values, from, to);
      const double v = positive ? e.high : e.low;
      if (!e.known() || (positive ? !(v > 0.0) : !(v < 0.0))) return;
      const double left = share < 1.0 ? canvas_.snapped(x - width / 2) : x - g_.axis.step / 2;
      canvas_.box(left, foot, share < 1.0 ? left + width : std::max(x + g_.axis.step / 2, left + pixel), y(v),
                  fill);
    });
  }
}

void Painting::paintDots(const Values& values, const Heights& y, uint32_t colour, double size) noexcept {
  const double half = std::max(canvas_.pixel(), std::min(size, std::max(g_.axis.step, 1.5))) / 2;
  forColumns(canvas_.pixel(), [&](int from, int to, double x) {
    const Extent e = extremesOf(values, from, to);
    if (!e.known()) return;
    for (const double v : {e.low, e.high}) {
      const double at = y(v), slant = half * 0.4142;
      if (at != at) return;
      const QvPoint corners[] = {{x - half, at - slant}, {x - slant, at - half}, {x + slant, at - half},
                                 {x + half, at - slant}, {x + half, at + slant}, {x + slant, at + half},
                                 {x - slant, at + half}, {x - half, at + slant}};
      canvas_.polygon(corners, static_cast<int>(std::size(corners)), colour);
      if (e.low == e.high) return;
    }
  });
}

void Painting::triangle(double x, double y, double size, bool up, uint32_t fill) noexcept {
  const double foot = y + (up ? size : -size);
  const QvPoint corners[] = {{x, y}, {x + size * 0.6, foot}, {x - size * 0.6, foot}};
  canvas_.polygon(corners, 3, fill);
}

// At most one mark of each kind to a column.
void Painting::paintSignals(const Item& item, int part) noexcept {
  const Values values(*item.parts[part].values.record);
  const Item* chart = firstPrices(item.subWindow);
  const Rect& plot = g_.subWindow(item.subWindow).plot;
  constexpr double kSize = 7.0, kAway = 4.0;
  const double size = item.parts[part].style.width > 0.0 ? +item.parts[part].style.width : kSize;
  const uint32_t own = item.parts[part].style.colour, own2 = item.parts[part].style.colour2;
  forColumns(std::max(1.0, canvas_.pixel()), [&](int from, int to, double) {
    bool done[2] = {false, false};
    for (int i = from; i < to; ++i) {
      if (!isValue(values[i]) || values[i] == 0.0) continue;
      const bool up = values[i] > 0.0;
      if (done[up]) continue;
      done[up] = true;
      double y = up || !chart ? plot.bottom - kAway - size : plot.top + kAway + size;
      if (chart) {
        const Prices p = pricesOf(*chart);
        const double at = heights(*chart, 0)(up ? p.low[i] : p.high[i]);
        if (at == at)
          y = up ? std::min(at + kAway, plot.bottom - size) : std::max(at - kAway, plot.top + size);
      }
      triangle(g_.axis.x(i), y, size, up, up ? (own ? own : g_.theme.up) : (own2 ? own2 : g_.theme.down));
    }
  });
}

void Painting::paintBand(const Item& item, int part) noexcept {
  const Part& p = item.parts[part];
  const uint32_t own = p.style.colour2;
  paintBandFilling(Values(*p.values.record), Values(*p.other.record), heights(item, part),
                   own ? own : withOpacity(colourOf(item, part), 0.12));
}

void Painting::paintBandFilling(const Values& a, const Values& b, const Heights& y, uint32_t fill) noexcept {
  // Edge a forwards from the front of the points, edge b behind it once it is known where a ends.
  std::size_t count = 0;
  const auto flush = [&] {
    if (count > 1) {
      // The points hold a, b of each column by turns: a forwards, then b backwards.
      if (!points_.grow(count * 4)) return canvas_.fail(QV_MALLOC);
      QvPoint* outline = points_.data() + count * 2;
      for (std::size_t i = 0; i < count; ++i) {
        outline[i] = points_[2 * i];
        outline[2 * count - 1 - i] = points_[2 * i + 1];
      }
      canvas_.polygon(outline, static_cast<int>(2 * count), fill);
    }
    count = 0;
  };
  forColumns(canvas_.pixel(), [&](int from, int to, double x) {
    const Extent ea = extremesOf(a, from, to), eb = extremesOf(b, from, to);
    double ya = kNotKnown, yb = kNotKnown;
    if (ea.known() && eb.known()) {
      const bool over = ea.high >= eb.high;
      ya = y(over ? ea.high : ea.low);
      yb = y(over ? eb.low : eb.high);
    }
    if (ya != ya || yb != yb) return flush();
    if (!points_.grow(2 * count + 2)) return canvas_.fail(QV_MALLOC);
    points_[2 * count] = {x, ya};
    points_[2 * count + 1] = {x, yb};
    ++count;
  });
  flush();
}

void Painting::paintZone(const Item& item) noexcept {
  const Rect& plot = g_.subWindow(item.subWindow).plot;
  const Heights y = heights(item, 0);
  const uint32_t colour = colourOf(item, 0), own = item.parts[0].style.colour2;
  const double top = y(item.levels[1]), bottom = y(item.levels[0]);
  if (item.levels[0] < item.levels[1])
    return canvas_.box(plot.left, top, plot.right, bottom, own ? own : withOpacity(colour, 0.14));
  canvas_.horizontal(
      plot.left, plot.right, top,
      {colour, item.parts[0].style.width > 0.0 ? +item.parts[0].style.width : 1.0, item.parts[0].style.dash});
}

// The levels of a calculation.
void Painting::paintLevels(const Item& item) noexcept {
  const Rect& plot = g_.subWindow(item.subWindow).plot;
  for (int k = 0; k < item.levelCount; ++k)
    canvas_.horizontal(plot.left, plot.right, heights(item, 0)(item.levels[k]),
                       {g_.theme.zone, 1.0, QV_DASH_DASHED});
}

}  // namespace qv::charting
