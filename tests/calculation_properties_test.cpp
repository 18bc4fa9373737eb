// What holds for every calculation of the table, whatever it computes.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>

#include "core/memory.h"
#include "support/calculations.h"
#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

// One set of arguments for a calculation: bar sets, inputs and outputs that free themselves.
struct Call {
  std::vector<std::unique_ptr<Bars>> bars;
  std::vector<std::unique_ptr<Array>> inputs, outputs;
  std::vector<double> params;

  explicit Call(const Calculation& c, int n = 120, unsigned seed = 1) : params(c.params) {
    for (int k = 0; k < c.bars; ++k)
      bars.push_back(std::make_unique<Bars>(walkBars(n, seed + static_cast<unsigned>(k))));
    for (int k = 0; k < c.inputs; ++k)
      inputs.push_back(std::make_unique<Array>(shaped(Shape::Walk, n, seed + 7 + static_cast<unsigned>(k))));
    for (int k = 0; k < c.outputs; ++k) outputs.push_back(std::make_unique<Array>());
  }

  int run(const Calculation& c, int start = 0) {
    std::vector<const QvBars*> b;
    std::vector<const QvArray*> in;
    std::vector<QvArray*> out;
    for (auto& x : bars) b.push_back(x.get());
    for (auto& x : inputs) in.push_back(x.get());
    for (auto& x : outputs) out.push_back(x.get());
    return c.call(b.data(), in.data(), out.data(), params.data(), start);
  }

  void expectConsistent(const std::string& what) const {
    for (const auto& out : outputs) {
      EXPECT_GE(out->size, 0) << what;
      EXPECT_LE(out->size, out->capacity) << what;
      EXPECT_TRUE(out->data || out->capacity == 0) << what;
    }
  }
};

class EveryCalculation : public testing::TestWithParam<Calculation> {};

TEST_P(EveryCalculation, RefusesMissingArguments) {
  const Calculation& c = GetParam();
  const QvBars* noBars[4] = {};
  const QvArray* noInputs[8] = {};
  QvArray* noOutputs[8] = {};
  EXPECT_EQ(c.call(noBars, noInputs, noOutputs, c.params.data(), 0), -1) << "null records";

  for (int k = 0; k < c.inputs; ++k) {
    Call call(c);
    qvFreeArray(call.inputs[static_cast<std::size_t>(k)].get());
    EXPECT_EQ(call.run(c), -1) << "input " << k << " without data";
  }
  for (int k = 0; k < c.bars; ++k) {
    Call none(c);
    qvFreeBars(none.bars[static_cast<std::size_t>(k)].get());
    EXPECT_EQ(none.run(c), -1) << "bar set " << k << " without data";
    for (int s = 1; s < qv::kSeriesCount; ++s) {
      Call call(c);
      qvFreeArray(&qv::seriesOf(*call.bars[static_cast<std::size_t>(k)], s));
      const bool needed = c.series & (1u << s);
      EXPECT_EQ(call.run(c) == -1, needed) << "bar set " << k << " without its series " << s;
    }
  }
}

TEST_P(EveryCalculation, RefusesAnOutputThatSharesAnInput) {
  const Calculation& c = GetParam();
  for (int o = 0; o < c.outputs; ++o) {
    for (int k = 0; k < c.inputs; ++k) {
      Call call(c);
      QvArray& out = *call.outputs[static_cast<std::size_t>(o)];
      out = *call.inputs[static_cast<std::size_t>(k)];
      const int status = call.run(c);
      EXPECT_EQ(status, c.inPlace ? 0 : -1) << "output " << o << " on input " << k;
      out = QvArray{};
    }
    for (int k = 0; k < c.bars; ++k) {
      Call call(c);
      QvArray& out = *call.outputs[static_cast<std::size_t>(o)];
      out = call.bars[static_cast<std::size_t>(k)]->openInterest;
      EXPECT_EQ(call.run(c), -1) << "output " << o << " on bar set " << k;
      out = QvArray{};
    }
  }
}

TEST_P(EveryCalculation, RefusesPeriodsBelowOne) {
  const Calculation& c = GetParam();
  for (int which : c.periods) {
    for (int period : {0, -1, INT_MIN}) {
      Call call(c);
      call.params[static_cast<std::size_t>(which)] = period;
      EXPECT_EQ(call.run(c), -1) << "parameter " << which << " = " << period;
      for (const auto& out : call.outputs) EXPECT_EQ(out->data, nullptr) << "written";
    }
  }
}

TEST_P(EveryCalculation, WritesNothingBelowItsFirstValidIndex) {
  const Calculation& c = GetParam();
  if (!c.exactFirstValid) GTEST_SKIP() << "keeps documented values below its first valid index";
  for (int start : {0, 7}) {
    Call call(c);
    for (const auto& in : call.inputs) in->firstValid = 3;
    ASSERT_EQ(call.run(c, start), 0);
    for (const auto& out : call.outputs)
      for (int i = 0; i < std::min(out->firstValid, out->size); ++i)
        ASSERT_TRUE(sameBits(out->data[i], 0.0)) << "start " << start << " item " << i;
  }
}

TEST_P(EveryCalculation, GivesTheSameIntoAReusedOutput) {
  const Calculation& c = GetParam();
  Call fresh(c);
  ASSERT_EQ(fresh.run(c, 2), 0);
  for (int capacity : {150, 120}) {
    Call reused(c);
    for (const auto& out : reused.outputs) {
      Array::fill(*out, capacity, 77.0);
      out->firstValid = 90;
    }
    ASSERT_EQ(reused.run(c, 2), 0);
    for (std::size_t k = 0; k < fresh.outputs.size(); ++k) {
      const Array &a = *fresh.outputs[k], &b = *reused.outputs[k];
      ASSERT_EQ(a.size, b.size);
      EXPECT_EQ(c.setsFirstValid ? a.firstValid : 90, b.firstValid);
      for (int i = 0; i < a.size; ++i) ASSERT_TRUE(sameBits(a[i], b[i])) << "item " << i;
    }
  }
  Call none(c);  // outputs with a block but no room: nothing is computed, and that is no error
  for (const auto& out : none.outputs) qvAllocArray(out.get(), 0);
  EXPECT_EQ(none.run(c, 2), 0) << "no room";
  Call small(c);  // less room than bars: as many items as fit, none beyond
  for (const auto& out : small.outputs) Array::fill(*out, 50, 77.0);
  EXPECT_GE(small.run(c, 2), 0);
  small.expectConsistent("small outputs");
}

TEST_P(EveryCalculation, SurvivesAnyStart) {
  const Calculation& c = GetParam();
  Call zero(c);
  ASSERT_EQ(zero.run(c, 0), 0);
  for (int start : {INT_MIN, -1}) {
    Call call(c);
    ASSERT_EQ(call.run(c, start), 0);
    for (std::size_t k = 0; k < zero.outputs.size(); ++k) {
      EXPECT_EQ(call.outputs[k]->firstValid, zero.outputs[k]->firstValid) << "start " << start;
      for (int i = 0; i < zero.outputs[k]->size; ++i)
        ASSERT_TRUE(sameBits((*call.outputs[k])[i], (*zero.outputs[k])[i]))
            << "start " << start << " item " << i;
    }
  }
  for (int start : {1, 60, 118, 119, 120, 121, INT_MAX - 1, INT_MAX}) {
    Call call(c);
    EXPECT_GE(call.run(c, start), -1) << "start " << start;
    call.expectConsistent("start " + std::to_string(start));
  }
  for (int first : {-5, 119, 120, INT_MAX}) {
    Call call(c);
    for (const auto& in : call.inputs) in->firstValid = first;
    for (const auto& bars : call.bars)
      for (int s = 0; s < qv::kSeriesCount; ++s) qv::seriesOf(*bars, s).firstValid = first;
    EXPECT_GE(call.run(c, 0), -1) << "first valid " << first;
    call.expectConsistent("first valid " + std::to_string(first));
  }
}

TEST_P(EveryCalculation, SurvivesAnyParameter) {
  const Calculation& c = GetParam();
  const std::vector<double> integers = {
      INT_MIN, INT_MIN + 1.0, -2,     -1, 0, 1, 2, 3, 59, 60, 61, 118, 119, 120, 121,
      240,     INT_MAX - 1.0, INT_MAX};
  const std::vector<double> reals = {kNaN,   kInf, -kInf, -1e308, -2,    -1,  -0.5, 0,
                                     1e-300, 0.5,  1,     3,      119.5, 1e9, 1e308};
  for (std::size_t k = 0; k < c.params.size(); ++k) {
    for (double value : c.isInteger[k] ? integers : reals) {
      for (int start : {0, 100}) {
        Call call(c);
        call.params[k] = value;
        call.run(c, start);
        call.expectConsistent("parameter " + std::to_string(k) + " = " + std::to_string(value));
      }
    }
  }
  for (double value : integers) {  // all of them at once
    Call call(c);
    for (std::size_t k = 0; k < c.params.size(); ++k) call.params[k] = value;
    call.run(c);
    call.expectConsistent("all parameters " + std::to_string(value));
  }
}

TEST_P(EveryCalculation, SurvivesShortAndWildData) {
  const Calculation& c = GetParam();
  for (int n : {0, 1, 2, 3, 14}) {
    Call call(c, n);
    const int status = call.run(c);
    EXPECT_TRUE(n > 0 || status == -1) << "an empty input";
    call.expectConsistent("n = " + std::to_string(n));
  }
  for (double wild : {kNaN, kInf, -kInf, 1e308, 0.0}) {
    Call call(c);
    for (const auto& in : call.inputs)
      for (int i = 0; i < in->size; i += 3) in->data[i] = wild;
    for (const auto& bars : call.bars)
      for (int s = 0; s < qv::kSeriesCount; ++s)
        for (int i = s % 3; i < bars->barsize; i += 3) qv::seriesOf(*bars, s).data[i] = wild;
    EXPECT_GE(call.run(c), -10) << wild;
    call.expectConsistent("wild data");
  }
}

TEST_P(EveryCalculation, SurvivesTheFailureOfEachAllocation) {
  const Calculation& c = GetParam();
  const long before = qv::memory::liveBlocks();
  for (long k = 1; k < 100; ++k) {
    Call call(c);
    qv::memory::failAllocation(k);
    const int status = call.run(c);
    qv::memory::failAllocation(0);
    call.expectConsistent("allocation " + std::to_string(k));
    if (status == 0) break;  // k is beyond the last allocation
    ASSERT_EQ(status, -3) << "allocation " << k;
    ASSERT_LT(k, 99) << "allocates without end";
  }
  EXPECT_EQ(qv::memory::liveBlocks(), before) << "blocks leaked";
}

INSTANTIATE_TEST_SUITE_P(Table, EveryCalculation, testing::ValuesIn(calculations()),
                         [](const auto& row) { return row.param.name; });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(EveryCalculation);

}  // namespace
}  // namespace qvtest
