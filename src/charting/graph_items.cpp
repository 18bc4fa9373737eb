// What stands in a graph: charts of bar sets, lines, zones and shapes.
#include <cmath>

#include "charting/graph.h"
#include "charting/texts.h"

namespace {

using namespace qv;
using namespace qv::charting;

// Where an item may go: into a sub-window that is, under a new number or that of an item.
bool mayStand(const QvGraph* graph, int item, int subWindow) noexcept {
  return hasSubWindow(graph, subWindow) && (item == QV_GRAPH_NEW || charting::hasItem(graph, item));
}
bool isSide(int side) noexcept {
  return side == QV_SIDE_RIGHT || side == QV_SIDE_LEFT;
}

// Puts the item where its series were kept, else gives the error.
int putKept(QvGraph& graph, int number, Item& item, int status) noexcept {
  if (status == QV_OK) return put(graph, number, item);
  release(item);
  return status;
}

}  // namespace

extern "C" {

int QVCALL qvGraphChart(QvGraph* graph, int item, int subWindow, const QvBars* bars, int kind, double box,
                        int keep) noexcept {
  if (!mayStand(graph, item, subWindow) || kind < QV_CHART_CANDLES || kind > QV_CHART_HEIKIN_ASHI)
    return QV_INVALID_PARM;
  const QvBars* axis = graph->bars.record;
  if (!bars) {
    bars = axis;
    keep = QV_GRAPH_REFER;  // the graph has them already
  }
  Item made;
  made.kind = Item::Kind::Chart;
  made.subWindow = subWindow;
  made.form = kind;
  made.box = isValue(box) && box > 0.0 ? box : 0.0;
  const char* symbol = bars->symbol[0] ? bars->symbol : bars->name;
  char name[17] = {};
  std::memcpy(name, symbol, 16);
  storeText(made.name, kind == QV_CHART_VOLUME ? "Volume" : name);
  const int status =
      sameDates(*axis, *bars) ? charting::keep(made.bars, bars, keep) : alignBars(*axis, *bars, made.bars);
  const int number = putKept(*graph, item, made, status);
  SubWindow& place = graph->subWindow(subWindow);
  if (number >= 0 && kind == QV_CHART_VOLUME && place.series == 0) place.series = kVolume;
  return number;
}

int QVCALL qvGraphLine(QvGraph* graph, int item, int subWindow, const QvArray* series, const QvArray* other,
                       int kind, int side, const char* name, int keep) noexcept {
  if (!mayStand(graph, item, subWindow) || !series || kind < QV_LINE_LINE || kind > QV_LINE_STEPS ||
      !isSide(side) || (kind == QV_LINE_BAND) != (other != nullptr))
    return QV_INVALID_PARM;
  Item made;
  made.kind = Item::Kind::Line;
  made.subWindow = subWindow;
  made.side = side;
  storeText(made.name, name);
  made.parts[0].form = kind;
  int status = charting::keep(made.parts[0].values, series, keep);
  if (status == QV_OK) status = charting::keep(made.parts[0].other, other, keep);
  return putKept(*graph, item, made, status);
}

int QVCALL qvGraphZone(QvGraph* graph, int item, int subWindow, double low, double high, int side) noexcept {
  if (!mayStand(graph, item, subWindow) || !isSide(side) || !isValue(low) || !isValue(high) || low > high)
    return QV_INVALID_PARM;
  Item made;
  made.kind = Item::Kind::Zone;
  made.subWindow = subWindow;
  made.side = side;
  made.levels[0] = low;
  made.levels[1] = high;
  made.levelCount = 2;
  return put(*graph, item, made);
}

int QVCALL qvGraphShape(QvGraph* graph, int item, int subWindow, const QvGraphShape* shape) noexcept {
  if (!mayStand(graph, item, subWindow) || !shape || shape->kind < QV_SHAPE_TREND_LINE ||
      shape->kind > QV_SHAPE_REGRESSION)
    return QV_INVALID_PARM;
  const bool onePoint = shape->kind == QV_SHAPE_TEXT || shape->kind == QV_SHAPE_TRADE;
  const bool noPrice = shape->kind == QV_SHAPE_REGRESSION;
  if (!noPrice && (!isValue(shape->price) || (!onePoint && !isValue(shape->price2)))) return QV_INVALID_PARM;
  Item made;
  made.kind = Item::Kind::Shape;
  made.subWindow = subWindow;
  made.shape = *shape;
  char text[sizeof shape->text + 1] = {};
  std::memcpy(text, shape->text, sizeof shape->text);
  storeText(made.shape.text, text);
  return put(*graph, item, made);
}

}  // extern "C"
