// Drawing through a caller's painter: everything is cut to the clip before it gets there, straight lines and
// boxes lie on whole device pixels, and the first callback that fails ends the painting. Places (x) are
// numbers; heights may be none, and what has one of these is not drawn.
#pragma once

#include <cmath>

#include "charting/graph.h"

namespace qv::charting {

struct Pen {
  uint32_t colour = 0;
  double width = 1.0;
  int dash = QV_DASH_SOLID;
};

enum class Align { Left, Centre, Right };

class Canvas {
 public:
  Canvas(const QvPainter& painter, const QvGraphTheme& theme) noexcept;

  int status() const noexcept { return status_; }
  bool failed() const noexcept { return status_ != QV_OK; }
  void fail(int status) noexcept {
    if (!failed()) status_ = status;
  }

  const QvGraphTheme& theme() const noexcept { return theme_; }
  // The smallest length that is seen: a device pixel.
  double pixel() const noexcept { return 1.0 / scale_; }
  double snapped(double v) const noexcept;

  void clip(const Rect& rect) noexcept;
  const Rect& clipped() const noexcept { return clip_; }

  void line(double x1, double y1, double x2, double y2, const Pen& pen) noexcept;
  // Sharp ones, a whole number of device pixels wide.
  void horizontal(double x1, double x2, double y, const Pen& pen) noexcept;
  void vertical(double x, double y1, double y2, const Pen& pen) noexcept;
  // At least a device pixel wide and high.
  void box(double x1, double y1, double x2, double y2, uint32_t fill) noexcept;
  void outline(const Rect& rect, const Pen& pen) noexcept;
  void polygon(const QvPoint* points, int count, uint32_t fill) noexcept;
  // A line from point to point, piece by piece; gaps are left by not-a-numbers.
  void begin(const Pen& pen) noexcept;
  void to(double x, double y) noexcept;
  void end() noexcept;

  // The base line is at y.
  void text(double x, double y, const char* text, uint32_t colour, Align align = Align::Left,
            bool bold = false) noexcept;
  double extent(const char* text, bool bold = false) noexcept;
  double fontSize() const noexcept { return theme_.fontSize; }

 private:
  bool took(int answer) noexcept;
  bool cut(double& x1, double& y1, double& x2, double& y2) const noexcept;
  void flush() noexcept;
  double sharp(double v, double width) const noexcept;
  double sharpWidth(double width) const noexcept;

  const QvPainter& painter_;
  const QvGraphTheme& theme_;
  double scale_;
  int status_ = QV_OK;
  Rect clip_;
  Pen pen_;
  double lastX_ = kNotKnown, lastY_ = kNotKnown;
  static constexpr int kPoints = 512;
  QvPoint points_[kPoints];
  int count_ = 0;
  memory::Buffer<QvPoint> cut_[2];
};

// The colour with so much (0 .. 1) of its opacity.
inline uint32_t withOpacity(uint32_t colour, double opacity) noexcept {
  const auto alpha = static_cast<uint32_t>(std::lround((colour >> 24) * opacity));
  return (colour & 0xFFFFFFu) | alpha << 24;
}
// Black or white, whichever is read better on the colour.
uint32_t inkOn(uint32_t colour) noexcept;

}  // namespace qv::charting
