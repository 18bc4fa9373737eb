// Charts: the input builds a graph step by step. What is painted is finite and ended, hits lie where they
// say, SVG fits into the room that it asks for.
#include "input.h"
#include "qvlib60/charting.h"

namespace qvfuzz {
namespace {

struct Device {
  int calls = 0, failing = -1;

  int called() { return calls++ == failing ? -5 : 0; }
  static int finite(void* c, std::initializer_list<double> numbers) {
    for (double d : numbers) QV_REQUIRE(std::isfinite(d), "%g painted", d);
    return static_cast<Device*>(c)->called();
  }
  static int points(void* c, const QvPoint* p, int count) {
    QV_REQUIRE(count > 0, "%d points", count);
    for (int i = 0; i < count; ++i) finite(c, {p[i].x, p[i].y});
    return static_cast<Device*>(c)->called();
  }
  static int text(void* c, const char* t, double x, double y) {
    for (const char* p = t; *p; ++p) QV_REQUIRE(static_cast<unsigned char>(*p) >= 32, "a control character");
    return finite(c, {x, y});
  }

  QvPainter painter() {
    return {this,
            1.0,
            [](void* c, double a, double b, double x, double y, uint32_t, double w, int) -> int {
              return finite(c, {a, b, x, y, w});
            },
            [](void* c, const QvPoint* p, int n, uint32_t, double, int) -> int { return points(c, p, n); },
            [](void* c, double x, double y, double w, double h, uint32_t) -> int {
              return finite(c, {x, y, w, h});
            },
            [](void* c, const QvPoint* p, int n, uint32_t) -> int { return points(c, p, n); },
            [](void* c, double x, double y, const char* t, const char*, double, int, uint32_t) -> int {
              return text(c, t, x, y);
            },
            [](void* c, const char* t, const char*, double size, int, double* width) -> int {
              *width = 0.6 * size * static_cast<double>(std::strlen(t));
              return static_cast<Device*>(c)->called();
            },
            [](void* c, double x, double y, double w, double h) -> int {
              return finite(c, {x, y, w, h});
            }};
  }
};

void paint(const uint8_t* data, std::size_t size) {
  Input in(data, size);
  const Heap heap(in);
  BarSet bars(in, in.choose(0, 60)), others(in, in.choose(0, 40));
  if (in.seldom(3)) bars.disturb(in);
  Series a, b;
  for (Series* s : {&a, &b}) {
    const int n = in.choose(0, 70);
    s->allocate(n);
    fill(in, *s, n);
    if (in.seldom(4)) s->firstValid = firstValid(in, n);
  }
  const std::string title = in.cText(30);
  heap.arm();
  QvGraph* g = qvGraphOpen(in.seldom(16) ? nullptr : &bars, title.c_str(), in.choose(0, 1));
  char error[64];
  while (g && !in.empty()) {
    const int item = in.flip() ? QV_GRAPH_NEW : in.choose(-2, 12), sub = in.choose(-1, 5),
              side = in.choose(-1, 2);
    const int keep = in.choose(-1, 2), kind = in.choose(-1, 9);
    int answer = 0;
    switch (in.choose(0, 14)) {
      case 0:
        answer = qvGraphSubWindow(g, item, title.c_str(), in.number());
        break;
      case 1:
        answer = qvGraphChart(g, item, sub, in.flip() ? nullptr : &others, kind, in.number(), keep);
        break;
      case 2:
        answer = qvGraphLine(g, item, sub, &a, in.flip() ? &b : nullptr, kind, side, title.c_str(), keep);
        break;
      case 3:
        answer = qvGraphZone(g, item, sub, in.number(), in.number(), side);
        break;
      case 4: {
        QvGraphShape shape{};
        shape.kind = kind;
        shape.bar = in.flip() ? in.choose(-5, 70) : in.integer(),
        shape.bar2 = in.flip() ? in.choose(-5, 70) : in.integer();
        shape.price = in.number(), shape.price2 = in.number(), shape.deviations = in.number();
        shape.direction = in.choose(-2, 2);
        std::memset(shape.text, in.choose(-128, 127), sizeof shape.text);
        answer = qvGraphShape(g, item, sub, &shape);
        break;
      }
      case 5: {
        static constexpr const char* kFormulas[] = {"sma(9)",     "rsi(5)",        "close > open",
                                                    "bbands(20)", "macd(3, 5, 2)", "x("};
        const std::string own = in.cText(20);
        answer =
            qvGraphFormula(g, sub, in.flip() ? kFormulas[in.choose(0, 5)] : own.c_str(), error, sizeof error);
        break;
      }
      case 13: {
        const QvCatalogueEntry* entry = qvCatalogueItem(in.choose(-1, qvCatalogueSize()));
        const QvArray* series[] = {&a, in.flip() ? &b : nullptr, &b, &a};
        answer = qvGraphCalculation(g, sub, entry, in.flip() ? &others : nullptr,
                                    in.flip() ? series : nullptr, nullptr);
        break;
      }
      case 6: {
        QvGraphStyle style{};
        style.width = in.number(), style.dash = kind, style.hidden = in.flip(), style.colour = 0xFF000000u;
        std::memset(style.name, in.choose(-128, 127), sizeof style.name);
        answer = qvGraphStyle(g, item, in.choose(-1, 4), &style);
        break;
      }
      case 7:
        answer = qvGraphRemove(g, item);
        break;
      case 8:
        answer = qvGraphScale(g, sub, side, in.choose(-1, 3), in.number(), in.number());
        break;
      case 9:
        answer = qvGraphRange(g, in.integer(), in.integer());
        break;
      case 10:
        answer = qvGraphRangeDates(g, in.number(), in.number());
        break;
      case 11:
        answer = qvGraphCursor(g, in.integer());
        break;
      case 12: {
        QvGraphTheme theme;
        qvGraphTheme(in.choose(-1, 2), &theme);
        theme.fontSize = in.number(), theme.lineWidth = in.number();
        answer = qvGraphSetTheme(g, &theme);
        break;
      }
      default: {
        Device device;
        device.failing = in.seldom(8) ? in.choose(0, 200) : -1;
        const QvPainter painter = device.painter();
        const double width = in.flip() ? in.choose(1, 900) : in.number(),
                     height = in.flip() ? in.choose(1, 600) : in.number();
        answer = qvGraphPaint(g, &painter, width, height);
        QvGraphHit hit;
        if (qvGraphHit(g, in.number(), in.number(), &hit) == 0)
          QV_REQUIRE(hit.subWindow >= -1 && hit.subWindow < 64 && hit.item >= -1, "%d %d", +hit.subWindow,
                     +hit.item);
        QvPoint point;
        qvGraphPosition(g, sub, side, in.integer(), in.number(), &point);
        const int length = qvGraphTextSVG(g, width, height, nullptr, 0);
        if (length > 0 && length < 4000000 && !heap.fails()) {
          std::vector<char> text(static_cast<std::size_t>(length) + 1, '?');
          QV_REQUIRE(qvGraphTextSVG(g, width, height, text.data(), length + 1) == length &&
                         std::strlen(text.data()) == static_cast<std::size_t>(length),
                     "%d", length);
        }
      }
    }
    QV_REQUIRE(answer >= -10 && (answer != QV_MALLOC || heap.fails()), "%d", answer);
  }
  qvGraphClose(g);
  Heap::disarm();
}

}  // namespace
}  // namespace qvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  qvfuzz::paint(data, size);
  return 0;
}
