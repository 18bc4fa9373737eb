// Contenders timed in turn, and the control that tells whether the machine was quiet.
#pragma once

#include <functional>
#include <vector>

#include "data.h"

namespace qvpeers {

double now();  // nanoseconds

// A scalar copy that fills the core: on a shared core it takes up to twice as long. The quickest one seen, or
// what the caller knows of the machine at rest, is the measure: a round is quiet when the copies before and
// after it take at most a quarter longer.
class Control {
 public:
  double measure();  // ns per item
  bool quiet(double measured) const { return measured <= 1.25 * best_; }
  double best() const { return best_; }
  void setRest(double ns) { best_ = ns; }

 private:
  double best_ = 1e9;
};
extern Control control;

struct Contender {
  std::function<void()> call;
  Data* data = nullptr;  // moved to its next window before each call
};

struct Timings {
  std::vector<double> best;                 // of each contender, ns per bar
  std::vector<std::vector<double>> rounds;  // [round][contender]; not-a-number where it did not run
  bool disturbed = false;                   // no round was quiet
};

// Round after round until `rounds` quiet ones are there; the disturbed ones do not count. With peers the
// first contender is the library, and a peer that is 1.3 times slower than the other after three rounds drops
// out.
Timings interleave(const std::vector<Contender>& contenders, double bars, int rounds, double budgetSeconds,
                   bool peers = false);

double median(std::vector<double> values);

}  // namespace qvpeers
