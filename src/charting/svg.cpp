// The painter that writes SVG.
#include <cmath>
#include <cstdio>

#include "charting/graph.h"
#include "core/output_file.h"

namespace {

using namespace qv;
using namespace qv::charting;

// Where the text goes: into a file, or as far as there is room into the caller's characters.
struct Sink {
  std::FILE* file = nullptr;
  char* text = nullptr;
  int room = 0;
  std::int64_t length = 0;

  void write(const char* from, std::size_t count) noexcept {
    if (file) std::fwrite(from, 1, count, file);
    const std::int64_t free = room - 1 - length;
    if (text && free > 0) std::memcpy(text + length, from, std::min(count, static_cast<std::size_t>(free)));
    length += static_cast<std::int64_t>(count);
  }
};

// Widths of the characters 32 .. 126 in thousandths of the font's size: those of Helvetica's metrics. Other
// fonts that may stand in for it are up to a seventh wider.
constexpr short kWidths[] = {278,  278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333, 278, 278,
                             556,  556, 556, 556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556,
                             1015, 667, 667, 722, 722, 667, 611, 778, 722, 278, 500, 667, 556, 833, 722, 778,
                             667,  778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 278, 278, 278, 469, 556,
                             333,  556, 556, 500, 556, 556, 278, 556, 556, 222, 222, 500, 222, 833, 556, 556,
                             556,  556, 333, 500, 278, 556, 500, 722, 500, 500, 500, 334, 260, 334, 584};
constexpr double kSpare = 1.15, kBold = 1.1;

double widthOf(const char* text) noexcept {
  double width = 0.0;
  for (const char* c = text; *c;) {
    const int length = std::max(characterLength(c), 1);
    constexpr int kLetter = 667, kIdeograph = 1000;
    width += length == 1 && *c >= ' ' && *c <= '~' ? kWidths[*c - ' '] : length < 3 ? kLetter : kIdeograph;
    c += length;
  }
  return width / 1000.0;
}

class Writer {
 public:
  explicit Writer(Sink& sink) noexcept : sink_(sink) {}

  void open(double width, double height, uint32_t) noexcept {
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
  void close() noexcept {
    endPath();
    if (clipped_) add("</g>\n");
    add("</svg>\n");
    flush();
  }

  void line(double x1, double y1, double x2, double y2, uint32_t colour, double width, int dash) noexcept {
    const Path wanted = {colour, width, dash, true};
    startPath(wanted);
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
  void polyline(const QvPoint* points, int count, uint32_t colour, double width, int dash) noexcept {
    startPath({colour, width, dash, true});
    trace(points, count);
  }
  void rectangle(double x, double y, double width, double height, uint32_t fill) noexcept {
    startPath({fill, 0.0, 0, false});
    move(x, y);
    sides(width, height);
    add("z");
  }
  void polygon(const QvPoint* points, int count, uint32_t fill) noexcept {
    startPath({fill, 0.0, 0, false});
    trace(points, count);
    add("z");
  }
  void text(double x, double y, const char* text, const char* font, double size, bool bold,
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
  void clip(double x, double y, double width, double height) noexcept {
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

 private:
  // Neighbours that look alike share one path.
  struct Path {
    uint32_t colour;
    double width;
    int dash;
    bool stroked;
    bool operator==(const Path&) const = default;
  };

  // Three sides of a rectangle from its corner on.
  void sides(double width, double height) noexcept {
    add("h");
    number(width);
    add("v");
    number(height);
    add("h");
    number(-width);
  }
  void startPath(const Path& wanted) noexcept {
    if (inPath_ && path_ == wanted) return;
    endPath();
    path_ = wanted;
    inPath_ = true;
    add("<path");
    paint(wanted.stroked ? "stroke" : "fill", wanted.colour);
    if (wanted.stroked) {
      add(" stroke-width=\"");
      number(wanted.width);
      add("\"");
      if (wanted.dash == QV_DASH_DASHED) add(" stroke-dasharray=\"5 4\"");
      if (wanted.dash == QV_DASH_DOTTED) add(" stroke-dasharray=\"1.5 3\"");
    }
    add(" d=\"");
  }
  void endPath() noexcept {
    if (inPath_) add("\"/>\n");
    inPath_ = false;
  }
  void trace(const QvPoint* points, int count) noexcept {
    for (int i = 0; i < count; ++i) {
      if (i == 0) {
        move(points[0].x, points[0].y);
        continue;
      }
      add(i == 1 ? "L" : " ");
      pair(points[i].x, points[i].y);
    }
  }
  void move(double x, double y) noexcept {
    add("M");
    pair(x, y);
  }
  void pair(double x, double y) noexcept {
    number(x);
    add(" ");
    number(y);
  }
  // To the hundredth, without zeros at the end.
  void number(double v) noexcept {
    char digits[32];
    auto hundredths = static_cast<std::int64_t>(std::floor(std::fabs(v) * 100.0 + 0.5));
    const char* sign = v < 0.0 && hundredths != 0 ? "-" : "";
    const auto whole = static_cast<long long>(hundredths / 100);
    char* at = digits + std::snprintf(digits, sizeof digits - 4, "%s%lld", sign, whole);
    hundredths %= 100;
    if (hundredths) {
      *at++ = '.';
      *at++ = static_cast<char>('0' + hundredths / 10);
      if (hundredths % 10) *at++ = static_cast<char>('0' + hundredths % 10);
    }
    add(digits, static_cast<std::size_t>(at - digits));
  }
  void paint(const char* attribute, uint32_t colour) noexcept {
    char text[64];
    std::snprintf(text, sizeof text, " %s=\"#%06x\"", attribute, static_cast<unsigned>(colour & 0xFFFFFFu));
    add(text);
    const unsigned alpha = colour >> 24;
    if (alpha == 255) return;
    std::snprintf(text, sizeof text, " %s-opacity=\"0.%03u\"", attribute, alpha * 1000 / 255);
    add(text);
  }
  void escaped(const char* text) noexcept {
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
  void add(const char* text) noexcept { add(text, std::strlen(text)); }
  void add(const char* text, std::size_t count) noexcept {
    if (used_ + count > sizeof buffer_) flush();
    if (count > sizeof buffer_) return sink_.write(text, count);
    std::memcpy(buffer_ + used_, text, count);
    used_ += count;
  }
  void flush() noexcept {
    sink_.write(buffer_, used_);
    used_ = 0;
  }

  Sink& sink_;
  Path path_{};
  bool inPath_ = false, clipped_ = false;
  int clips_ = 0;
  std::size_t used_ = 0;
  char buffer_[8192];
};

Writer& writer(void* context) noexcept {
  return *static_cast<Writer*>(context);
}

int QVCALL line(void* c, double x1, double y1, double x2, double y2, uint32_t colour, double width,
                int dash) noexcept {
  writer(c).line(x1, y1, x2, y2, colour, width, dash);
  return QV_OK;
}
int QVCALL polyline(void* c, const QvPoint* points, int count, uint32_t colour, double width,
                    int dash) noexcept {
  writer(c).polyline(points, count, colour, width, dash);
  return QV_OK;
}
int QVCALL rectangle(void* c, double x, double y, double width, double height, uint32_t fill) noexcept {
  writer(c).rectangle(x, y, width, height, fill);
  return QV_OK;
}
int QVCALL polygon(void* c, const QvPoint* points, int count, uint32_t fill) noexcept {
  writer(c).polygon(points, count, fill);
  return QV_OK;
}
int QVCALL text(void* c, double x, double y, const char* text, const char* font, double size, int bold,
                uint32_t colour) noexcept {
  writer(c).text(x, y, text, font, size, bold != 0, colour);
  return QV_OK;
}
int QVCALL extent(void*, const char* text, const char*, double size, int bold, double* width) noexcept {
  *width = widthOf(text) * size * kSpare * (bold ? kBold : 1.0);
  return QV_OK;
}
int QVCALL clip(void* c, double x, double y, double width, double height) noexcept {
  writer(c).clip(x, y, width, height);
  return QV_OK;
}

int paint(QvGraph* graph, double width, double height, Sink& sink) noexcept {
  Writer svg(sink);
  const QvPainter painter = {&svg, 1.0, line, polyline, rectangle, polygon, text, extent, clip};
  svg.open(width, height, 0);
  const int status = qvGraphPaint(graph, &painter, width, height);
  svg.close();
  return status;
}

// The checks of the painting, before a file is opened.
bool fits(const QvGraph* graph, double width, double height) noexcept {
  constexpr double kLargest = 1e6;
  return graph && width >= 1.0 && height >= 1.0 && width <= kLargest && height <= kLargest;
}

}  // namespace

extern "C" {

int QVCALL qvGraphWriteSVG(QvGraph* graph, const char* file, double width, double height) noexcept {
  if (!fits(graph, width, height) || !file) return QV_INVALID_PARM;
  OutputFile out(file, false, StdoutName::kFile);
  if (!out.ok()) return QV_FILE_OPEN;
  Sink sink;
  sink.file = out.stream();
  const int status = paint(graph, width, height, sink);
  const bool written = out.finish();
  return status != QV_OK ? status : written ? int{QV_OK} : int{QV_FILE_WRITE};
}

int QVCALL qvGraphTextSVG(QvGraph* graph, double width, double height, char* text, int size) noexcept {
  if (!fits(graph, width, height) || size < 0 || (!text && size > 0)) return QV_INVALID_PARM;
  Sink sink;
  sink.text = text;
  sink.room = size;
  const int status = paint(graph, width, height, sink);
  if (text && size > 0) text[std::min<std::int64_t>(sink.length, size - 1)] = '\0';
  return status != QV_OK ? status : saturate(sink.length);
}

}  // extern "C"
