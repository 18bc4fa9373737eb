// The listings of orders, trades and open positions: a fixed layout for reading, and fields with a
// separator of the caller's choice for other programs.
#include <algorithm>
#include <cstdio>
#include <variant>

#include "core/numbers.h"
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

// ---- Columns ------------------------------------------------------------------------------------

// How a column prints its values, in fixed width and between separators. Texts that the caller may have
// filled to the last character are printed up to their width.
struct Format {
  const char *fixed, *free;
};
constexpr Format kSystem{"%-19.19s", "%.80s"}, kSymbol{"%-8.16s", "%.16s"}, kDateTime{"%s", "%s"};
constexpr Format kName{"%-19s", "%s"}, kBar{"%4i", "%i"}, kLetter{"%c", "%c"}, kPrice{"%8.3f", "%.3f"};
constexpr Format kVolume{"%8d", "%d"}, kProfit{"%10.3f", "%.3f"};
constexpr Format kDirection{"%-4s", "%s"}, kOrderType{"%-6s", "%s"}, kTimeInForce{"%-3s", "%s"};

// Doubles go in by value: those of packed records cannot be referred to.
using Cell = std::variant<const char*, char, int, double, DateText>;

template <typename Record>
struct Column {
  const char* name;  // in the header between separators
  Format format;
  Cell (*cell)(const Record&) noexcept;
};

Cell dateTime(double date) noexcept {
  return dateText(date, Picture::LongYearTime);
}

void writeCell(std::FILE* f, const char* format, const Cell& cell) noexcept {
  if (const DateText* date = std::get_if<DateText>(&cell)) std::fprintf(f, format, date->text);
  if (const char* const* text = std::get_if<const char*>(&cell)) std::fprintf(f, format, *text);
  if (const char* letter = std::get_if<char>(&cell)) std::fprintf(f, format, *letter);
  if (const int* number = std::get_if<int>(&cell)) std::fprintf(f, format, *number);
  if (const double* number = std::get_if<double>(&cell)) std::fprintf(f, format, printable(*number));
}

template <typename Record, std::size_t N>
void writeLine(std::FILE* f, const Layout& layout, const Column<Record> (&columns)[N],
               const Record& record) noexcept {
  for (const Column<Record>& column : columns) {
    if (&column != columns) std::fputs(layout.separator, f);
    writeCell(f, layout.fixed ? column.format.fixed : column.format.free, column.cell(record));
  }
  std::fputc('\n', f);
}

template <typename Record, std::size_t N>
void writeHeader(std::FILE* f, const Layout& layout, const Column<Record> (&columns)[N],
                 const char* fixedHeader) noexcept {
  if (layout.fixed) {
    std::fputs(fixedHeader, f);
    return;
  }
  for (const Column<Record>& column : columns) {
    if (&column != columns) std::fputs(layout.separator, f);
    std::fputs(column.name, f);
  }
  std::fputc('\n', f);
}

// `fixedHeader` is null where the caller wants no header; lines(write) hands each record to write.
template <typename Record, std::size_t N, typename Lines>
int writeListing(const char* file, int append, const char* separator, const Column<Record> (&columns)[N],
                 const char* fixedHeader, Lines lines) noexcept {
  const OutputFile out(file, append != 0);
  if (!out.ok()) return QV_FILE_OPEN;
  const Layout layout(separator);
  if (fixedHeader) writeHeader(out.stream(), layout, columns, fixedHeader);
  lines([&](const Record& record) { writeLine(out.stream(), layout, columns, record); });
  return QV_OK;
}

const char* orderTypeName(int type) noexcept {
  static constexpr const char* kNames[] = {"Market", "Stop", "Limit", "Close"};
  return type >= QV_MARKET && type <= QV_CLOSE ? kNames[type - QV_MARKET] : "";
}

char directionLetter(int direction) noexcept {
  return direction == QV_BUY ? 'B' : 'S';
}

// ---- Orders -------------------------------------------------------------------------------------

struct OrderLine {
  const QvOrderSystem& sys;
  const QvOrder& order;
};

constexpr Column<OrderLine> kOrderColumns[] = {
    {"System", kSystem, [](const OrderLine& l) noexcept -> Cell { return l.sys.systemName; }},
    {"Symbol", kSymbol, [](const OrderLine& l) noexcept -> Cell { return l.sys.bars.symbol; }},
    {"DateTime", kDateTime, [](const OrderLine& l) noexcept -> Cell { return dateTime(l.order.date); }},
    {"Name", kName, [](const OrderLine& l) noexcept -> Cell { return l.order.name; }},
    {"Dir", kDirection,
     [](const OrderLine& l) noexcept -> Cell { return l.order.direction == QV_BUY ? "Buy" : "Sell"; }},
    {"At", kOrderType, [](const OrderLine& l) noexcept -> Cell { return orderTypeName(l.order.orderType); }},
    {"TIF", kTimeInForce,
     [](const OrderLine& l) noexcept -> Cell { return l.order.timeInForce == QV_DAY ? "Day" : "GTC"; }},
    {"Price", kPrice, [](const OrderLine& l) noexcept -> Cell { return shownOrderPrice(l.order.price); }},
    {"Volume", kVolume, [](const OrderLine& l) noexcept -> Cell { return l.order.volume; }},
};

constexpr char kOrderHeader[] =
    "System              Symbol   Date       Time     Name                Dir  At     TIF Price    "
    "Volume\n"
    "------------------- -------- ---------- -------- ------------------- ---- ------ --- -------- "
    "--------\n";

// ---- Trades and open positions ------------------------------------------------------------------

// A trade, or an open position valued as if the rest were closed at the close of a bar.
struct TradeLine {
  const QvOrderSystem& sys;
  const QvPosition& entry;
  int entryVolume;
  const char* exitName;
  int exitDirection, exitBar;
  double exitDate, exitPrice;
  int exitVolume;
  double profit;
};

TradeLine lineOf(const QvOrderSystem& sys, const QvTrade& trade) noexcept {
  return {sys,           trade.position, trade.position.volume, trade.exitName,   trade.exitDirection,
          trade.exitBar, trade.exitDate, trade.exitPrice,       trade.exitVolume, tradeResult(sys, trade)};
}

TradeLine lineOf(const QvOrderSystem& sys, const QvPosition& position, int bar) noexcept {
  const double close = qvGetArrayItem(&sys.bars.close, bar);
  const double gain = priceGain(position.direction, position.entryPrice, close);
  return {sys,
          position,
          position.remaining,
          "",
          position.direction == QV_BUY ? QV_SELL : QV_BUY,
          bar,
          qvGetArrayItem(&sys.bars.date, bar),
          close,
          position.remaining,
          tradeResult(sys, gain, position.remaining)};
}

using TradeColumn = Column<TradeLine>;
constexpr TradeColumn kTradeSystem{"System", kSystem,
                                   [](const TradeLine& l) noexcept -> Cell { return l.sys.systemName; }};
constexpr TradeColumn kTradeSymbol{"Symbol", kSymbol,
                                   [](const TradeLine& l) noexcept -> Cell { return l.sys.bars.symbol; }};
constexpr TradeColumn kDateIn{
    "DateTimeIn", kDateTime, [](const TradeLine& l) noexcept -> Cell { return dateTime(l.entry.entryDate); }};
constexpr TradeColumn kBarIn{"BarNumIn", kBar,
                             [](const TradeLine& l) noexcept -> Cell { return l.entry.entryBar; }};
constexpr TradeColumn kDirectionIn{
    "DirIn", kLetter, [](const TradeLine& l) noexcept -> Cell { return directionLetter(l.entry.direction); }};
constexpr TradeColumn kNameIn{"NameIn", kName,
                              [](const TradeLine& l) noexcept -> Cell { return l.entry.entryName; }};
constexpr TradeColumn kPriceIn{
    "PriceIn", kPrice, [](const TradeLine& l) noexcept -> Cell { return double{l.entry.entryPrice}; }};
constexpr TradeColumn kVolumeIn{"VolumeIn", kVolume,
                                [](const TradeLine& l) noexcept -> Cell { return l.entryVolume; }};
constexpr TradeColumn kDateOut{"DateTimeOut", kDateTime,
                               [](const TradeLine& l) noexcept -> Cell { return dateTime(l.exitDate); }};
constexpr TradeColumn kBarOut{"BarNumOut", kBar,
                              [](const TradeLine& l) noexcept -> Cell { return l.exitBar; }};
constexpr TradeColumn kDirectionOut{
    "DirOut", kLetter, [](const TradeLine& l) noexcept -> Cell { return directionLetter(l.exitDirection); }};
constexpr TradeColumn kNameOut{"NameOut", kName,
                               [](const TradeLine& l) noexcept -> Cell { return l.exitName; }};
constexpr TradeColumn kPriceOut{"PriceOut", kPrice,
                                [](const TradeLine& l) noexcept -> Cell { return l.exitPrice; }};
constexpr TradeColumn kVolumeOut{"VolumeOut", kVolume,
                                 [](const TradeLine& l) noexcept -> Cell { return l.exitVolume; }};
constexpr TradeColumn kProfitColumn{"Profit", kProfit,
                                    [](const TradeLine& l) noexcept -> Cell { return l.profit; }};

constexpr TradeColumn kTradeColumns[] = {kTradeSystem,  kTradeSymbol, kDateIn,   kBarIn,     kDirectionIn,
                                         kNameIn,       kPriceIn,     kVolumeIn, kDateOut,   kBarOut,
                                         kDirectionOut, kNameOut,     kPriceOut, kVolumeOut, kProfitColumn};

constexpr char kTradeHeader[] =
    "System              Symbol   Date       Time     Bar#   Name                  Price   Volume  "
    "Date     Time     Bar#   Name                  Price   Volume  Profit\n"
    "------------------- -------- ---------- -------- ---- - --------------------- ------- ------- "
    "-------- -------- ---- - --------------------- ------- ------- -----------\n";

// What is still open has no name of an exit.
constexpr TradeColumn kOpenPositionColumns[] = {
    kTradeSystem, kTradeSymbol, kDateIn, kBarIn,        kDirectionIn, kNameIn,    kPriceIn,
    kVolumeIn,    kDateOut,     kBarOut, kDirectionOut, kPriceOut,    kVolumeOut, kProfitColumn};

constexpr char kOpenPositionHeader[] =
    "System              Symbol   Date       Time     Bar#   Name                  Price   Volume  "
    "Date     Time     Bar#   Price   Volume  Profit\n"
    "------------------- -------- ---------- -------- ---- - --------------------- ------- ------- "
    "-------- -------- ---- - ------- ------- -----------\n";

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
  return writeListing(file, append, separator, kOrderColumns, header ? kOrderHeader : nullptr,
                      [sys](auto write) {
                        for (int i = 0; i < sys->orderCount; ++i) write({*sys, sys->orders[i]});
                      });
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
  return writeListing(file, append, separator, kTradeColumns, header ? kTradeHeader : nullptr,
                      [sys](auto write) {
                        for (int i = 0; i < sys->tradeCount; ++i) write(lineOf(*sys, sys->trades[i]));
                      });
}

int QVCALL qvOpenPosRpt1(const QvOrderSystem* sys, const char* file, int append, int header,
                         const char* separator) noexcept {
  if (!sys || !file || !separator) return QV_INVALID_PARM;
  return writeListing(file, append, separator, kOpenPositionColumns, header ? kOpenPositionHeader : nullptr,
                      [sys](auto write) {
                        const int bar = std::min(sys->currentBar, saturatingSum(sys->bars.barsize, -1));
                        for (int i = 0; i < sys->positionCount; ++i)
                          if (sys->positions[i].remaining > 0) write(lineOf(*sys, sys->positions[i], bar));
                      });
}

}  // extern "C"
