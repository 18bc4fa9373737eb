// An option, a straddle and a bond.
#include <cstdio>

#include "cli/demo.h"
#include "cli/table.h"

namespace qvcli {

void showFinance(const DemoData& demo) {
  const QvBars& bars = *demo.bars;
  if (bars.barsize < 1) return;
  const double today = bars.date.data[bars.barsize - 1];
  const double index = bars.close.data[bars.barsize - 1];

  heading("An option on the index, a straddle, a bond");
  QvOptionLeg call = {0.0, index, QV_OPTION_CALL, today + 90.0};
  const double rate = 2.0, volatility = 0.25;
  call.premium = qvBlackScholes(&call, index, rate, volatility * volatility, today);
  std::printf("Call at the money, strike %.2f, 90 days, rate %.1f %%, volatility %.0f %%: %.2f\n", index,
              rate, 100.0 * volatility, call.premium);

  QvOption straddle;
  qvOptionInit(&straddle);
  straddle.underlying = index;
  straddle.bought[0] = call;
  straddle.bought[1] = call;
  straddle.bought[1].type = QV_OPTION_PUT;
  if (qvLongStraddle(&straddle) == QV_OK)
    std::printf(
        "Long straddle with both premiums so: maximum loss %.2f, break-even %.2f and %.2f (moves of %+.1f %% "
        "and %+.1f %%)\n",
        straddle.maxLoss, straddle.lowerBreakeven, straddle.upperBreakeven, 100.0 * straddle.lowerMove,
        100.0 * straddle.upperMove);

  QvBond bond = {1000.0, 0.0, 50.0, 2, qvYMDtoDate(2030, 2, 15, 0, 0, 0)};
  const double yield = 4.0;
  bond.price = qvBondPricing(&bond, yield, today);
  std::printf(
      "Bond, face %.0f, coupon %.0f in two payments a year, due %s, at a yield of %.1f %%: price %.2f, "
      "duration %.2f years, approximate yield to maturity %.2f %%\n",
      bond.face, bond.coupon, dateText(bond.maturity).c_str(), yield, bond.price,
      qvBondDuration(&bond, yield, today), 100.0 * qvYieldtoMaturity(&bond, today));
}

}  // namespace qvcli
