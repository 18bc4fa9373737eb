// Grid, scales with the last values marked on them, the dates and the cross-hair.
#include <cmath>

#include "charting/painting.h"

namespace qv::charting {

namespace {

constexpr double kTickGap = 1.8;     // rows from tick to tick, at the least
constexpr double kMarkHeight = 1.3;  // of the font's size

}  // namespace

void Painting::paintGrid(const SubWindow& s, const DateTick* ticks, int count) noexcept {
  const Pen pen = {g_.theme.grid, 1.0, QV_DASH_SOLID};
  for (int i = 0; i < count; ++i) canvas_.vertical(g_.axis.x(ticks[i].bar), s.plot.top, s.plot.bottom, pen);
  Tick levels[Scale::kMostTicks];
  NumberFormat format;
  const Scale& scale = s.scales[s.scales[QV_SIDE_RIGHT].known() ? QV_SIDE_RIGHT : QV_SIDE_LEFT];
  const int found = scale.ticks(rowHeight() * kTickGap, levels, format);
  for (int i = 0; i < found; ++i) canvas_.horizontal(s.plot.left, s.plot.right, levels[i].y, pen);
}

// The last visible values of a scale's series, pushed apart where they are close; rising in y.
int Painting::collectMarks(int subWindow, int side, Mark (&marks)[kMostMarks]) noexcept {
  const SubWindow& s = g_.subWindow(subWindow);
  const Scale& scale = s.scales[side];
  const double height = canvas_.fontSize() * kMarkHeight;
  const int most = std::min(kMostMarks, static_cast<int>(s.plot.height() / height / 2.0));
  const NumberFormat format = scale.fineFormat();
  int count = 0;
  for (int i = 0; i < g_.itemCount; ++i) {
    const Item& item = g_.item(i);
    if (!stands(item, subWindow, side) || item.kind == Item::Kind::Zone || endBar() <= firstBar()) continue;
    for (int k = 0; k < item.partCount && count < most; ++k) {
      const int form = item.kind == Item::Kind::Chart ? QV_LINE_LINE : item.parts[k].form;
      if (item.hidden(k) || form == QV_LINE_SIGNAL || form == QV_LINE_STATE || form == QV_LINE_BAND) continue;
      const double value = lastValue(item, k), y = heights(item, k)(value);
      if (!(y >= s.plot.top && y <= s.plot.bottom)) continue;
      Mark& m = marks[count++];
      m.y = y;
      m.colour = colourOf(item, k);
      if (item.kind == Item::Kind::Chart &&
          pricesOf(item).close[endBar() - 1] < pricesOf(item).open[endBar() - 1])
        m.colour = falling(item);
      writeNumber(m.text, scale.measure(value, heights(item, k).base), format,
                  scale.kind == QV_SCALE_PERCENT);
    }
  }
  std::sort(marks, marks + count, [](const Mark& a, const Mark& b) { return a.y < b.y; });
  for (int i = 0; i < count; ++i)
    marks[i].y = std::max(marks[i].y, i > 0 ? marks[i - 1].y + height : s.plot.top + height / 2);
  for (int i = count - 1; i >= 0; --i)
    marks[i].y = std::min(marks[i].y, i + 1 < count ? marks[i + 1].y - height : s.plot.bottom - height / 2);
  return count;
}

void Painting::paintScale(int subWindow, int side) noexcept {
  const SubWindow& s = g_.subWindow(subWindow);
  const Scale& scale = s.scales[side];
  if (!axes_[side] || !scale.known()) return;
  const bool right = side == QV_SIDE_RIGHT;
  constexpr double kTickLength = 4.0;
  const double edge = right ? s.plot.right : s.plot.left, out = right ? kTickLength : -kTickLength;
  const double x = edge + 1.75 * out, down = canvas_.fontSize() * 0.36,
               height = canvas_.fontSize() * kMarkHeight;
  const Align align = right ? Align::Left : Align::Right;
  Mark marks[kMostMarks];
  const int marked = collectMarks(subWindow, side, marks);
  Tick ticks[Scale::kMostTicks];
  NumberFormat format;
  const int count = scale.ticks(rowHeight() * kTickGap, ticks, format);
  for (int i = 0; i < count; ++i) {
    canvas_.horizontal(edge, edge + out, ticks[i].y, {g_.theme.frame, 1.0, QV_DASH_SOLID});
    // Half a line above and below must lie beside the sub-window, and beside no mark.
    bool free = ticks[i].y - height / 2 >= s.plot.top - 1.0 && ticks[i].y + height / 2 <= s.plot.bottom + 1.0;
    for (int k = 0; k < marked; ++k) free &= std::fabs(marks[k].y - ticks[i].y) >= height;
    if (!free) continue;
    char text[kNumberSize];
    writeNumber(text, ticks[i].value, format, scale.kind == QV_SCALE_PERCENT);
    canvas_.text(x, ticks[i].y + down, text, g_.theme.faint, align);
  }
  for (int k = 0; k < marked; ++k) {
    const double width = canvas_.extent(marks[k].text) + 1.5 * kTickLength;
    canvas_.box(edge + out * 0.75, marks[k].y - height / 2, edge + out + (right ? width : -width),
                marks[k].y + height / 2, marks[k].colour);
    canvas_.text(x, marks[k].y + down, marks[k].text, inkOn(marks[k].colour), align);
  }
}

void Painting::paintDates(const DateTick* ticks, int count) noexcept {
  const double y = std::floor(g_.area.bottom + canvas_.fontSize() * 1.35);
  char cursor[32] = {};
  double from = 0.0, to = 0.0;
  if (g_.cursor >= firstBar() && g_.cursor < endBar()) {
    writeDate(cursor, g_.bars.record->date.data[g_.cursor],
              hasTimes(*g_.bars.record, g_.axis.first, g_.axis.last));
    const double half = canvas_.extent(cursor) / 2 + 6.0;
    const double x = std::clamp(g_.axis.x(g_.cursor), std::min(half, whole_.right / 2),
                                std::max(whole_.right - half, whole_.right / 2));
    from = x - half;
    to = x + half;
  }
  for (int i = 0; i < count; ++i) {
    const double x = g_.axis.x(ticks[i].bar);
    canvas_.vertical(x, g_.area.bottom, g_.area.bottom + 4.0, {g_.theme.frame, 1.0, QV_DASH_SOLID});
    const double half = canvas_.extent(ticks[i].text, ticks[i].bold) / 2;
    if (cursor[0] && x + half > from && x - half < to) continue;
    canvas_.text(x, y, ticks[i].text, ticks[i].bold ? g_.theme.text : g_.theme.faint, Align::Centre,
                 ticks[i].bold);
  }
  if (!cursor[0] || to - from > whole_.width()) return;
  canvas_.box(from, g_.area.bottom + 2.0, to, whole_.bottom - 1.0, g_.theme.cursor);
  canvas_.text((from + to) / 2, y, cursor, inkOn(g_.theme.cursor), Align::Centre);
}

void Painting::paintCursor() noexcept {
  if (g_.cursor < firstBar() || g_.cursor >= endBar()) return;
  canvas_.clip(g_.area);
  canvas_.vertical(g_.axis.x(g_.cursor), g_.area.top, g_.area.bottom, {g_.theme.cursor, 1.0, QV_DASH_DASHED});
}

}  // namespace qv::charting
