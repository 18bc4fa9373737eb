// Functions that are not in the catalogue refuse a null pointer where they need one, before they write
// anything.
#include <gtest/gtest.h>

#include <climits>
#include <type_traits>
#include <utility>

#include "support/candles.h"
#include "support/expect.h"
#include "support/trading.h"

namespace qvtest {
namespace {

template <typename T>
T nullIf(bool is, T argument) {
  if constexpr (std::is_pointer_v<T>) return is ? nullptr : argument;
  return argument;
}

// Each pointer in turn, the others as they are given; what is given as nullptr is not needed.
template <typename Answer, typename Function, typename... Args>
void expectRefused(const char* name, Answer answer, Function function, Args... args) {
  const auto without = [&]<std::size_t... k>(std::size_t missing, std::index_sequence<k...>) {
    return function(nullIf(k == missing, args)...);
  };
  constexpr bool kIsPointer[] = {std::is_pointer_v<Args>...};
  for (std::size_t k = 0; k < sizeof...(args); ++k)
    if (kIsPointer[k]) {
      EXPECT_EQ(without(k, std::index_sequence_for<Args...>{}), answer) << name << " without argument " << k;
    }
}
#define REFUSED(answer, function, ...) expectRefused(#function, answer, function, __VA_ARGS__)

// A file that could not be opened, which would be the answer of a function that looks at it too early.
constexpr const char* kFile = "/nowhere/file";

TEST(MissingArguments, OfRecordsAndStretchesAreRefused) {
  const Bars bars(walkBars(9));
  const Array a{1, 2, 3}, b{3, 2, 1};
  Candles candles;
  Array sums;
  double x = 7;
  REFUSED(-1, qvFindDate, &bars, 1.0);
  REFUSED(-1, qvFirstNonZeroItem, &a);
  REFUSED(0.0, qvSumPrev, &a, 2, 2);
  REFUSED(0.0, qvOBVol, &bars, 0, 3);
  REFUSED(0.0, qvOBOi, &bars, 0, 3);
  REFUSED(0.0, qvBodyMidpoint, &bars, 2);
  REFUSED(0.0, qvCovariance, &a, &b, 0, 2);
  REFUSED(0.0, qvCorCoef, &a, &b, 0, 0, 2);
  REFUSED(-1, qvArrayStats, &a, nullptr, nullptr, nullptr, nullptr, 0, 2, 0);
  REFUSED(-1, qvArrayStatsPos, &a, nullptr, nullptr, 0, 2, 0);
  REFUSED(-1, qvRegressionLine, &a, &x, &x, 0, 2);
  REFUSED(-1, qvFibonacciProject, 1.0, 2.0, &x, &x, &x);
  REFUSED(-1, qvFibonacciRetrace, 1.0, 2.0, &x, &x, &x);
  REFUSED(-1, qvCrossOver, &a, &b, 1);
  REFUSED(-1, qvBodyGapUp, &bars, 2);
  REFUSED(-1, qvCandleConstruct, &bars, &candles);
  REFUSED(-1, qvCandleConstructTrailing, &bars, &candles, 5);
  REFUSED(-1, qvGroupArray, &bars, &bars.close, &sums, 3);
  REFUSED(-1, qvGroupBars, &bars, &x, &x, &x, &x, &x, &x, 3, 5);
  REFUSED(-1, qvPNFchart, &bars, 1.0, kFile, 0);
  EXPECT_TRUE(x == 7 && !sums.data);

  // As is a record that holds nothing.
  const Array none;
  const Bars noBars;
  QvBars lacking = bars;
  lacking.close.data = lacking.date.data = nullptr;
  for (const int status :
       {qvArrayStats(&none, &x, &x, &x, &x, 0, 2, 0), qvRegressionLine(&none, &x, &x, 0, 2),
        qvArrayStatsPos(&none, nullptr, nullptr, 0, 2, 0), qvFindDate(&lacking, 1),
        qvGroupArray(&lacking, &a, &sums, 3), qvGroupArray(&bars, &none, &sums, 3),
        qvGroupBars(&lacking, &x, &x, &x, &x, &x, &x, 3, 5)})
    EXPECT_EQ(status, -1);
  for (const double value : {qvSumPrev(&none, 2, 2), qvOBVol(&noBars, 0, 2), qvOBVol(&lacking, 0, 2),
                             qvOBOi(&lacking, 0, 2), qvBodyMidpoint(&lacking, 1)})
    EXPECT_EQ(value, 0.0);
  EXPECT_EQ(x, 7);
  // Or fewer items than it says, and one of more than can be counted.
  QvBars shorter = bars;
  shorter.date.capacity = shorter.close.capacity = 8;
  const QvArray endless{&x, INT_MAX, INT_MAX, 0}, empty{&x, 0, 1, 0};
  QvArray inPlace = empty;
  for (const int status :
       {qvFindDate(&shorter, 1), qvGroupBars(&shorter, &x, &x, &x, &x, &x, &x, 3, 5),
        qvMultAddArray(&endless, &sums, 1, 0, 0), qvMultAddArray(&empty, &inPlace, 1, 0, 0),
        qvCandleConstructTrailing(&shorter, &candles, 5)})
    EXPECT_EQ(status, -1);
  QvBars untraded = bars;
  untraded.volume.data = untraded.openInterest.data = nullptr;
  EXPECT_EQ(qvOBVol(&untraded, 0, 2) + qvOBOi(&untraded, 0, 2), 0.0);
  EXPECT_EQ(qvWesternGapUp(&lacking, 2) + qvBodyGapUp(&lacking, 2), 0);
  qvShiftArray(&sums, 2);
  EXPECT_EQ(sums.firstValid, 0);
}

TEST(MissingArguments, OfDatesAndFilesAreRefused) {
  const Bars bars(walkBars(3));
  Bars out;
  Array a;
  REFUSED(-1, qvDateTxtDif, "2008/01/01", "2008/01/15", short{2}, short{2});
  REFUSED(-1, qvTimeTxtDif, "9:00", "9:30", 0, 0);
  REFUSED(-1, qvFILEfindrec, "TXT", "/nowhere", "a", 1.0, nullptr);
  REFUSED(-1, qvFILEread, "TXT", &out, "/nowhere", "a", 0, 1);
  REFUSED(-1, qvFILElist, "TXT", "/nowhere", kFile, 0);
  REFUSED(-1, qvFILEprintinfo, &bars, kFile, 0);
  short parts[3] = {7, 7, 7};
  for (int k = 0; k < 3; ++k) {
    short* at[] = {parts, parts + 1, parts + 2};
    at[k] = nullptr;
    qvJulianToYMD(2.0, at[0], at[1], at[2]);
    qvJulianToHMS(2.0, at[0], at[1], at[2]);
    EXPECT_EQ(std::vector<short>(parts, parts + 3), std::vector<short>(3, 7));
  }
}

TEST(MissingArguments, OfTradingSystemsAreRefused) {
  Backtest sys({1, 2, 3});
  const QvOrderSystem* const trades = &sys;
  Array out;
  QvTradeFigures figures;
  QvEquityFigures of;
  QvOptVar range{};
  char text[80];
  REFUSED(-1, qvEquity, trades, 100.0, 0.0, &out);
  REFUSED(-1, qvTradeFigures, trades, 0.0, &figures);
  REFUSED(-1, qvEquityFigures, &sys.bars.close, nullptr, 252.0, 0.0, &of);
  REFUSED(-1, qvCreateTradeGraph, trades, &out);
  REFUSED(-1, qvOptVarCount, &range, 1);
  REFUSED(-1, qvOptVarValue, &range, 1, 1);
  REFUSED(-1, qvOptVarString, &range, 1, ",", text);
  REFUSED(-1, qvOptVarStringLen, &range, 1, ",");
  REFUSED(-1, qvPrintOrders, trades, kFile, 0);
  REFUSED(-1, qvPrintTrades, trades, kFile, 0);
  REFUSED(-1, qvProfitRpt, trades, kFile, 0);
  for (auto* report : {qvOrderRpt1, qvTradeRpt1, qvOpenPosRpt1})
    expectRefused("report", -1, report, trades, kFile, 0, 1, ";");
  REFUSED(-1, qvProfitRpt1, trades, kFile, 0, "", "npf");
  EXPECT_EQ(qvProfitRpt(trades, kFile, 0), -2);
}

}  // namespace
}  // namespace qvtest
