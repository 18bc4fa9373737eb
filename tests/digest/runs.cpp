// Compressed bars, candle patterns, point and figure, a trading system with its equity, and formulas.
#include "digest.h"
#include "patterns/candle_names.h"

namespace qvtest {
namespace {

void digestCompression(const QvBars& bars, Digests& digests) {
  qv::Bars source;
  qvCopyBars(&bars, &source);
  for (int frequency = QV_FREQ_DAILY; frequency <= QV_FREQ_YEARLY; ++frequency) {
    Bars out;
    Array series;
    qvGroupBarsDate(&source, &out, frequency, 0, 0);
    qvGroupArray(&bars, &bars.close, &series, frequency);
    digests["qvGroupBarsDate"].add(out);
    digests["qvGroupArray"].add(series);
  }
  for (const double seconds : {60.0, 3600.0, 5 * 86400.0}) {
    Bars out;
    qvGroupBarsTime(&source, &out, seconds, 0, 0);
    digests["qvGroupBarsTime"].add(out);
  }
  for (const int p : {1, 2, 5, 21, 250})
    for (const int start : {0, 7}) {
      Bars periods, rolling;
      qvGroupBarsPeriods(&source, &periods, p, start);
      qvGroupBarsArray(&source, &rolling, p, start);
      digests["qvGroupBarsPeriods"].add(periods);
      digests["qvGroupBarsArray"].add(rolling);
    }
  for (const int k : {-400, -1, 3, 100}) {
    Array shifted;
    qvCopyArray(&bars.close, &shifted);
    qvShiftArray(&shifted, k);
    digests["qvShiftArray"].add(shifted);
  }
}

void digestCandles(const QvBars& bars, Digests& digests) {
  for (const int period : {0, 1, 5, 20, 333}) {
    QvCandles candles{};
    Digest& digest = digests[period ? "qvCandleConstructTrailing" : "qvCandleConstruct"];
    digest.add(period ? qvCandleConstructTrailing(&bars, &candles, period)
                      : qvCandleConstruct(&bars, &candles));
    for (int i = 0; i < bars.barsize; ++i) {
      digest.add(qvCandleColor(&candles, i)), digest.add(qvCandleShape(&candles, i));
      digest.add(qvCandleTopShadow(&candles, i)), digest.add(qvCandleBotShadow(&candles, i));
    }
    for (const auto& pattern : qv::candlePatterns)
      for (int i = 0; i < bars.barsize; ++i) digests[pattern.name].add(pattern.endsAt(&bars, &candles, i));
    qvCandleFree(&candles);
  }
}

void digestColumns(const QvBars& bars, Digests& digests) {
  for (const double box : {0.125, 1.0, 10.0})
    for (const double reversal : {1.0, 3.0})
      for (const bool byRange : {false, true}) {
        Bars columns;
        Array columnOf;
        const auto make = byRange ? qvBars2PNFhilo : qvBars2PNF;
        Digest& digest = digests[byRange ? "qvBars2PNFhilo" : "qvBars2PNF"];
        digest.add(make(&bars, &columns, &columnOf, box, reversal, 0));
        digest.add(columns), digest.add(columnOf);
      }
}

void add(Digest& digest, const QvTradeStats& s) {
  for (const double v :
       {s.totalNetProfit, s.grossProfit, s.grossLoss, s.profitFactor, s.largestWinningTrade,
        s.largestLosingTrade, s.maximumIntradayDrawdown, s.returnOnAccount, s.prr, s.openPositionPL})
    digest.add(v);
  digest.add(s.totalNumberOfTrades), digest.add(s.numberOfWinningTrades);
}

void digestEquity(const QvOrderSystem& sys, Digests& digests) {
  for (const double cost : {0.0, 0.0005}) {
    Array equity;
    digests["qvEquity"].add(qvEquity(&sys, 10000, cost, &equity));
    digests["qvEquity"].add(equity);
    QvEquityFigures f{};
    Digest& figures = digests["qvEquityFigures"];
    figures.add(qvEquityFigures(&equity, &sys.bars.date, 0, 0.02, &f));
    for (const double v : {f.first, f.last, f.totalGrowth, f.annualGrowth, f.sharpe, f.sortino,
                           f.greatestDrawdown, f.greatestDrawdownPercent, f.barsPerYear})
      figures.add(v);
    figures.add(f.greatestDrawdownBars), figures.add(f.bars);
    QvTradeFigures t{};
    Digest& trades = digests["qvTradeFigures"];
    trades.add(qvTradeFigures(&sys, cost, &t));
    for (const double v : {t.grossProfit, t.grossLoss, t.profitFactor, t.expectancy, t.exposure})
      trades.add(v);
    trades.add(t.trades), trades.add(t.barsHeld);
  }
}

// Entries on two averages' crossings, with a stop and a limit below and above the close.
void digestSystem(const QvBars& bars, Digests& digests) {
  for (const double tick : {0.001, 0.25, 0.05}) {
    Array fast, slow;
    qvExpMA(&bars.close, &fast, 10, 0);
    qvSimpleMA(&bars.close, &slow, 40, 0);
    QvOrderSystem sys;
    qvOrderSystemInit(&sys, "crossings", &bars);
    sys.tickSize = tick, sys.tickValue = 12.5 * tick, sys.commission = 2.5, sys.slippage = 1.25;
    while (qvProcessOrders(&sys) == 1) {
      const int i = sys.currentBar;
      const int signal = qvCrossOver(&fast, &slow, i);
      const double close = bars.close.data[i];
      if (signal > 0) qvBuyToOpen(&sys, "up", 2, close * 1.01, QV_LIMIT, QV_DAY);
      if (signal < 0) qvSellToOpen(&sys, "down", 1, 0, QV_MARKET, QV_DAY);
      if (sys.positionDirection > 0) qvSellToClose(&sys, "stop", "up", 1, close * 0.97, QV_STOP, QV_DAY);
      if (sys.positionDirection < 0) qvBuyToClose(&sys, "gain", "down", 1, close * 0.9, QV_LIMIT, QV_DAY);
    }
    Digest& digest = digests["qvProcessOrders"];
    for (const QvTradeStats* s : {&sys.longStatistics, &sys.shortStatistics, &sys.netStatistics})
      add(digest, *s);
    digest.add(sys.tradeCount);
    for (int k = 0; k < sys.tradeCount; ++k) {
      const QvTrade& t = sys.trades[k];
      for (const double v : {t.position.entryPrice, t.exitPrice, t.exitDate}) digest.add(v);
      digest.add(t.exitName), digest.add(t.exitBar);
    }
    Array marks;
    digests["qvCreateTradeGraph"].add(qvCreateTradeGraph(&sys, &marks));
    digests["qvCreateTradeGraph"].add(marks);
    digestEquity(sys, digests);
    qvOrderSystemClose(&sys);
  }
}

void digestFormulas(const QvBars& bars, Digests& digests) {
  for (const char* text :
       {"rsi(14) < 30 and close > sma(200)", "close crosses above highest(high, 20)[1]",
        "2 * atr(14) - volume / 3", "if(close > open, volume, -volume)", "macd(12, 26, 9).signal",
        "sma(rsi(14), 9)", "ma(20, least squares)", "candle('Hammer') or candle('Engulfing Line Bull', 30)",
        "formation('Inside Bar')", "abs(open - close[3])",
        "min(close, sma(9)) * max(1, bollinger.upper / close)", "weekly(sma(10))", "monthly(rsi(14) < 30)",
        "not (close != low) and lowest(low, 10) <= low"}) {
    Array out;
    qv::Formula(text).evaluate(bars, out);
    digests["qvFormulaEval"].add(out);
  }
}

}  // namespace

void digestRuns(const Data& data, Digests& digests) {
  for (const QvBars* bars : {&data.prices, &data.rough}) {
    digestCompression(*bars, digests);
    digestCandles(*bars, digests);
    digestColumns(*bars, digests);
    digestSystem(*bars, digests);
    digestFormulas(*bars, digests);
  }
}

}  // namespace qvtest
