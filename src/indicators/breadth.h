// Market breadth: advancing and declining issues and their volumes.
#pragma once

#include <cmath>
#include <numeric>

#include "indicators/averages.h"

namespace qv {

struct NetOf {
  double operator()(double adv, double dec) const noexcept { return adv - dec; }
};
struct GrossOf {
  double operator()(double adv, double dec) const noexcept { return std::fabs(adv - dec); }
};
struct QuotientOf {
  double operator()(double a, double b) const noexcept {
    const double quotient = a / b;
    return (b < 0.0) | (b > 0.0) ? quotient : 0.0;  // nor by a number that is none
  }
};
// The advances' share of both.
struct ShareOf {
  double operator()(double adv, double dec) const noexcept {
    const double share = adv / (adv + dec);
    return adv + dec != 0.0 ? share : 0.0;
  }
};
struct UnguardedShareOf {
  double operator()(double adv, double dec) const noexcept { return adv / (adv + dec); }
};
struct PercentOf {
  double operator()(double adv, double dec) const noexcept {
    const double percent = 100.0 * adv / (adv + dec);
    return adv + dec != 0.0 ? percent : 0.0;
  }
};
constexpr auto tradingIndexOf = [](double adv, double dec, double advVol, double decVol) {
  const double index = (adv / dec) / (advVol / decVol);
  return (adv != 0.0) & (dec != 0.0) & (advVol != 0.0) & (decVol != 0.0) ? index : 0.0;
};
// Only three zeros at once are guarded; any other zero divides through.
constexpr auto openIndexOf = [](double adv, double dec, double advVol, double decVol) {
  const double index = (adv / dec) / (advVol / decVol);
  return (dec == 0.0) & (advVol == 0.0) & (decVol == 0.0) ? 0.0 : index;
};
// The root of the surplus of advances in terms of the unchanged issues.
constexpr auto tremblayStepOf = [](double adv, double dec, double unchanged) {
  const double r = adv / unchanged - dec / unchanged, step = std::sqrt(std::fabs(r));
  return unchanged == 0.0 ? 0.0 : r >= 0.0 ? step : -step;
};

namespace chain {

// A formula of each bar's two totals.
template <typename Formula>
class OfEachBar {
 public:
  static constexpr int kInputs = 2, kOutputs = 1;

  int lead() const noexcept { return 0; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept { map(count, out[0], Formula{}, in[0], in[1]); }
};
using ADIssues = OfEachBar<NetOf>;
using ADLineBreadth = OfEachBar<ShareOf>;
using ADRatio = OfEachBar<QuotientOf>;
using UpDownRatio = OfEachBar<QuotientOf>;
using UpDownVolume = OfEachBar<NetOf>;
using ABI = OfEachBar<GrossOf>;

// Such a formula, averaged.
template <typename Formula, typename Average>
class AveragedOfEachBar {
 public:
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit AveragedOfEachBar(int period) noexcept : average_(period) {}
  int lead() const noexcept { return average_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile values;
    map(count, values, Formula{}, in[0], in[1]);
    average_.run({values}, count, out);
  }
  void endShort(int items, Outputs<1> last) const noexcept requires requires(const Average& a) {
    a.endShort(items, last);
  }
  { average_.endShort(items, last); }
  auto state() noexcept { return std::tie(average_); }

 private:
  Average average_;
};
class BreadthThrust : public AveragedOfEachBar<UnguardedShareOf, SimpleMA> {
 public:
  BreadthThrust() noexcept : AveragedOfEachBar(10) {}
};
class OverBoughtSold : public AveragedOfEachBar<NetOf, ExpMA> {
 public:
  OverBoughtSold() noexcept : AveragedOfEachBar(10) {}
};
using STIX = AveragedOfEachBar<PercentOf, ExpMA>;

// The running sum of advances less declines.
class CVI {
 public:
  static constexpr int kInputs = 2, kOutputs = 1;

  int lead() const noexcept { return 0; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    map(count, out[0], NetOf{}, in[0], in[1]);
    sum_.run({out[0]}, count, out);
  }
  auto state() noexcept { return std::tie(sum_); }

 private:
  Total sum_;
};
// The same, with its first item below the first valid index.
class ADLine : public CVI {
 public:
  int lead() const noexcept { return 1; }
};

class TRIN {
 public:
  static constexpr int kInputs = 4, kOutputs = 1;

  int lead() const noexcept { return 0; }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept {
    map(count, out[0], tradingIndexOf, in[0], in[1], in[2], in[3]);
  }
};
using ArmsIdx = TRIN;

// Its sum over five bars.
class BretzTRIN5 {
 public:
  static constexpr int kInputs = 4, kOutputs = 1;

  int lead() const noexcept { return sum_.lead(); }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept {
    Tile index;
    index_.run(in, count, {index});
    sum_.run({index}, count, out);
  }
  void endShort(int items, Outputs<1> last) const noexcept { sum_.endShort(items, last); }
  auto state() noexcept { return std::tie(sum_); }

 private:
  TRIN index_;
  MovingSum sum_{5};
};

// Of the sums of ten bars. A series that is too short has one value, at its last item.
class Open10TRIN {
 public:
  static constexpr int kInputs = 4, kOutputs = 1;

  int lead() const noexcept { return sums_.lead(); }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept {
    Tile adv, dec, advVol, decVol;
    sums_.run(in, count, {adv, dec, advVol, decVol});
    const int none = begin_.pass(count, out[0]);
    map(count - none, out[0] + none, openIndexOf, adv + none, dec + none, advVol + none, decVol + none);
  }
  void endShort(int items, Outputs<1> last) const noexcept {
    if (items < 1) return;
    const auto sum = [this](int input) {
      const auto kept = sums_.itemsSoFar(input);
      return std::accumulate(kept.begin(), kept.end(), 0.0);
    };
    *last[0] = openIndexOf(sum(0), sum(1), sum(2), sum(3));
  }
  auto state() noexcept { return std::tie(sums_, begin_); }

 private:
  static constexpr int kPeriod = 10;
  Sliding<Sums<4>> sums_{kPeriod};
  Lead begin_{kPeriod - 1};
};

// A running sum that begins one bar late.
class BoltonTremblay {
 public:
  static constexpr int kInputs = 3, kOutputs = 1;

  int lead() const noexcept { return 1; }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    map(count, out[0], tremblayStepOf, in[0], in[1], in[2]);
    begin_.pass(count, out[0]);
    sum_.run({out[0]}, count, out);
  }
  auto state() noexcept { return std::tie(begin_, sum_); }

 private:
  Lead begin_{1};
  Total sum_;
};

// The fast less the slow average of advances less declines.
class McClellanOscillator {
 public:
  static constexpr int kInputs = 2, kOutputs = 1;

  McClellanOscillator(int fast, int slow) noexcept : averages_(shareOf(fast), shareOf(slow)) {}
  int lead() const noexcept { return 0; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile net;
    map(count, net, NetOf{}, in[0], in[1]);
    averages_.apart(net, count, out[0]);
  }
  auto state() noexcept { return std::tie(averages_); }

 private:
  ExponentialPair averages_;
};

class McClellanSummation {
 public:
  static constexpr int kInputs = 2, kOutputs = 1;

  McClellanSummation(int fast, int slow) noexcept : oscillator_(fast, slow) {}
  int lead() const noexcept { return 0; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    oscillator_.run(in, count, out);
    sum_.run({out[0]}, count, out);
  }
  auto state() noexcept { return std::tie(oscillator_, sum_); }

 private:
  McClellanOscillator oscillator_;
  Total sum_;
};

// Both; the sum's first item stands below its first valid index.
class McClellanOscSum {
 public:
  static constexpr int kInputs = 2, kOutputs = 2;

  McClellanOscSum(int fast, int slow) noexcept : oscillator_(fast, slow) {}
  int lead(int output) const noexcept { return output; }
  void run(Inputs<2> in, int count, Outputs<2> out) noexcept {
    oscillator_.run(in, count, {out[0]});
    sum_.run({out[0]}, count, {out[1]});
  }
  auto state() noexcept { return std::tie(oscillator_, sum_); }

 private:
  McClellanOscillator oscillator_;
  Total sum_;
};

}  // namespace chain
}  // namespace qv
