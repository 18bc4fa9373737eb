#include "python/extension/finance.h"

#include <pybind11/stl.h>

#include "python/extension/bars.h"
#include "python/extension/handles.h"
#include "runs/options.h"
#include "runs/pnf.h"

namespace qv::python {

namespace {

using namespace py::literals;

py::dict profile(const std::string& name, const runs::OptionTerms& terms, const std::vector<double>& strikes,
                 const std::vector<double>& premiums) {
  const runs::OptionProfile p = runs::profileOf(runs::findOptionPosition(name), terms, strikes, premiums);
  constexpr double kUnlimited = std::numeric_limits<double>::infinity();
  const QvOption& o = p.option;
  return py::dict("premiums"_a = py::make_tuple(p.premiums[0], p.premiums[1]),
                  "max_profit"_a = p.position->unlimitedProfit ? kUnlimited : o.maxProfit,
                  "max_loss"_a = p.position->unlimitedLoss ? kUnlimited : o.maxLoss,
                  "lower_breakeven"_a = +o.lowerBreakeven, "upper_breakeven"_a = +o.upperBreakeven,
                  "lower_move"_a = +o.lowerMove, "upper_move"_a = +o.upperMove);
}

py::dict bond(double face, double coupon, int payments, double maturity, double settlement, double yield,
              double price) {
  QvBond bond = {face, price, face * coupon / 100.0, payments, maturity};
  if (yield == yield) bond.price = qvBondPricing(&bond, yield, settlement);
  const double approximate = 100.0 * qvYieldtoMaturity(&bond, settlement);
  return py::dict("price"_a = +bond.price, "yield_to_maturity"_a = approximate,
                  "current_yield"_a = 100.0 * bond.coupon / bond.price,
                  "duration"_a = qvBondDuration(&bond, yield == yield ? yield : approximate, settlement));
}

py::tuple pnf(const py::object& bars, double box, double reversal, bool hilo) {
  py::object keeper;
  const BarSet& set = barSetIn(bars.ptr(), "bars", keeper);
  constexpr int kNeeded = QV_SERIES_DATE | QV_SERIES_HIGH | QV_SERIES_LOW | QV_SERIES_CLOSE;
  demandSeries(set, hilo ? kNeeded : QV_SERIES_DATE | QV_SERIES_CLOSE, "pnf");
  runs::PointAndFigure chart;
  {
    const py::gil_scoped_release unlocked;
    chart = runs::pointAndFigure(set.bars(), "pnf", box, reversal, hilo);
  }
  py::object columnOf = newArray(chart.columnOf.size);
  std::copy_n(chart.columnOf.data, chart.columnOf.size, seriesOf(columnOf.ptr()).data);
  return py::make_tuple(make<BarSet>(std::move(chart.columns)), columnOf, chart.box, chart.text);
}

}  // namespace

void addFinance(py::module_& module) {
  module.def("option_value",
             [](bool isCall, double underlying, double strike, double days, double rate, double volatility) {
               return runs::optionValue({underlying, rate, volatility, days},
                                        isCall ? QV_OPTION_CALL : QV_OPTION_PUT, strike);
             });
  module.def("option_profile",
             [](const std::string& name, double underlying, double days, double rate, double volatility,
                const std::vector<double>& strikes, const std::vector<double>& premiums) {
               return profile(name, {underlying, rate, volatility, days}, strikes, premiums);
             });
  module.def("bond", &bond);
  module.def("pnf", &pnf);
}

}  // namespace qv::python
