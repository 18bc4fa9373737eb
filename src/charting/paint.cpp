// A painting from the background to the frames.
#include <cmath>

#include "charting/painting.h"

namespace qv::charting {

uint32_t Painting::rising(const Item& item) const noexcept {
  const uint32_t own = item.parts[0].style.colour;
  return own ? own : g_.theme.up;
}
uint32_t Painting::falling(const Item& item) const noexcept {
  const uint32_t own = item.parts[0].style.colour2;
  return own ? own : g_.theme.down;
}

// Lines take the palette's colours in turn; the parts of an item the next ones, but those of a band's
// neighbours stay with it.
uint32_t Painting::colourOf(const Item& item, int part) const noexcept {
  if (const uint32_t own = item.parts[part].style.colour) return own;
  switch (item.kind) {
    case Item::Kind::Zone:
      return g_.theme.zone;
    case Item::Kind::Shape:
      return g_.theme.text;
    case Item::Kind::Chart:
      return g_.theme.up;
    default:
      break;
  }
  bool band = false;
  for (int k = 0; k < item.partCount; ++k) band |= item.parts[k].form == QV_LINE_BAND;
  const int colours = static_cast<int>(std::size(g_.theme.palette));
  const int shift = band && item.partCount <= 2 ? 0 : part * 3;
  return g_.theme.palette[(item.colour + shift) % colours];
}

Pen Painting::penOf(const Item& item, int part) const noexcept {
  const QvGraphStyle& style = item.parts[part].style;
  return {colourOf(item, part), style.width > 0.0 ? style.width : g_.theme.lineWidth, style.dash};
}

Painting::Heights Painting::heights(const Item& item, int part) const noexcept {
  const SubWindow& s = g_.subWindow(item.subWindow);
  const bool own = item.kind == Item::Kind::Chart || item.kind == Item::Kind::Line;
  return {&s.scales[item.side], own ? item.parts[part].base : s.base[item.side]};
}

const Item* Painting::firstPrices(int subWindow) const noexcept {
  for (int i = 0; i < g_.itemCount; ++i) {
    const Item& item = g_.item(i);
    if (item.kind == Item::Kind::Chart && item.subWindow == subWindow && item.form != QV_CHART_VOLUME)
      return &item;
  }
  return nullptr;
}

int Painting::legendBar() const noexcept {
  return g_.cursor >= 0 && g_.cursor < count_ ? g_.cursor : endBar() - 1;
}

void Painting::paintTitle() noexcept {
  if (titleHeight_ <= 0.0) return;
  // What does not fit is cut behind a whole character.
  char text[sizeof g_.title + 3];
  std::memcpy(text, g_.title, sizeof g_.title);
  std::size_t length = std::strlen(text);
  const double room = whole_.width() - 2.0 * g_.area.left;
  while (length > 0 && canvas_.extent(text, true) > room) {
    do --length;
    while (length > 0 && (static_cast<unsigned char>(g_.title[length]) & 0xC0u) == 0x80u);
    std::memcpy(text + length, "\xE2\x80\xA6", 4);  // an ellipsis
  }
  if (length > 0)
    canvas_.text(g_.area.left, std::floor(titleHeight_ * 0.5 + canvas_.fontSize() * 0.6), text, g_.theme.text,
                 Align::Left, true);
}

// What lies behind the grid: zones, and the fillings of areas and bands.
void Painting::paintBackdrops(int subWindow) noexcept {
  for (int i = 0; i < g_.itemCount; ++i) {
    const Item& item = g_.item(i);
    if (!stands(item, subWindow, -1) || !g_.subWindow(subWindow).scales[item.side].known()) continue;
    if (item.kind == Item::Kind::Zone && !item.hidden(0)) paintZone(item);
    if (item.kind == Item::Kind::Chart && item.form == QV_CHART_AREA && !item.hidden(0)) paintArea(item);
    for (int k = 0; item.kind == Item::Kind::Line && k < item.partCount; ++k)
      if (item.parts[k].form == QV_LINE_BAND && !item.hidden(k)) paintBand(item, k);
  }
}

void Painting::paintItems(int subWindow) noexcept {
  const SubWindow& s = g_.subWindow(subWindow);
  for (int i = 0; i < g_.itemCount; ++i) {
    const Item& item = g_.item(i);
    if (!stands(item, subWindow, -1) || !s.scales[item.side].known()) continue;
    if (item.kind == Item::Kind::Chart && !item.hidden(0)) paintChart(item);
    if (item.kind != Item::Kind::Line || item.allHidden()) continue;
    paintLevels(item);
    for (int k = 0; k < item.partCount; ++k)
      if (!item.hidden(k)) paintPart(item, k);
  }
  for (int i = 0; i < g_.itemCount && s.scales[QV_SIDE_RIGHT].known(); ++i) {
    const Item& item = g_.item(i);
    if (item.kind == Item::Kind::Shape && item.subWindow == subWindow && !item.hidden(0)) paintShape(item);
  }
}

void Painting::paintSubWindow(int subWindow) noexcept {
  const SubWindow& s = g_.subWindow(subWindow);
  canvas_.clip(s.plot);
  paintBackdrops(subWindow);
  DateTick dates[kMostDateTicks];
  const int count = dateTicks(*g_.bars.record, g_.axis, g_.area.right, canvas_.fontSize(), canvas_, dates);
  paintGrid(s, dates, count);
  noteCount_ = 0;
  if (hasLegend(s))
    notes_[noteCount_++] = {s.plot.left, s.plot.top, s.plot.right, s.plot.top + legend(subWindow, false)};
  paintItems(subWindow);
  const bool nothing = !s.scales[0].known() && !s.scales[1].known();
  const char* missing = count_ == 0 ? "no bars" : "no values";
  if (nothing && s.plot.height() > rowHeight() && s.plot.width() > canvas_.extent(missing))
    canvas_.text((s.plot.left + s.plot.right) / 2,
                 (s.plot.top + s.plot.bottom + canvas_.fontSize() * 0.7) / 2, missing, g_.theme.faint,
                 Align::Centre);
  if (hasLegend(s)) legend(subWindow, true);
  canvas_.clip(whole_);
  for (const int side : {QV_SIDE_RIGHT, QV_SIDE_LEFT}) paintScale(subWindow, side);
  canvas_.outline(s.plot, {g_.theme.frame, 1.0, QV_DASH_SOLID});
}

int Painting::run() noexcept {
  g_.painted = false;
  canvas_.clip(whole_);
  canvas_.box(0.0, 0.0, whole_.right, whole_.bottom, g_.theme.background);
  chooseBars();
  measureItems();
  if (!canvas_.failed()) placeSubWindows();
  if (canvas_.failed()) return canvas_.status();
  paintTitle();
  for (int i = 0; i < g_.subWindowCount && !canvas_.failed(); ++i)
    if (g_.subWindow(i).shown) paintSubWindow(i);
  DateTick ticks[kMostDateTicks];
  if (datesHeight_ > 0.0)
    paintDates(ticks, dateTicks(*g_.bars.record, g_.axis, g_.area.right, canvas_.fontSize(), canvas_, ticks));
  paintCursor();
  if (canvas_.failed()) return canvas_.status();
  g_.painted = true;
  g_.width = whole_.right;
  g_.height = whole_.bottom;
  return QV_OK;
}

}  // namespace qv::charting

extern "C" {

int QVCALL qvGraphPaint(QvGraph* graph, const QvPainter* painter, double width, double height) noexcept {
  constexpr double kLargest = 1e6;
  const auto fits = [](double size) { return size >= 1.0 && size <= kLargest; };
  if (!graph || !painter || !fits(width) || !fits(height) || !painter->line || !painter->polyline ||
      !painter->rectangle || !painter->polygon || !painter->text || !painter->extent || !painter->clip)
    return QV_INVALID_PARM;
  return qv::charting::Painting(*graph, *painter, width, height).run();
}

}  // extern "C"
