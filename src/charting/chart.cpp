// The simple chart: a graph of candles with averages and volumes.
#include <cstdio>
#include <new>

#include "charting/graph.h"
#include "qvlib60/indicators/averages.h"

struct QvChart {
  QvGraph* graph = nullptr;
  int volumes = -1;  // their sub-window
};

namespace {

using namespace qv;
using namespace qv::charting;

constexpr const char* kMethods[] = {"EMA", "LSMA", "SMA", "WMA", "Wilder", "TMA", "VMA", "ZLEMA"};

}  // namespace

extern "C" {

QvChart* QVCALL qvChartOpen(const QvBars* bars, const char* title) noexcept {
  void* block = bars ? memory::allocateZeroed(1, sizeof(QvChart)) : nullptr;
  if (!block) return nullptr;
  auto* chart = new (block) QvChart;
  chart->graph = qvGraphOpen(bars, title, QV_GRAPH_REFER);
  if (chart->graph &&
      qvGraphChart(chart->graph, QV_GRAPH_NEW, 0, nullptr, QV_CHART_CANDLES, 0.0, QV_GRAPH_REFER) >= 0)
    return chart;
  qvChartClose(chart);
  return nullptr;
}

void QVCALL qvChartClose(QvChart* chart) noexcept {
  if (!chart) return;
  qvGraphClose(chart->graph);
  memory::release(chart);
}

int QVCALL qvChartAverage(QvChart* chart, int method, int period) noexcept {
  if (!chart || method < QV_MA_EXPONENTIAL || method > QV_MA_ZERO_LAG) return QV_INVALID_PARM;
  Temporary average;
  const int first = qvGetMaxFirstValid();
  const int status = qvMovingAverage(&chart->graph->bars.record->close, &average, method, period, 0);
  qvSetMaxFirstValid(first);
  if (status != QV_OK) return status < 0 ? status : int{QV_INVALID_PARM};
  char name[32];
  std::snprintf(name, sizeof name, "%s(%d)", kMethods[method], period);
  const int item = qvGraphLine(chart->graph, QV_GRAPH_NEW, 0, &average, nullptr, QV_LINE_LINE, QV_SIDE_RIGHT,
                               name, QV_GRAPH_COPY);
  return std::min(item, int{QV_OK});
}

int QVCALL qvChartVolume(QvChart* chart, int show) noexcept {
  if (!chart) return QV_INVALID_PARM;
  if (chart->volumes >= 0)
    return std::min(qvGraphSubWindow(chart->graph, chart->volumes, "", show ? 1.0 : 0.0), int{QV_OK});
  if (!show) return QV_OK;
  const int number = qvGraphSubWindow(chart->graph, QV_GRAPH_NEW, "", 1.0);
  if (number < 0) return number;
  const int item =
      qvGraphChart(chart->graph, QV_GRAPH_NEW, number, nullptr, QV_CHART_VOLUME, 0.0, QV_GRAPH_REFER);
  if (item < 0) {
    --chart->graph->subWindowCount;
    return item;
  }
  chart->volumes = number;
  return QV_OK;
}

int QVCALL qvChartPaint(QvChart* chart, const QvPainter* painter, double width, double height) noexcept {
  return chart ? qvGraphPaint(chart->graph, painter, width, height) : int{QV_INVALID_PARM};
}

int QVCALL qvChartWriteSVG(QvChart* chart, const char* file, double width, double height) noexcept {
  return chart ? qvGraphWriteSVG(chart->graph, file, width, height) : int{QV_INVALID_PARM};
}

QvGraph* QVCALL qvChartGraph(QvChart* chart) noexcept {
  return chart ? chart->graph : nullptr;
}

}  // extern "C"
