// The marks of trades on a chart.
#include <gtest/gtest.h>

#include "support/expect.h"
#include "support/trading.h"

namespace qvtest {
namespace {

TEST(TradeGraph, MarksEntriesAndExits) {
  Backtest sys({10, 11, 12, 13, 14, 15});
  sys.reverseOnEntry = 0;
  sys.next();
  sys.bar({buy("A", 2)});
  sys.bar({sell("X", 1), sellShort("S", 1)});  // half of the long trade closed, a short one opened
  sys.bar({sell("X", 1, QV_CLOSE), cover("C", 1)});
  sys.bar({sellShort("open", 1)});
  Array out, single;
  expectGives(qvCreateTradeGraph(&sys, &out), out, {0, 1, 2 + 8, 4 + 8, 0, 0});

  sys.trades[0].position.entryBar = sys.trades[0].exitBar = 0;  // both on one bar
  sys.trades[1].exitBar = 6;
  sys.trades[1].position.entryBar = -1;
  Array used{7.5, 7.5, 7.5, 7.5, 7.5, 7.5, 7.5};
  expectGives(qvCreateTradeGraph(&sys, &used), used, {1 + 8, 1, 0, 8, 0, 0});  // marks outside are left out
  Backtest oneBar({10});
  expectGives(qvCreateTradeGraph(&oneBar, &single), single, {0});
  const QvOrderSystem empty{};
  for (int status : {qvCreateTradeGraph(nullptr, &out), qvCreateTradeGraph(&empty, nullptr),
                     qvCreateTradeGraph(&empty, &out)})
    EXPECT_EQ(status, -1);
}

}  // namespace
}  // namespace qvtest
