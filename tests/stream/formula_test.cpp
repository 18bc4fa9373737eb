// Streams of formulas against their evaluation over whole bar sets.
#include <gtest/gtest.h>

#include "core/memory.h"
#include "formula/support.h"
#include "stream/support.h"

using namespace qvtest;

namespace {

constexpr const char* kFormulas[] = {
    "close",
    "3 * 4",
    "-(high + low) / 2 > open",
    "sma(20) - ema(close, 5)",
    "close[3]",
    "(close - close[1])[7]",
    "highest(high, 20) - lowest(low, 3)",
    "highest(rsi(close, 9), 30)",
    "close crosses above sma(10) or 30 crosses below rsi(14)",
    "if(close > open, max(close, high[2]), min(low, abs(-open)))",
    "macd(close, 12, 26, 9).macd > macd(close, 12, 26, 9).signal and not (volume < 1000)",
    "bollinger(2, 20).upper - bollinger(2, 20).lower",
    "candle(\"hammer\")",
    "candle(\"engulfing line bull\", 5) or candle(\"morning star\", 3)",
    "formation(\"inside bar\")",
    "crossover(ema(close, 5), ema(close, 12))",
    "weekly(close)",
    "weekly(sma(5)) < close",
    "close > weekly(highest(high, 3)) and monthly(close > close[1])",
    "sma(weekly(ema(close, 3)), 10)",
    "monthly(rsi(5)) + quarterly(open) - yearly(volume)",
    "monthly(weekly(high - low))",
    "atr(14) + adx(7, 7) + stochastic(0, 5, 3, 3).k",
    "ichimoku(9, 26, 52, 26).spanA - ichimoku(9, 26, 52, 26).base",
    "sma(close, $p) > $limit",
    "cci(80) + rwi(12).high",
    "divide(sma(close, 5), open) + vwma(rsi(9), volume, 5)",
};

struct Case {
  qv::Formula formula;
  Bars bars;

  Case(const std::string& text, std::mt19937& random)
      : formula(text),
        bars(walkBars(300 + static_cast<int>(random() % 500), static_cast<unsigned>(random()))) {
    for (const std::string& name : formula.parameters())
      formula.set(name, 1 + static_cast<int>(random() % 40));
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    if (below(3) == 0)
      for (QvArray* a : {&bars.open, &bars.high, &bars.low, &bars.close, &bars.volume})
        a->data[below(a->size)] = kNaN;
    if (below(8) == 0) bars.date.data[200 + below(50)] = kNaN;
    if (below(4) == 0) bars.high.data[0] = bars.low.data[0] = kNaN;  // the first window begins with it
  }
  Feed feed() const {
    Feed f(1, bars.barsize);
    for (const QvArray* a :
         {&bars.date, &bars.open, &bars.high, &bars.low, &bars.close, &bars.volume, &bars.openInterest})
      f.values.push_back(a->data);
    return f;
  }
};

class Formulas : public testing::TestWithParam<const char*> {};

void givesTheBitsOfTheEvaluation(const std::string& text, std::mt19937& random) {
  Case c(text, random);
  Array out;
  c.formula.evaluate(c.bars, out);
  QvStream* opened = nullptr;
  ASSERT_EQ(qvStreamOpenFormula(c.formula.get(), &opened), 0) << text;
  Stream stream(opened);
  Feed feed = c.feed();
  runAtRandom(stream, feed, random);
  if (testing::Test::HasFatalFailure()) return;
  const int first = qvStreamFirstValid(stream.get(), 0);
  EXPECT_EQ(first < 0 ? out.size : first, std::min(out.firstValid, out.size)) << text;
  for (int i = 0; i < out.size; ++i)
    ASSERT_TRUE(sameBits(feed.outputs[0][static_cast<std::size_t>(i)], out[i]))
        << text << " at " << i << " of " << out.firstValid << ": "
        << feed.outputs[0][static_cast<std::size_t>(i)] << " is not " << out[i];
}

TEST_P(Formulas, GiveTheBitsOfTheEvaluationHoweverTheBarsCome) {
  std::mt19937 random(3);
  for (int trial = 0; trial < 20 && !HasFatalFailure(); ++trial) {
    SCOPED_TRACE(trial);
    givesTheBitsOfTheEvaluation(GetParam(), random);
  }
}

TEST(FormulaStream, GivesTheBitsOfFormulasOfTheWholeLanguage) {
  RandomFormula formulas(11);
  std::mt19937 random(6);
  for (int trial = 0; trial < 600 && !testing::Test::HasFatalFailure(); ++trial) {
    const std::string text = formulas(3);
    const Formula formula(text);
    if (!formula.needs().repaints) givesTheBitsOfTheEvaluation(text, random);
  }
}

TEST_P(Formulas, AreAsTheyWereWhereMemoryRunsOut) {
  std::mt19937 random(4);
  Case c(GetParam(), random);
  Feed feed = c.feed(), smooth = feed;
  const long live = qv::memory::liveBlocks();
  QvStream *s = nullptr, *other = nullptr;
  const auto untilDone = [](auto step) {
    int status = QV_MALLOC;
    for (long k = 1; status == QV_MALLOC && k < 10000; ++k) {
      qv::memory::failAllocation(k);
      status = step();
      qv::memory::failAllocation(0);
    }
    ASSERT_EQ(status, 0);
  };
  untilDone([&] { return qvStreamOpenFormula(c.formula.get(), &s); });
  ASSERT_EQ(qvStreamOpenFormula(c.formula.get(), &other), 0);
  for (int i = 0; i < feed.bars; ++i) {
    ASSERT_EQ(qvStreamUpdate(other, feed.from(i).data(), 1, smooth.into(i).data()), 0);
    untilDone([&] { return qvStreamUpdate(s, feed.from(i).data(), 1, feed.into(i).data()); });
    if (i % 9 == 0)
      untilDone([&] { return qvStreamReplaceLast(s, feed.from(i).data(), feed.into(i).data()); });
  }
  QvStream* loaded = nullptr;
  const auto block = savedOf(s);
  untilDone([&] { return qvStreamLoad(block.data(), static_cast<int>(block.size()), &loaded); });
  for (QvStream* each : {s, other, loaded}) qvStreamClose(each);
  for (std::size_t i = 0; i < feed.outputs[0].size(); ++i)
    ASSERT_TRUE(sameBits(feed.outputs[0][i], smooth.outputs[0][i])) << i;
  EXPECT_EQ(qv::memory::liveBlocks(), live);
}

INSTANTIATE_TEST_SUITE_P(Texts, Formulas, testing::ValuesIn(kFormulas));

TEST(FormulaStream, RefusesWhatLooksAheadAndWhatHasNoValue) {
  const auto answerTo = [](const char* text) {
    QvStream* s = nullptr;
    const int answer = qvStreamOpenFormula(qv::Formula(text).get(), &s);
    EXPECT_EQ(s, nullptr);
    return answer;
  };
  EXPECT_EQ(answerTo("zigzag(close, 5) > close"), QV_UNKNOWN);
  EXPECT_EQ(answerTo("dpo(close, 20)"), QV_UNKNOWN);
  EXPECT_EQ(answerTo("sma(close, $p)"), QV_INVALID_PARM);
  QvStream* s = nullptr;
  EXPECT_EQ(qvStreamOpenFormula(nullptr, &s), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamOpenFormula(qv::Formula("close").get(), nullptr), QV_INVALID_PARM);
}

}  // namespace
