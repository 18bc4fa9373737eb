// SVG as text: elements one after the other, and where they go.
#pragma once

#include <cstdio>
#include <cstring>

#include "charting/graph.h"

namespace qv::charting {

// Where the text goes: into a file, or as far as there is room into the caller's characters.
struct SvgSink {
  std::FILE* file = nullptr;
  char* text = nullptr;
  int room = 0;
  std::int64_t length = 0;

  void write(const char* from, std::size_t count) noexcept;
};

class SvgWriter {
 public:
  explicit SvgWriter(SvgSink& sink) noexcept : sink_(sink) {}

  void open(double width, double height) noexcept;
  void close() noexcept;

  void line(double x1, double y1, double x2, double y2, uint32_t colour, double width, int dash) noexcept;
  void polyline(const QvPoint* points, int count, uint32_t colour, double width, int dash) noexcept;
  void rectangle(double x, double y, double width, double height, uint32_t fill) noexcept;
  void polygon(const QvPoint* points, int count, uint32_t fill) noexcept;
  void text(double x, double y, const char* text, const char* font, double size, bool bold,
            uint32_t colour) noexcept;
  void clip(double x, double y, double width, double height) noexcept;

 private:
  // Neighbours that look alike share one path. Those without a width are filled.
  struct Path {
    uint32_t colour = 0;
    double width = 0.0;
    int dash = QV_DASH_SOLID;
    bool operator==(const Path&) const = default;
  };

  void startPath(const Path& wanted) noexcept;
  void endPath() noexcept;
  void trace(const QvPoint* points, int count) noexcept;
  void sides(double width, double height) noexcept;
  void move(double x, double y) noexcept;
  void pair(double x, double y) noexcept;
  void number(double v) noexcept;
  void paint(const char* attribute, uint32_t colour) noexcept;
  void escaped(const char* text) noexcept;
  void add(const char* text) noexcept { add(text, std::strlen(text)); }
  void add(const char* text, std::size_t count) noexcept;
  void flush() noexcept;

  SvgSink& sink_;
  Path path_{};
  bool inPath_ = false, clipped_ = false;
  int clips_ = 0;
  std::size_t used_ = 0;
  char buffer_[8192] = {};
};

}  // namespace qv::charting
