// The painter that writes SVG.
#include "charting/svg_writer.h"
#include "core/output_file.h"

namespace {

using namespace qv;
using namespace qv::charting;

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
    const auto place = static_cast<unsigned>(static_cast<unsigned char>(*c)) - ' ';
    width += place < std::size(kWidths) ? kWidths[place] : length < 3 ? kLetter : kIdeograph;
    c += length;
  }
  return width / 1000.0;
}

SvgWriter& writer(void* context) noexcept {
  return *static_cast<SvgWriter*>(context);
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

int paint(QvGraph* graph, double width, double height, SvgSink& sink) noexcept {
  SvgWriter svg(sink);
  const QvPainter painter = {&svg, 1.0, line, polyline, rectangle, polygon, text, extent, clip};
  svg.open(width, height);
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
  SvgSink sink;
  sink.file = out.stream();
  const int status = paint(graph, width, height, sink);
  const bool written = out.finish();
  return status != QV_OK ? status : written ? int{QV_OK} : int{QV_FILE_WRITE};
}

int QVCALL qvGraphTextSVG(QvGraph* graph, double width, double height, char* text, int size) noexcept {
  if (!fits(graph, width, height) || size < 0 || (!text && size > 0)) return QV_INVALID_PARM;
  SvgSink sink;
  sink.text = text;
  sink.room = size;
  const int status = paint(graph, width, height, sink);
  if (text && size > 0) text[std::min<std::int64_t>(sink.length, size - 1)] = '\0';
  return status != QV_OK ? status : saturate(sink.length);
}

}  // extern "C"
