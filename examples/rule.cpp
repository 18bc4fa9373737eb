// A rule as text over daily bars: how the close stood five bars after each day on which the rule began to
// hold, beside the average of all days.
//
// usage: rule DIRECTORY [RULE]      where text/SPX.CSV and its layout text/txtinfo.txt are
#include <cstdio>
#include <string>

#include "qvlib60.hpp"

namespace {

constexpr int kHeld = 5;

// Percent from the close of bar i to that of five bars later.
double gainFrom(const qv::Bars& bars, int i) {
  return 100.0 * (bars.close.data[i + kHeld] / bars.close.data[i] - 1.0);
}

void run(const std::string& directory, const std::string& text) {
  qv::Bars bars;
  qv::check(qvFILEread("TXT", &bars, (directory + "/text").c_str(), "SPX.CSV", 0, -1), "SPX.CSV");
  const qv::Formula formula(text);
  const qv::Series rule = formula(bars);
  const qv::Series average = qv::calc("sma", bars.close, {200});
  if (formula.needs().repaints)
    std::printf("The rule looks at later bars: its past signals were not known then.\n");

  int days = 0, signals = 0, above = 0;
  double ofAll = 0.0, ofSignals = 0.0;
  for (int i = rule.firstValid + 1; i + kHeld < rule.size; ++i) {
    ofAll += gainFrom(bars, i);
    ++days;
    if (rule[i] == 0.0 || rule[i - 1] != 0.0) continue;
    ofSignals += gainFrom(bars, i);
    ++signals;
    if (i >= average.firstValid && bars.close.data[i] > average[i]) ++above;
  }
  std::printf("%s\n%d signals, %d of them above the 200-day average\n", text.c_str(), signals, above);
  if (signals > 0)
    std::printf("%.2f %% in the five days after, %.2f %% in any five days\n", ofSignals / signals,
                ofAll / days);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: rule DIRECTORY [RULE]\n");
    return 1;
  }
  try {
    run(argv[1], argc == 3 ? argv[2] : "rsi(14) < 30 and close > sma(200)");
  } catch (const qv::Error& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
