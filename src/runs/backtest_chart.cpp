#include "runs/backtest_chart.h"

#include <algorithm>

namespace qv::runs {

namespace {

int checked(int status) {
  return check(status, "the chart");
}

QvGraphStyle coloured(uint32_t colour) {
  QvGraphStyle style{};
  style.colour = colour;
  return style;
}

void addTrades(QvGraph* graph, const Backtest& test, const QvGraphTheme& theme) {
  const auto add = [graph](const QvGraphShape& shape) {
    return checked(qvGraphShape(graph, QV_GRAPH_NEW, 0, &shape));
  };
  const std::vector<TradeRecord> trades = test.trades();
  for (const TradeRecord& t : trades) {
    const QvPosition& p = t.trade.position;
    QvGraphStyle style = coloured(t.result < 0 ? theme.down : theme.up);
    style.dash = QV_DASH_DOTTED;
    const int line =
        add({QV_SHAPE_TREND_LINE, p.entryBar, p.entryPrice, t.trade.exitBar, 0, t.trade.exitPrice, 0, ""});
    checked(qvGraphStyle(graph, line, 0, &style));
  }
  for (const TradeRecord& t : trades) {
    const QvPosition& p = t.trade.position;
    const int bought = p.direction == QV_LONG ? 1 : -1;
    add({QV_SHAPE_TRADE, p.entryBar, p.entryPrice, 0, bought, 0, 0, ""});
    if (!t.isOpen) add({QV_SHAPE_TRADE, t.trade.exitBar, t.trade.exitPrice, 0, -bought, 0, 0, ""});
  }
}

// In percent of the highest equity up to each bar.
Series drawdownOf(const Series& equity) {
  Series out(equity.size);
  out.firstValid = equity.firstValid;
  double highest = 0;
  for (int i = equity.firstValid; i < equity.size; ++i) {
    highest = std::max(highest, equity[i]);
    out[i] = highest > 0 ? (equity[i] / highest - 1) * 100 : 0;
  }
  return out;
}

int addPanel(QvGraph* graph, const char* title) {
  return checked(qvGraphSubWindow(graph, QV_GRAPH_NEW, title, 1));
}

int addLine(QvGraph* graph, int panel, const Series& series, int kind, const char* name) {
  return checked(
      qvGraphLine(graph, QV_GRAPH_NEW, panel, &series, nullptr, kind, QV_SIDE_RIGHT, name, QV_GRAPH_COPY));
}

}  // namespace

GraphPointer backtestGraph(const Backtest& test, const std::string& title, const QvGraphTheme& theme) {
  GraphPointer graph = openGraph(test.system().bars, title);
  QvGraph* const g = graph.get();
  checked(qvGraphSetTheme(g, &theme));
  checked(qvGraphChart(g, QV_GRAPH_NEW, 0, nullptr, QV_CHART_CANDLES, 0, QV_GRAPH_REFER));
  addTrades(g, test, theme);
  const int equity = addPanel(g, "equity");
  addLine(g, equity, test.equity(), QV_LINE_LINE, "system");
  const int hold = addLine(g, equity, test.holding(), QV_LINE_LINE, "buy and hold");
  const QvGraphStyle faint = coloured(theme.faint);
  checked(qvGraphStyle(g, hold, 0, &faint));
  const int drawdown = addLine(g, addPanel(g, "drawdown %"), drawdownOf(test.equity()), QV_LINE_STATE, "");
  const QvGraphStyle down = coloured(theme.down);
  checked(qvGraphStyle(g, drawdown, 0, &down));
  return graph;
}

}  // namespace qv::runs
