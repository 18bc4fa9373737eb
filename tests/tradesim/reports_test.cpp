// The trading reports, as complete texts of one run worked out by hand.
#include <gtest/gtest.h>

#include <cstring>
#include <regex>

#include "support/files.h"
#include "support/trading.h"

namespace qvtest {
namespace {

// Six bars of one price each, dated 1 to 6 January 2000 at 18:00. A tick of 0.25 is worth 12.5; a trade of
// n contracts earns 0.9 * ((50 d - 1) n - 10).
class Reports : public testing::Test {
 protected:
  Reports() : sys({10.5, 10.5, 12.75, 9.25, 8, 8.5}) {
    for (int i = 0; i < 6; ++i) sys.date.data[i] += 0.75;
    std::strcpy(sys.systemName, "Crossover of averages");
    std::strcpy(sys.bars.symbol, "XYZ");
    sys.tickSize = 0.25;
    sys.tickValue = 12.5;
    sys.slippage = 1;
    sys.commission = 5;
    sys.deductionRate = 0.1;
    sys.next();
    sys.bar({buy("Long entry", 2)});  // bar 1: long 2 at 10.5
    // bar 2: 1 at the low 12.75, wholly above the limit: 0.9 * (112.5 - 1 - 10) = 91.35
    sys.bar({sell("Take profit", 1, QV_LIMIT, 12.5, QV_DAY, "Long entry")});
    // bar 3: short 3 at 9.25; the other contract loses 0.9 * (-62.5 - 1 - 10) = -66.15
    sys.bar({sellShort("Reverse", 3)});
    sys.bar({cover("Cover part", 1)});  // bar 4: 1 at 8: 0.9 * (62.5 - 1 - 10) = 46.35
    // bar 5, at 8.5: two short contracts are 0.75 ahead
    sys.bar(
        {buy("Stop entry", 1, QV_STOP, 15.5, QV_GTC), cover("Target", 2, QV_LIMIT, 5.05, QV_GTC, "Reverse")});
    sys.place({sellShort("At market", 4), sell("At close", 2, QV_CLOSE), sell("Odd", 1, 7, 0.5)});
  }

  // What a report leaves of a file that says "old".
  std::string written(auto report, auto... arguments) {
    std::ofstream(path) << "old";
    EXPECT_EQ(report(&sys, path.c_str(), 0, arguments...), 0);
    return readText(path);
  }

  Backtest sys;
  ScratchDir dir;
  const std::string path = dir / "report.txt";
};

// The dates of the texts below in each of the default formats.
std::string inFormat(const std::string& text, int format) {
  const char* const dates[] = {"$&", "01/0$2/$0100", "0$2/01/$0100"};
  return std::regex_replace(text, std::regex("(20)?00/01/0(\\d)"), dates[format]);
}

const char kOpenOrders[] =
    "\nOpen Orders\n"
    "   0 00/01/05 18:00:00 Target               \1 \1 \3 \2        2    5.049\n"
    "   1 00/01/05 18:00:00 Stop entry           \2 \1 \2 \2        1   15.500\n"
    "   2 00/01/06 18:00:00 At market            \2 \2 \1 \1        4    0.000\n"
    "   3 00/01/06 18:00:00 At close             \1 \2 \4 \1        2    8.500\n"
    "   4 00/01/06 18:00:00 Odd                  \1 \2 \7 \1        1    0.500\n";
const char kOrderColumns[] =
    R"(System              Symbol   Date       Time     Name                Dir  At     TIF Price    Volume
------------------- -------- ---------- -------- ------------------- ---- ------ --- -------- --------
Crossover of averag XYZ      2000/01/05 18:00:00 Target              Buy  Limit  GTC    5.050        2
)";
const char kOrderFields[] =
    R"(System;Symbol;DateTime;Name;Dir;At;TIF;Price;Volume
Crossover of averages;XYZ;2000/01/05 18:00:00;Target;Buy;Limit;GTC;5.050;2
Crossover of averages;XYZ;2000/01/05 18:00:00;Stop entry;Buy;Stop;GTC;15.500;1
Crossover of averages;XYZ;2000/01/06 18:00:00;At market;Sell;Market;Day;0.000;4
Crossover of averages;XYZ;2000/01/06 18:00:00;At close;Sell;Close;Day;8.500;2
Crossover of averages;XYZ;2000/01/06 18:00:00;Odd;Sell;;Day;0.500;1
)";

const char kTrades[] =
    R"( Trade Summary  Crossover of averages

 Date     Time     Bar#   Name                     Price   Volume       Profit
 -----------------------------------------------------------------------------

 00/01/02 18:00:00    1 B Long entry             10.5000        2
 00/01/03 18:00:00    2 S Take profit            12.7500        1      91.3500

 00/01/02 18:00:00    1 B Long entry             10.5000        2
 00/01/04 18:00:00    3 S Reverse                 9.2500        1     -66.1500

 00/01/04 18:00:00    3 S Reverse                 9.2500        3
 00/01/05 18:00:00    4 B Cover part              8.000        1      46.3500
)";
const char kTradeColumns[] =
    "System              Symbol   Date       Time     Bar#   Name                  Price   Volume  "
    "Date     Time     Bar#   Name                  Price   Volume  Profit\n"
    "------------------- -------- ---------- -------- ---- - --------------------- ------- ------- "
    "-------- -------- ---- - --------------------- ------- ------- -----------\n"
    "Crossover of averag XYZ      2000/01/02 18:00:00    1 B Long entry            10.500        2 "
    "2000/01/03 18:00:00    2 S Take profit           12.750        1     91.350\n";
const char kTradeFields[] =
    "System;Symbol;DateTimeIn;BarNumIn;DirIn;NameIn;PriceIn;VolumeIn;"
    "DateTimeOut;BarNumOut;DirOut;NameOut;PriceOut;VolumeOut;Profit\n"
    "Crossover of averages;XYZ;2000/01/02 18:00:00;1;B;Long entry;10.500;2;"
    "2000/01/03 18:00:00;2;S;Take profit;12.750;1;91.350\n";

// With costs: 0.9 * ((37.5 - 1) * 2 - 10), where the open profit of the statistics is 75.
const char kOpenColumns[] =
    "System              Symbol   Date       Time     Bar#   Name                  Price   Volume  "
    "Date     Time     Bar#   Price   Volume  Profit\n"
    "------------------- -------- ---------- -------- ---- - --------------------- ------- ------- "
    "-------- -------- ---- - ------- ------- -----------\n"
    "Crossover of averag XYZ      2000/01/04 18:00:00    3 S Reverse                9.250        2 "
    "2000/01/06 18:00:00    5 B    8.500        2     56.700\n";
const char kOpenFields[] =
    "System;Symbol;DateTimeIn;BarNumIn;DirIn;NameIn;PriceIn;VolumeIn;"
    "DateTimeOut;BarNumOut;DirOut;PriceOut;VolumeOut;Profit\n"
    "Crossover of averages;XYZ;2000/01/04 18:00:00;3;S;Reverse;9.250;2;"
    "2000/01/06 18:00:00;5;B;8.500;2;56.700\n";

// Drawdowns: long -175 over bars 1 to 3, short -62.5. PRR net: (2 - root 2) / 3 * 137.7 / 2 over
// 66.15 * 2 / 3 = 0.3048. The short return 74.16 is stored a hair lower and prints as 74.15.
const char kProfit[] =
    R"(--------------------------------------------------------------
Crossover of averages  2000/01/01 - 2000/01/06

                                 NET         LONG        SHORT
  Total net profit             71.55        25.20        46.35
  Gross profit                137.70        91.35        46.35
  Gross loss                  -66.15       -66.15         0.00
  Total # of trades             3            2            1 
  Percent Profitable           66           50          100
  Number winning trades         2            1            1 
  Number losing trades          1            1            0 
  Largest winning trade        91.35        91.35        46.35
  Largest losing trade        -66.15       -66.15         0.00
  Average winning trade        68.85        91.35        46.35
  Average losing trade        -66.15       -66.15         0.00
  Ratio avg win/avg loss        1.04         1.38         0.00
  Avg trade(win & loss)        23.85        12.60        46.35
  Max consec. winners           1            1            1 
  Max consec. losers            1            1            0 
  Avg # bars in winners         2            2            2
  Avg # bars in losers          3            3            0
  Max intraday drawdown      -175.00      -175.00       -62.50
  Profit factor                 1.38         1.38         0.00
  Max # contracts held          3            2            3
  Account size required       175.00       175.00        62.50
  Return on account            40.88%       14.40%       74.15%
  PRR                           0.30         0.00         0.00
  Open Position P/L            75.00         0.00        75.00
)";

TEST_F(Reports, CompleteTextsInEveryDateFormat) {
  for (int format : {2, 1, 0}) {
    qvSetDefaultDateFormat(format);
    sys.orderCount = 5;
    sys.tradeCount = 3;
    EXPECT_EQ(written(qvPrintOrders), inFormat(kOpenOrders, format));
    EXPECT_EQ(written(qvOrderRpt1, 1, ";"), inFormat(kOrderFields, format));
    EXPECT_EQ(written(qvPrintTrades), inFormat(kTrades, format));
    EXPECT_EQ(written(qvProfitRpt), inFormat(kProfit, format));
    sys.orderCount = sys.tradeCount = 1;
    EXPECT_EQ(written(qvOrderRpt1, 1, " "), inFormat(kOrderColumns, format));
    EXPECT_EQ(written(qvTradeRpt1, 1, " "), inFormat(kTradeColumns, format));
    EXPECT_EQ(written(qvTradeRpt1, 1, ";"), inFormat(kTradeFields, format));
    EXPECT_EQ(written(qvOpenPosRpt1, 1, " "), inFormat(kOpenColumns, format));
    EXPECT_EQ(written(qvOpenPosRpt1, 1, ";"), inFormat(kOpenFields, format));
  }
  EXPECT_EQ(written(qvOrderRpt1, 0, ", "),
            "Crossover of averages, XYZ, 2000/01/05 18:00:00, Target, Buy, Limit, GTC, 5.050, 2\n");
  EXPECT_EQ(sys.next(), 0);
  EXPECT_EQ(written(qvOpenPosRpt1, 1, ";"), kOpenFields) << "the last bar still values the positions";
  EXPECT_EQ(written(qvTradeRpt1, 0, ";"),
            std::string(kTradeFields).substr(std::string(kTradeFields).find('\n') + 1));
  sys.positions[0].direction = QV_BUY;
  EXPECT_EQ(written(qvOpenPosRpt1, 0, ";"),
            "Crossover of averages;XYZ;2000/01/04 18:00:00;3;B;Reverse;9.250;2;"
            "2000/01/06 18:00:00;5;S;8.500;2;-78.300\n");
  sys.positions[0].remaining = 0;
  EXPECT_EQ(written(qvOpenPosRpt1, 0, ";"), "");
  sys.orderCount = sys.tradeCount = sys.positionCount = 0;
  EXPECT_EQ(written(qvPrintOrders) + written(qvOrderRpt1, 1, ";"), "oldold") << "nothing is written";
  EXPECT_EQ(written(qvPrintTrades), std::string(kTrades).substr(0, std::string(kTrades).find("\n\n 00") + 1));
  for (auto* report : {qvTradeRpt1, qvOpenPosRpt1})
    EXPECT_EQ(written(report, 1, ";").substr(0, 7), "System;");
}

TEST_F(Reports, ChosenValues) {
  const auto line = [&](const char* lead, const char* pattern) {
    return written(qvProfitRpt1, lead, pattern);
  };
  EXPECT_EQ(line("", "NNP\\tLNP\\tSNP"), "       71.55\t       25.20\t       46.35\n");
  EXPECT_EQ(line("100%% of %s %d%n %%%", "lpf"), "100% of %s %d%n %%        1.38\n");
  EXPECT_EQ(line("", "xyz;QNT,sgl\\ab"), "         xyz;           3,        0.00\\\n") << "ab is no code";
  EXPECT_EQ(line("", "lntlnwlnllmwlmlngpnglnppnlwnll"),
            "           2           1           1           1           1"
            "      137.70      -66.15       66.66       91.35      -66.15\n");
  EXPECT_EQ(line("", "NAWNALnwlnatnwsnlsnmdnpfnmcnasnranpr"),
            "       68.85      -66.15        1.04       23.85        2.00        3.00"
            "     -175.00        1.38        3.00      175.00       40.88        0.30\n");
  sys.netStatistics.totalNetProfit = -0.5;
  sys.longStatistics.totalNetProfit = -1e300;
  EXPECT_EQ(line("", "NNPLNP"), "        0.50 -9223372036854775808.00\n") << "whole part has the sign";
}

// Every report, for what they have in common.
std::vector<int> allReports(const QvOrderSystem* sys, const char* file, const char* text = ";") {
  return {qvPrintOrders(sys, file, 1),           qvOrderRpt1(sys, file, 1, 1, text),
          qvPrintTrades(sys, file, 1),           qvTradeRpt1(sys, file, 1, 1, text),
          qvOpenPosRpt1(sys, file, 1, 1, text),  qvProfitRpt(sys, file, 1),
          qvProfitRpt1(sys, file, 1, text, text)};
}

TEST_F(Reports, FilesOddNumbersAndFullTextFields) {
  allReports(&sys, path.c_str());
  const std::string once = readText(path);
  allReports(&sys, path.c_str());
  EXPECT_EQ(allReports(&sys, (dir / "no/such.txt").c_str()), std::vector<int>(7, -2));
  EXPECT_EQ(readText(path), once + once);

  sys.orderCount = 1;
  sys.orders[0].price = kNaN;
  sys.orders[0].orderType = 0;
  std::memset(sys.bars.symbol, 'x', sizeof sys.bars.symbol);
  std::memset(sys.systemName, 'y', sizeof sys.systemName);
  EXPECT_EQ(written(qvOrderRpt1, 0, ";"), std::string(80, 'y') + ";" + std::string(16, 'x') +
                                              ";2000/01/05 18:00:00;Target;Buy;;GTC;0.000;2\n");
  for (double x : {kNaN, kInf, -kInf, 1e300, -1e300, 9.3e18, -0.5}) {
    sys.netStatistics.totalNetProfit = sys.netStatistics.percentProfitable = x;
    sys.trades[0].exitPrice = sys.positions[0].entryPrice = sys.orders[0].price = x;
    sys.trades[0].position.entryDate = sys.positions[0].entryDate = sys.orders[0].date = x;
    sys.close.data[5] = sys.date.data[0] = x;
    for (const char* text : {";", " "})
      EXPECT_EQ(allReports(&sys, path.c_str(), text), std::vector<int>(7, 0));
  }
  System empty(QvBars{});
  EXPECT_EQ(allReports(&empty, path.c_str()), std::vector<int>(7, 0));
}

}  // namespace
}  // namespace qvtest
