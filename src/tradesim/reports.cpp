// The listings of orders, trades and open positions: a fixed layout for reading, and fields with a
// separator of the caller's choice for other programs.
#include <algorithm>
#include <cstdio>

#include "core/output_file.h"
#include "qvlib60/tradesim.h"
#include "tradesim/report_fields.h"
#include "tradesim/trade_result.h"

namespace {

using namespace qv;
using namespace qv::tradesim;
using dates::Picture;

// The caller's separator between the fields of a line; one that begins with a blank asks for columns
// of fixed width.
struct Layout {
  const char* separator;
  bool fixed;
  explicit Layout(const char* text) noexcept : separator(text), fixed(text[0] == ' ') {}
};

struct Header {
  const char* columns;  // the two lines of the fixed layout
  const char* fields;   // the names of the other one, with ';' where the separator goes
};

constexpr Header kOrderHeader{
    "System              Symbol   Date       Time     Name                Dir  At     TIF Price    "
    "Volume\n"
    "------------------- -------- ---------- -------- ------------------- ---- ------ --- -------- "
    "--------\n",
    "System;Symbol;DateTime;Name;Dir;At;TIF;Price;Volume\n"};

constexpr Header kTradeHeader{
    "System              Symbol   Date       Time     Bar#   Name                  Price   Volume  "
    "Date     Time     Bar#   Name                  Price   Volume  Profit\n"
    "------------------- -------- ---------- -------- ---- - --------------------- ------- ------- "
    "-------- -------- ---- - --------------------- ------- ------- -----------\n",
    "System;Symbol;DateTimeIn;BarNumIn;DirIn;NameIn;PriceIn;VolumeIn;"
    "DateTimeOut;BarNumOut;DirOut;NameOut;PriceOut;VolumeOut;Profit\n"};

constexpr Header kOpenPositionHeader{
    "System              Symbol   Date       Time     Bar#   Name                  Price   Volume  "
    "Date     Time     Bar#   Price   Volume  Profit\n"
    "------------------- -------- ---------- -------- ---- - --------------------- ------- ------- "
    "-------- -------- ---- - ------- ------- -----------\n",
    "System;Symbol;DateTimeIn;BarNumIn;DirIn;NameIn;PriceIn;VolumeIn;"
    "DateTimeOut;BarNumOut;DirOut;PriceOut;VolumeOut;Profit\n"};

void writeHeader(std::FILE* f, const Layout& layout, const Header& header) noexcept {
  if (layout.fixed) {
    std::fputs(header.columns, f);
    return;
  }
  for (const char* p = header.fields; *p; ++p) {
    if (*p == ';')
      std::fputs(layout.separator, f);
    else
      std::fputc(*p, f);
  }
}

// `header` is null where the caller wants none; lines(stream, layout) writes one for each record.
template <typename Lines>
int writeListing(const char* file, int append, const Header* header, const char* separator,
                 Lines lines) noexcept {
  const OutputFile out(file, append != 0);
  if (!out.ok()) return QV_FILE_OPEN;
  const Layout layout(separator);
  if (header) writeHeader(out.stream(), layout, *header);
  lines(out.stream(), layout);
  return QV_OK;
}

const char* orderTypeName(int type) noexcept {
  static constexpr const char* kNames[] = {"Market", "Stop", "Limit", "Close"};
  return type >= QV_MARKET && type <= QV_CLOSE ? kNames[type - QV_MARKET] : "";
}

char directionLetter(int direction) noexcept {
  return direction == QV_BUY ? 'B' : 'S';
}

// Texts that the caller may have filled to the last character are printed up to their width.

void writeOrder(std::FILE* f, const QvOrderSystem& sys, const QvOrder& order, const Layout& layout) noexcept {
  const char* s = layout.separator;
  std::fprintf(f,
               layout.fixed ? "%-19.19s%s%-8.16s%s%s%s%-19s%s%-4s%s%-6s%s%-3s%s%8.3f%s%8d\n"
                            : "%.80s%s%.16s%s%s%s%s%s%s%s%s%s%s%s%.3f%s%d\n",
               sys.systemName, s, sys.bars.symbol, s, dateText(order.date, Picture::LongYearTime).text, s,
               order.name, s, order.direction == QV_BUY ? "Buy" : "Sell", s, orderTypeName(order.orderType),
               s, order.timeInForce == QV_DAY ? "Day" : "GTC", s, printable(shownOrderPrice(order.price)), s,
               order.volume);
}

void writeTrade(std::FILE* f, const QvOrderSystem& sys, const QvTrade& trade, const Layout& layout) noexcept {
  const char* s = layout.separator;
  const QvPosition& entry = trade.position;
  std::fprintf(f,
               layout.fixed ? "%-19.19s%s%-8.16s%s%s%s%4i%s%c%s%-19s%s%8.3f%s%8d%s"
                              "%s%s%4i%s%c%s%-19s%s%8.3f%s%8d%s%10.3f\n"
                            : "%.80s%s%.16s%s%s%s%i%s%c%s%s%s%.3f%s%d%s"
                              "%s%s%i%s%c%s%s%s%.3f%s%d%s%.3f\n",
               sys.systemName, s, sys.bars.symbol, s, dateText(entry.entryDate, Picture::LongYearTime).text,
               s, entry.entryBar, s, directionLetter(entry.direction), s, entry.entryName, s,
               printable(entry.entryPrice), s, entry.volume, s,
               dateText(trade.exitDate, Picture::LongYearTime).text, s, trade.exitBar, s,
               directionLetter(trade.exitDirection), s, trade.exitName, s, printable(trade.exitPrice), s,
               trade.exitVolume, s, printable(tradeResult(sys, trade)));
}

// Valued as if the rest were closed at the close of the given bar.
void writeOpenPosition(std::FILE* f, const QvOrderSystem& sys, const QvPosition& position, int bar,
                       const Layout& layout) noexcept {
  const char* s = layout.separator;
  const double close = qvGetArrayItem(&sys.bars.close, bar);
  const double gain = priceGain(position.direction, position.entryPrice, close);
  std::fprintf(f,
               layout.fixed ? "%-19.19s%s%-8.16s%s%s%s%4i%s%c%s%-19s%s%8.3f%s%8d%s"
                              "%s%s%4i%s%c%s%8.3f%s%8d%s%10.3f\n"
                            : "%.80s%s%.16s%s%s%s%i%s%c%s%s%s%.3f%s%d%s"
                              "%s%s%i%s%c%s%.3f%s%d%s%.3f\n",
               sys.systemName, s, sys.bars.symbol, s,
               dateText(position.entryDate, Picture::LongYearTime).text, s, position.entryBar, s,
               directionLetter(position.direction), s, position.entryName, s, printable(position.entryPrice),
               s, position.remaining, s,
               dateText(qvGetArrayItem(&sys.bars.date, bar), Picture::LongYearTime).text, s, bar, s,
               position.direction == QV_BUY ? 'S' : 'B', s, printable(close), s, position.remaining, s,
               printable(tradeResult(sys, gain, position.remaining)));
}

}  // namespace

extern "C" {

int QVCALL qvPrintOrders(const QvOrderSystem* sys, const char* file, int append) noexcept {
  if (!sys || !file) return QV_INVALID_PARM;
  if (sys->orderCount == 0) return QV_OK;
  const OutputFile out(file, append != 0);
  if (!out.ok()) return QV_FILE_OPEN;
  std::fputs("\nOpen Orders\n", out.stream());
  for (int i = 0; i < sys->orderCount; ++i) {
    const QvOrder& order = sys->orders[i];
    const FixedPoint price = fixedPoint(shownOrderPrice(order.price), 3);
    // The four codes are written as characters of that code, not as digits.
    std::fprintf(out.stream(), "%4i %s %-20s %c %c %c %c %8d %4lld.%03d\n", i,
                 dateText(order.date, Picture::ShortYearTime).text, order.name, order.action, order.direction,
                 order.orderType, order.timeInForce, order.volume, price.whole, price.fraction);
  }
  return QV_OK;
}

int QVCALL qvOrderRpt1(const QvOrderSystem* sys, const char* file, int append, int header,
                       const char* separator) noexcept {
  if (!sys || !file || !separator) return QV_INVALID_PARM;
  if (sys->orderCount == 0) return QV_OK;
  const auto lines = [sys](std::FILE* f, const Layout& layout) {
    for (int i = 0; i < sys->orderCount; ++i) writeOrder(f, *sys, sys->orders[i], layout);
  };
  return writeListing(file, append, header ? &kOrderHeader : nullptr, separator, lines);
}

int QVCALL qvPrintTrades(const QvOrderSystem* sys, const char* file, int append) noexcept {
  if (!sys || !file) return QV_INVALID_PARM;
  const OutputFile out(file, append != 0);
  if (!out.ok()) return QV_FILE_OPEN;
  std::fprintf(out.stream(),
               " Trade Summary  %.80s\n\n"
               " Date     Time     Bar#   Name                     Price   Volume       Profit\n"
               " -----------------------------------------------------------------------------\n",
               sys->systemName);
  for (int i = 0; i < sys->tradeCount; ++i) {
    const QvTrade& trade = sys->trades[i];
    const QvPosition& entry = trade.position;
    // Fractions have four digits, although the fields are three wide.
    const FixedPoint in = fixedPoint(entry.entryPrice, 4), out4 = fixedPoint(trade.exitPrice, 4);
    const FixedPoint profit = fixedPoint(tradeResult(*sys, trade), 4);
    std::fprintf(out.stream(), "\n %s %4i %c %-20s %4lld.%03d %8d\n",
                 dateText(entry.entryDate, Picture::ShortYearTime).text, entry.entryBar,
                 directionLetter(entry.direction), entry.entryName, in.whole, in.fraction, entry.volume);
    std::fprintf(out.stream(), " %s %4i %c %-20s %4lld.%03d %8d %7lld.%03d\n",
                 dateText(trade.exitDate, Picture::ShortYearTime).text, trade.exitBar,
                 directionLetter(trade.exitDirection), trade.exitName, out4.whole, out4.fraction,
                 trade.exitVolume, profit.whole, profit.fraction);
  }
  return QV_OK;
}

int QVCALL qvTradeRpt1(const QvOrderSystem* sys, const char* file, int append, int header,
                       const char* separator) noexcept {
  if (!sys || !file || !separator) return QV_INVALID_PARM;
  const auto lines = [sys](std::FILE* f, const Layout& layout) {
    for (int i = 0; i < sys->tradeCount; ++i) writeTrade(f, *sys, sys->trades[i], layout);
  };
  return writeListing(file, append, header ? &kTradeHeader : nullptr, separator, lines);
}

int QVCALL qvOpenPosRpt1(const QvOrderSystem* sys, const char* file, int append, int header,
                         const char* separator) noexcept {
  if (!sys || !file || !separator) return QV_INVALID_PARM;
  const auto lines = [sys](std::FILE* f, const Layout& layout) {
    const int bar = std::min(sys->currentBar, sys->bars.barsize - 1);
    for (int i = 0; i < sys->positionCount; ++i)
      if (sys->positions[i].remaining > 0) writeOpenPosition(f, *sys, sys->positions[i], bar, layout);
  };
  return writeListing(file, append, header ? &kOpenPositionHeader : nullptr, separator, lines);
}

}  // extern "C"
