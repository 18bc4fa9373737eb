/* The crossover system over a grid of its two periods: every combination is run over the same bars,
   and the combinations are ranked by their net profit.

   usage: crossover_sweep DIRECTORY      where text/SPX.CSV and its layout text/txtinfo.txt are */
#include <stdio.h>
#include <stdlib.h>

#include "qvlib60.h"
#include "stop_on_error.h"

enum { FAST, SLOW, VARIABLES };
enum { SHOWN = 10 };

typedef struct Run {
  int combination;
  QvTradeStats statistics;
} Run;

/* One run of the system. The averages' blocks and the order system's tables serve all runs. */
static void runOnce(QvOrderSystem* sys, const QvOptVar* vars, QvArray* fast, QvArray* slow) {
  stopOnError(qvExpMA(&sys->bars.close, fast, vars[FAST].value, 0), "fast average");
  stopOnError(qvExpMA(&sys->bars.close, slow, vars[SLOW].value, 0), "slow average");
  qvOrderSystemReset(sys);
  while (qvProcessOrders(sys) == 1) {
    const int i = sys->currentBar;
    int above;
    if (i < vars[SLOW].value) continue; /* the averages are still under way */
    above = fast->data[i] > slow->data[i];
    if (above == (fast->data[i - 1] > slow->data[i - 1])) continue;
    if (above)
      stopOnError(qvBuyToOpen(sys, "Cross up", 1, 0, QV_MARKET, QV_DAY), "buy");
    else
      stopOnError(qvSellToOpen(sys, "Cross down", 1, 0, QV_MARKET, QV_DAY), "sell");
  }
}

static int byNetProfit(const void* a, const void* b) {
  const double x = ((const Run*)a)->statistics.totalNetProfit;
  const double y = ((const Run*)b)->statistics.totalNetProfit;
  return (x < y) - (x > y);
}

int main(int argc, char** argv) {
  QvOptVar vars[VARIABLES] = {{5, 50, 5, 0, 0}, {60, 200, 20, 0, 0}}; /* start, end, step */
  char directory[256];
  QvBars bars = {0};
  QvArray fast = {0}, slow = {0};
  QvOrderSystem sys;
  Run* runs;
  char* label;
  int combinations, k;

  if (argc != 2) {
    fprintf(stderr, "usage: crossover_sweep DIRECTORY\n");
    return EXIT_FAILURE;
  }
  snprintf(directory, sizeof directory, "%s/text", argv[1]);
  stopOnError(qvFILEread("TXT", &bars, directory, "SPX.CSV", 0, -1), "SPX.CSV");
  stopOnError(qvOrderSystemInit(&sys, "Crossover", &bars), "order system");
  sys.tickSize = 0.25;
  sys.tickValue = 12.50;
  sys.commission = 2.50;
  sys.slippage = 12.50;

  combinations = qvOptVarCount(vars, VARIABLES);
  runs = malloc((size_t)combinations * sizeof *runs);
  label = malloc((size_t)qvOptVarStringLen(vars, VARIABLES, " / "));
  if (!runs || !label) stopOnError(QV_MALLOC, "runs");

  for (k = 0; k < combinations; ++k) {
    stopOnError(qvOptVarValue(vars, VARIABLES, k + 1), "combination");
    runOnce(&sys, vars, &fast, &slow);
    runs[k].combination = k + 1;
    runs[k].statistics = sys.netStatistics;
  }
  qsort(runs, (size_t)combinations, sizeof *runs, byNetProfit);

  printf("%d combinations over %d bars\n\n", combinations, bars.barsize);
  printf("Fast / slow   Net profit  Trades  Winners %%  Profit factor     Drawdown\n");
  for (k = 0; k < combinations && k < SHOWN; ++k) {
    const QvTradeStats* s = &runs[k].statistics;
    qvOptVarValue(vars, VARIABLES, runs[k].combination);
    qvOptVarString(vars, VARIABLES, " / ", label);
    printf("%-12s %11.2f  %6d  %9.1f  %13.2f  %11.2f\n", label, s->totalNetProfit,
           (int)s->totalNumberOfTrades, s->percentProfitable, s->profitFactor, s->maximumIntradayDrawdown);
  }

  free(label);
  free(runs);
  qvOrderSystemClose(&sys);
  qvFreeArray(&slow);
  qvFreeArray(&fast);
  qvFreeBars(&bars);
  return EXIT_SUCCESS;
}
