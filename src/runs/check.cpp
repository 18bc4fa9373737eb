#include "runs/check.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace qv::runs {

namespace {

std::string textOf(double x) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, x).ptr};
}

double dayOf(double date) {
  return std::floor(date);
}

// The usual distance of two bars: the median, of steps within a day or of steps between days.
double usualDistance(const Bars& b, bool withinDays) {
  std::vector<double> steps;
  for (int i = 1; i < b.barsize; ++i) {
    const double now = b.date.data[i], before = b.date.data[i - 1];
    const double step = withinDays ? now - before : dayOf(now) - dayOf(before);
    if (step > 0.0 && (dayOf(now) == dayOf(before)) == withinDays) steps.push_back(step);
  }
  if (steps.empty()) return 0.0;
  const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
  std::nth_element(steps.begin(), middle, steps.end());
  return *middle;
}

class Checker {
 public:
  explicit Checker(const Loaded& loaded)
      : loaded_(loaded), b_(loaded.bars), day_(usualDistance(b_, false)), tick_(usualDistance(b_, true)) {}

  std::vector<Finding> run() {
    for (const LeftOut& row : loaded_.leftOut)
      findings_.push_back({loaded_.unit() + (" " + std::to_string(row.line)), 0.0, "left out: " + row.why});
    const bool hasPrices = has(b_.close, b_.barsize - 1);
    if (!hasPrices) add(b_.barsize - 1, "no closes in the whole file");
    for (int i = 0; i < b_.barsize; ++i) {
      if (hasPrices) checkPrices(i);
      if (i > 0) checkStep(i);
    }
    return std::move(findings_);
  }

 private:
  void add(int i, const std::string& what) {
    const bool lines = !loaded_.lines.empty();
    const int number = lines ? loaded_.lines[static_cast<std::size_t>(i)] : i + 1;
    findings_.push_back({(lines ? "line " : "bar ") + std::to_string(number), b_.date.data[i], what});
  }

  bool has(const QvArray& series, int i) const { return i >= series.firstValid; }

  void checkPrices(int i) {
    const double open = b_.open.data[i], high = b_.high.data[i], low = b_.low.data[i],
                 close = b_.close.data[i];
    const bool hasHigh = has(b_.high, i), hasLow = has(b_.low, i), hasOpen = has(b_.open, i);
    if (hasHigh && hasLow && high < low) add(i, "high " + textOf(high) + " below low " + textOf(low));
    checkInside(i, "close", close, hasLow, low, hasHigh, high);
    if (hasOpen) checkInside(i, "open", open, hasLow, low, hasHigh, high);
    const double lowest =
        std::min({hasOpen ? open : close, hasHigh ? high : close, hasLow ? low : close, close});
    if (!(lowest > 0.0)) add(i, "price of " + textOf(lowest));
  }

  void checkInside(int i, const char* name, double price, bool hasLow, double low, bool hasHigh,
                   double high) {
    if (hasLow && price < low) add(i, name + (" " + textOf(price)) + " below low " + textOf(low));
    if (hasHigh && price > high) add(i, name + (" " + textOf(price)) + " above high " + textOf(high));
  }

  void checkStep(int i) {
    constexpr double kGap = 5.0, kMove = 10.0;
    const double now = b_.date.data[i], before = b_.date.data[i - 1];
    if (now == before) {
      add(i, "date twice");
    } else if (now < before) {
      add(i, "date before that of the bar above it");
    } else {
      const bool sameDay = dayOf(now) == dayOf(before);
      const double step = sameDay ? now - before : dayOf(now) - dayOf(before);
      const double usual = sameDay ? tick_ : day_;
      if (usual > 0.0 && step > kGap * usual * (1.0 + 1e-9)) {
        const double unit = sameDay ? 1440.0 : 1.0;
        add(i, "gap of " + textOf(std::round(step * unit)) + (sameDay ? " minutes" : " days"));
      }
    }
    const double close = b_.close.data[i], last = b_.close.data[i - 1];
    if (close > 0.0 && last > 0.0 && (close >= kMove * last || last >= kMove * close))
      add(i, "close moves from " + textOf(last) + " to " + textOf(close));
  }

  const Loaded& loaded_;
  const Bars& b_;
  const double day_, tick_;
  std::vector<Finding> findings_;
};

}  // namespace

std::vector<Finding> findingsIn(const Loaded& loaded) {
  return Checker(loaded).run();
}

}  // namespace qv::runs
