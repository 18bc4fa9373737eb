// Every pattern against its definition, written as text and evaluated by the test: a search finds
// bars that meet all conditions, and for each condition bars that break it alone; then every single
// change of one of those bars' fields and prices is tried.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <sstream>
#include <string>

#include "patterns/candle_names.h"
#include "support/candles.h"
#include "support/series.h"

namespace qvtest {
namespace {

// Conditions are separated by blanks and all must hold; "|" is or, "&" is and within a condition.
// c s t b are the colour, shape, top and bottom shadow of a bar, O H L C its prices, M the middle
// and T B the upper and lower end of its body; the digit counts bars back from the last one.
// "!" is "is not", "~" approximately equal. A condition marked "'" follows from the others.
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
    ROW(qvSideBySideWhiteGapDn, 3, "c0=2 c1=2 s0!0' s1!0' s0=s1 T1<B2 C0~C1"),
    ROW(qvSideBySideWhiteGapUp, 3, "c0=2 c1=2 s0!0' s1!0' s0=s1 B1>T2 C0~C1"),
    ROW(qvStalledPattern, 2, "c0=2 c1=2 s0=1 s1=3 O0~C1"),
    ROW(qvTasukiDownsideGap, 3, "c0=2 c1=1 c2=1 s0=s1 O0>C1 C0>O1 C0<C2 O1<C2'"),
    ROW(qvTasukiUpsideGap, 3, "c0=1 c1=2 c2=2 s0=s1 O0<C1 C0<O1 C0>C2 O1>C2'"),
    ROW(qvThreeGapsUp, 4, "B0>T1 B1>T2 B2>T3"),
    ROW(qvThreeGapsDown, 4, "T0<B1 T1<B2 T2<B3"),
    ROW(qvThreeWhiteSoldiers, 3, "c0=2 c1=2 c2=2 t0=1 t1=1 t2=1 H0>H1 H1>H2 H0~C0 H1~C1 H2~C2"),
    ROW(qvThrustingLine, 2, "c0=2 c1=1 C0>C1 C0<M1"),
    ROW(qvUpsideGap2Crows, 3, "c0=1 c1=1 c2=2 s2=3 B1>T2 C0<C1 O0>O1"),
};
#undef ROW

// Eight numbers per bar, the last bar first: colour, shape, top, bottom, open, high, low, close.
struct Window {
  std::vector<double> numbers;
  explicit Window(int bars) : numbers(static_cast<std::size_t>(8 * bars), 1.0) {}

  double term(char letter, int k) const {
    const double* bar = &numbers[static_cast<std::size_t>(8 * k)];
    const double open = bar[4], close = bar[7];
    switch (letter) {
      case 'M':
        return (open + close) / 2;
      case 'T':
        return open != open ? open : std::max(close, open);
      case 'B':
        return open != open ? open : std::min(close, open);
      default:
        return bar[std::string("cstbOHLC").find(letter)];
    }
  }
};

// "O1", "2" or a difference of two terms, read from the front of the text.
double readTerm(std::istringstream& text, const Window& w) {
  const char c = static_cast<char>(text.get());
  return c >= '0' && c <= '9' ? c - '0' : w.term(c, text.get() - '0');
}
double readDifference(std::istringstream& text, const Window& w) {
  const double a = readTerm(text, w);
  if (text.peek() != '-') return a;
  text.get();
  return a - readTerm(text, w);
}

bool holds(const std::string& condition, const Window& w) {
  std::istringstream text(condition);
  bool any = false, all = true;
  for (;;) {
    const double a = readDifference(text, w);
    const int op = text.get();
    const double b = readDifference(text, w);
    all = all && (op == '='   ? a == b
                  : op == '!' ? a != b
                  : op == '<' ? a < b
                  : op == '>' ? a > b
                              : a * 0.005 > std::fabs(a - b));
    const int next = text.get();
    if (next == '&') continue;
    any = any || all;
    all = true;
    if (next != '|') return any;
  }
}

std::vector<std::string> split(const char* conditions) {
  std::istringstream text(conditions);
  std::vector<std::string> parts;
  for (std::string part; text >> part;) parts.push_back(part);
  return parts;
}

const std::vector<double>& valuesOf(std::size_t number) {
  static const std::vector<double> colours{0, 1, 2}, shapes{0, 1, 2, 3}, shadows{1, 2, 3},
      prices{98, 98.5, 99, 99.25, 99.5, 99.75, 100, 100.25, 100.5, 100.75, 101, 101.5, 102};
  const std::size_t field = number % 8;
  return field == 0 ? colours : field == 1 ? shapes : field < 4 ? shadows : prices;
}

// Changes one number at a time, to the value that leaves the fewest conditions other than wanted
// (`broken` false, all others true). False when no such window is found.
bool search(const std::vector<std::string>& conditions, std::size_t broken, Window& w, std::mt19937& random) {
  const auto faults = [&] {
    int n = 0;
    for (std::size_t k = 0; k < conditions.size(); ++k) n += holds(conditions[k], w) == (k == broken);
    return n;
  };
  const auto pick = [&](const std::vector<double>& values) { return values[random() % values.size()]; };
  for (int restart = 0; restart < 40; ++restart) {
    for (std::size_t v = 0; v < w.numbers.size(); ++v) w.numbers[v] = pick(valuesOf(v));
    int now = faults();
    for (int step = 0; step < 400 && now; ++step) {
      const std::size_t v = random() % w.numbers.size();
      const double before = w.numbers[v];
      w.numbers[v] = pick(valuesOf(v));
      const int then = faults();
      if (then > now) {
        w.numbers[v] = before;
      } else {
        now = then;
      }
    }
    if (!now) return true;
  }
  return false;
}

// The window as bars and candles of its own, the oldest bar at index 0.
struct Laid {
  Bars bars;
  Candles candles;
  int last;
  explicit Laid(const Window& w) : bars(laid(w)), candles(bars), last(bars.barsize - 1) {
    for (int i = 0; i <= last; ++i) {
      const double* x = &w.numbers[static_cast<std::size_t>(8 * (last - i))];
      const auto field = [](double v) { return static_cast<std::int8_t>(v); };
      candles.records[i] = {field(x[0]), field(x[1]), field(x[2]), field(x[3])};
    }
  }
  static std::vector<Bar> laid(const Window& w) {
    std::vector<Bar> bars;
    for (std::size_t at = w.numbers.size(); at > 0; at -= 8)
      bars.push_back({w.numbers[at - 4], w.numbers[at - 3], w.numbers[at - 2], w.numbers[at - 1]});
    return bars;
  }
};

void PrintTo(const Pattern& row, std::ostream* os) {
  *os << row.name;
}

class EveryPattern : public testing::TestWithParam<Pattern> {
 protected:
  const Pattern& row = GetParam();
  const std::vector<std::string> conditions = split(row.conditions);
  std::mt19937 random{42};

  bool expected(const Window& w) const {
    return std::all_of(conditions.begin(), conditions.end(), [&](const auto& c) { return holds(c, w); });
  }
  void expectAsDefined(const Window& w, const std::string& what) const {
    const Laid l(w);
    ASSERT_EQ(row.test(&l.bars, &l.candles, l.last), expected(w) ? 1 : 0) << what;
  }
};

TEST_P(EveryPattern, HoldsExactlyWhenAllItsConditionsDo) {
  Window w(row.bars);
  for (std::size_t broken = 0; broken <= conditions.size(); ++broken) {
    const bool none = broken == conditions.size();
    const std::string what = none ? "a match" : "without " + conditions[broken];
    const bool found = search(conditions, broken, w, random);
    ASSERT_EQ(found, none || conditions[broken].back() != '\'') << what;
    if (!found) continue;
    ASSERT_EQ(expected(w), none);
    expectAsDefined(w, what);
    for (std::size_t v = 0; v < w.numbers.size(); ++v) {
      Window changed = w;
      for (double value : valuesOf(v)) {
        changed.numbers[v] = value;
        expectAsDefined(changed, what + ", number " + std::to_string(v) + " = " + std::to_string(value));
      }
      if (v % 8 < 4) continue;
      for (double towards : {-kInf, kInf}) {  // the last bit of a price decides
        changed.numbers[v] = std::nextafter(w.numbers[v], towards);
        expectAsDefined(changed, what + ", number " + std::to_string(v) + " a bit away");
      }
      changed.numbers[v] = kNaN;
      expectAsDefined(changed, what + ", not a number");
    }
  }
}

TEST_P(EveryPattern, IsZeroWhereABarOrAnArgumentIsMissing) {
  Window w(row.bars);
  ASSERT_TRUE(search(conditions, conditions.size(), w, random));
  const Laid whole(w);
  ASSERT_EQ(row.test(&whole.bars, &whole.candles, whole.last), 1);
  for (int i : {INT_MIN, -1, whole.last + 1, INT_MAX}) EXPECT_EQ(row.test(&whole.bars, &whole.candles, i), 0);
  for (int i = 0; i < whole.last; ++i) EXPECT_EQ(row.test(&whole.bars, &whole.candles, i), 0) << i;
  if (row.bars > 1) {
    w.numbers.resize(w.numbers.size() - 8);  // without its oldest bar
    const Laid cut(w);
    EXPECT_EQ(row.test(&cut.bars, &cut.candles, cut.last), 0);
    EXPECT_EQ(row.test(&whole.bars, &cut.candles, whole.last), 0) << "fewer candles than bars";
    EXPECT_EQ(row.test(&cut.bars, &whole.candles, whole.last), 0) << "fewer bars than candles";
  }
  const QvCandles noCandles{};
  const QvBars noBars{};
  EXPECT_EQ(row.test(&whole.bars, nullptr, whole.last), 0);
  EXPECT_EQ(row.test(nullptr, &whole.candles, whole.last), 0);
  EXPECT_EQ(row.test(&whole.bars, &noCandles, whole.last), 0);
  EXPECT_EQ(row.test(&noBars, &whole.candles, whole.last), 0);
}

// From prices to signals: coarse prices have ties, gaps and dojis in plenty.
TEST_P(EveryPattern, IsFoundByNameInASeries) {
  std::vector<Bar> data = walkBars(1200, 9);
  for (Bar& b : data)
    for (double* price : {&b.open, &b.high, &b.low, &b.close}) *price = std::round(*price * 2) / 2;
  const std::vector<std::vector<int>> fields = naiveCandles(data);
  std::vector<double> signals(data.size(), 0.0);
  int count = 0;
  Window w(row.bars);
  for (std::size_t i = static_cast<std::size_t>(row.bars) - 1; i < data.size(); ++i) {
    for (std::size_t k = 0; k < static_cast<std::size_t>(row.bars); ++k) {
      const Bar& b = data[i - k];
      const std::vector<int>& c = fields[i - k];
      const double numbers[] = {1.0 * c[0], 1.0 * c[1], 1.0 * c[2], 1.0 * c[3],
                                b.open,     b.high,     b.low,      b.close};
      std::copy(std::begin(numbers), std::end(numbers), &w.numbers[8 * k]);
    }
    signals[i] = expected(w);
    count += expected(w);
  }
  const Bars bars(data);
  const Candles candles(bars);
  Array out;
  ASSERT_EQ(qvCandleFill(&bars, &candles, &out, row.name, 0, bars.barsize), count);
  EXPECT_EQ(out.items(), signals);
}

TEST(CandlePatterns, AreListedInTheOrderOfTheTable) {
  ASSERT_EQ(qv::candlePatterns.size(), std::size(kPatterns));
  for (std::size_t k = 0; k < std::size(kPatterns); ++k)
    EXPECT_STREQ(qv::candlePatterns[k].name, kPatterns[k].name) << k;
}

INSTANTIATE_TEST_SUITE_P(Table, EveryPattern, testing::ValuesIn(kPatterns),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace qvtest
