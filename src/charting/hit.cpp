// From a point of the picture to what lies there, and back.
#include <cmath>

#include "charting/graph.h"

namespace {

using namespace qv;
using namespace qv::charting;

constexpr double kNear = 4.0;  // units

double toSegment(double x, double y, double x1, double y1, double x2, double y2) noexcept {
  const double dx = x2 - x1, dy = y2 - y1, length = dx * dx + dy * dy;
  const double t = length > 0.0 ? std::clamp(((x - x1) * dx + (y - y1) * dy) / length, 0.0, 1.0) : 0.0;
  return std::hypot(x - x1 - t * dx, y - y1 - t * dy);
}

class Search {
 public:
  Search(const QvGraph& g, const SubWindow& s, double x, double y) noexcept : g_(g), s_(s), x_(x), y_(y) {}

  bool meets(const Item& item, int part) const noexcept {
    switch (item.kind) {
      case Item::Kind::Chart:
        return meetsChart(item);
      case Item::Kind::Line:
        return meetsLine(item, part);
      case Item::Kind::Zone:
        return meetsZone(item);
      case Item::Kind::Shape:
        return meetsShape(item.shape);
      default:
        return false;
    }
  }

 private:
  double height(const Item& item, double base, double v) const noexcept {
    return s_.scales[item.side].y(v, base);
  }
  bool between(double a, double b) const noexcept {
    return y_ >= std::min(a, b) - kNear && y_ <= std::max(a, b) + kNear;  // false for not-a-numbers
  }

  // Any bar of those under the point and its neighbourhood.
  template <typename Test>
  bool nearBars(Test test) const noexcept {
    const double reach = std::max(kNear, g_.axis.step / 2) / g_.axis.step;
    const double bar = g_.axis.bar(x_) - 0.5;
    const int from = truncatedInt(std::max(std::ceil(bar - reach), 0.0)),
              to = truncatedInt(std::floor(bar + reach));
    constexpr int kMostBars = 100000;
    for (int i = from; i <= to && i - from < kMostBars; ++i)
      if (test(i)) return true;
    return false;
  }

  bool meetsChart(const Item& item) const noexcept {
    const bool smoothed = item.form == QV_CHART_HEIKIN_ASHI && item.smoothed.record;
    const QvBars& bars = smoothed ? *item.smoothed.record : *item.bars.record;
    const double base = item.parts[0].base;
    if (item.form == QV_CHART_LINE || item.form == QV_CHART_AREA)
      return meetsSeries(item, base, Values(bars.close));
    const bool volume = item.form == QV_CHART_VOLUME;
    const Values high(volume ? bars.volume : bars.high), low(bars.low);
    return nearBars([&](int i) {
      const double top = height(item, base, high[i]);
      return between(top, volume ? s_.plot.bottom : height(item, base, low[i]));
    });
  }

  bool meetsSeries(const Item& item, double base, const Values& v) const noexcept {
    return nearBars([&](int i) {
      const double x = g_.axis.x(i), y = height(item, base, v[i]), next = height(item, base, v[i + 1]);
      const double before = height(item, base, v[i - 1]);
      return std::hypot(x - x_, y - y_) <= kNear ||
             toSegment(x_, y_, x, y, g_.axis.x(i + 1.0), next) <= kNear ||
             toSegment(x_, y_, x, y, g_.axis.x(i - 1.0), before) <= kNear;
    });
  }

  bool meetsLine(const Item& item, int part) const noexcept {
    const Part& p = item.parts[part];
    const Values v(*p.values.record);
    if (p.form == QV_LINE_HISTOGRAM || p.form == QV_LINE_STATE)
      return nearBars([&](int i) { return between(height(item, p.base, v[i]), height(item, p.base, 0.0)); });
    if (p.form == QV_LINE_SIGNAL) return false;
    return meetsSeries(item, p.base, v) ||
           (p.other.record && meetsSeries(item, p.base, Values(*p.other.record)));
  }

  bool meetsZone(const Item& item) const noexcept {
    const double base = s_.base[item.side];
    return between(height(item, base, item.levels[0]), height(item, base, item.levels[1]));
  }

  bool meetsShape(const QvGraphShape& shape) const noexcept {
    const double base = s_.base[QV_SIDE_RIGHT];
    const Scale& scale = s_.scales[QV_SIDE_RIGHT];
    const double x1 = g_.axis.x(shape.bar), x2 = g_.axis.x(shape.bar2);
    const double y1 = scale.y(shape.price, base), y2 = scale.y(shape.price2, base);
    const bool within = x_ >= std::min(x1, x2) - kNear && x_ <= std::max(x1, x2) + kNear;
    switch (shape.kind) {
      case QV_SHAPE_TEXT:
      case QV_SHAPE_TRADE:
        return std::hypot(x_ - x1, y_ - y1) <= 3.0 * kNear;
      case QV_SHAPE_RECTANGLE:
      case QV_SHAPE_FIBONACCI:
        return within && between(y1, y2);
      case QV_SHAPE_RAY: {
        const double length = std::hypot(x2 - x1, y2 - y1), reach = length > 0.0 ? 4e6 / length : 0.0;
        return toSegment(x_, y_, x1, y1, x1 + (x2 - x1) * reach, y1 + (y2 - y1) * reach) <= kNear;
      }
      case QV_SHAPE_REGRESSION:
        return false;
      default:
        return toSegment(x_, y_, x1, y1, x2, y2) <= kNear;
    }
  }

  const QvGraph& g_;
  const SubWindow& s_;
  double x_, y_;
};

}  // namespace

extern "C" {

int QVCALL qvGraphHit(const QvGraph* graph, double x, double y, QvGraphHit* hit) noexcept {
  if (!graph || !hit || !graph->painted || !isValue(x) || !isValue(y)) return QV_INVALID_PARM;
  *hit = {-1, -1, -1, 0, {kNotKnown, kNotKnown}};
  if (x >= graph->area.left && x < graph->area.right) hit->bar = truncatedInt(std::floor(graph->axis.bar(x)));
  for (int i = 0; i < graph->subWindowCount; ++i) {
    const SubWindow& s = graph->subWindow(i);
    if (!s.shown || !s.plot.holds(x, y)) continue;
    hit->subWindow = i;
    for (const int side : {QV_SIDE_RIGHT, QV_SIDE_LEFT})
      hit->price[side] = s.scales[side].value(y, s.base[side]);
    // Shapes lie on top of everything else.
    const Search search(*graph, s, x, y);
    for (const bool shapes : {true, false})
      for (int k = graph->itemCount - 1; k >= 0; --k) {
        const Item& item = graph->item(k);
        if (item.subWindow != i || (item.kind == Item::Kind::Shape) != shapes) continue;
        for (int part = item.partCount - 1; part >= 0; --part)
          if (!item.hidden(part) && search.meets(item, part)) {
            hit->item = k;
            hit->part = part;
            return QV_OK;
          }
      }
  }
  return QV_OK;
}

int QVCALL qvGraphPosition(const QvGraph* graph, int subWindow, int side, int bar, double price,
                           QvPoint* point) noexcept {
  if (!hasSubWindow(graph, subWindow) || !graph->painted || !point || side < QV_SIDE_RIGHT ||
      side > QV_SIDE_LEFT)
    return QV_INVALID_PARM;
  const SubWindow& s = graph->subWindow(subWindow);
  point->x = graph->axis.x(bar);
  point->y = s.shown ? s.scales[side].y(price, s.base[side]) : kNotKnown;
  return QV_OK;
}

}  // extern "C"
