// A painter that remembers what it was asked to paint, and under which clip.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "charting/graph.h"
#include "support/series.h"

namespace qvtest {

struct Box {
  double left, top, right, bottom;
  bool overlaps(const Box& o) const {
    return left < o.right && o.left < right && top < o.bottom && o.top < bottom;
  }
  bool holds(const Box& o, double slack) const {
    return o.left >= left - slack && o.right <= right + slack && o.top >= top - slack &&
           o.bottom <= bottom + slack;
  }
};

struct Painted {
  enum Kind { Line, Rectangle, Polygon, Text } kind;
  Box box;
  uint32_t colour;
  Box clip;
  std::string text;
  std::vector<QvPoint> points;
  double width = 0;
  int dash = 0;
};

class Recording {
 public:
  explicit Recording(double scale = 1.0)
      : painter{this, scale, line, polyline, rectangle, polygon, text, extent, clip} {}
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  int paint(QvGraph* g, double width, double height) {
    all.clear();
    calls = 0;
    return qvGraphPaint(g, &painter, width, height);
  }
  std::vector<Painted> of(Painted::Kind kind, uint32_t colour = 0) const {
    std::vector<Painted> found;
    for (const Painted& p : all)
      if (p.kind == kind && (colour == 0 || p.colour == colour)) found.push_back(p);
    return found;
  }
  const Painted* text(const std::string& wanted) const {
    for (const Painted& p : all)
      if (p.kind == Painted::Text && p.text == wanted) return &p;
    return nullptr;
  }

  QvPainter painter;
  std::vector<Painted> all;
  int calls = 0, failing = -1;  // the number of the call that fails
  int answer = -5;
  bool starves = false;  // the allocation behind that call fails, too

 private:
  int add(Painted::Kind kind, const QvPoint* points, int count, uint32_t colour, const char* text = "",
          double width = 0, int dash = 0) {
    Painted p = {kind, {1e300, 1e300, -1e300, -1e300}, colour, clip_,
                 text, {points, points + count},       width,  dash};
    for (const QvPoint& q : p.points) {
      p.box.left = std::min(p.box.left, q.x);
      p.box.right = std::max(p.box.right, q.x);
      p.box.top = std::min(p.box.top, q.y);
      p.box.bottom = std::max(p.box.bottom, q.y);
    }
    all.push_back(std::move(p));
    return next();
  }
  int next() {
    if (calls++ != failing) return 0;
    if (starves) qv::memory::failAllocation(1);
    return answer;
  }
  static Recording& self(void* c) { return *static_cast<Recording*>(c); }

  static int QVCALL line(void* c, double x1, double y1, double x2, double y2, uint32_t colour, double width,
                         int dash) {
    const QvPoint ends[] = {{x1, y1}, {x2, y2}};
    return self(c).add(Painted::Line, ends, 2, colour, "", width, dash);
  }
  static int QVCALL polyline(void* c, const QvPoint* points, int count, uint32_t colour, double width,
                             int dash) {
    return self(c).add(Painted::Line, points, count, colour, "", width, dash);
  }
  static int QVCALL rectangle(void* c, double x, double y, double width, double height, uint32_t colour) {
    const QvPoint ends[] = {{x, y}, {x + width, y + height}};
    return self(c).add(Painted::Rectangle, ends, 2, colour);
  }
  static int QVCALL polygon(void* c, const QvPoint* points, int count, uint32_t colour) {
    return self(c).add(Painted::Polygon, points, count, colour);
  }
  static int QVCALL text(void* c, double x, double y, const char* text, const char* font, double size,
                         int bold, uint32_t colour) {
    double width = 0;
    extent(nullptr, text, font, size, bold, &width);
    const QvPoint ends[] = {{x, y - 0.75 * size}, {x + width, y + 0.2 * size}};
    return self(c).add(Painted::Text, ends, 2, colour, text);
  }
  static int QVCALL extent(void* c, const char* text, const char*, double size, int bold, double* width) {
    *width = static_cast<double>(std::strlen(text)) * size * (bold ? 0.62 : 0.58);
    if (!c) return 0;
    return self(c).next();
  }
  static int QVCALL clip(void* c, double x, double y, double width, double height) {
    self(c).clip_ = {x, y, x + width, y + height};
    return self(c).next();
  }

  Box clip_{0, 0, 0, 0};
};

// A graph that closes itself.
struct Graph {
  explicit Graph(const QvBars& bars, const char* title = nullptr, int keep = QV_GRAPH_REFER)
      : g(qvGraphOpen(&bars, title, keep)) {}
  ~Graph() { qvGraphClose(g); }
  Graph(const Graph&) = delete;
  Graph& operator=(const Graph&) = delete;
  operator QvGraph*() const { return g; }  // NOLINT(google-explicit-constructor)

  int chart(int kind, int subWindow = 0) const {
    return qvGraphChart(g, QV_GRAPH_NEW, subWindow, nullptr, kind, 0, QV_GRAPH_REFER);
  }
  int line(const QvArray& series, int kind = QV_LINE_LINE, const QvArray* other = nullptr,
           int subWindow = 0) const {
    return qvGraphLine(g, QV_GRAPH_NEW, subWindow, &series, other, kind, QV_SIDE_RIGHT, "line",
                       QV_GRAPH_REFER);
  }
  int formula(const char* text) const {
    char error[200];
    const int item = qvGraphFormula(g, QV_GRAPH_NEW, text, error, sizeof error);
    EXPECT_GE(item, 0) << text << ": " << error;
    return item;
  }
  QvPoint at(int bar, double price, int subWindow = 0) const {
    QvPoint p{kNaN, kNaN};
    EXPECT_EQ(qvGraphPosition(g, subWindow, QV_SIDE_RIGHT, bar, price, &p), 0);
    return p;
  }
  QvGraphHit hit(double x, double y) const {
    QvGraphHit h{};
    EXPECT_EQ(qvGraphHit(g, x, y, &h), 0);
    return h;
  }

  QvGraph* g;
};

inline std::string svgOf(QvGraph* g, double width, double height) {
  const int length = qvGraphTextSVG(g, width, height, nullptr, 0);
  EXPECT_GT(length, 0);
  std::string text(static_cast<std::size_t>(std::max(length, 0)) + 1, '#');
  EXPECT_EQ(qvGraphTextSVG(g, width, height, text.data(), static_cast<int>(text.size())), length);
  EXPECT_EQ(text.back(), '\0');
  text.pop_back();
  return text;
}

inline QvGraphTheme themeOf(int which) {
  QvGraphTheme theme;
  EXPECT_EQ(qvGraphTheme(which, &theme), 0);
  return theme;
}

}  // namespace qvtest
