#include "python/extension/simulator.h"

#include "python/extension/backtests.h"
#include "python/extension/handles.h"
#include "python/extension/tables.h"
#include "runs/report.h"

namespace qv::python {

namespace {

// One order system over bars that stay while it is there.
class Simulator {
 public:
  Simulator(py::object bars, const std::string& name) : keeper_(std::move(bars)) {
    const BarSet& set = keeper_.cast<const BarSet&>();
    constexpr int kNeeded =
        QV_SERIES_DATE | QV_SERIES_OPEN | QV_SERIES_HIGH | QV_SERIES_LOW | QV_SERIES_CLOSE;
    demandSeries(set, kNeeded, "simulator");
    const int status = qvOrderSystemInit(&system_, name.c_str(), &set.bars());
    if (status < 0) fail("simulator", status);
    system_.tickSize = system_.tickValue = 0x1p-62;  // leaves prices alone
    system_.gapFills = 1;
  }
  Simulator(const Simulator&) = delete;
  Simulator& operator=(const Simulator&) = delete;
  ~Simulator() { qvOrderSystemClose(&system_); }

  bool next() { return done(qvProcessOrders(&system_)) == 1; }
  void reset() { qvOrderSystemReset(&system_); }

  using Open = int(QVCALL*)(QvOrderSystem*, const char*, int, double, int, int) noexcept;
  using Close = int(QVCALL*)(QvOrderSystem*, const char*, const char*, int, double, int, int) noexcept;
  template <Open order>
  void open(const std::string& name, int volume, double price, int type, int time) {
    done(order(&system_, name.c_str(), volume, price, type, time));
  }
  template <Close order>
  void close(const std::string& name, const std::string& from, int volume, double price, int type, int time) {
    done(order(&system_, name.c_str(), from.c_str(), volume, price, type, time));
  }
  void cancel(const std::string& name) { done(qvCancelOrder(&system_, name.c_str())); }

  void set(const std::string& name, double value) {
    if (name == "tick_size") system_.tickSize = value;
    if (name == "tick_value") system_.tickValue = value;
    if (name == "slippage") system_.slippage = value;
    if (name == "commission") system_.commission = value;
    if (name == "deduction_rate") system_.deductionRate = value;
    if (name == "margin_percent") system_.marginPercent = value;
    if (name == "gap_fills") system_.gapFills = value != 0.0;
    if (name == "reverse_on_entry") system_.reverseOnEntry = value != 0.0;
    if (name == "pyramiding") system_.pyramiding = value != 0.0;
  }

  py::list positions() const {
    py::list all;
    for (int k = 0; k < system_.positionCount; ++k) {
      const QvPosition& p = system_.positions[k];
      all.append(py::make_tuple(p.entryName, p.direction, p.entryBar, +p.entryDate, +p.entryPrice, p.volume,
                                p.remaining));
    }
    return all;
  }

  py::list pending() const {
    py::list all;
    for (int k = 0; k < system_.orderCount; ++k) {
      const QvOrder& o = system_.orders[k];
      if (o.filled) continue;
      all.append(
          py::make_tuple(o.name, o.action, o.direction, o.volume, +o.price, o.orderType, o.timeInForce));
    }
    return all;
  }

  py::dict trades() const {
    using namespace py::literals;
    const std::vector<QvTrade> rows(system_.trades, system_.trades + system_.tradeCount);
    return py::dict(
        "side"_a = texts(rows, [](auto& t) { return t.position.direction == QV_LONG ? "long" : "short"; }),
        "entry"_a = texts(rows, [](auto& t) { return t.position.entryName; }),
        "entered"_a = numbers(rows, [](auto& t) { return t.position.entryDate; }),
        "entry_price"_a = numbers(rows, [](auto& t) { return t.position.entryPrice; }),
        "exit"_a = texts(rows, [](auto& t) { return t.exitName; }),
        "left"_a = numbers(rows, [](auto& t) { return t.exitDate; }),
        "exit_price"_a = numbers(rows, [](auto& t) { return t.exitPrice; }),
        "contracts"_a = integers(rows, [](auto& t) { return t.exitVolume; }),
        "bars"_a = integers(rows, [](auto& t) { return t.exitBar - t.position.entryBar; }));
  }

  py::object equity(double capital, double costRate) const {
    if (system_.currentBar < 0) return newArray(0);
    Series equity;
    done(qvEquity(&system_, capital, costRate, &equity));
    return numbers(equity.items(), [](double x) { return x; });
  }

  py::tuple figures(double capital, double costRate, double rate) const {
    QvTradeFigures trades{};
    QvEquityFigures figures{};
    Series equity;
    if (system_.currentBar >= 0) {
      done(qvEquity(&system_, capital, costRate, &equity));
      done(qvEquityFigures(&equity, &system_.bars.date, 0, rate, &figures));
    }
    done(qvTradeFigures(&system_, costRate, &trades));
    return py::make_tuple(figuresOf(figures), figuresOf(trades));
  }
  py::tuple statistics() const {
    return py::make_tuple(statisticsOf(system_.netStatistics), statisticsOf(system_.longStatistics),
                          statisticsOf(system_.shortStatistics));
  }

  const QvOrderSystem& system() const { return system_; }
  std::string report() const { return runs::profitReport(system_); }

 private:
  static int done(int status) {
    if (status == QV_INVALID_PARM) throw py::value_error("simulator: no bar yet, call next() first");
    if (status < 0) fail("simulator", status);
    return status;
  }
  py::object keeper_;
  QvOrderSystem system_{};
};

}  // namespace

void addSimulator(py::module_& module) {
  const auto field = [](auto member) { return [member](const Simulator& s) { return s.system().*member; }; };
  Handle<Simulator>(module, "Simulator", "An order system over bars.")
      .def("next", &Simulator::next)
      .def("reset", &Simulator::reset)
      .def("buy_to_open", &Simulator::open<qvBuyToOpen>)
      .def("sell_to_open", &Simulator::open<qvSellToOpen>)
      .def("sell_to_close", &Simulator::close<qvSellToClose>)
      .def("buy_to_close", &Simulator::close<qvBuyToClose>)
      .def("cancel", &Simulator::cancel)
      .def("set", &Simulator::set)
      .def("positions", &Simulator::positions)
      .def("pending", &Simulator::pending)
      .def("trades", &Simulator::trades)
      .def("equity", &Simulator::equity)
      .def("figures", &Simulator::figures)
      .def("statistics", &Simulator::statistics)
      .def("report", &Simulator::report)
      .def_property_readonly("bar", field(&QvOrderSystem::currentBar))
      .def_property_readonly("direction", field(&QvOrderSystem::positionDirection))
      .def_property_readonly("long_contracts", field(&QvOrderSystem::longContracts))
      .def_property_readonly("short_contracts", field(&QvOrderSystem::shortContracts))
      .def_property_readonly("average_price",
                             [](const Simulator& s) { return +s.system().averageEntryPrice; })
      .def_property_readonly("bars_in_position", field(&QvOrderSystem::barsInPosition));
  module.def("simulator", [](const py::object& bars, const std::string& name) {
    py::object keeper;
    barSetIn(bars.ptr(), "bars", keeper);
    return make<Simulator>(keeper, name);
  });
}

}  // namespace qv::python
