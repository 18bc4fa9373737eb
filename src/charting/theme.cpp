// Themes. Rising and falling are blue and orange in both, which all kinds of colour-blind people tell apart,
// and the lines' colours are those of Okabe and Ito, Color Universal Design, 2008, darkened or lightened to
// stand out.
#include <algorithm>
#include <cstring>

#include "charting/graph.h"
#include "charting/texts.h"

namespace qv::charting {

namespace {

constexpr char kFont[] = "Arial, Helvetica, 'Liberation Sans', 'DejaVu Sans', sans-serif";
constexpr double kFontSize = 12.0, kLineWidth = 1.5;

void finish(QvGraphTheme& theme) noexcept {
  theme.fontSize = kFontSize;
  theme.lineWidth = kLineWidth;
  storeText(theme.font, kFont);
}

QvGraphTheme darkTheme() noexcept {
  QvGraphTheme t = {
      0xFF14181F,
      0xFFE3E7EC,
      0xFF9AA4B1,
      0xFF262D37,
      0xFF4A5462,
      0xFF4FA3E8,
      0xFFF0883E,
      0xFF8B949E,
      0xFFB0B8C2,
      {0xFFF0D050, 0xFF3FC7A0, 0xFFE58CC0, 0xFF8FC7FF, 0xFFFF9A66, 0xFFB79CFF, 0xFFC9D36A, 0xFFB8C0CA},
      0,
      0,
      0,
      {}};
  finish(t);
  return t;
}

}  // namespace

QvGraphTheme lightTheme() noexcept {
  QvGraphTheme t = {
      0xFFFFFFFF,
      0xFF1B222C,
      0xFF5E6977,
      0xFFE7EAEE,
      0xFFA9B1BC,
      0xFF1F6FB4,
      0xFFD9630B,
      0xFF7A8594,
      0xFF4A5462,
      {0xFFB8860B, 0xFF00875F, 0xFFB8478F, 0xFF3D8FD1, 0xFFD1420F, 0xFF6A4FC4, 0xFF6F7A00, 0xFF59636F},
      0,
      0,
      0,
      {}};
  finish(t);
  return t;
}

}  // namespace qv::charting

using namespace qv::charting;

extern "C" {

int QVCALL qvGraphTheme(int theme, QvGraphTheme* out) noexcept {
  if (!out || (theme != QV_THEME_LIGHT && theme != QV_THEME_DARK)) return QV_INVALID_PARM;
  *out = theme == QV_THEME_DARK ? darkTheme() : lightTheme();
  return QV_OK;
}

int QVCALL qvGraphSetTheme(QvGraph* graph, const QvGraphTheme* theme) noexcept {
  if (!graph || !theme) return QV_INVALID_PARM;
  QvGraphTheme set = *theme;
  const QvGraphTheme usual = lightTheme();
  using Colour = uint32_t QvGraphTheme::*;
  for (const Colour c : {&QvGraphTheme::background, &QvGraphTheme::text, &QvGraphTheme::faint,
                         &QvGraphTheme::grid, &QvGraphTheme::frame, &QvGraphTheme::up, &QvGraphTheme::down,
                         &QvGraphTheme::zone, &QvGraphTheme::cursor})
    if (set.*c == 0) set.*c = usual.*c;
  for (int i = 0; i < static_cast<int>(std::size(set.palette)); ++i)
    if (set.palette[i] == 0) set.palette[i] = usual.palette[i];
  constexpr double kLeastSize = 4.0, kGreatestSize = 200.0;
  set.fontSize = isValue(set.fontSize) && set.fontSize > 0.0
                     ? std::clamp(+set.fontSize, kLeastSize, kGreatestSize)
                     : +usual.fontSize;
  set.lineWidth = isValue(set.lineWidth) && set.lineWidth > 0.0 ? std::min(+set.lineWidth, kGreatestSize)
                                                                : +usual.lineWidth;
  char font[sizeof set.font + 1] = {};
  std::memcpy(font, theme->font, sizeof set.font);
  storeText(set.font, font[0] ? font : kFont);
  graph->theme = set;
  return QV_OK;
}

}  // extern "C"
