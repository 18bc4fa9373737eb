// What formulas give over bar sets.
#include <thread>

#include "formula/support.h"
#include "support/spx.h"

namespace qvtest {
namespace {

QvBars cutTo(const QvBars& bars, int n) {
  QvBars cut = bars;
  cut.barsize = n;
  for (const auto series : qv::kSeriesOfBars) (cut.*series).size = n;
  return cut;
}

// The same bits as the calculation itself, for every output of every entry that a formula can call.
TEST(FormulaEvaluation, CallsGiveWhatTheCalculationGives) {
  const Bars bars(walkBars(400));
  for (int i = 0; i < qvCatalogueSize(); ++i) {
    const QvCatalogueEntry& e = *qvCatalogueItem(i);
    const QvArray* inputs[4] = {};
    for (int k = 0; k < e.inputCount; ++k) {
      for (int s = 0; s < 7; ++s)
        if (e.inputs[k].series & 1 << s) inputs[k] = &(bars.*qv::kSeriesOfBars[s]);
    }
    if (!isCallable(e)) continue;
    Array outputs[5];
    QvArray* to[] = {&outputs[0], &outputs[1], &outputs[2], &outputs[3], &outputs[4]};
    const QvBars* sets[] = {&bars};
    ASSERT_GE(qvCatalogueCall(&e, sets, inputs, to, nullptr, 0), 0) << e.name;
    for (int k = 0; k < e.outputCount; ++k) {
      const std::string text = std::string(e.name) + "." + e.outputs[k].name;
      const Evaluated got(text, bars);
      EXPECT_EQ(got.firstValid, outputs[k].firstValid) << text;
      for (int b = 0; b < got.size; ++b)
        ASSERT_TRUE(sameBits(got[b], b < got.firstValid ? 0.0 : outputs[k][b])) << text << " at " << b;
    }
  }
}

TEST(FormulaEvaluation, ValuesAreKnownFromTheLatestOfTheirPartsOn) {
  Bars bars(walkBars(120));
  const std::pair<const char*, int> formulas[] = {
      {"7", 0},
      {"close", 0},
      {"sma(10) > 3 and rsi(14) < 4", 14},
      {"not sma(10)", 9},
      {"if(1, close, sma(20))", 19},
      {"close * 0 and sma(20)", 19},
      {"sma(10)[5]", 14},
      {"highest(sma(10), 5)", 13},
      {"sma(rsi(14), 9)", 22},
      {"close crosses above sma(10)", 10},
      {"macd(12, 26, 9).signal", 1},
      {"sma(500)", 499},
      {"close[200]", 200},
      {"candle('Three White Soldiers', 10)", 12},
      {"highest(close, 2147483647)", 2147483646},
      {"close[9999999999]", 2147483647},
  };
  for (const int first : {0, 7}) {
    bars.close.firstValid = bars.open.firstValid = first;
    for (const auto& [text, wanted] : formulas) {
      const Evaluated out(text, bars);
      const int moved = text[0] == '7' || wanted == INT_MAX
                            ? wanted
                            : static_cast<int>(std::min<std::int64_t>(INT_MAX, std::int64_t{wanted} + first));
      EXPECT_EQ(out.firstValid, moved) << text;
      for (int i = 0; i < std::min(out.firstValid, out.size); ++i) ASSERT_EQ(out[i], 0.0) << text << i;
      if (first == 0) {
        EXPECT_EQ(Formula(text).needs().firstValid, wanted) << text;
      }
    }
  }
}

TEST(FormulaEvaluation, CoarserBarsAreKnownWhenTheyAreOver) {
  const std::pair<const char*, int> periods[] = {
      {"weekly", 3}, {"monthly", 4}, {"quarterly", 5}, {"yearly", 6}};
  for (const auto& [name, frequency] : periods) {
    for (const int n : {1, 6, 30, 900}) {
      Bars bars(walkBars(n, 5)), groups;
      bars.high.firstValid = n / 10;
      ASSERT_EQ(qvGroupBarsDate(&bars, &groups, frequency, 0, 0), 0);
      const Evaluated out(std::string(name) + "(sma(high, 3) - low)", bars);
      // The week of each bar by the dates on which weeks end; a week with an unknown high is unknown.
      int g = 0, firstGroup = 0, first = n;
      while (firstGroup < groups.barsize && bars.high.firstValid > 0 &&
             groups.date.data[firstGroup] < bars.date.data[bars.high.firstValid - 1])
        ++firstGroup;
      if (bars.high.firstValid > 0) ++firstGroup;
      for (int i = 0; i < n; ++i) {
        while (groups.date.data[g] < bars.date.data[i]) ++g;
        if (g - 1 < firstGroup + 2) continue;
        first = std::min(first, i);
        const double* h = groups.high.data + g - 1;
        EXPECT_NEAR(out[i], (h[0] + h[-1] + h[-2]) / 3 - groups.low.data[g - 1], 1e-9)
            << name << n << " at " << i;
      }
      // A group that ends just below the first valid bar is unknown, the next may be whole.
      EXPECT_NEAR(out.firstValid, first, bars.high.firstValid > 0 ? 262 : 0) << name << n;
      EXPECT_LE(out.firstValid, n);
    }
  }
  Bars bars(walkBars(40));
  qvFreeArray(&bars.openInterest);  // nobody reads it
  const Evaluated weekly("weekly(close)", bars);
  EXPECT_EQ(weekly.firstValid, 5);
  Array out;
  EXPECT_EQ(qvFormulaEval(Formula("weekly(openinterest)").f, &bars, &out), -1);
  EXPECT_EQ(qvFormulaEval(Formula("weekly(close)").f, &bars, &bars.date), -1) << "dates are read";
  EXPECT_EQ(qvFormulaEval(Formula("close").f, &bars, &bars.date), 0) << "dates are not read";
  EXPECT_EQ(bars.date.data[9], bars.close.data[9]);
}

// No formula looks ahead unless it says so: bars that are cut off change nothing before them. Nor does what
// an output held, or a second evaluation.
TEST(FormulaEvaluation, LaterBarsChangeNothing) {
  const Bars bars(walkBars(420, 11));
  RandomFormula random(2);
  int compared = 0;
  for (int round = 0; round < 4000; ++round) {
    const std::string text = random();
    const Formula f(text);
    ASSERT_TRUE(f.f) << text << ": " << f.error;
    const QvFormulaNeeds needs = f.needs();
    Array whole, part;
    Array::fill(part, 420, 5.0);
    ASSERT_EQ(qvFormulaEval(f.f, &bars, &whole), 0) << text;
    EXPECT_TRUE(needs.settled < 0 || needs.settled >= needs.firstValid) << text;
    const bool coarse = text.find("ly(") != std::string::npos;
    EXPECT_TRUE(coarse || needs.firstValid == whole.firstValid) << text;
    EXPECT_TRUE(whole.firstValid >= whole.size || needs.firstValid >= whole.firstValid) << text;
    if (needs.repaints) continue;
    const int n = 1 + static_cast<int>(random.below(420));
    const QvBars cut = cutTo(bars, n);
    ASSERT_EQ(qvFormulaEval(f.f, &cut, &part), 0) << text << " of " << n;
    ASSERT_EQ(std::min(part.firstValid, n), std::min(whole.firstValid, n)) << text << " of " << n;
    for (int i = 0; i < n; ++i) {
      const double wanted = i < part.firstValid ? 0.0 : whole[i];
      ASSERT_TRUE(sameBits(part[i], wanted)) << text << " of " << n << " at " << i;
    }
    compared += part.firstValid < n;
  }
  EXPECT_GT(compared, 1000);
}

// From the settled index on a value does not depend on where the data began: a tenth of a thousandth of the
// series' size is asked for, a thousandth must hold.
TEST(FormulaEvaluation, ValuesSettle) {
  const QvBars& all = spx();
  for (const char* text :
       {"rsi(14)", "ema(20)", "sma(50)[7]", "macd(12, 26, 9).signal", "highest(rsi(9), 10)", "weekly(ema(5))",
        "monthly(sma(high, 3))", "ema(rsi(14), 9)", "candle('Hammer')"}) {
    const Formula f(text);
    const QvFormulaNeeds needs = f.needs(1e-4);
    ASSERT_GE(needs.settled, 0) << text;
    Array whole, late;
    ASSERT_EQ(qvFormulaEval(f.f, &all, &whole), 0);
    const int from = 1003;
    QvBars rest = cutTo(all, all.barsize - from);
    for (const auto series : qv::kSeriesOfBars) (rest.*series).data += from, (rest.*series).capacity -= from;
    rest.datasize -= from;
    ASSERT_EQ(qvFormulaEval(f.f, &rest, &late), 0);
    double size = 0;
    for (int i = 0; i < whole.size; ++i) size = std::max(size, std::fabs(whole[i]));
    for (int i = needs.settled; i < late.size; ++i)
      ASSERT_NEAR(late[i], whole[i + from], 1e-3 * size) << text << " at " << i;
  }
}

TEST(FormulaEvaluation, Parameters) {
  const Bars bars(walkBars(200));
  const Formula f("sma($Fast) crosses above sma($slow + 0) or close[$fast] > $x1");
  ASSERT_TRUE(f.f) << f.error;
  ASSERT_EQ(qvFormulaParameterCount(f.f), 3);
  EXPECT_STREQ(qvFormulaParameterName(f.f, 0), "Fast");
  EXPECT_STREQ(qvFormulaParameterName(f.f, 2), "x1");
  EXPECT_EQ(qvFormulaParameterName(f.f, 3), nullptr);
  Array out, expected;
  QvFormulaNeeds needs;
  EXPECT_EQ(qvFormulaParameter(f.f, "fast", 5), 0);
  EXPECT_EQ(qvFormulaParameter(f.f, "$SLOW", 12), 0);
  EXPECT_EQ(qvFormulaParameter(f.f, "medium", 12), -1);
  EXPECT_EQ(qvFormulaEval(f.f, &bars, &out), -1) << "one has no value";
  EXPECT_EQ(qvFormulaNeeds(f.f, 0.1, &needs), -1);
  qvFormulaParameter(f.f, "x1", 1e9);
  for (const double slow : {12.0, 40.0}) {
    qvFormulaParameter(f.f, "slow", slow);
    ASSERT_EQ(qvFormulaEval(f.f, &bars, &out), 0);
    const Evaluated wanted("sma(5) crosses above sma(" + std::to_string(static_cast<int>(slow)) + ")", bars);
    EXPECT_EQ(out.items(), wanted.items());
    EXPECT_EQ(f.needs().firstValid, static_cast<int>(slow));
  }
  const Formula method("ma(close, $m, 9)");
  for (const double m : {-1.0, 8.0, kNaN}) {
    qvFormulaParameter(method.f, "m", m);
    EXPECT_EQ(qvFormulaEval(method.f, &bars, &out), -1) << m;
  }
  const Items before = out.items();
  for (const double refused : {0.0, -3.0, kNaN}) {
    qvFormulaParameter(f.f, "fast", refused);
    EXPECT_EQ(qvFormulaEval(f.f, &bars, &out), -1);
    EXPECT_EQ(qvFormulaNeeds(f.f, 0.1, &needs), -1);
    EXPECT_EQ(out.items(), before) << "a refusal writes nothing";
  }
}

TEST(FormulaEvaluation, OutputsAndMissingData) {
  Bars bars(walkBars(50)), none;
  const Formula f("close - sma(volume, 3)");
  Array out, small;
  EXPECT_EQ(qvFormulaEval(nullptr, &bars, &out), -1);
  EXPECT_EQ(qvFormulaEval(f.f, nullptr, &out), -1);
  EXPECT_EQ(qvFormulaEval(f.f, &none, &out), -1);
  EXPECT_EQ(qvFormulaEval(f.f, &bars, nullptr), -1);
  EXPECT_EQ(qvFormulaEval(f.f, &bars, &bars.high), -1) << "a series of the bar set, read or not";
  EXPECT_EQ(f.needs().series, QV_SERIES_CLOSE | QV_SERIES_VOLUME);
  ASSERT_EQ(qvFormulaEval(f.f, &bars, &out), 0);
  EXPECT_EQ(out.size, 50);
  Array::fill(small, 10, 4.0);
  ASSERT_EQ(qvFormulaEval(f.f, &bars, &small), 0);
  EXPECT_EQ(small.items(), Items(out.data, out.data + 10));
  qvFreeArray(&bars.volume);
  EXPECT_EQ(qvFormulaEval(f.f, &bars, &out), -1);
  EXPECT_EQ(Evaluated("formation('Inside Bar')", bars).firstValid, 0);
  bars.high.firstValid = 5;
  EXPECT_EQ(Evaluated("formation('Inside Bar')", bars).firstValid, 6) << "the bar before must be valid, too";
  qvFormulaClose(nullptr);
  EXPECT_EQ(qvFormulaParameter(nullptr, "x", 1), -1);
  EXPECT_EQ(qvFormulaParameterCount(nullptr), -1);
  EXPECT_EQ(qvFormulaNeeds(nullptr, 0, nullptr), -1);
}

TEST(FormulaEvaluation, ExhaustedMemoryIsReported) {
  Bars bars(walkBars(60));
  qvFreeArray(&bars.openInterest);  // a compression wants all series
  qvFreeArray(&bars.volume);
  Array::fill(bars.volume, 50, 1.0);
  // Signs before it move the place where the table of nodes is full through all parts of the formula.
  const std::string tail =
      "weekly(macd(high).signal) > $x and ma(200, triangular) + candle('Hammer') < highest(c[1], 40) or "
      "monthly(close) crosses above lowest(abs(low), 3) * bollinger(2, $x).upper";
  for (int signs = 0; signs < 34; ++signs) {
    const std::string text = std::string(static_cast<std::size_t>(signs), '-') + "open + " + tail;
    expectAnswersExhaustedMemory("open", [&] {
      char error[100];
      QvFormula* f = qvFormulaOpen(text.c_str(), error, sizeof error);
      EXPECT_STREQ(error, f ? "" : "Malloc");
      qvFormulaClose(f);
      return f ? 0 : -3;
    });
  }
  const Formula f(tail);
  qvFormulaParameter(f.f, "x", 2);
  expectAnswersExhaustedMemory("evaluate", [&] {
    Array out;
    return qvFormulaEval(f.f, &bars, &out);
  });
  Array held, shorter;
  Array::fill(held, 60, 5.0);
  Array::fill(shorter, 6, 5.0);
  for (Array* out : {&held, &shorter})
    expectAnswersExhaustedMemory("evaluate into", [&] {
      const int status = qvFormulaEval(f.f, &bars, out);
      EXPECT_TRUE(status == 0 || out->items() == Items(out->items().size(), 0.0) || (*out)[0] == 5.0);
      return status;
    });
  expectAnswersExhaustedMemory("needs", [&] {
    QvFormulaNeeds needs;
    return qvFormulaNeeds(f.f, 0.1, &needs);
  });
}

TEST(FormulaEvaluation, TwoThreadsEvaluateOneFormula) {
  const Bars one(walkBars(300, 1)), other(walkBars(500, 2));
  const Formula f("weekly(rsi(5)) > 50 and close crosses above ema(20) or candle('High Wave')");
  const auto evaluate = [&](const QvBars& bars) {
    Items last;
    for (int k = 0; k < 50; ++k) {
      Array out;
      EXPECT_EQ(qvFormulaEval(f.f, &bars, &out), 0);
      EXPECT_TRUE(k == 0 || out.items() == last);
      last = out.items();
    }
  };
  std::thread second([&] { evaluate(other); });
  evaluate(one);
  second.join();
}

}  // namespace
}  // namespace qvtest
