// The performance summary: the 24 lines for reading, and a line of values chosen by their codes.
#include <cstdio>

#include "core/characters.h"
#include "core/numbers.h"
#include "core/output_file.h"
#include "qvlib60/tradesim.h"
#include "tradesim/report_fields.h"

namespace {

using namespace qv;
using namespace qv::tradesim;

// How a line of the summary prints its three values.
struct Style {
  int width;
  bool hundredths;
  const char* between;
  const char* end;
};
constexpr Style kMoney{8, true, "  ", "\n"};
constexpr Style kReturn{8, true, "% ", "%\n"};
constexpr Style kCount{5, false, "        ", " \n"};
constexpr Style kBars{5, false, "        ", "\n"};
constexpr Style kPercent{3, false, "          ", "\n"};
constexpr Style kContracts{9, false, "    ", "\n"};

struct Line {
  const char* label;
  const char* code;  // null where the value has none
  const Style* style;
  double (*value)(const QvTradeStats&);
};

using Stats = const QvTradeStats&;
constexpr Line kLines[] = {
    {"  Total net profit       ", "NP", &kMoney, [](Stats s) { return s.totalNetProfit; }},
    {"  Gross profit           ", "GP", &kMoney, [](Stats s) { return s.grossProfit; }},
    {"  Gross loss             ", "GL", &kMoney, [](Stats s) { return s.grossLoss; }},
    {"  Total # of trades         ", "NT", &kCount, [](Stats s) -> double { return s.totalNumberOfTrades; }},
    {"  Percent Profitable          ", "PP", &kPercent, [](Stats s) { return s.percentProfitable; }},
    {"  Number winning trades     ", "NW", &kCount,
     [](Stats s) -> double { return s.numberOfWinningTrades; }},
    {"  Number losing trades      ", "NL", &kCount, [](Stats s) -> double { return s.numberOfLosingTrades; }},
    {"  Largest winning trade  ", "LW", &kMoney, [](Stats s) { return s.largestWinningTrade; }},
    {"  Largest losing trade   ", "LL", &kMoney, [](Stats s) { return s.largestLosingTrade; }},
    {"  Average winning trade  ", "AW", &kMoney, [](Stats s) { return s.averageWinningTrade; }},
    {"  Average losing trade   ", "AL", &kMoney, [](Stats s) { return s.averageLosingTrade; }},
    {"  Ratio avg win/avg loss ", "WL", &kMoney, [](Stats s) { return s.ratioAverageWinAverageLoss; }},
    {"  Avg trade(win & loss)  ", "AT", &kMoney, [](Stats s) { return s.averageTrade; }},
    {"  Max consec. winners       ", "MW", &kCount,
     [](Stats s) -> double { return s.maximumConsecutiveWinners; }},
    {"  Max consec. losers        ", "ML", &kCount,
     [](Stats s) -> double { return s.maximumConsecutiveLosers; }},
    {"  Avg # bars in winners     ", "WS", &kBars, [](Stats s) { return s.averageBarsInWinners; }},
    {"  Avg # bars in losers      ", "LS", &kBars, [](Stats s) { return s.averageBarsInLosers; }},
    {"  Max intraday drawdown  ", "MD", &kMoney, [](Stats s) { return s.maximumIntradayDrawdown; }},
    {"  Profit factor          ", "PF", &kMoney, [](Stats s) { return s.profitFactor; }},
    {"  Max # contracts held  ", "MC", &kContracts, [](Stats s) { return s.maximumContractsHeld; }},
    {"  Account size required  ", "AS", &kMoney, [](Stats s) { return s.accountSizeRequired; }},
    {"  Return on account      ", "RA", &kReturn, [](Stats s) { return s.returnOnAccount; }},
    {"  PRR                    ", "PR", &kMoney, [](Stats s) { return s.prr; }},
    {"  Open Position P/L      ", nullptr, &kMoney, [](Stats s) { return s.openPositionPL; }},
};

void writeValue(std::FILE* f, double value, const Style& style) noexcept {
  const FixedPoint v = fixedPoint(value, 2);
  std::fprintf(f, "%*lld", style.width, v.whole);
  if (style.hundredths) std::fprintf(f, ".%02d", v.fraction);
}

void writeLine(std::FILE* f, const QvOrderSystem& sys, const Line& line) noexcept {
  std::fputs(line.label, f);
  writeValue(f, line.value(sys.netStatistics), *line.style);
  std::fputs(line.style->between, f);
  writeValue(f, line.value(sys.longStatistics), *line.style);
  std::fputs(line.style->between, f);
  writeValue(f, line.value(sys.shortStatistics), *line.style);
  std::fputs(line.style->end, f);
}

const Line* lineOfCode(const char* code) noexcept {
  for (const Line& line : kLines)
    if (line.code && line.code[0] == upperCase(code[0]) && line.code[1] == upperCase(code[1])) return &line;
  return nullptr;
}

// `code` is three letters: the block, then the value.
void writeCode(std::FILE* f, const QvOrderSystem& sys, const char* code) noexcept {
  const Line* line = lineOfCode(code + 1);
  if (!line) {
    std::fprintf(f, " %11.3s", code);
    return;
  }
  const char block = upperCase(code[0]);
  const FixedPoint v = fixedPoint(line->value(block == 'L'   ? sys.longStatistics
                                              : block == 'S' ? sys.shortStatistics
                                                             : sys.netStatistics),
                                  2);
  if (line->style == &kCount)
    std::fprintf(f, "    %8lld", v.whole);
  else
    std::fprintf(f, " %8lld.%02d", v.whole, v.fraction);
}

// Callers double the per cent signs of the lead text, as for a format; it is not used as one.
void writeLead(std::FILE* f, const char* text) noexcept {
  for (const char* p = text; *p; ++p) {
    std::fputc(*p, f);
    if (p[0] == '%' && p[1] == '%') ++p;
  }
}

void writePattern(std::FILE* f, const QvOrderSystem& sys, const char* pattern) noexcept {
  char code[3];
  int letters = 0;
  for (const char* p = pattern; *p; ++p) {
    if (isLetter(*p)) {
      code[letters++] = *p;
      if (letters == 3) {
        writeCode(f, sys, code);
        letters = 0;
      }
    } else if (p[0] == '\\' && p[1] == 't') {
      std::fputc('\t', f);
      ++p;
    } else {
      std::fputc(*p, f);
    }
  }
  std::fputc('\n', f);
}

}  // namespace

extern "C" {

int QVCALL qvProfitRpt(const QvOrderSystem* sys, const char* file, int append) noexcept {
  if (!sys || !file) return QV_INVALID_PARM;
  const OutputFile out(file, append != 0);
  if (!out.ok()) return QV_FILE_OPEN;
  const double first = qvGetArrayItem(&sys->bars.date, 0);
  const double last = qvGetArrayItem(&sys->bars.date, saturatingSum(sys->bars.barsize, -1));
  std::fprintf(out.stream(),
               "--------------------------------------------------------------\n"
               "%.80s  %s - %s\n\n"
               "                                 NET         LONG        SHORT\n",
               sys->systemName, dateText(first, dates::Picture::Date).text,
               dateText(last, dates::Picture::Date).text);
  for (const Line& line : kLines) writeLine(out.stream(), *sys, line);
  return QV_OK;
}

int QVCALL qvProfitRpt1(const QvOrderSystem* sys, const char* file, int append, const char* lead,
                        const char* pattern) noexcept {
  if (!sys || !file || !lead || !pattern) return QV_INVALID_PARM;
  const OutputFile out(file, append != 0);
  if (!out.ok()) return QV_FILE_OPEN;
  writeLead(out.stream(), lead);
  writePattern(out.stream(), *sys, pattern);
  return QV_OK;
}

}  // extern "C"
