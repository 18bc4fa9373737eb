// PNG and PDF through Cairo.
#include <cairo-pdf.h>
#include <cairo.h>

#include <algorithm>

#include "runs/picture.h"

namespace qv::runs {

namespace {

cairo_t* cairo(void* context) {
  return static_cast<cairo_t*>(context);
}

int answer(void* context) {
  return cairo_status(cairo(context)) == CAIRO_STATUS_SUCCESS ? int{QV_OK} : int{QV_MALLOC};
}

void setColour(cairo_t* c, uint32_t colour) {
  const auto part = [colour](unsigned shift) { return ((colour >> shift) & 255u) / 255.0; };
  cairo_set_source_rgba(c, part(16), part(8), part(0), part(24));
}

int stroke(void* context, uint32_t colour, double width, int dash) {
  cairo_t* c = cairo(context);
  setColour(c, colour);
  cairo_set_line_width(c, width);
  const double dashes[][2] = {{0, 0}, {5, 4}, {1.5, 3}};
  cairo_set_dash(c, dashes[dash], dash ? 2 : 0, 0);
  cairo_stroke(c);
  return answer(context);
}

void trace(cairo_t* c, const QvPoint* points, int count) {
  for (int i = 0; i < count; ++i) cairo_line_to(c, points[i].x, points[i].y);
}

int QVCALL line(void* context, double x1, double y1, double x2, double y2, uint32_t colour, double width,
                int dash) {
  cairo_move_to(cairo(context), x1, y1);
  cairo_line_to(cairo(context), x2, y2);
  return stroke(context, colour, width, dash);
}

int QVCALL polyline(void* context, const QvPoint* points, int count, uint32_t colour, double width,
                    int dash) {
  trace(cairo(context), points, count);
  return stroke(context, colour, width, dash);
}

int QVCALL rectangle(void* context, double x, double y, double width, double height, uint32_t fill) {
  cairo_rectangle(cairo(context), x, y, width, height);
  setColour(cairo(context), fill);
  cairo_fill(cairo(context));
  return answer(context);
}

int QVCALL polygon(void* context, const QvPoint* points, int count, uint32_t fill) {
  trace(cairo(context), points, count);
  cairo_close_path(cairo(context));
  setColour(cairo(context), fill);
  cairo_fill(cairo(context));
  return answer(context);
}

// The first family: Cairo takes the system's nearest one.
void setFont(cairo_t* c, const char* font, double size, int bold) {
  std::string family(font);
  family.resize(std::min(family.find(','), family.size()));
  std::erase(family, '\'');
  cairo_select_font_face(c, family.c_str(), CAIRO_FONT_SLANT_NORMAL,
                         bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(c, size);
}

int QVCALL text(void* context, double x, double y, const char* text, const char* font, double size, int bold,
                uint32_t colour) {
  cairo_t* c = cairo(context);
  setFont(c, font, size, bold);
  setColour(c, colour);
  cairo_move_to(c, x, y);
  cairo_show_text(c, text);
  cairo_new_path(c);
  return answer(context);
}

int QVCALL extent(void* context, const char* text, const char* font, double size, int bold, double* width) {
  setFont(cairo(context), font, size, bold);
  cairo_text_extents_t extents;
  cairo_text_extents(cairo(context), text, &extents);
  *width = extents.x_advance;
  return answer(context);
}

int QVCALL clip(void* context, double x, double y, double width, double height) {
  cairo_reset_clip(cairo(context));
  cairo_rectangle(cairo(context), x, y, width, height);
  cairo_clip(cairo(context));
  return answer(context);
}

}  // namespace

int writeCairo(QvGraph* graph, const std::string& file, bool pdf, double width, double height, double scale) {
  using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
  if (pdf) scale = 1;
  const auto pixels = [scale](double units) { return std::max(1, static_cast<int>(units * scale)); };
  const Surface surface(pdf ? cairo_pdf_surface_create(file.c_str(), width, height)
                            : cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixels(width), pixels(height)),
                        cairo_surface_destroy);
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return pdf ? QV_FILE_OPEN : QV_MALLOC;
  const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context(cairo_create(surface.get()),
                                                                   cairo_destroy);
  cairo_scale(context.get(), scale, scale);
  const QvPainter painter = {context.get(), scale, line, polyline, rectangle, polygon, text, extent, clip};
  if (const int status = qvGraphPaint(graph, &painter, width, height); status != QV_OK) return status;
  if (pdf) cairo_surface_finish(surface.get());
  const cairo_status_t written =
      pdf ? cairo_surface_status(surface.get()) : cairo_surface_write_to_png(surface.get(), file.c_str());
  return written == CAIRO_STATUS_SUCCESS ? QV_OK : QV_FILE_WRITE;
}

}  // namespace qv::runs
