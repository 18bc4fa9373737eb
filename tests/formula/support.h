// Formulas that close themselves, and random ones.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "support/expect.h"

namespace qvtest {

struct Formula {
  char error[200];
  QvFormula* f;

  explicit Formula(const std::string& text) : f(qvFormulaOpen(text.c_str(), error, sizeof error)) {
    EXPECT_EQ(f == nullptr, error[0] != '\0') << text;
  }
  ~Formula() { qvFormulaClose(f); }
  Formula(const Formula&) = delete;
  Formula& operator=(const Formula&) = delete;

  QvFormulaNeeds needs(double tolerance = 1e-3) const {
    QvFormulaNeeds n{};
    EXPECT_EQ(qvFormulaNeeds(f, tolerance, &n), 0);
    return n;
  }
};

struct Evaluated : Array {
  int status;
  Evaluated(const std::string& text, const QvBars& bars) {
    const Formula formula(text);
    EXPECT_TRUE(formula.f) << text << ": " << formula.error;
    status = qvFormulaEval(formula.f, &bars, this);
    EXPECT_EQ(status, 0) << text;
  }
};

// Whether a formula can call the entry, by its full name at least.
inline bool isCallable(const QvCatalogueEntry& e) {
  bool possible = e.barsCount < 2;
  for (int k = 0; k < e.inputCount; ++k) possible = possible && e.inputs[k].series;
  return possible;
}

// Formulas of the whole language over every calculation that a formula can call.
class RandomFormula {
 public:
  explicit RandomFormula(unsigned seed) : random_(seed) {}

  std::string operator()(int depth = 4) {
    if (depth <= 0 || below(6) == 0) return leaf();
    const auto one = [&] { return (*this)(depth - 1); };
    static const char* const kBinary[] = {" + ",
                                          " - ",
                                          " * ",
                                          " / ",
                                          " < ",
                                          " <= ",
                                          " > ",
                                          " >= ",
                                          " = ",
                                          " != ",
                                          " and ",
                                          " or ",
                                          " crosses above ",
                                          " crosses below "};
    switch (below(9)) {
      case 0:
        return "(not (" + one() + "))";
      case 1:
        return "(" + one() + ")[" + std::to_string(below(5)) + "]";
      case 2:
        return (below(2) ? "highest(" : "lowest(") + one() + ", " + number(12) + ")";
      case 3:
        return (below(2) ? "min(" : "max(") + one() + ", -abs(" + one() + "))";
      case 4:
        return "if(" + one() + ", " + one() + ", " + one() + ")";
      case 5: {
        static const char* const kPeriods[] = {"weekly(", "monthly(", "quarterly(", "yearly("};
        return kPeriods[below(below(4) ? 2 : 4)] + one() + ")";
      }
      case 6:
      case 7:
        return call(depth);
      default:
        return "((" + one() + ")" + kBinary[below(14)] + "(" + one() + "))";
    }
  }

  std::string call(int depth) {
    for (;;) {
      const QvCatalogueEntry& e =
          *qvCatalogueItem(static_cast<int>(below(static_cast<unsigned>(qvCatalogueSize()))));
      if (!isCallable(e)) continue;
      std::string arguments;
      // A leaf is a series only if it is no number: those would be parameters.
      if (e.inputCount > 0 && below(2)) arguments += "(" + (*this)(depth - 1) + " + close*0), ";
      for (int k = 0; k < e.paramCount; ++k) {
        const QvCatalogueParam& p = e.params[k];
        const bool period = p.kind == QV_PARAM_PERIOD;
        arguments += std::string(p.name) + "=" +
                     (period          ? number(15)
                      : p.choiceCount ? std::to_string(below(static_cast<unsigned>(p.choiceCount)))
                      : p.isInteger   ? std::to_string(static_cast<int>(p.defaultValue))
                                      : std::to_string(p.defaultValue)) +
                     ", ";
      }
      if (!arguments.empty()) arguments.resize(arguments.size() - 2);
      return std::string(e.name) + "(" + arguments + ")." +
             e.outputs[below(static_cast<unsigned>(e.outputCount))].name;
    }
  }

  unsigned below(unsigned n) { return static_cast<unsigned>(random_() % n); }

 private:
  std::string number(unsigned largest) { return std::to_string(1 + below(largest)); }
  std::string leaf() {
    static const char* const kLeaves[] = {"open",
                                          "high",
                                          "low",
                                          "close",
                                          "volume",
                                          "openinterest",
                                          "c",
                                          "10",
                                          "0.5",
                                          "candle(\"Hammer\", 5)",
                                          "candle('high wave')",
                                          "(0/0)"};
    return kLeaves[below(12)];
  }
  std::mt19937 random_;
};

}  // namespace qvtest
