/* Follows a growing text file of daily bars as a live chart would: every line that comes goes into streams of
   three calculations and a rule, and comes out as a line of values. A second line of the same date corrects
   the last bar.

   usage: follow FILE [SECONDS]      lines "2000-01-03,open,high,low,close,volume"; the program ends when the
                                     file has not grown for so many seconds (else at once) */
#ifdef _WIN32
#include <windows.h>
#else
#define _POSIX_C_SOURCE 199309L /* nanosleep */
#include <time.h>
#endif

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "qvlib60.h"
#include "stop_on_error.h"

enum { SERIES = 7, STREAMS = 4 };

static const char* const NAMES[STREAMS] = {"sma", "rsi", "atr", NULL};
static const char RULE[] = "close > weekly(highest(high, 4)) and rsi(14) < 70";

typedef struct {
  QvStream* streams[STREAMS];
  double bar[SERIES]; /* date open high low close volume open interest, then the close as a single series */
  double lastDate;
} Chart;

static void openStreams(Chart* chart) {
  char error[200];
  QvFormula* rule = qvFormulaOpen(RULE, error, sizeof error);
  int k;
  if (!rule) {
    fprintf(stderr, "%s\n", error);
    exit(EXIT_FAILURE);
  }
  for (k = 0; k < STREAMS; ++k)
    stopOnError(NAMES[k] ? qvStreamOpen(qvCatalogueFind(NAMES[k]), NULL, 0, &chart->streams[k])
                         : qvStreamOpenFormula(rule, &chart->streams[k]),
                NAMES[k] ? NAMES[k] : RULE);
  qvFormulaClose(rule);
}

/* The averages take one series, the close; the others take the bar set. */
static void pointToBar(const Chart* chart, int k, const double** values) {
  int i;
  for (i = 0; i < SERIES; ++i) values[i] = &chart->bar[i];
  if (NAMES[k] && qvCatalogueFind(NAMES[k])->inputCount == 1) values[0] = &chart->bar[4];
}

static void takeLine(Chart* chart, const char* line) {
  int year, month, day, k;
  double value;
  double* out[1];
  const double* values[SERIES];
  double* bar = chart->bar;
  if (sscanf(line, "%d-%d-%d,%lf,%lf,%lf,%lf,%lf", &year, &month, &day, &bar[1], &bar[2], &bar[3], &bar[4],
             &bar[5]) != 8)
    return; /* the heading */
  bar[0] = qvYMDtoDate(year, month, day, 0, 0, 0);
  printf("%04d-%02d-%02d %9.2f", year, month, day, bar[4]);
  out[0] = &value;
  for (k = 0; k < STREAMS; ++k) {
    QvStream* stream = chart->streams[k];
    int first;
    pointToBar(chart, k, values);
    stopOnError(bar[0] == chart->lastDate ? qvStreamReplaceLast(stream, values, out)
                                          : qvStreamUpdate(stream, values, 1, out),
                "update");
    first = qvStreamFirstValid(stream, 0);
    if (first < 0 || qvStreamBars(stream) <= first)
      printf("         -");
    else
      printf(" %9.3f", value);
  }
  printf("\n");
  chart->lastDate = bar[0];
}

/* Of a second. C99 has no sleep. */
static void waitATenth(void) {
#ifdef _WIN32
  Sleep(100);
#else
  const struct timespec tenth = {0, 100000000};
  nanosleep(&tenth, NULL);
#endif
}

int main(int argc, char** argv) {
  Chart chart;
  char line[256];
  size_t length = 0;
  int k, quiet = 0, mostQuiet;
  FILE* file = argc >= 2 ? fopen(argv[1], "r") : NULL;
  if (!file) {
    fprintf(stderr, "usage: follow FILE [SECONDS]\n");
    return EXIT_FAILURE;
  }
  mostQuiet = argc > 2 ? 10 * atoi(argv[2]) : 0;
  memset(&chart, 0, sizeof chart);
  openStreams(&chart);
  printf("date           close       sma       rsi       atr      rule\n");
  while (quiet <= mostQuiet) {
    const int c = fgetc(file);
    if (c == EOF) { /* perhaps in the middle of a line, which is kept */
      clearerr(file);
      fflush(stdout);
      if (++quiet <= mostQuiet) waitATenth();
      continue;
    }
    quiet = 0;
    if (c != '\n') {
      if (length + 1 < sizeof line) line[length++] = (char)c;
      continue;
    }
    line[length] = '\0';
    takeLine(&chart, line);
    length = 0;
  }
  for (k = 0; k < STREAMS; ++k) qvStreamClose(chart.streams[k]);
  fclose(file);
  return EXIT_SUCCESS;
}
