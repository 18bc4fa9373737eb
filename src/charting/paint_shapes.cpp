// Shapes anchored to bars and prices.
#include <cmath>
#include <cstdio>

#include "charting/painting.h"
#include "qvlib60/indicators/statistics.h"

namespace qv::charting {

void Painting::paintShape(const Item& item) noexcept {
  const QvGraphShape& s = item.shape;
  const Heights y = heights(item, 0);
  const Pen pen = penOf(item, 0);
  const double x1 = g_.axis.x(s.bar), y1 = y(s.price), x2 = g_.axis.x(s.bar2), y2 = y(s.price2);
  switch (s.kind) {
    case QV_SHAPE_TREND_LINE:
      return canvas_.line(x1, y1, x2, y2, pen);
    case QV_SHAPE_RAY: {
      // Far enough to leave any picture.
      const double length = std::hypot(x2 - x1, y2 - y1), reach = length > 0.0 ? 4e6 / length : 0.0;
      return canvas_.line(x1, y1, x1 + (x2 - x1) * reach, y1 + (y2 - y1) * reach, pen);
    }
    case QV_SHAPE_RECTANGLE: {
      const uint32_t own = item.parts[0].style.colour2;
      canvas_.box(x1, y1, x2, y2, own ? own : withOpacity(pen.colour, 0.12));
      return canvas_.outline({std::min(x1, x2), std::min(y1, y2), std::max(x1, x2), std::max(y1, y2)}, pen);
    }
    case QV_SHAPE_TEXT:
      return note(x1, y1 - 4.0, s.text, pen.colour, Align::Centre);
    case QV_SHAPE_ARROW:
      return paintArrow(x1, y1, x2, y2, pen);
    case QV_SHAPE_TRADE:
      return paintTrade(s, y, item.parts[0].style);
    case QV_SHAPE_FIBONACCI:
      return paintFibonacci(s, y, pen);
    default:
      return paintRegression(item, y, pen);
  }
}

// A text that lies within the sub-window and over no other one, or none.
void Painting::note(double x, double y, const char* text, uint32_t colour, Align align) noexcept {
  const Rect& clip = canvas_.clipped();
  const double size = canvas_.fontSize(), width = canvas_.extent(text);
  if (!text[0] || !(x >= clip.left && x < clip.right) || width > clip.width() || noteCount_ == kMostNotes)
    return;
  const double left = align == Align::Centre ? x - width * 0.5 : x;
  const double from = std::clamp(left, clip.left, clip.right - width);
  const Rect place = {from, y - size, from + width, y + size * 0.3};
  if (!(place.top >= clip.top && place.bottom <= clip.bottom)) return;
  for (int i = 0; i < noteCount_; ++i) {
    const Rect& other = notes_[i];
    if (place.left < other.right && other.left < place.right && place.top < other.bottom &&
        other.top < place.bottom)
      return;
  }
  notes_[noteCount_++] = place;
  canvas_.text(from, y, text, colour);
}

void Painting::paintArrow(double x1, double y1, double x2, double y2, const Pen& pen) noexcept {
  const double length = std::hypot(x2 - x1, y2 - y1);
  if (!(length > 0.0)) return;
  const double ux = (x2 - x1) / length, uy = (y2 - y1) / length,
               head = std::min(6.0 + 2.0 * pen.width, length);
  const double fx = x2 - ux * head, fy = y2 - uy * head, half = head * 0.45;
  canvas_.line(x1, y1, fx, fy, pen);
  const QvPoint corners[] = {{x2, y2}, {fx - uy * half, fy + ux * half}, {fx + uy * half, fy - ux * half}};
  canvas_.polygon(corners, 3, pen.colour);
}

// The point of the triangle stands at bar and price: from below for what was bought, from above for what was
// sold.
void Painting::paintTrade(const QvGraphShape& s, const Heights& y, const QvGraphStyle& style) noexcept {
  const double x = g_.axis.x(s.bar), at = y(s.price);
  if (at != at) return;
  constexpr double kSize = 9.0;
  const double size = style.width > 0.0 ? +style.width : kSize;
  const bool bought = s.direction >= 0;
  const uint32_t colour = style.colour ? +style.colour : bought ? +g_.theme.up : +g_.theme.down;
  triangle(x, at, size, bought, colour);
  note(x, bought ? at + size + canvas_.fontSize() : at - size - 3.0, s.text, colour, Align::Centre);
}

void Painting::paintFibonacci(const QvGraphShape& s, const Heights& y, const Pen& pen) noexcept {
  constexpr double kLevels[] = {0.0, 23.6, 38.2, 50.0, 61.8, 78.6, 100.0};
  const double x1 = g_.axis.x(std::min(s.bar, s.bar2)), x2 = g_.axis.x(std::max(s.bar, s.bar2));
  const Rect& clip = canvas_.clipped();
  const double from = std::max(x1, clip.left), to = std::max(x2, clip.left);
  canvas_.line(g_.axis.x(s.bar), y(s.price), g_.axis.x(s.bar2), y(s.price2),
               {pen.colour, 1.0, QV_DASH_DOTTED});
  double lastText = kNotKnown;
  for (const double level : kLevels) {
    const double price = s.price2 + (s.price - s.price2) * (level / 100.0), at = y(price);
    if (at != at) continue;
    canvas_.horizontal(x1, x2, at, {pen.colour, 1.0, pen.dash});
    char number[kNumberSize], text[kNumberSize + 16];
    writeNumber(number, price, y.scale->fineFormat(), false);
    std::snprintf(text, sizeof text, "%.1f%%  %s", level, number);
    if (std::fabs(at - lastText) < rowHeight() || canvas_.extent(text) > to - from) continue;
    note(from + 3.0, at - 3.0, text, pen.colour, Align::Left);
    lastText = at;
  }
}

void Painting::paintRegression(const Item& item, const Heights& y, const Pen& pen) noexcept {
  const QvGraphShape& s = item.shape;
  const Item* chart = firstPrices(item.subWindow);
  const QvArray& close = chart ? chart->bars.record->close : g_.bars.record->close;
  const int from = std::max({std::min(s.bar, s.bar2), 0, close.firstValid}),
            to = std::min(std::max(s.bar, s.bar2), Values(close).end() - 1);
  double slope = 0.0, intercept = 0.0;
  if (to - from < 2) return;
  qvRegressionLine(&close, &slope, &intercept, from, to);
  const double width =
      qvStdErr(&close, from, to) * (isValue(s.deviations) && s.deviations > 0.0 ? +s.deviations : 2.0);
  const double first = intercept + slope, last = intercept + slope * (to - from + 1.0);
  for (const double side : {0.0, 1.0, -1.0})
    canvas_.line(g_.axis.x(from), y(first + side * width), g_.axis.x(to), y(last + side * width),
                 {pen.colour, side == 0.0 ? pen.width : 1.0, side == 0.0 ? QV_DASH_DASHED : pen.dash});
}

}  // namespace qv::charting
