// Price charts: candles, bars, lines, areas, volumes, point and figure. Where several bars share a pixel
// column it shows their extremes.
#include <cmath>

#include "charting/painting.h"

namespace qv::charting {

namespace {

constexpr double kBodyShare = 0.7;  // of a bar's place
constexpr double kNarrowest = 3.0;  // places narrower than this show no bodies, in device pixels

// What the bars of a column have together.
struct Column {
  double open = kNotKnown, close = kNotKnown;
  Extent range;
  bool known() const noexcept { return range.known(); }
  bool rises() const noexcept { return !(close < open); }
};

Column columnOf(const Prices& p, int from, int to) noexcept {
  Column c;
  for (int i = from; i < to; ++i) {
    if (!p.has(i)) continue;
    if (!c.known()) c.open = p.open[i];
    c.close = p.close[i];
    c.range.take(p.low[i]);
    c.range.take(p.high[i]);
  }
  return c;
}

}  // namespace

void Painting::paintChart(const Item& item) noexcept {
  switch (item.form) {
    case QV_CHART_CANDLES:
    case QV_CHART_HEIKIN_ASHI:
      return paintCandles(item, true);
    case QV_CHART_BARS:
      return paintCandles(item, false);
    case QV_CHART_VOLUME:
      return paintVolume(item);
    case QV_CHART_PNF:
      return paintColumns(item);
    default: {
      Pen pen = penOf(item, 0);
      pen.colour = rising(item);
      return paintSeries(pricesOf(item).close, heights(item, 0), pen);
    }
  }
}

// The rising ones first, then the falling ones: the painter gets few changes of colour.
void Painting::paintCandles(const Item& item, bool bodies) noexcept {
  const Prices p =
      charting::pricesOf(item.form == QV_CHART_HEIKIN_ASHI ? *item.smoothed.record : *item.bars.record);
  const Heights y = heights(item, 0);
  const double pixel = canvas_.pixel(), step = g_.axis.step;
  const bool thin = step < kNarrowest * pixel;
  const double column = std::max(pixel, std::min(step, 1.0));
  // Widths are whole pixels, both odd or both even, so that the wick stands in the middle.
  const double wick = std::max(1.0, std::floor((thin ? column : 1.0) / pixel + 0.5)) * pixel;
  double body = std::floor(step * kBodyShare / pixel) * pixel;
  if (std::fmod(body / pixel - wick / pixel, 2.0) != 0.0) body -= pixel;
  body = std::max(body, wick);
  for (const bool rising : {true, false}) {
    const uint32_t colour = rising ? this->rising(item) : falling(item);
    forColumns(thin ? column : pixel, [&](int from, int to, double x) {
      const Column c = columnOf(p, from, to);
      if (!c.known() || c.rises() != rising) return;
      const double left = canvas_.snapped(x - wick / 2);
      canvas_.box(left, y(c.range.high), left + wick, y(c.range.low), colour);
      if (thin) return;
      if (bodies) {
        const double side = left - (body - wick) / 2;
        canvas_.box(side, y(c.open), side + body, y(c.close), colour);
      } else {
        const double tick = std::max(pixel, std::floor((body - wick) / 2 / pixel) * pixel);
        for (const bool opening : {true, false}) {
          const double at = canvas_.snapped(y(opening ? c.open : c.close) - wick / 2);
          const double end = opening ? left - tick : left + wick;
          canvas_.box(end, at, end + tick, at + wick, colour);
        }
      }
    });
  }
}

void Painting::paintVolume(const Item& item) noexcept {
  const Prices p = pricesOf(item);
  const Heights y = heights(item, 0);
  const double pixel = canvas_.pixel(), step = g_.axis.step, zero = y(0.0);
  const double foot = zero == zero ? zero : g_.subWindow(item.subWindow).plot.bottom;
  const double width = std::max(pixel, std::floor(step * kBodyShare / pixel) * pixel);
  for (const bool rising : {true, false})
    forColumns(pixel, [&](int from, int to, double x) {
      Extent e;
      int at = from;
      for (int i = from; i < to; ++i) {
        if (isValue(p.volume[i]) && p.volume[i] > e.high) at = i;
        e.take(p.volume[i]);
      }
      if (!e.known() || (p.close[at] < p.open[at]) == rising) return;
      const double left = canvas_.snapped(x - width / 2);
      canvas_.box(left, foot, left + width, y(e.high),
                  withOpacity(rising ? this->rising(item) : falling(item), 0.7));
    });
}

void Painting::paintArea(const Item& item) noexcept {
  const Values close = pricesOf(item).close;
  const Heights y = heights(item, 0);
  const double foot = g_.subWindow(item.subWindow).plot.bottom;
  const uint32_t own = item.parts[0].style.colour2;
  const uint32_t fill = own ? own : withOpacity(rising(item), 0.16);
  std::size_t count = 0;
  const auto flush = [&] {
    if (count > 1) {
      points_[count] = {points_[count - 1].x, foot};
      points_[count + 1] = {points_[0].x, foot};
      canvas_.polygon(points_.data(), static_cast<int>(count) + 2, fill);
    }
    count = 0;
  };
  forColumns(canvas_.pixel(), [&](int from, int to, double x) {
    Extent e;
    for (int i = from; i < to; ++i) e.take(close[i]);
    const double top = e.known() ? y(e.high) : kNotKnown;
    if (top != top) return flush();
    if (!points_.grow(count + 3)) return canvas_.fail(QV_MALLOC);  // two more at the foot
    points_[count++] = {x, top};
  });
  flush();
}

// Columns of point and figure: crosses and rings at the levels that each one reaches, as qvPNFchart has them;
// plain columns where these would be too small to be told apart.
void Painting::paintColumns(const Item& item) noexcept {
  const Prices p = pricesOf(item);
  const Heights y = heights(item, 0);
  const Values direction(item.bars.record->openInterest);
  const Extent seen = item.parts[0].seen;
  if (!seen.known()) return;
  double box = item.box > 0.0 ? item.box : roundStep(std::max((seen.high - seen.low) / 40.0, 1e-280));
  const double height = std::fabs(y(seen.high - box) - y(seen.high)), width = g_.axis.step;
  constexpr double kSmallest = 4.0;
  const bool plain = !(height >= kSmallest) || width < kSmallest;
  const Pen pen = {0, item.parts[0].style.width > 0.0 ? item.parts[0].style.width : g_.theme.lineWidth,
                   QV_DASH_SOLID};
  for (const bool rising : {true, false}) {
    const uint32_t colour = rising ? this->rising(item) : falling(item);
    forColumns(canvas_.pixel(), [&](int from, int to, double x) {
      for (int i = from; i < to && !canvas_.failed(); ++i) {
        if (!isValue(p.low[i]) || !isValue(p.high[i]) || (direction[i] >= 0.0) != rising) continue;
        if (plain) {
          const double half = std::max(canvas_.pixel() / 2, width * 0.35);
          canvas_.box(x - half, y(p.high[i]), x + half, y(p.low[i]), colour);
          continue;
        }
        const double tenth = box / 10.0, rx = std::min(width, height * 1.6) * 0.38, ry = height * 0.4;
        const double topmost = std::ceil((seen.high - p.high[i] - tenth) / box);
        for (double k = std::max(topmost, 0.0); seen.high - k * box >= p.low[i] - tenth; k += 1.0) {
          const double at = y(seen.high - k * box);
          if (rising) {
            canvas_.line(x - rx, at - ry, x + rx, at + ry, {colour, pen.width, pen.dash});
            canvas_.line(x - rx, at + ry, x + rx, at - ry, {colour, pen.width, pen.dash});
            continue;
          }
          constexpr int kCorners = 16;
          canvas_.begin({colour, pen.width, pen.dash});
          for (int c = 0; c <= kCorners; ++c) {
            const double angle = c * 2.0 * 3.14159265358979 / kCorners;
            canvas_.to(x + rx * std::cos(angle), at + ry * std::sin(angle));
          }
          canvas_.end();
        }
      }
    });
  }
}

}  // namespace qv::charting
