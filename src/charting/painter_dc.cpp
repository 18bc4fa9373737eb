// The painter over a device context of the system.
#include "charting/graph.h"
#include "platform/drawing.h"

namespace {

using namespace qv;
using platform::Device;
using platform::DevicePoint;

Device& device(void* context) noexcept {
  return *static_cast<Device*>(context);
}
int answer(bool done) noexcept {
  return done ? int{QV_OK} : int{QV_FILE_WRITE};
}
static_assert(sizeof(DevicePoint) == sizeof(QvPoint));
const DevicePoint* devicePoints(const QvPoint* points) noexcept {
  return reinterpret_cast<const DevicePoint*>(points);  // NOLINT: the same two doubles
}

int QVCALL line(void* c, double x1, double y1, double x2, double y2, uint32_t colour, double width,
                int dash) noexcept {
  const DevicePoint ends[] = {{x1, y1}, {x2, y2}};
  return answer(device(c).polyline(ends, 2, colour, width, dash));
}
int QVCALL polyline(void* c, const QvPoint* points, int count, uint32_t colour, double width,
                    int dash) noexcept {
  return answer(device(c).polyline(devicePoints(points), count, colour, width, dash));
}
int QVCALL rectangle(void* c, double x, double y, double width, double height, uint32_t fill) noexcept {
  return answer(device(c).rectangle(x, y, width, height, fill));
}
int QVCALL polygon(void* c, const QvPoint* points, int count, uint32_t fill) noexcept {
  return answer(device(c).polygon(devicePoints(points), count, fill));
}
int QVCALL text(void* c, double x, double y, const char* text, const char* font, double size, int bold,
                uint32_t colour) noexcept {
  return answer(device(c).text(x, y, text, font, size, bold != 0, colour));
}
int QVCALL extent(void* c, const char* text, const char* font, double size, int bold,
                  double* width) noexcept {
  return answer(device(c).extent(text, font, size, bold != 0, width));
}
int QVCALL clip(void* c, double x, double y, double width, double height) noexcept {
  return answer(device(c).clip(x, y, width, height));
}

}  // namespace

extern "C" {

int QVCALL qvGraphPaintDC(QvGraph* graph, void* dc, int width, int height) noexcept {
  if (!graph || !dc) return QV_INVALID_PARM;
  if (!platform::hasDeviceContexts()) return QV_UNKNOWN;
  Device target(dc, graph->theme.background);
  if (!target.ok()) return QV_INVALID_PARM;
  const QvPainter painter = {&target, 1.0, line, polyline, rectangle, polygon, text, extent, clip};
  return qvGraphPaint(graph, &painter, width, height);
}

}  // extern "C"
