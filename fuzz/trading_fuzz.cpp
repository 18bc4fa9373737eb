// The order system: the input is a program of settings, orders and steps to the next bar. What is entered is
// what is closed and what is held, what later bars bring changes nothing before them, and every report can be
// printed at any time.
#include <map>
#include <tuple>

#include "input.h"
#include "scratch.h"

namespace qvfuzz {
namespace {

struct Step {
  int what, number, type, time;
  double price;
  int name, from;
};
constexpr const char* kNames[] = {"", "a", "b", "Long", "a name of more than nineteen characters"};

std::vector<Step> program(Input& in) {
  std::vector<Step> steps;
  while (!in.empty() && steps.size() < 300) {
    Step s{in.choose(0, 15), 0, 0, 0, 0, 0, 0};
    if (s.what >= 7) s.what = 0;
    if (s.what >= 1) {
      s.number = in.seldom(16) ? in.integer() : in.choose(1, 20);
      s.type = in.seldom(16) ? in.integer() : in.choose(1, 4);
      s.time = in.choose(1, 2);
      s.price = in.seldom(16) ? in.number() : 90.0 + in.choose(0, 255) / 12.0;
      s.name = in.choose(0, 4);
      s.from = in.choose(0, 4);
    }
    steps.push_back(s);
  }
  return steps;
}

struct Settings {
  double tickSize, tickValue, slippage, commission, deduction, margin;
  int delay, gaps, reverse, pyramiding, longs, shorts;
};
Settings settings(Input& in) {
  const auto money = [&] { return in.seldom(6) ? in.number() : in.choose(0, 8) / 8.0; };
  static constexpr double kTicks[] = {0.001, 0.01, 1.0, 0.25, 0.03125};
  Settings s{kTicks[in.choose(0, 4)], 0.001, 0, 0, 0, 100, 0, in.flip(), in.flip(), in.flip(), 1, 1};
  if (in.flip()) {
    if (in.seldom(6)) s.tickSize = in.number();
    s.tickValue = money(), s.slippage = money(), s.commission = money(), s.deduction = money(),
    s.margin = money() * 100;
    s.delay = in.seldom(4) ? in.integer() : in.choose(0, 3) * 86400;
    s.longs = in.choose(0, 7) > 0, s.shorts = in.choose(0, 7) > 0;
  }
  return s;
}

class System : public QvOrderSystem {
 public:
  System(const QvBars& bars, const Settings& s) : QvOrderSystem{} {
    ok_ = qvOrderSystemInit(this, "Fuzz", &bars) == 0;
    tickSize = s.tickSize, tickValue = s.tickValue, slippage = s.slippage, commission = s.commission;
    deductionRate = s.deduction, marginPercent = s.margin, entryDelaySeconds = s.delay, gapFills = s.gaps;
    reverseOnEntry = s.reverse, pyramiding = s.pyramiding, longEntriesAllowed = s.longs,
    shortEntriesAllowed = s.shorts;
  }
  System(const System&) = delete;
  System& operator=(const System&) = delete;
  ~System() { qvOrderSystemClose(this); }
  bool ok() const { return ok_; }

  int step(const Step& s) {
    const char *name = kNames[s.name], *from = kNames[s.from];
    switch (s.what) {
      case 1:
        return qvBuyToOpen(this, name, s.number, s.price, s.type, s.time);
      case 2:
        return qvSellToOpen(this, name, s.number, s.price, s.type, s.time);
      case 3:
        return qvSellToClose(this, name, from, s.number, s.price, s.type, s.time);
      case 4:
        return qvBuyToClose(this, name, from, s.number, s.price, s.type, s.time);
      case 5:
        return qvCancelOrder(this, name);
      case 6:
        return s.number == 13 ? qvOrderSystemReset(this), 0 : 0;
      default:
        return qvProcessOrders(this);
    }
  }

 private:
  bool ok_;
};

// At most one entry a bar and direction is filled, so that bar and direction are an entry.
void requireBooksBalance(const QvOrderSystem& sys) {
  struct Entry {
    long entered = 0, closed = 0, held = 0;
  };
  std::map<std::pair<int, int>, Entry> entries;
  long held[3] = {};
  for (int i = 0; i < sys.tradeCount; ++i) {
    const QvTrade& t = sys.trades[i];
    Entry& e = entries[{t.position.direction, t.position.entryBar}];
    e.entered = t.position.volume;
    e.closed += t.exitVolume;
    QV_REQUIRE(t.exitVolume > 0 && t.exitVolume <= t.position.remaining, "trade %d: %d of %d", i,
               t.exitVolume, t.position.remaining);
    QV_REQUIRE(t.position.entryBar <= t.exitBar && t.exitBar <= sys.currentBar, "trade %d: bars %d, %d", i,
               t.position.entryBar, t.exitBar);
  }
  for (int i = 0; i < sys.positionCount; ++i) {
    const QvPosition& p = sys.positions[i];
    Entry& e = entries[{p.direction, p.entryBar}];
    e.entered = p.volume;
    e.held += p.remaining;
    held[p.direction] += p.remaining;
    QV_REQUIRE(p.remaining > 0 && p.remaining <= p.volume, "position %d: %d of %d", i, p.remaining, p.volume);
  }
  for (const auto& [key, e] : entries)
    QV_REQUIRE(e.entered == e.closed + e.held, "direction %d, bar %d: %ld in, %ld out, %ld held", key.first,
               key.second, e.entered, e.closed, e.held);
  QV_REQUIRE(sys.longContracts == held[QV_LONG] && sys.shortContracts == held[QV_SHORT], "%d long, %d short",
             +sys.longContracts, +sys.shortContracts);
}

void report(Input& in, const QvOrderSystem& sys, const Heap& heap, bool regular) {
  static const Scratch dir;
  const std::string file = dir / "report", separator = in.cText(8), lead = in.cText(20),
                    pattern = in.cText(40);
  const int header = in.flip(), append = in.flip() && in.flip();
  if (append) truncate(file.c_str(), 0);
  qvSetDefaultDateFormat(in.choose(0, 3));
  heap.arm();
  const int answers[] = {qvPrintOrders(&sys, file.c_str(), append),
                         qvOrderRpt1(&sys, file.c_str(), append, header, separator.c_str()),
                         qvPrintTrades(&sys, file.c_str(), append),
                         qvTradeRpt1(&sys, file.c_str(), append, header, separator.c_str()),
                         qvOpenPosRpt1(&sys, file.c_str(), append, header, separator.c_str()),
                         qvProfitRpt(&sys, file.c_str(), append),
                         qvProfitRpt1(&sys, file.c_str(), append, lead.c_str(), pattern.c_str())};
  Heap::disarm();
  for (int answer : answers)
    QV_REQUIRE(answer == 0 || answer == QV_MALLOC || answer == QV_INVALID_PARM, "%d", answer);
  Series equity, marks;
  QvTradeFigures trades;
  QvEquityFigures figures;
  const double capital = in.number(), cost = in.number(), rate = in.number(),
               year = in.flip() ? 0 : in.number();
  heap.arm();
  if (qvEquity(&sys, capital, cost, &equity) == 0) {
    const int bars = std::min(sys.currentBar + 1, std::min(+sys.bars.barsize, +sys.bars.close.size));
    QV_REQUIRE(equity.size <= sys.currentBar + 1 && (equity.size == bars || !regular), "%d items at bar %d",
               equity.size, +sys.currentBar);
    qvEquityFigures(&equity, &sys.bars.date, year, rate, &figures);
  }
  qvTradeFigures(&sys, cost, &trades);
  qvCreateTradeGraph(&sys, &marks);
  Heap::disarm();
  require(equity);
  require(marks);
}

void optimise(Input& in) {
  QvOptVar vars[4];
  std::memset(vars, 0, sizeof vars);
  for (QvOptVar& v : vars) v.start = in.number(), v.end = in.number(), v.step = in.number();
  const int n = in.choose(-1, 4), count = qvOptVarCount(vars, n);
  qvOptVarValue(vars, n, in.flip() ? in.integer() : in.choose(0, 30));
  const std::string separator = in.cText(6);
  const int room = qvOptVarStringLen(vars, n, separator.c_str());
  if (room <= 0) return;
  std::vector<char> out(static_cast<std::size_t>(room));
  qvOptVarString(vars, n, separator.c_str(), out.data());
  QV_REQUIRE(std::memchr(out.data(), 0, out.size()) && count <= INT_MAX, "%d", count);
}

void trade(const uint8_t* data, std::size_t size) {
  Input in(data, size);
  const Heap heap(in);
  const int n = in.choose(0, 120);
  BarSet bars(in, n);
  const bool regular = in.choose(0, 3) > 0;
  if (!regular) bars.disturb(in);
  const Settings set = settings(in);
  const int cut = in.choose(0, n), extras = in.choose(0, 7);
  if (extras == 1) optimise(in);
  heap.arm();
  System sys(bars, set);
  Heap::disarm();
  if (!sys.ok()) return;
  if (extras == 2) report(in, sys, heap, regular);

  BarSet fewer;
  QV_REQUIRE(qvAllocBars(&fewer, cut) == 0, "memory");
  for (int s = 0; s < qv::kSeriesCount; ++s)
    if (const QvArray& from = qv::seriesOf(bars, s); from.data)
      std::memcpy(qv::seriesOf(fewer, s).data, from.data,
                  static_cast<std::size_t>(std::min(cut, from.capacity)) * sizeof(double));
  System early(fewer, set);
  bool compare = regular && !heap.fails(), balance = !heap.fails();

  Snapshot inputs;
  inputs.add(bars);
  const std::vector<Step> steps = program(in);
  for (const Step& s : steps) {
    balance &= s.what == 0 || s.what > 4 || (s.number > 0 && s.number < 100000);
    heap.arm();
    const int answer = sys.step(s);
    Heap::disarm();
    QV_REQUIRE(s.what == 5 || (answer <= 1 && answer >= QV_MALLOC), "%d", answer);
    if (balance) requireBooksBalance(sys);
    if (!compare) continue;
    const int other = early.step(s);
    if (s.what == 0 && other != answer) compare = false;  // the end of the shorter set
    if (!compare) continue;
    const auto sameRows = [](const void* a, const void* b, int count, std::size_t row) {
      return count == 0 || std::memcmp(a, b, static_cast<std::size_t>(count) * row) == 0;
    };
    QV_REQUIRE(sys.tradeCount == early.tradeCount && sys.positionCount == early.positionCount &&
                   sameRows(sys.trades, early.trades, sys.tradeCount, sizeof(QvTrade)) &&
                   sameRows(sys.positions, early.positions, sys.positionCount, sizeof(QvPosition)) &&
                   sameRows(&sys.netStatistics, &early.netStatistics, 1, sizeof(QvTradeStats)),
               "later bars change bar %d", +sys.currentBar);
  }
  inputs.require();
  if (extras >= 4) {
    Input again(data, size);
    report(again, sys, heap, regular);
  }
}

}  // namespace
}  // namespace qvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  qvfuzz::trade(data, size);
  return 0;
}
