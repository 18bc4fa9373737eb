#include "charting/canvas.h"

#include <cmath>

namespace qv::charting {

namespace {

// Coordinates beyond this are as good as infinitely far, and products of them stay finite.
constexpr double kFar = 1e9;
double nearer(double v) noexcept {
  return std::clamp(v, -kFar, kFar);
}

// One edge of the clip: what lies at or behind it stays.
struct Edge {
  bool vertical, keepsGreater;
  double at;
  double distance(const QvPoint& p) const noexcept {
    const double d = (vertical ? p.x : p.y) - at;
    return keepsGreater ? d : -d;
  }
};

// The polygon's part behind the edge (Sutherland and Hodgman); the number of its corners.
int cutAt(const Edge& edge, const QvPoint* in, int count, QvPoint* out) noexcept {
  int made = 0;
  for (int i = 0; i < count; ++i) {
    const QvPoint &a = in[i == 0 ? count - 1 : i - 1], &b = in[i];
    const double da = edge.distance(a), db = edge.distance(b);
    if ((da < 0.0) != (db < 0.0)) {
      const double t = da / (da - db);
      QvPoint p = {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)};
      (edge.vertical ? p.x : p.y) = edge.at;
      out[made++] = p;
    }
    if (db >= 0.0) out[made++] = b;
  }
  return made;
}

}  // namespace

uint32_t inkOn(uint32_t colour) noexcept {
  const double red = (colour >> 16) & 255u, green = (colour >> 8) & 255u, blue = colour & 255u;
  return 0.299 * red + 0.587 * green + 0.114 * blue > 140.0 ? 0xFF000000u : 0xFFFFFFFFu;
}

Canvas::Canvas(const QvPainter& painter, const QvGraphTheme& theme) noexcept
    : painter_(painter),
      theme_(theme),
      scale_(isValue(painter.scale) && painter.scale > 0.0 ? painter.scale : 1.0) {
  constexpr double kFinest = 64.0;
  scale_ = std::min(scale_, kFinest);
}

bool Canvas::took(int answer) noexcept {
  if (answer != 0) fail(answer < 0 ? answer : int{QV_FILE_WRITE});
  return !failed();
}

double Canvas::snapped(double v) const noexcept {
  return std::floor(v * scale_ + 0.5) / scale_;
}

double Canvas::sharpWidth(double width) const noexcept {
  return std::max(1.0, std::floor(width * scale_ + 0.5)) / scale_;
}

// The middle of a line whose edges lie between pixels.
double Canvas::sharp(double v, double width) const noexcept {
  const double pixels = width * scale_;
  const bool odd = std::fmod(pixels, 2.0) >= 1.0;
  return (std::floor(v * scale_ + (odd ? 0.0 : 0.5)) + (odd ? 0.5 : 0.0)) / scale_;
}

void Canvas::clip(const Rect& rect) noexcept {
  clip_ = rect;
  if (!failed()) took(painter_.clip(painter_.context, rect.left, rect.top, rect.width(), rect.height()));
}

// Liang and Barsky; false when nothing of the line is left.
bool Canvas::cut(double& x1, double& y1, double& x2, double& y2) const noexcept {
  const double dx = x2 - x1, dy = y2 - y1;
  const double p[] = {-dx, dx, -dy, dy};
  const double q[] = {x1 - clip_.left, clip_.right - x1, y1 - clip_.top, clip_.bottom - y1};
  double from = 0.0, to = 1.0;
  for (int i = 0; i < 4; ++i) {
    if (p[i] == 0.0) {
      if (q[i] < 0.0) return false;
      continue;
    }
    const double t = q[i] / p[i];
    if (p[i] < 0.0)
      from = std::max(from, t);
    else
      to = std::min(to, t);
  }
  if (!(from <= to)) return false;
  const double x = x1, y = y1;
  x1 = std::clamp(x + from * dx, clip_.left, clip_.right);
  y1 = std::clamp(y + from * dy, clip_.top, clip_.bottom);
  x2 = std::clamp(x + to * dx, clip_.left, clip_.right);
  y2 = std::clamp(y + to * dy, clip_.top, clip_.bottom);
  return true;
}

void Canvas::line(double x1, double y1, double x2, double y2, const Pen& pen) noexcept {
  if (failed() || y1 != y1 || y2 != y2) return;
  x1 = nearer(x1), y1 = nearer(y1), x2 = nearer(x2), y2 = nearer(y2);
  if (cut(x1, y1, x2, y2))
    took(painter_.line(painter_.context, x1, y1, x2, y2, pen.colour, pen.width, pen.dash));
}

void Canvas::horizontal(double x1, double x2, double y, const Pen& pen) noexcept {
  const double width = sharpWidth(pen.width), at = sharp(y, width);
  line(snapped(x1), at, snapped(x2), at, {pen.colour, width, pen.dash});
}

void Canvas::vertical(double x, double y1, double y2, const Pen& pen) noexcept {
  const double width = sharpWidth(pen.width), at = sharp(x, width);
  line(at, y1, at, y2, {pen.colour, width, pen.dash});
}

void Canvas::box(double x1, double y1, double x2, double y2, uint32_t fill) noexcept {
  if (failed() || y1 != y1 || y2 != y2) return;
  const auto side = [this](double a, double b, double low, double high, double& from, double& to) {
    from = snapped(nearer(std::min(a, b)));
    to = std::max(snapped(nearer(std::max(a, b))), from + pixel());
    from = std::max(from, low);
    to = std::min(to, high);
    return from < to;
  };
  double left, right, top, bottom;
  if (!side(x1, x2, clip_.left, clip_.right, left, right) ||
      !side(y1, y2, clip_.top, clip_.bottom, top, bottom))
    return;
  took(painter_.rectangle(painter_.context, left, top, right - left, bottom - top, fill));
}

void Canvas::outline(const Rect& rect, const Pen& pen) noexcept {
  horizontal(rect.left, rect.right, rect.top, pen);
  horizontal(rect.left, rect.right, rect.bottom, pen);
  vertical(rect.left, rect.top, rect.bottom, pen);
  vertical(rect.right, rect.top, rect.bottom, pen);
}

void Canvas::polygon(const QvPoint* points, int count, uint32_t fill) noexcept {
  if (failed()) return;
  // An edge cuts a polygon of n corners into one of at most 2 n.
  const std::size_t room = static_cast<std::size_t>(count) * 2 + 8;
  if (!cut_[0].grow(room) || !cut_[1].grow(room)) return fail(QV_MALLOC);
  for (int i = 0; i < count; ++i)
    cut_[0][static_cast<std::size_t>(i)] = {nearer(points[i].x), nearer(points[i].y)};
  const Edge edges[] = {{true, true, clip_.left},
                        {true, false, clip_.right},
                        {false, true, clip_.top},
                        {false, false, clip_.bottom}};
  int current = 0;
  for (const Edge& edge : edges) {
    if (!cut_[1 - current].grow(static_cast<std::size_t>(count) * 2 + 2)) return fail(QV_MALLOC);
    count = cutAt(edge, cut_[current].data(), count, cut_[1 - current].data());
    current = 1 - current;
  }
  if (count >= 3) took(painter_.polygon(painter_.context, cut_[current].data(), count, fill));
}

void Canvas::begin(const Pen& pen) noexcept {
  pen_ = pen;
  lastX_ = lastY_ = kNotKnown;
  count_ = 0;
}

void Canvas::flush() noexcept {
  if (count_ > 1 && !failed())
    took(painter_.polyline(painter_.context, points_, count_, pen_.colour, pen_.width, pen_.dash));
  count_ = 0;
}

void Canvas::to(double x, double y) noexcept {
  if (y != y) {
    flush();
    lastX_ = lastY_ = kNotKnown;
    return;
  }
  x = nearer(x), y = nearer(y);
  double x1 = lastX_, y1 = lastY_, x2 = x, y2 = y;
  lastX_ = x, lastY_ = y;
  if (x1 != x1 || (x1 == x && y1 == y)) return;
  if (!cut(x1, y1, x2, y2)) return flush();
  if (count_ == 0 || points_[count_ - 1].x != x1 || points_[count_ - 1].y != y1) {
    flush();
    points_[count_++] = {x1, y1};
  }
  points_[count_++] = {x2, y2};
  if (count_ < kPoints) return;
  flush();
  points_[count_++] = {x2, y2};
}

void Canvas::end() noexcept {
  flush();
  lastX_ = lastY_ = kNotKnown;
}

double Canvas::extent(const char* text, bool bold) noexcept {
  double width = 0.0;
  if (!failed())
    took(painter_.extent(painter_.context, text, theme_.font, theme_.fontSize, bold ? 1 : 0, &width));
  return isValue(width) && width > 0.0 ? width : 0.0;
}

void Canvas::text(double x, double y, const char* text, uint32_t colour, Align align, bool bold) noexcept {
  if (failed()) return;
  if (align != Align::Left) x -= extent(text, bold) * (align == Align::Centre ? 0.5 : 1.0);
  if (failed()) return;
  took(painter_.text(painter_.context, nearer(x), nearer(y), text, theme_.font, theme_.fontSize, bold ? 1 : 0,
                     colour));
}

}  // namespace qv::charting
