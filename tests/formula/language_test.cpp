// What texts mean, and what is said of those that mean nothing.
#include <cctype>
#include <fstream>

#include "formula/support.h"
#include "support/spx.h"

namespace qvtest {
namespace {

TEST(FormulaLanguage, TextsThatMeanTheSame) {
  const Bars bars(walkBars(300));
  const std::pair<const char*, const char*> same[] = {
      {"1 + 2 * 3", "7"},
      {"8 / 4 / 2 - 1 - 1", "-1"},
      {"-c[1] * 2", "(-(c[1])) * 2"},
      {"2 * -c", "-(2 * c)"},
      {"c > o and c > h[1] or v < v[1]", "((c > o) and (c > (h[1]))) or (v < (v[1]))"},
      {"not c > o and h > l", "(not (c > o)) and (h > l)"},
      {"not c + 1 > o or 0", "(not ((c + 1) > o)) or 0"},
      {"CLOSE = Open or VOLUME != v", "(c == o) or (v != v)"},
      {"rsi < 30", "qvRSI(close, 14) < 30"},
      {"sma(200)", "simplema(close, 200)"},
      {"sma(p=9, high)", "sma(high, 9)"},
      {"ma(close, 20, exponential)", "ema(20)"},
      {"ma(20)", "ma(c, 2, 20)"},
      {"ma(wilder(5), 9, wilder)", "wilder(wilder(c, 5), 9)"},
      {"ma(p=7, method=least squares)", "ma('LeastSquares', 7)"},
      {"macd", "macd(12, 26, 9).macd"},
      {"c crosses above sma(9)", "c > sma(9) and c[1] <= sma(9)[1]"},
      {"c crosses below sma(9)", "c < sma(9) and c[1] >= sma(9)[1]"},
      {"highest(h, 5) - lowest(l, 5)",
       "max(max(max(max(h, h[1]), h[2]), h[3]), h[4]) - "
       "min(min(min(min(l, l[1]), l[2]), l[3]), l[4])"},
      {"if(c > o, h, l)", "(c > o) * h + (c <= o) * l"},
      {"abs(c - o)", "max(c - o, o - c)"},
      {"c[1 + 2]", "c[1][2]"},
      {"candle(\"Hammer\")", "candle('qvhammer', 2 * 10)"},
      {"5 > 3 and $x = 4", "1"},
      {".5e1", "5.0"},
      {"c > o and c > o", "c > o"},
      {"if(o + v, c > h[1], v and o)", "if(o + v, (c > h[1]) * 1, (v != 0) * (o != 0))"},
      {"sma(c = o, 5)", "sma(c == o, 5)"},
      {"sma(rsi > 50, 5)", "sma(50 < rsi, 5)"},
      {"sma(rsi = 50, 5)", "sma(50 == rsi, 5)"},
      {"sma(highest(c, $x) - c, 5)", "sma(highest(c, 4) - c, 5)"},
      {"candle('Hammer', $x)", "candle('Hammer', 4)"},
  };
  for (const auto& [a, b] : same) {
    const Formula one(a), other(b);
    ASSERT_TRUE(one.f && other.f) << a << one.error << b << other.error;
    if (qvFormulaParameterCount(one.f)) qvFormulaParameter(one.f, "x", 4);
    Array x, y;
    ASSERT_EQ(qvFormulaEval(one.f, &bars, &x), 0);
    ASSERT_EQ(qvFormulaEval(other.f, &bars, &y), 0);
    EXPECT_EQ(x.items(), y.items()) << a << " and " << b;
    EXPECT_EQ(x.firstValid, y.firstValid) << a << " and " << b;
  }
}

TEST(FormulaLanguage, NotANumberComparesFalse) {
  const std::pair<const char*, double> values[] = {
      {"n < 1", 0},        {"n <= 1", 0},       {"n > 1", 0},     {"n >= 1", 0},       {"n = n", 0},
      {"n != 1", 0},       {"not n < 1", 1},    {"not n", 1},     {"n or 1", 1},       {"n and 1", 0},
      {"if(n, 1, 2)", 2},  {"2 and -3", 1},     {"0 or -0", 0},   {"min(1, n)", kNaN}, {"min(n, 1)", kNaN},
      {"max(1, n)", kNaN}, {"max(n, 1)", kNaN}, {"min(2, 1)", 1}, {"max(1, 2)", 2},    {"1 / 0", kInf},
      {"abs(-3)", 3},      {"n + 1", kNaN},
  };
  const Bars bars(walkBars(3));
  for (auto [text, wanted] : values) {
    for (const char* number : {"(0/0)", "(c*0/0)"}) {  // computed at once, and bar by bar
      std::string spelt;
      for (std::size_t i = 0; text[i]; ++i) {
        const bool alone =
            text[i] == 'n' && (i == 0 || !std::isalpha(text[i - 1])) && !std::isalpha(text[i + 1]);
        spelt += alone ? std::string(number) : std::string(1, text[i]);
      }
      const Evaluated value(spelt, bars);
      EXPECT_TRUE(sameBits(value[2], wanted)) << spelt << " is " << value[2];
    }
  }
}

TEST(FormulaLanguage, FaultsNameThePlaceAndTheNearestWord) {
  const std::pair<const char*, const char*> faults[] = {
      {"rsii(14)", "rsii: unknown, did you mean rsi? at 1"},
      {"or c", "a value expected, not or at 1"},
      {"crosses", "a value expected, not crosses at 1"},
      {"sma(abs=3)", "( expected, not = at 8"},
      {"sma(weekly=3)", "( expected, not = at 11"},
      {"sma(candle=3)", "( expected, not = at 11"},
      {"sma(not=3)", "a value expected, not = at 8"},
      {"c > $a23456789012345678901234567890123", "a parameter's name has at most 31 letters at 5"},
      {"rsi(p=3, 5)", "rsi takes 1 parameter at 10"},
      {"adx(dxPeriod=3, 4, 5)", "adx takes 2 parameters at 20"},
      {"ma(method=-1)", "ma: method is out of range at 11"},
      {"ma(20, 'qqqqqqqqqq')", "ma: unknown name at 8"},
      {"not rsii", "rsii: unknown, did you mean rsi? at 5"},
      {"clsoe > 1", "clsoe: unknown, did you mean close? at 1"},
      {"c + xyzzyfoo", "xyzzyfoo: unknown at 5"},
      {"", "a value expected, the formula ends at 1"},
      {"(c", ") expected, the formula ends at 3"},
      {"c o", "an operator expected, not o at 3"},
      {"1 < c < 2", "comparisons do not chain: join two with and at 7"},
      {"c crosses over o", "above or below expected, not over at 11"},
      {"1 + not c", "not needs brackets here at 5"},
      {"\xC3\xA9", "a value expected, not the byte 0xC3 at 1"},
      {"c ! o", "an operator expected, not ! at 3"},
      {"candle(\"Hamer\")", "no candle of this name, did you mean Hammer? at 8"},
      {"candle(\"Hammer)", "no closing quote at 8"},
      {"c > 'x", "no closing quote at 5"},
      {"1e999", "number out of range at 1"},
      {"c[-1]", "bars back must be a whole number, 0 or more at 2"},
      {"c[1.5]", "bars back must be a whole number, 0 or more at 2"},
      {"c[v]", "a number of bars must not change from bar to bar at 3"},
      {"highest(c, 0)", "highest: the period must be a whole number from 1 at 12"},
      {"abs(c, o)", "abs takes 1 value at 6"},
      {"rsi(0)", "rsi: p must be at least 1 at 5"},
      {"rsi(14.5)", "rsi: p must be a whole number at 5"},
      {"rsi(14, 3)", "rsi takes 1 parameter at 9"},
      {"rsi(q=3)", "rsi: no parameter q, did you mean p? at 5"},
      {"rsi(p=3, p=4)", "rsi: p is given twice at 10"},
      {"rsi(14, c)", "rsi: series go before the numbers at 9"},
      {"rsi(c, 14, c)", "rsi: a number that is the same at every bar expected at 12"},
      {"ma(20, simpel)", "simpel: unknown, did you mean simple? at 8"},
      {"ma(20, 'simpel')", "ma: unknown name, did you mean simple? at 8"},
      {"ma(method=9)", "ma: method is out of range at 11"},
      {"macd.sgnal", "macd: no output sgnal, did you mean signal? at 6"},
  };
  for (const auto& [text, error] : faults) EXPECT_STREQ(Formula(text).error, error) << text;
  for (int i = 0; i < qvCatalogueSize(); ++i) {
    const QvCatalogueEntry& e = *qvCatalogueItem(i);
    const std::string name(e.shortName);
    if (name == "candle") continue;  // a word of the language's own
    const Formula f(name);
    EXPECT_EQ(f.f != nullptr, isCallable(e)) << name << ": " << f.error;
    EXPECT_EQ(std::string(f.error).rfind(name + ": needs", 0) == 0, !isCallable(e)) << f.error;
  }
  const std::string longest(71, 'x');
  EXPECT_STREQ(Formula("ma(20, '" + longest + "')").error, "a value expected, not \" at 8");
  EXPECT_EQ(Formula("ma(20, " + longest + " y)").error, longest.substr(0, 40) + ": unknown at 8");
  // As many parameters as there may be, each of its own value, and one more.
  std::string sum = "0";
  for (int k = 0; k < QV_FORMULA_MAX_PARAMETERS; ++k)
    sum += " + $p" + std::to_string(k) + " * " + std::to_string(k);
  const Formula many(sum);
  ASSERT_EQ(qvFormulaParameterCount(many.f), 64);
  for (int k = 0; k < 64; ++k)
    ASSERT_EQ(qvFormulaParameter(many.f, qvFormulaParameterName(many.f, k), 100 + k), 0);
  Array total;
  ASSERT_EQ(qvFormulaEval(many.f, &spx(), &total), 0);
  EXPECT_EQ(total[9], 100 * 2016 + 85344) << "the sum of (100 + k) k";
  EXPECT_STREQ(Formula(sum + " + $more").error,
               ("more than 64 parameters at " + std::to_string(sum.size() + 4)).c_str());
  for (const char* name : {qvFormulaParameterName(many.f, 64), qvFormulaParameterName(many.f, -1),
                           qvFormulaParameterName(nullptr, 0)})
    EXPECT_EQ(name, nullptr);
  EXPECT_EQ(qvFormulaParameter(many.f, nullptr, 1), -1);
  EXPECT_EQ(qvFormulaNeeds(many.f, 0.1, nullptr), -1);
  char small[6] = "xxxxx";
  EXPECT_EQ(qvFormulaOpen("rsii", small, sizeof small), nullptr);
  EXPECT_STREQ(small, "rsii:");
  EXPECT_EQ(qvFormulaOpen("rsii", nullptr, 9), nullptr);
  EXPECT_EQ(qvFormulaOpen(nullptr, small, sizeof small), nullptr);
}

// Texts by whoever: opened or refused, in no time.
TEST(FormulaLanguage, HostileTexts) {
  std::string deep[] = {std::string(10000, '('), std::string(10000, '-') + "c", "c", "c", "c", "c"};
  for (int k = 0; k < 10000; ++k) {
    deep[2].insert(0, "not ");
    deep[3] = "abs(" + deep[3];
    deep[4] += "[1[1[1";
    deep[5].insert(0, "weekly(");
  }
  for (const std::string& text : deep) EXPECT_FALSE(Formula(text).f) << text.substr(0, 40);
  EXPECT_FALSE(Formula(std::string(1 << 20, '1')).f);
  EXPECT_FALSE(Formula(std::string(1 << 20, ' ')).f);
  EXPECT_FALSE(Formula(std::string(400, '9')).f);
  EXPECT_FALSE(Formula("0." + std::string(400, '0') + "1").f);
  EXPECT_TRUE(Formula("0." + std::string(400, '3')).f);
  EXPECT_TRUE(Formula(std::string(QV_FORMULA_MAX_LENGTH - 1, ' ') + "c").f);
  EXPECT_FALSE(Formula(std::string(QV_FORMULA_MAX_LENGTH, ' ') + "c").f);
  EXPECT_FALSE(Formula(std::string(60000, 'x')).f);
  EXPECT_FALSE(Formula("candle('" + std::string(60000, 'x') + "')").f);
  std::string longest = "c";
  for (int k = 0; longest.size() < 65000; ++k) longest += "+sma(" + std::to_string(k % 977 + 1) + ")";
  EXPECT_TRUE(Formula(longest).f);

  RandomFormula random(7);
  const std::string bytes = "()[],.\"'$+-*/<>=! \t\n09e_xc\xFF\x01";
  for (int round = 0; round < 20000; ++round) {
    std::string text = round % 2 ? random(3) : std::string(random.below(40), ' ');
    const unsigned changes = round % 2 ? 1 + random.below(3) : 40;
    for (unsigned k = 0; k < changes && !text.empty(); ++k) {
      const std::size_t at = random.below(static_cast<unsigned>(text.size()));
      if (random.below(3) == 0)
        text.erase(at, 1 + random.below(4));
      else if (random.below(2))
        text.insert(at, 1, bytes[random.below(static_cast<unsigned>(bytes.size()))]);
      else
        text[at] = static_cast<char>(1 + random.below(255));
    }
    const Formula f(text);
  }
}

// Examples of the documentation: each line of the blocks marked "formula" can be opened and evaluated.
TEST(FormulaLanguage, ExamplesOfTheDocumentation) {
  std::ifstream page("docs/formulas.md");
  int examples = 0;
  bool inside = false;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("```", 0) == 0) {
      inside = line == "```formula";
    } else if (inside && !line.empty()) {
      const Formula f(line.substr(0, line.find('#')));
      ASSERT_TRUE(f.f) << line << ": " << f.error;
      for (int k = 0; k < qvFormulaParameterCount(f.f); ++k)
        qvFormulaParameter(f.f, qvFormulaParameterName(f.f, k), 10 + k);
      Array out;
      EXPECT_EQ(qvFormulaEval(f.f, &spx(), &out), 0) << line;
      EXPECT_LT(out.firstValid, spx().barsize) << line;
      ++examples;
    }
  }
  EXPECT_GT(examples, 20);
}

}  // namespace
}  // namespace qvtest
