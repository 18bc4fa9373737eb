// The trading reports, as complete texts of one run worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "core/memory.h"
#include "support/files.h"
#include "support/trading.h"

namespace qvtest {
namespace {

class Reports : public testing::Test {
 protected:
  // Six bars of one price each, dated 1 to 6 January 2000 at 18:00. A tick of 0.25 is worth 12.5; a trade of
  // n contracts earns 0.9 * ((50 d - 1) n - 10).
  Reports() : bars(flatBars({10.5, 10.5, 12.75, 9.25, 8, 8.5})), sys(named(bars), "Crossover of averages") {
    sys.tickSize = 0.25;
    sys.tickValue = 12.5;
    sys.slippage = 1;
    sys.commission = 5;
    sys.deductionRate = 0.1;
  }
  ~Reports() override { qvSetDefaultDateFormat(0); }

  static const QvBars& named(Bars& b) {
    std::strcpy(b.symbol, "XYZ");
    for (int i = 0; i < b.barsize; ++i) b.date.data[i] += 0.75;
    return b;
  }

  void runAll() {
    sys.next();
    sys.buy("Long entry", 2);
    sys.next();  // bar 1: long 2 at 10.5
    sys.sell("Take profit", 1, QV_LIMIT, 12.5, QV_DAY, "Long entry");
    sys.next();  // bar 2: 1 at the low 12.75, wholly above the limit: 0.9 * (112.5 - 1 - 10) = 91.35
    sys.sellShort("Reverse", 3);
    sys.next();  // bar 3: short 3 at 9.25; the other contract loses 0.9 * (-62.5 - 1 - 10) = -66.15
    sys.cover("Cover part", 1);
    sys.next();  // bar 4: 1 at 8: 0.9 * (62.5 - 1 - 10) = 46.35
    sys.sellShort("Fade", 1, QV_LIMIT, 20.125, QV_GTC);
    sys.buy("Stop entry", 1, QV_STOP, 15.5, QV_GTC);
    sys.cover("Target", 2, QV_LIMIT, 5.05, QV_GTC, "Reverse");
    sys.next();  // bar 5, at 8.5: two short contracts are 0.75 ahead
    sys.sellShort("At market", 4);
    sys.sell("Odd", 1, 7, 0.5);
  }

  std::string written(const std::function<int(const char*)>& report) {
    const std::string path = dir / "report.txt";
    std::filesystem::remove(path);
    EXPECT_EQ(report(path.c_str()), 0);
    return std::filesystem::exists(path) ? readFile(path) : "no file";
  }

  Bars bars;
  System sys;
  ScratchDir dir;
};

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

// The expected text with its dates in another default format.
std::string inFormat(std::string text, int format) {
  for (int day = 1; day <= 6; ++day) {
    const std::string d = "0" + std::to_string(day);
    const std::string order = format == 1 ? "01/" + d + "/" : d + "/01/";
    text = replaced(text, "2000/01/" + d, order + "20+00");
    text = replaced(text, "00/01/" + d, order + "00");
  }
  return replaced(text, "20+00", "2000");
}

const char kOpenOrders[] =
    "\nOpen Orders\n"
    "   0 00/01/05 18:00:00 Target               \1 \1 \3 \2        2    5.049\n"
    "   1 00/01/05 18:00:00 Stop entry           \2 \1 \2 \2        1   15.500\n"
    "   2 00/01/05 18:00:00 Fade                 \2 \2 \3 \2        1   20.125\n"
    "   3 00/01/06 18:00:00 At market            \2 \2 \1 \1        4    0.000\n"
    "   4 00/01/06 18:00:00 Odd                  \1 \2 \7 \1        1    0.500\n";

const char kOrderHeader[] =
    "System              Symbol   Date       Time     Name                Dir  At     TIF Price    Volume\n"
    "------------------- -------- ---------- -------- ------------------- ---- ------ --- -------- "
    "--------\n";
const char kOrderColumns[] =
    "Crossover of averag XYZ      2000/01/05 18:00:00 Target              Buy  Limit  GTC    5.050        2\n"
    "Crossover of averag XYZ      2000/01/05 18:00:00 Stop entry          Buy  Stop   GTC   15.500        1\n"
    "Crossover of averag XYZ      2000/01/05 18:00:00 Fade                Sell Limit  GTC   20.125        1\n"
    "Crossover of averag XYZ      2000/01/06 18:00:00 At market           Sell Market Day    0.000        4\n"
    "Crossover of averag XYZ      2000/01/06 18:00:00 Odd                 Sell        Day    0.500        "
    "1\n";
const char kOrderFields[] =
    "System;Symbol;DateTime;Name;Dir;At;TIF;Price;Volume\n"
    "Crossover of averages;XYZ;2000/01/05 18:00:00;Target;Buy;Limit;GTC;5.050;2\n"
    "Crossover of averages;XYZ;2000/01/05 18:00:00;Stop entry;Buy;Stop;GTC;15.500;1\n"
    "Crossover of averages;XYZ;2000/01/05 18:00:00;Fade;Sell;Limit;GTC;20.125;1\n"
    "Crossover of averages;XYZ;2000/01/06 18:00:00;At market;Sell;Market;Day;0.000;4\n"
    "Crossover of averages;XYZ;2000/01/06 18:00:00;Odd;Sell;;Day;0.500;1\n";

const char kTradesHeader[] =
    " Trade Summary  Crossover of averages\n\n"
    " Date     Time     Bar#   Name                     Price   Volume       Profit\n"
    " -----------------------------------------------------------------------------\n";
const char kTrades[] =
    "\n 00/01/02 18:00:00    1 B Long entry             10.5000        2\n"
    " 00/01/03 18:00:00    2 S Take profit            12.7500        1      91.3500\n"
    "\n 00/01/02 18:00:00    1 B Long entry             10.5000        2\n"
    " 00/01/04 18:00:00    3 S Reverse                 9.2500        1     -66.1500\n"
    "\n 00/01/04 18:00:00    3 S Reverse                 9.2500        3\n"
    " 00/01/05 18:00:00    4 B Cover part              8.000        1      46.3500\n";

const char kTradeHeader[] =
    "System              Symbol   Date       Time     Bar#   Name                  Price   Volume  "
    "Date     Time     Bar#   Name                  Price   Volume  Profit\n"
    "------------------- -------- ---------- -------- ---- - --------------------- ------- ------- "
    "-------- -------- ---- - --------------------- ------- ------- -----------\n";
const char kTradeColumns[] =
    "Crossover of averag XYZ      2000/01/02 18:00:00    1 B Long entry            10.500        2 "
    "2000/01/03 18:00:00    2 S Take profit           12.750        1     91.350\n"
    "Crossover of averag XYZ      2000/01/02 18:00:00    1 B Long entry            10.500        2 "
    "2000/01/04 18:00:00    3 S Reverse                9.250        1    -66.150\n"
    "Crossover of averag XYZ      2000/01/04 18:00:00    3 S Reverse                9.250        3 "
    "2000/01/05 18:00:00    4 B Cover part             8.000        1     46.350\n";
const char kTradeFieldHeader[] =
    "System;Symbol;DateTimeIn;BarNumIn;DirIn;NameIn;PriceIn;VolumeIn;"
    "DateTimeOut;BarNumOut;DirOut;NameOut;PriceOut;VolumeOut;Profit\n";
const char kTradeFields[] =
    "Crossover of averages;XYZ;2000/01/02 18:00:00;1;B;Long entry;10.500;2;"
    "2000/01/03 18:00:00;2;S;Take profit;12.750;1;91.350\n"
    "Crossover of averages;XYZ;2000/01/02 18:00:00;1;B;Long entry;10.500;2;"
    "2000/01/04 18:00:00;3;S;Reverse;9.250;1;-66.150\n"
    "Crossover of averages;XYZ;2000/01/04 18:00:00;3;S;Reverse;9.250;3;"
    "2000/01/05 18:00:00;4;B;Cover part;8.000;1;46.350\n";

const char kOpenHeader[] =
    "System              Symbol   Date       Time     Bar#   Name                  Price   Volume  "
    "Date     Time     Bar#   Price   Volume  Profit\n"
    "------------------- -------- ---------- -------- ---- - --------------------- ------- ------- "
    "-------- -------- ---- - ------- ------- -----------\n";
// With costs: 0.9 * ((37.5 - 1) * 2 - 10), where the open profit of the statistics is 75.
const char kOpenColumns[] =
    "Crossover of averag XYZ      2000/01/04 18:00:00    3 S Reverse                9.250        2 "
    "2000/01/06 18:00:00    5 B    8.500        2     56.700\n";
const char kOpenFieldHeader[] =
    "System;Symbol;DateTimeIn;BarNumIn;DirIn;NameIn;PriceIn;VolumeIn;"
    "DateTimeOut;BarNumOut;DirOut;PriceOut;VolumeOut;Profit\n";
const char kOpenFields[] =
    "Crossover of averages;XYZ;2000/01/04 18:00:00;3;S;Reverse;9.250;2;2000/01/06 "
    "18:00:00;5;B;8.500;2;56.700\n";

// Drawdowns: long -175 over bars 1 to 3, short -62.5. PRR net: (2 - root 2) / 3 * 137.7 / 2 over
// 66.15 * 2 / 3 = 0.3048. The short return 74.16 is stored a hair lower and prints as 74.15.
const char kProfit[] =
    "--------------------------------------------------------------\n"
    "Crossover of averages  2000/01/01 - 2000/01/06\n"
    "\n"
    "                                 NET         LONG        SHORT\n"
    "  Total net profit             71.55        25.20        46.35\n"
    "  Gross profit                137.70        91.35        46.35\n"
    "  Gross loss                  -66.15       -66.15         0.00\n"
    "  Total # of trades             3            2            1 \n"
    "  Percent Profitable           66           50          100\n"
    "  Number winning trades         2            1            1 \n"
    "  Number losing trades          1            1            0 \n"
    "  Largest winning trade        91.35        91.35        46.35\n"
    "  Largest losing trade        -66.15       -66.15         0.00\n"
    "  Average winning trade        68.85        91.35        46.35\n"
    "  Average losing trade        -66.15       -66.15         0.00\n"
    "  Ratio avg win/avg loss        1.04         1.38         0.00\n"
    "  Avg trade(win & loss)        23.85        12.60        46.35\n"
    "  Max consec. winners           1            1            1 \n"
    "  Max consec. losers            1            1            0 \n"
    "  Avg # bars in winners         2            2            2\n"
    "  Avg # bars in losers          3            3            0\n"
    "  Max intraday drawdown      -175.00      -175.00       -62.50\n"
    "  Profit factor                 1.38         1.38         0.00\n"
    "  Max # contracts held          3            2            3\n"
    "  Account size required       175.00       175.00        62.50\n"
    "  Return on account            40.88%       14.40%       74.15%\n"
    "  PRR                           0.30         0.00         0.00\n"
    "  Open Position P/L            75.00         0.00        75.00\n";

using Header = std::string;

TEST_F(Reports, CompleteTextsInEveryDateFormat) {
  runAll();
  for (int format : {0, 1, 2}) {
    SCOPED_TRACE(format);
    qvSetDefaultDateFormat(format);
    const auto expected = [&](const std::string& text) { return format ? inFormat(text, format) : text; };
    EXPECT_EQ(written([&](const char* f) { return qvPrintOrders(&sys, f, 0); }), expected(kOpenOrders));
    EXPECT_EQ(written([&](const char* f) { return qvPrintTrades(&sys, f, 0); }),
              expected(Header(kTradesHeader) + kTrades));
    EXPECT_EQ(written([&](const char* f) { return qvProfitRpt(&sys, f, 0); }), expected(kProfit));
    EXPECT_EQ(written([&](const char* f) { return qvOrderRpt1(&sys, f, 0, 1, " "); }),
              expected(Header(kOrderHeader) + kOrderColumns));
    EXPECT_EQ(written([&](const char* f) { return qvOrderRpt1(&sys, f, 0, 0, " "); }),
              expected(kOrderColumns));
    EXPECT_EQ(written([&](const char* f) { return qvOrderRpt1(&sys, f, 0, 1, ";"); }),
              expected(kOrderFields));
    EXPECT_EQ(written([&](const char* f) { return qvTradeRpt1(&sys, f, 0, 1, " "); }),
              expected(Header(kTradeHeader) + kTradeColumns));
    EXPECT_EQ(written([&](const char* f) { return qvTradeRpt1(&sys, f, 0, 1, ";"); }),
              expected(Header(kTradeFieldHeader) + kTradeFields));
    EXPECT_EQ(written([&](const char* f) { return qvTradeRpt1(&sys, f, 0, 0, ", "); }),
              expected(replaced(kTradeFields, ";", ", ")));
    EXPECT_EQ(written([&](const char* f) { return qvOpenPosRpt1(&sys, f, 0, 1, " "); }),
              expected(Header(kOpenHeader) + kOpenColumns));
    EXPECT_EQ(written([&](const char* f) { return qvOpenPosRpt1(&sys, f, 0, 1, ";"); }),
              expected(Header(kOpenFieldHeader) + kOpenFields));
  }
  qvSetDefaultDateFormat(0);
  while (sys.next() == 1) {
  }
  EXPECT_EQ(written([&](const char* f) { return qvOpenPosRpt1(&sys, f, 0, 0, ";"); }), kOpenFields)
      << "after the run the last bar still values the positions";
}

TEST_F(Reports, ChosenValues) {
  runAll();
  const auto line = [&](const char* lead, const char* pattern) {
    return written([&](const char* f) { return qvProfitRpt1(&sys, f, 0, lead, pattern); });
  };
  EXPECT_EQ(line("", "NNP\\tLNP\\tSNP"), "       71.55\t       25.20\t       46.35\n");
  EXPECT_EQ(line("100%% of %s %d%n %%%", "lpf"), "100% of %s %d%n %%        1.38\n");
  EXPECT_EQ(line("", "xyz;QNT,sgl\\ab"), "         xyz;           3,        0.00\\\n")
      << "two letters are no code";
  EXPECT_EQ(line("", "LOP"), "         LOP\n") << "open profit has no code";
  EXPECT_EQ(line("", "lntlnwlnllmwlml"), "           2           1           1           1           1\n");
  EXPECT_EQ(line("", "ngpnglnppnlwnllnawnalnwlnatnws"),
            "      137.70      -66.15       66.66       91.35      -66.15       68.85      -66.15        1.04"
            "       23.85        2.00\n");
  EXPECT_EQ(line("", "nlsnmdnpfnmcnasnranpr"),
            "        3.00     -175.00        1.38        3.00      175.00       40.88        0.30\n");
}

TEST_F(Reports, WithoutRecords) {
  EXPECT_EQ(written([&](const char* f) { return qvPrintOrders(&sys, f, 0); }), "no file");
  EXPECT_EQ(written([&](const char* f) { return qvOrderRpt1(&sys, f, 0, 1, ";"); }), "no file");
  EXPECT_EQ(written([&](const char* f) { return qvPrintTrades(&sys, f, 0); }), kTradesHeader);
  EXPECT_EQ(written([&](const char* f) { return qvTradeRpt1(&sys, f, 0, 1, " "); }), kTradeHeader);
  EXPECT_EQ(written([&](const char* f) { return qvTradeRpt1(&sys, f, 0, 1, ";"); }), kTradeFieldHeader);
  EXPECT_EQ(written([&](const char* f) { return qvOpenPosRpt1(&sys, f, 0, 1, " "); }), kOpenHeader);
  EXPECT_EQ(written([&](const char* f) { return qvOpenPosRpt1(&sys, f, 0, 0, ";"); }), "");
  EXPECT_EQ(written([&](const char* f) { return qvOpenPosRpt1(&sys, f, 0, 1, ""); }),
            replaced(kOpenFieldHeader, ";", ""))
      << "an empty separator separates nothing";
}

TEST_F(Reports, AppendTruncateOrStandardOutput) {
  runAll();
  const std::string path = dir / "report.txt";
  for (int append : {0, 1, 0, 1}) EXPECT_EQ(qvOpenPosRpt1(&sys, path.c_str(), append, 0, ";"), 0);
  EXPECT_EQ(readFile(path), std::string(kOpenFields) + kOpenFields);
  testing::internal::CaptureStdout();
  EXPECT_EQ(qvOpenPosRpt1(&sys, "stdout", 0, 0, ";"), 0);
  EXPECT_EQ(qvOpenPosRpt1(&sys, "StdOut", 0, 0, ";"), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string(kOpenFields) + kOpenFields);
}

// Every report, for what they have in common.
std::vector<int> allReports(const QvOrderSystem* sys, const char* file, const char* text = ";") {
  return {qvPrintOrders(sys, file, 1),           qvOrderRpt1(sys, file, 1, 1, text),
          qvPrintTrades(sys, file, 1),           qvTradeRpt1(sys, file, 1, 1, text),
          qvOpenPosRpt1(sys, file, 1, 1, text),  qvProfitRpt(sys, file, 1),
          qvProfitRpt1(sys, file, 1, text, text)};
}

TEST_F(Reports, BadFilesAndArguments) {
  runAll();
  const std::string path = dir / "report.txt";
  EXPECT_EQ(allReports(&sys, (dir / "no/such.txt").c_str()), std::vector<int>(7, -2));
  EXPECT_EQ(allReports(nullptr, path.c_str()), std::vector<int>(7, -1));
  EXPECT_EQ(allReports(&sys, nullptr), std::vector<int>(7, -1));
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(allReports(&sys, path.c_str(), nullptr), (std::vector<int>{0, -1, 0, -1, -1, 0, -1}));
}

TEST_F(Reports, OddNumbersAndFullTextFields) {
  const std::string path = dir / "report.txt";
  runAll();
  const double odd[] = {kNaN, kInf, -kInf, 1e300, -1e300, 9.3e18, -0.5};
  for (double x : odd) {
    sys.netStatistics.totalNetProfit = sys.netStatistics.percentProfitable = x;
    sys.trades[0].exitPrice = sys.positions[0].entryPrice = sys.orders[0].price = x;
    sys.trades[0].position.entryDate = sys.positions[0].entryDate = sys.orders[0].date = x;
    bars.close.data[5] = bars.date.data[0] = x;
    EXPECT_EQ(allReports(&sys, path.c_str()), std::vector<int>(7, 0));
    EXPECT_EQ(allReports(&sys, path.c_str(), " "), std::vector<int>(7, 0));
  }
  const auto value = [&](double x) {
    sys.netStatistics.totalNetProfit = x;
    return written([&](const char* f) { return qvProfitRpt1(&sys, f, 0, "", "NNP"); });
  };
  EXPECT_EQ(value(kNaN), "        0.00\n");
  EXPECT_EQ(value(-kInf), "        0.00\n");
  EXPECT_EQ(value(-1e300), " -9223372036854775808.00\n");
  EXPECT_EQ(value(-0.5), "        0.50\n") << "the sign goes with the whole part";
  sys.orders[0].price = kNaN;
  sys.orderCount = 1;
  sys.orders[0].date = 36526.75;
  std::memset(sys.bars.symbol, 'x', sizeof sys.bars.symbol);
  std::memset(sys.systemName, 'y', sizeof sys.systemName);
  EXPECT_EQ(written([&](const char* f) { return qvOrderRpt1(&sys, f, 0, 0, ";"); }),
            std::string(80, 'y') + ";" + std::string(16, 'x') +
                ";2000/01/01 18:00:00;Target;Buy;Limit;GTC;0.000;2\n");

  QvBars none{};
  System empty(none);
  EXPECT_EQ(allReports(&empty, path.c_str()), std::vector<int>(7, 0));
  empty.next();
  EXPECT_EQ(allReports(&empty, path.c_str()), std::vector<int>(7, 0));
}

}  // namespace
}  // namespace qvtest
