// Every pattern against its definition, written as text and evaluated by the test: a search finds
// bars that meet all conditions, and for each condition bars that break it alone; then every single
// change of one of those bars' fields and prices is tried.
#include <gtest/gtest.h>

#include <climits>
#include <sstream>

#include "core/bar_series.h"
#include "patterns/candle_names.h"
#include "support/candles.h"
#include "support/expect.h"

namespace qvtest {
namespace {

// Conditions are separated by blanks and all must hold; "|" is or, "&" is and within a condition.
// c s t b are the colour, shape, top and bottom shadow of a bar, O H L C its prices, M the middle
// and T B the upper and lower end of its body; the digit counts bars back from the last one.
// "!" is "is not", "~" approximately equal.
struct Pattern {
  const char* name;
  int(QVCALL* test)(const QvBars*, const QvCandles*, int);
  int bars;
  const char* conditions;
};

#define ROW(name, bars, conditions) \
  { #name, name, bars, conditions }
const Pattern kPatterns[] = {
    ROW(qvAbandonedBabyBottom, 3, "c0=2 c2=1 s1=0 s2=3 H1<L2 L0>H1 C0>M2"),
    ROW(qvAbandonedBabyTop, 3, "c0=1 c2=2 s1=0 s2=3 L1>H2 H0<L1 C0<M2"),
    ROW(qvAdvanceBlock, 3, "c0=2 c1=2 c2=2 C0>C1 C1>C2 C2-O2>C1-O1&C1-O1>C0-O0|t2!3&t0=3&t1=3"),
    ROW(qvBeltHoldLineBear, 1, "c0=1 s0=3 O0=H0"),
    ROW(qvBeltHoldLineBull, 1, "c0=2 s0=3 O0=L0"),
    ROW(qvCounterAttackBear, 2, "c0=1 c1=2 s0!0 s1!0 C0~C1 C1-O1<O0-C1|C1-O1=O0-C1"),
    ROW(qvCounterAttackBull, 2, "c0=2 c1=1 s0!0 s1!0 C0~C1 O1-C1<C1-O0|O1-C1=C1-O0"),
    ROW(qvDarkCloudCover, 2, "c0=1 c1=2 s1=3 O0>H1 C0<M1"),
    ROW(qvEngulfingLineBear, 2, "c0=1 c1=2 s0=3 s1=1 O0>C1 C0<O1"),
    ROW(qvEngulfingLineBull, 2, "c0=2 c1=1 s0=3 s1=1 O0<C1 C0>O1"),
    ROW(qvEveningDojiStar, 3, "c0=1 c2=2 s1=0 s2=3 B1>T2 C0<M2"),
    ROW(qvEveningStar, 3, "c0=1 c2=2 s1=1 s2=3 B1>T2 C0<M2"),
    ROW(qvFalling3Method, 5,
        "c0=1 c1=2 c2=2 c3=2 c4=1 s0=3 s1=1 s2=1 s3=1 s4=3 C0<C4 C4<O3 C3<C2 C2<C1 "
        "C1<O4|C1=O4|C1<O0|C1=O0"),
    ROW(qvGravestoneDoji, 1, "s0=0 L0=B0"),
    ROW(qvHammer, 1, "c0=1 s0!3 t0=1 b0=3"),
    ROW(qvHangingman, 1, "c0=2 s0!3 t0=1 b0=3"),
    ROW(qvHaramiBlack, 2, "s0=1 c1=1 s1=3 O0>C1 O0<O1 C0>C1 C0<O1"),
    ROW(qvHaramiCrossBlack, 2, "s0=0 c1=1 s1=3 O0>C1 O0<O1 C0>C1 C0<O1"),
    ROW(qvHaramiCrossWhite, 2, "s0=0 c1=2 s1=3 O0<C1 O0>O1 C0<C1 C0>O1"),
    ROW(qvHaramiWhite, 2, "s0=1 c1=2 s1=3 O0<C1 O0>O1 C0<C1 C0>O1"),
    ROW(qvHighWave, 1, "s0=1 t0=3|b0=3"),
    ROW(qvInNeckLine, 2, "c0=2 c1=1 s0=1 s1!0 C0~L1 C0>L1"),
    ROW(qvInvertedHammer, 1, "c0=2 s0!3 t0=3 b0=1"),
    ROW(qvLongLeggedDoji, 1, "s0=0 t0=3 b0=3"),
    ROW(qvMatHoldPattern, 5, "c0=2 c1=1 c2=1 c3=1 c4=2 s0!0 s1=1 s2=1 s3=1 s4=3 B3>T4 B0>T1 O3>O2 O2>O1"),
    ROW(qvMorningDojiStar, 3, "c0=2 c2=1 s0!0 s1=0 s2=3 T1<B2 O0>O1 C0>M2"),
    ROW(qvMorningStar, 3, "c0=2 c2=1 s0!0 s1=1 s2=3 T1<B2 O0>O1 C0>M2"),
    ROW(qvPiercingLine, 2, "c0=2 c1=1 s0!0 s1=3 O0<C1 C0>M1"),
    ROW(qvRising3Method, 5,
        "c0=2 c1=1 c2=1 c3=1 c4=2 s0=3 s1=1 s2=1 s3=1 s4=3 C0>C4 C4>O3 C3>C2 C2>C1 "
        "C1>O4|C1=O4|C1>O0|C1=O0"),
    ROW(qvSeperatingLineBear, 2, "c0=1 c1=2 s0!0 s1!0 O0=O1"),
    ROW(qvSeperatingLineBull, 2, "c0=2 c1=1 s0!0 s1!0 O0=O1"),
    ROW(qvShootingStar, 1, "c0=2 s0=1 t0=3 b0=1"),
    ROW(qvSideBySideWhiteGapDn, 3, "c0=2 c1=2 s0!0 s0=s1 T1<B2 C0~C1"),
    ROW(qvSideBySideWhiteGapUp, 3, "c0=2 c1=2 s0!0 s0=s1 B1>T2 C0~C1"),
    ROW(qvStalledPattern, 2, "c0=2 c1=2 s0=1 s1=3 O0~C1"),
    ROW(qvTasukiDownsideGap, 3, "c0=2 c1=1 c2=1 s0=s1 O0>C1 C0>O1 C0<C2"),
    ROW(qvTasukiUpsideGap, 3, "c0=1 c1=2 c2=2 s0=s1 O0<C1 C0<O1 C0>C2"),
    ROW(qvThreeGapsUp, 4, "B0>T1 B1>T2 B2>T3"),
    ROW(qvThreeGapsDown, 4, "T0<B1 T1<B2 T2<B3"),
    ROW(qvThreeWhiteSoldiers, 3, "c0=2 c1=2 c2=2 t0=1 t1=1 t2=1 H0>H1 H1>H2 H0~C0 H1~C1 H2~C2"),
    ROW(qvThrustingLine, 2, "c0=2 c1=1 C0>C1 C0<M1"),
    ROW(qvUpsideGap2Crows, 3, "c0=1 c1=1 c2=2 s2=3 B1>T2 C0<C1 O0>O1"),
};
#undef ROW

// Eight numbers per bar, the last bar first: colour, shape, top, bottom, open, high, low, close.
using Window = std::vector<double>;

// "O1", "2" or a difference of two terms, read from the front of the text.
double readTerm(const char*& text, const Window& w) {
  const char c = *text++;
  if (c >= '0' && c <= '9') return c - '0';
  const double* bar = &w[static_cast<std::size_t>(8 * (*text++ - '0'))];
  const double open = bar[4], close = bar[7];
  if (c == 'M') return (open + close) / 2;
  if (c != 'T' && c != 'B') return bar[std::string("cstbOHLC").find(c)];
  return open != open ? open : c == 'T' ? std::max(close, open) : std::min(close, open);
}
double readDifference(const char*& text, const Window& w) {
  const double a = readTerm(text, w);
  return *text == '-' ? a - readTerm(++text, w) : a;
}

bool holds(const std::string& condition, const Window& w) {
  bool all = true;
  for (const char* text = condition.c_str();; ++text) {
    const double a = readDifference(text, w);
    const char op = *text++;
    const double b = readDifference(text, w);
    all = all && (op == '='   ? a == b
                  : op == '!' ? a != b
                  : op == '<' ? a < b
                  : op == '>' ? a > b
                              : a * 0.005 > std::fabs(a - b));
    if (*text == '&') continue;
    if (all || *text != '|') return all;
    all = true;
  }
}

const std::vector<double>& valuesOf(std::size_t number) {
  static const std::vector<double> fields{0, 1, 2, 3},
      prices{98, 98.5, 99, 99.25, 99.5, 99.75, 100, 100.25, 100.5, 100.75, 101, 101.5, 102};
  return number % 8 < 4 ? fields : prices;
}

// The window as bars and candles of its own, the oldest bar at index 0.
struct Laid {
  Bars bars;
  Candles candles;
  int last;
  explicit Laid(const Window& w)
      : bars(std::vector<Bar>(w.size() / 8)), candles(bars), last(bars.barsize - 1) {
    for (int i = 0; i <= last; ++i) {
      const double* x = &w[static_cast<std::size_t>(8 * (last - i))];
      const auto field = [x](int k) { return static_cast<std::int8_t>(x[k]); };
      candles.records[i] = {field(0), field(1), field(2), field(3)};
      for (int k = 0; k < 4; ++k) qv::seriesOf(bars, 1 + k).data[i] = x[4 + k];
    }
  }
};

class EveryPattern : public testing::TestWithParam<Pattern> {
 protected:
  const Pattern& row = GetParam();
  std::vector<std::string> conditions;
  std::mt19937 random{42};
  Window w = Window(static_cast<std::size_t>(8 * row.bars));

  EveryPattern() {
    std::istringstream text(row.conditions);
    for (std::string part; text >> part;) conditions.push_back(part);
  }
  // How many conditions are not as wanted: `broken` false, all others true.
  std::size_t faults(std::size_t broken) const {
    std::size_t n = 0;
    for (std::size_t k = 0; k < conditions.size(); ++k) n += holds(conditions[k], w) == (k == broken);
    return n;
  }
  // Changes one number at a time, to a value that leaves no more faults. False when faults remain.
  bool search(std::size_t broken) {
    const auto draw = [&](std::size_t v) { return w[v] = valuesOf(v)[random() % valuesOf(v).size()]; };
    for (int restart = 0; restart < 40; ++restart) {
      for (std::size_t v = 0; v < w.size(); ++v) draw(v);
      std::size_t now = faults(broken);
      for (int step = 0; step < 400 && now; ++step) {
        const std::size_t v = random() % w.size();
        const double before = w[v];
        draw(v);
        const std::size_t then = faults(broken);
        if (then > now) w[v] = before;
        now = std::min(now, then);
      }
      if (!now) return true;
    }
    return false;
  }
};

TEST_P(EveryPattern, HoldsExactlyWhenAllItsConditionsDo) {
  // Four searches for each, which find other bars: what is equal in one differs in the next.
  for (std::size_t round = 0; round < 4 * (conditions.size() + 1); ++round) {
    const std::size_t broken = round % (conditions.size() + 1);
    const std::string what = broken < conditions.size() ? conditions[broken] : "none";
    ASSERT_TRUE(search(broken)) << what;
    for (std::size_t v = 0; v < w.size(); ++v) {
      const double before = w[v];
      std::vector<double> values = valuesOf(v);
      // The last bit of a price decides.
      if (v % 8 >= 4)
        values.insert(values.end(), {std::nextafter(before, 0), std::nextafter(before, kInf), kNaN});
      for (double value : values) {
        w[v] = value;
        const Laid l(w);
        ASSERT_EQ(row.test(&l.bars, &l.candles, l.last), faults(conditions.size()) ? 0 : 1)
            << what << " broken, number " << v << " = " << value;
      }
      w[v] = before;
    }
  }
}

TEST_P(EveryPattern, IsFoundByItsNameAndNotWhereABarOrAnArgumentIsMissing) {
  ASSERT_TRUE(search(conditions.size()));
  const Laid whole(w);
  const QvCandles noCandles{};
  const QvBars noBars{};
  Array signals;
  const auto& [bars, candles, last] = whole;
  EXPECT_EQ(qvCandleFill(&bars, &candles, &signals, row.name, 0, INT_MAX), 1);
  for (int i : {INT_MIN, -1, last - 1, last + 1, INT_MAX}) EXPECT_EQ(row.test(&bars, &candles, i), 0);
  for (int signal : {row.test(&bars, nullptr, last), row.test(&bars, &noCandles, last),
                     row.test(nullptr, &candles, last), row.test(&noBars, &candles, last)})
    EXPECT_EQ(signal, 0);
  const auto* named = std::find_if(qv::candlePatterns.begin(), qv::candlePatterns.end(),
                                   [&](const auto& p) { return p.endsAt == row.test; });
  ASSERT_NE(named, qv::candlePatterns.end());
  EXPECT_EQ(named->bars, row.bars);
  if (row.bars == 1) return;
  w.resize(w.size() - 8);  // without its oldest bar
  const Laid cut(w);
  EXPECT_EQ(row.test(&cut.bars, &cut.candles, cut.last), 0);
  EXPECT_EQ(row.test(&bars, &cut.candles, last), 0) << "fewer candles than bars";
  EXPECT_EQ(row.test(&cut.bars, &candles, last), 0) << "fewer bars than candles";
}

INSTANTIATE_TEST_SUITE_P(Table, EveryPattern, testing::ValuesIn(kPatterns),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace qvtest
