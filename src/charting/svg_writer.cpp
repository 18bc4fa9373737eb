#include "charting/svg_writer.h"

#include <cmath>

namespace qv::charting {

void SvgSink::write(const char* from, std::size_t count) noexcept {
  if (file) std::fwrite(from, 1, count, file);
  const std::int64_t free = room - 1 - length;
  if (text && free > 0) std::memcpy(text + length, from, std::min(count, static_cast<std::size_t>(free)));
  length += static_cast<std::int64_t>(count);
}

void SvgWriter::open(double width, double height) noexcept {
  add("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"");
  number(width);
  add("\" height=\"");
  number(height);
  add("\" viewBox=\"0 0 ");
  number(width);
  add(" ");
  number(height);
  add("\" fill=\"none\" stroke-linejoin=\"round\">\n");
}

void SvgWriter::close() noexcept {
  endPath();
  add("</g>\n");  // of the clip that every painting begins with
  add("</svg>\n");
  flush();
}

void SvgWriter::line(double x1, double y1, double x2, double y2, uint32_t colour, double width,
                     int dash) noexcept {
  startPath({colour, width, dash});
  move(x1, y1);
  if (y1 == y2) {
    add("H");
    number(x2);
  } else if (x1 == x2) {
    add("V");
    number(y2);
  } else {
    add("L");
    pair(x2, y2);
  }
}

void SvgWriter::polyline(const QvPoint* points, int count, uint32_t colour, double width, int dash) noexcept {
  startPath({colour, width, dash});
  trace(points, count);
}

void SvgWriter::rectangle(double x, double y, double width, double height, uint32_t fill) noexcept {
  startPath({fill});
  move(x, y);
  sides(width, height);
  add("z");
}

void SvgWriter::polygon(const QvPoint* points, int count, uint32_t fill) noexcept {
  startPath({fill});
  trace(points, count);
  add("z");
}

void SvgWriter::text(double x, double y, const char* text, const char* font, double size, bool bold,
                     uint32_t colour) noexcept {
  endPath();
  add("<text x=\"");
  number(x);
  add("\" y=\"");
  number(y);
  add("\" font-family=\"");
  escaped(font);
  add("\" font-size=\"");
  number(size);
  add(bold ? "\" font-weight=\"bold\"" : "\"");
  paint("fill", colour);
  add(">");
  escaped(text);
  add("</text>\n");
}

void SvgWriter::clip(double x, double y, double width, double height) noexcept {
  endPath();
  if (clipped_) add("</g>\n");
  clipped_ = true;
  char id[16];
  std::snprintf(id, sizeof id, "c%d", ++clips_);
  add("<clipPath id=\"");
  add(id);
  add("\"><path d=\"M");
  pair(x, y);
  sides(width, height);
  add("z\"/></clipPath><g clip-path=\"url(#");
  add(id);
  add(")\">\n");
}

// Three sides of a rectangle from its corner on.
void SvgWriter::sides(double width, double height) noexcept {
  add("h");
  number(width);
  add("v");
  number(height);
  add("h");
  number(-width);
}

void SvgWriter::startPath(const Path& wanted) noexcept {
  if (inPath_ && path_ == wanted) return;
  endPath();
  path_ = wanted;
  inPath_ = true;
  add("<path");
  const bool stroked = wanted.width > 0.0;
  paint(stroked ? "stroke" : "fill", wanted.colour);
  if (stroked) {
    add(" stroke-width=\"");
    number(wanted.width);
    add("\"");
    if (wanted.dash == QV_DASH_DASHED) add(" stroke-dasharray=\"5 4\"");
    if (wanted.dash == QV_DASH_DOTTED) add(" stroke-dasharray=\"1.5 3\"");
  }
  add(" d=\"");
}

void SvgWriter::endPath() noexcept {
  if (inPath_) add("\"/>\n");
  inPath_ = false;
}

void SvgWriter::trace(const QvPoint* points, int count) noexcept {
  for (int i = 0; i < count; ++i) {
    if (i == 0) {
      move(points[0].x, points[0].y);
      continue;
    }
    add(i == 1 ? "L" : " ");
    pair(points[i].x, points[i].y);
  }
}

void SvgWriter::move(double x, double y) noexcept {
  add("M");
  pair(x, y);
}

void SvgWriter::pair(double x, double y) noexcept {
  number(x);
  add(" ");
  number(y);
}

// To the hundredth, without zeros at the end. Most of a picture is numbers: they are written from behind.
void SvgWriter::number(double v) noexcept {
  char digits[32];
  char* const end = digits + sizeof digits;
  char* at = end;
  auto left = static_cast<std::uint64_t>(std::floor(std::fabs(v) * 100.0 + 0.5));
  const auto digit = [&] {
    *--at = static_cast<char>('0' + left % 10);
    left /= 10;
  };
  if (left % 100 == 0) {
    left /= 100;
  } else {
    if (left % 10 == 0)
      left /= 10;
    else
      digit();
    digit();
    *--at = '.';
  }
  do digit();
  while (left != 0);
  if (v < 0.0) *--at = '-';
  add(at, static_cast<std::size_t>(end - at));
}

void SvgWriter::paint(const char* attribute, uint32_t colour) noexcept {
  char text[64];
  std::snprintf(text, sizeof text, " %s=\"#%06x\"", attribute, static_cast<unsigned>(colour & 0xFFFFFFu));
  add(text);
  const unsigned alpha = colour >> 24;
  if (alpha == 255) return;
  std::snprintf(text, sizeof text, " %s-opacity=\"0.%03u\"", attribute, alpha * 1000 / 255);
  add(text);
}

void SvgWriter::escaped(const char* text) noexcept {
  for (; *text; ++text) {
    switch (*text) {
      case '<':
        add("&lt;");
        break;
      case '>':
        add("&gt;");
        break;
      case '&':
        add("&amp;");
        break;
      case '"':
        add("&quot;");
        break;
      default:
        add(text, 1);
    }
  }
}

void SvgWriter::add(const char* text, std::size_t count) noexcept {
  if (used_ + count > sizeof buffer_) flush();
  std::memcpy(buffer_ + used_, text, count);
  used_ += count;
}

void SvgWriter::flush() noexcept {
  sink_.write(buffer_, used_);
  used_ = 0;
}

}  // namespace qv::charting
