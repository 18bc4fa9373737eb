/* A trading system over daily bars: long while the faster of two exponential averages of the close
   is above the slower one, short while it is below.

   usage: crossover DIRECTORY      where text/SPX.CSV and its layout text/txtinfo.txt are */
#include <stdio.h>
#include <stdlib.h>

#include "qvlib60.h"
#include "stop_on_error.h"

static const double FAST_PERIOD = 20, SLOW_PERIOD = 100;

/* 1 when a crosses above b at bar i, -1 when below, else 0. */
static int crossing(const QvArray* a, const QvArray* b, int i) {
  const int before = a->data[i - 1] > b->data[i - 1];
  const int now = a->data[i] > b->data[i];
  return now - before;
}

/* The averages of bar i are known at its close; the market order fills at the next bar's open. An
   entry closes the position of the other direction (sys->reverseOnEntry). */
static void placeOrders(QvOrderSystem* sys, const QvArray* fast, const QvArray* slow) {
  int signal;
  if (sys->currentBar < SLOW_PERIOD) return; /* the averages are still under way */
  signal = crossing(fast, slow, sys->currentBar);
  if (signal > 0) stopOnError(qvBuyToOpen(sys, "Cross up", 1, 0, QV_MARKET, QV_DAY), "buy");
  if (signal < 0) stopOnError(qvSellToOpen(sys, "Cross down", 1, 0, QV_MARKET, QV_DAY), "sell");
}

int main(int argc, char** argv) {
  char directory[256];
  QvBars bars = {0};
  QvArray fast = {0}, slow = {0};
  QvOrderSystem sys;

  if (argc != 2) {
    fprintf(stderr, "usage: crossover DIRECTORY\n");
    return EXIT_FAILURE;
  }
  snprintf(directory, sizeof directory, "%s/text", argv[1]);
  stopOnError(qvFILEread("TXT", &bars, directory, "SPX.CSV", 0, -1), "SPX.CSV");
  stopOnError(qvExpMA(&bars.close, &fast, FAST_PERIOD, 0), "fast average");
  stopOnError(qvExpMA(&bars.close, &slow, SLOW_PERIOD, 0), "slow average");

  stopOnError(qvOrderSystemInit(&sys, "Crossover", &bars), "order system");
  sys.tickSize = 0.25; /* as the index future: 50 per point */
  sys.tickValue = 12.50;
  sys.commission = 2.50;
  sys.slippage = 12.50;
  while (qvProcessOrders(&sys) == 1) placeOrders(&sys, &fast, &slow);

  stopOnError(qvProfitRpt(&sys, "STDOUT", 0), "performance");
  printf("\nTrades\n\n");
  stopOnError(qvTradeRpt1(&sys, "STDOUT", 0, 1, " "), "trades");
  printf("\nOpen positions\n\n");
  stopOnError(qvOpenPosRpt1(&sys, "STDOUT", 0, 1, " "), "open positions");
  stopOnError(qvPrintOrders(&sys, "STDOUT", 0), "orders");

  qvOrderSystemClose(&sys);
  qvFreeArray(&slow);
  qvFreeArray(&fast);
  qvFreeBars(&bars);
  return EXIT_SUCCESS;
}
