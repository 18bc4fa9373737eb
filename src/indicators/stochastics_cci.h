// The commodity channel index.
#pragma once

#include "core/calculation.h"
#include "kernels/mean_deviation.h"

namespace qv::chain {

// The distance of a bar's price from its average, in units of the mean absolute deviation from that average.
class CCI {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  explicit CCI(int period) noexcept : deviation_(period) {}
  int lead() const noexcept { return deviation_.lead(); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    // A third of the sum is the price; the third cancels.
    const auto priceOf = [](double high, double low, double close) { return high + low + close; };
    const auto indexOf = [](double distance, double deviation) {
      const double index = distance / (deviation * 0.015);
      return deviation != 0.0 ? index : 0.0;
    };
    Tile price, distance, deviation;
    map(count, price, priceOf, in[0], in[1], in[2]);
    deviation_.run({price}, count, {distance, deviation});
    map(count, out[0], indexOf, distance, deviation);
  }
  auto state() noexcept { return std::tie(deviation_); }

 private:
  MeanDeviation deviation_;
};

}  // namespace qv::chain
