// What holds for every calculation of the table, whatever it computes.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <deque>
#include <set>

#include "core/memory.h"
#include "support/calculations.h"
#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

// One set of arguments for a calculation: bar sets, inputs and outputs that free themselves.
struct Call {
  const Calculation& c;
  std::deque<Bars> bars;
  std::deque<Array> inputs, outputs;
  std::vector<double> params = c.params;

  explicit Call(const Calculation& calculation, int n = 120) : c(calculation) {
    for (int k = 0; k < c.bars; ++k) bars.emplace_back(walkBars(n, 1 + static_cast<unsigned>(k)));
    for (int k = 0; k < c.inputs; ++k)
      inputs.emplace_back(shaped(Shape::Walk, n, 8 + static_cast<unsigned>(k)));
    outputs.resize(static_cast<std::size_t>(c.outputs));
  }

  int run(int start = 0) {
    std::vector<const QvBars*> b;
    std::vector<const QvArray*> in;
    std::vector<QvArray*> out;
    for (auto& x : bars) b.push_back(&x);
    for (auto& x : inputs) in.push_back(&x);
    for (auto& x : outputs) out.push_back(&x);
    return c.call(b.data(), in.data(), out.data(), params.data(), start);
  }
  // Whatever the arguments: no other error than the one given, and whole outputs.
  void expectSurvives(int start, double trial, int error = -10) {
    EXPECT_GE(run(start), error) << trial;
    for (const Array& out : outputs)
      EXPECT_TRUE(out.size >= 0 && out.size <= out.capacity && (out.data || out.capacity == 0)) << trial;
  }
  void expectSameAs(const Call& other) const {
    for (std::size_t k = 0; k < outputs.size(); ++k) {
      const Items a = outputs[k].items(), b = other.outputs[k].items();
      EXPECT_TRUE(std::equal(a.begin(), a.end(), b.begin(), b.end(), sameBits)) << "output " << k;
      EXPECT_TRUE(!c.setsFirstValid || outputs[k].firstValid == other.outputs[k].firstValid);
    }
  }
  // With their kinds: -1 for an input, 0 .. 6 for the series of a bar set.
  std::vector<std::pair<QvArray*, int>> series() {
    std::vector<std::pair<QvArray*, int>> all;
    for (Array& in : inputs) all.emplace_back(&in, -1);
    for (Bars& b : bars)
      for (int s = 0; s < qv::kSeriesCount; ++s) all.emplace_back(&qv::seriesOf(b, s), s);
    return all;
  }
};

class EveryCalculation : public testing::TestWithParam<Calculation> {
 protected:
  const Calculation& c = GetParam();
};

TEST_P(EveryCalculation, RefusesMissingArguments) {
  const QvBars* noBars[4] = {};
  const QvArray* noInputs[8] = {};
  QvArray* noOutputs[8] = {};
  EXPECT_EQ(c.call(noBars, noInputs, noOutputs, c.params.data(), 0), -1) << "null records";
  for (std::size_t k = 0; k < Call(c).series().size(); ++k) {
    Call call(c);
    const auto [series, kind] = call.series()[k];
    const bool needed = kind <= 0 || c.series & (1u << kind);
    qvFreeArray(series);
    EXPECT_EQ(call.run() == -1, needed) << "without series " << k;
    if (kind <= 0) continue;
    qvAllocArray(series, 119);
    EXPECT_EQ(call.run() == -1, needed) << "with less room than bars in series " << k;
  }
}

TEST_P(EveryCalculation, RefusesAnOutputThatSharesAnInput) {
  for (std::size_t o = 0; o < Call(c).outputs.size(); ++o) {
    Call call(c);
    QvArray& out = call.outputs[o];
    for (std::size_t k = 0; k < call.series().size(); ++k) {
      const auto [series, kind] = call.series()[k];
      out = *series;  // the dates may serve as an output
      EXPECT_EQ(call.run(5), c.inPlace || kind == 0 ? 0 : -1) << "output " << o << " on series " << k;
      if (!c.inPlace) continue;
      Call separate(c);  // gives the same, but for the items below the start, which are kept
      separate.run(5);
      for (int i = 0; i < out.size; ++i)
        ASSERT_TRUE(sameBits(out.data[i], i < 5 ? separate.inputs[k][i] : separate.outputs[o][i])) << i;
    }
    out = QvArray{};
  }
}

TEST_P(EveryCalculation, RefusesPeriodsBelowOne) {
  for (int which : c.periods) {
    Call one(c);
    one.params[static_cast<std::size_t>(which)] = 1;
    EXPECT_EQ(one.run(), 0) << "parameter " << which << " = 1";
    for (int period : {0, -1, INT_MIN}) {
      Call call(c);
      call.params[static_cast<std::size_t>(which)] = period;
      EXPECT_EQ(call.run(), -1) << "parameter " << which << " = " << period;
      for (const Array& out : call.outputs) EXPECT_EQ(out.data, nullptr) << "written";
    }
  }
}

TEST_P(EveryCalculation, WritesNothingBelowItsFirstValidIndex) {
  if (!c.exactFirstValid) GTEST_SKIP() << "keeps documented values";
  for (int start : {0, 7}) {
    Call call(c);
    for (Array& in : call.inputs) in.firstValid = 3;
    ASSERT_EQ(call.run(start), 0);
    for (const Array& out : call.outputs)
      for (int i = 0; i < std::min(out.firstValid, out.size); ++i)
        ASSERT_TRUE(sameBits(out[i], 0.0)) << "start " << start << " item " << i;
  }
}

TEST_P(EveryCalculation, GivesTheSameIntoAReusedOutput) {
  Call fresh(c);
  ASSERT_EQ(fresh.run(2), 0);
  for (int capacity : {150, 120, 50, 0}) {
    Call reused(c);
    for (Array& out : reused.outputs) {
      Array::fill(out, capacity, 77.0);
      out.firstValid = 90;
    }
    if (capacity < 120) {  // less room than bars: as many items as fit; no room is no error
      reused.expectSurvives(2, capacity, 0);
      continue;
    }
    ASSERT_EQ(reused.run(2), 0);
    reused.expectSameAs(fresh);
    for (const Array& out : reused.outputs) EXPECT_TRUE(c.setsFirstValid || out.firstValid == 90);
  }
}

TEST_P(EveryCalculation, SurvivesAnyStart) {
  Call zero(c);
  ASSERT_EQ(zero.run(), 0);
  for (int start : {INT_MIN, -1}) {
    Call call(c);
    ASSERT_EQ(call.run(start), 0);
    call.expectSameAs(zero);
  }
  for (int start : {1, 60, 118, 119, 120, 121, INT_MAX - 1, INT_MAX})
    Call(c).expectSurvives(start, start, -1);
  for (int first : {-5, 119, 120, INT_MAX}) {
    Call call(c);
    for (const auto& [series, kind] : call.series()) series->firstValid = first;
    call.expectSurvives(0, first, -1);
  }
}

TEST_P(EveryCalculation, SurvivesAnyParameter) {
  const Items integers = {INT_MIN, INT_MIN + 1.0, -2,     -1, 0, 1, 2, 3, 59, 60, 61, 118, 119, 120, 121,
                          240,     INT_MAX - 1.0, INT_MAX};
  const Items reals = {kNaN, kInf, -kInf, -1e308, -2, -1, -0.5, 0, 1e-300, 0.5, 1, 3, 119.5, 1e9, 1e308};
  for (std::size_t k = 0; k < c.params.size(); ++k)
    for (double value : c.isInteger[k] ? integers : reals)
      for (int start : {0, 100}) {
        Call call(c);
        call.params[k] = value;
        call.expectSurvives(start, value);
      }
  for (double value : integers) {
    Call call(c);
    call.params.assign(c.params.size(), value);
    call.expectSurvives(0, value);
  }
}

TEST_P(EveryCalculation, SurvivesShortAndWildData) {
  for (int n : {0, 1, 2, 3, 14, c.tooShort, c.tooShort + 1}) {
    Call call(c, n);
    EXPECT_EQ(call.run(), n == 0 ? -1 : n <= c.tooShort ? n : 0) << n << " bars";
    call.expectSurvives(0, n);
  }
  for (double wild : {kNaN, kInf, -kInf, 1e308, 0.0}) {
    Call call(c);
    for (int s = 0; const auto& [series, kind] : call.series())
      for (int i = s++ % 3; i < series->size; i += 3) series->data[i] = wild;
    call.expectSurvives(0, wild);
  }
}

TEST_P(EveryCalculation, SurvivesTheFailureOfEachAllocation) {
  const long before = qv::memory::liveBlocks();
  for (long k = 1, status = -3; status != 0; ++k) {
    ASSERT_LT(k, 100) << "allocates without end";
    Call call(c);
    qv::memory::failAllocation(k);
    status = call.run();
    qv::memory::failAllocation(0);
    ASSERT_TRUE(status == 0 || status == -3) << status << " at allocation " << k;
    for (const Array& out : call.outputs) ASSERT_TRUE(out.data || out.capacity == 0);
  }
  EXPECT_EQ(qv::memory::liveBlocks(), before) << "blocks leaked";
}

// What is documented to look at later bars, and where.
const std::set<std::string> kLooksAhead{
    "qvCandleFill",        // bodies are long or short by the whole set's average
    "qvDeTrend",           // one slope over all bars
    "qvDPO",               // the average of later bars
    "qvFillInterval",      // lines to the next mark
    "qvIchimokuKinkoHyo",  // the lagging line is the close of a later bar
    "qvMACDx",             // a crossing on the last bar does not count
    "qvMFI",               // the mean volume of all bars
    "qvScaleArray",        // the bounds of all bars
    "qvUltimateOsc",       // periods that do not fit leave a partial value in the last bar
    "qvZigZag",            // the last leg goes to the last bar
};

// The same series, cut to its first bars, gives the same values for them.
TEST_P(EveryCalculation, LooksAtNoLaterBar) {
  enum Data { kWalk, kZerosAndTies, kNaNs };
  // Running sums are taken in runs whose length hangs on the series': their last digits may differ.
  const auto same = [](double a, double b) {
    return sameBits(a, b) || std::fabs(a - b) <= 1e-12 * std::fmax(1, std::fabs(b));
  };
  bool differs = false;
  for (const Data data : {kWalk, kZerosAndTies, kNaNs}) {
    const auto runOn = [&](Call& call) {
      for (unsigned seed = 5; const auto& [series, kind] : call.series()) {
        std::mt19937 random(++seed);
        for (int i = 0; i < series->size && kind != 0 && data != kWalk; ++i) {
          if (random() % 16 == 0) series->data[i] = data == kNaNs ? kNaN : 0;
          if (data == kZerosAndTies) series->data[i] = std::floor(series->data[i]);
        }
      }
      return call.run(2);
    };
    Call whole(c);
    ASSERT_EQ(runOn(whole), 0);
    for (int m = c.tooShort + 1; m < 120; m += 1 + m / 30) {
      Call cut(c, m);
      ASSERT_EQ(runOn(cut), 0) << m << " bars";
      for (std::size_t k = 0; k < cut.outputs.size(); ++k) {
        const Array &part = cut.outputs[k], &all = whole.outputs[k];
        const int first = c.setsFirstValid ? all.firstValid : 2;
        EXPECT_TRUE(!c.setsFirstValid || first >= m || part.firstValid == first)
            << m << " bars, output " << k;
        for (int i = first; i < m && !differs; ++i) {
          differs |= !same(part[i], all[i]);
          if (differs && !kLooksAhead.count(c.name))
            ADD_FAILURE() << m << " bars, data " << data << ": output " << k << " item " << i << " is "
                          << part[i] << ", not " << all[i];
        }
      }
    }
  }
  EXPECT_EQ(differs, kLooksAhead.count(c.name) == 1) << "documented otherwise";
}

INSTANTIATE_TEST_SUITE_P(Table, EveryCalculation, testing::ValuesIn(calculations()),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace qvtest
