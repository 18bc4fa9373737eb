#include "timing.h"

#include <sched.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <thread>
#include <utility>

namespace qvpeers {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr int kMostTries = 4;  // rounds run for one that is wanted
constexpr int kRests = 50;     // waits for a quiet moment before a round; a wait takes 10 ms

// How many calls make one sample: each contender's first call warms up and settles it. Some even of a million
// bars, whose series come into the outer caches only when they are read again.
int callsOf(const Contender& contender, double bars) {
  const double begin = now();
  contender.call();
  const double ns = std::max(now() - begin, 1.0);
  return static_cast<int>(std::max({1.0, std::min(200'000 / bars, 2e6 / ns), std::min(4.0, 1e7 / ns)}));
}

// The first call is not timed: it finds its outputs where others have put theirs out of the caches, or, as
// the peers share theirs, have left them there.
double sample(const Contender& contender, int calls, double bars) {
  if (contender.data) contender.data->rewind();
  contender.call();
  const double begin = now();
  for (int q = 0; q < calls; ++q) {
    if (contender.data) contender.data->next();
    contender.call();
  }
  return (now() - begin) / calls / bars;
}

std::vector<double> bestOf(const std::vector<std::vector<double>>& rounds, std::size_t contenders) {
  std::vector<double> best(contenders, kNone);
  for (const auto& round : rounds)
    for (std::size_t k = 0; k < contenders; ++k) best[k] = std::fmin(best[k], round[k]);
  return best;
}

void moveTo(int processor) {
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(static_cast<unsigned>(processor), &one);
  sched_setaffinity(0, sizeof one, &one);
}

// Goes to the processor that is the quietest now, and rests while none is. Whether it found one.
bool findQuiet() {
  static const std::vector<int> allowed = [] {
    cpu_set_t all;
    std::vector<int> list;
    if (sched_getaffinity(0, sizeof all, &all) == 0)
      for (int k = 0; k < CPU_SETSIZE; ++k)
        if (CPU_ISSET(static_cast<unsigned>(k), &all)) list.push_back(k);
    return list;
  }();
  for (int rest = 0; rest < kRests; ++rest) {
    if (control.quiet(control.measure())) return true;
    std::pair<double, int> quietest{1e9, 0};
    for (const int processor : allowed) {
      moveTo(processor);
      quietest = std::min(quietest, {control.measure(), processor});
    }
    if (!allowed.empty()) moveTo(quietest.second);
    if (control.quiet(quietest.first)) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

}  // namespace

Control control;

double now() {
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double, std::nano>(time).count();
}

double Control::measure() {
  constexpr std::size_t kItems = 5000;
  static const Block from = touchedBlock(kItems), to = touchedBlock(kItems);
  std::vector<double> times;  // their median: a single one may be lucky
  for (int q = 0; q < 9; ++q) {
    const double begin = now();
    for (std::size_t i = 0; i < kItems; ++i) {
      to[i] = from[i];
      asm volatile("");  // keeps the copy scalar
    }
    times.push_back((now() - begin) / kItems);
  }
  const double ns = median(std::move(times));
  best_ = std::min(best_, ns);
  return ns;
}

Timings interleave(const std::vector<Contender>& contenders, double bars, int rounds, double budgetSeconds,
                   bool peers) {
  const std::size_t m = contenders.size();
  std::vector<int> calls;
  std::vector<bool> active(m, true);
  std::vector<std::vector<double>> quiet, disturbed;
  const auto size = [](const auto& list) { return static_cast<int>(list.size()); };
  double spent = 0;  // the rests do not count
  for (const Contender& c : contenders) calls.push_back(callsOf(c, bars));

  const auto wanted = [&](int done) {
    return done < kMostTries * rounds && (done < 2 || spent < budgetSeconds * 1e9);
  };
  while (size(quiet) < rounds && wanted(size(quiet) + size(disturbed))) {
    std::vector<double> round(m, kNone);
    bool still = findQuiet();
    const double begin = now();
    const std::size_t first = (quiet.size() + disturbed.size()) % m;  // each goes first in its turn
    for (std::size_t turn = 0; turn < m; ++turn)
      if (const std::size_t k = (first + turn) % m; active[k])
        round[k] = sample(contenders[k], calls[k], bars);
    spent += now() - begin;
    still = control.quiet(control.measure()) && still;
    (still ? quiet : disturbed).push_back(std::move(round));
    if (peers && m == 3 && still && size(quiet) == 3) {
      const std::vector<double> best = bestOf(quiet, m);
      for (std::size_t k = 1; k < 3; ++k) active[k] = best[k] <= 1.3 * best[3 - k];
    }
  }
  Timings result;
  result.disturbed = quiet.empty();
  result.rounds = result.disturbed ? std::move(disturbed) : std::move(quiet);
  result.best = bestOf(result.rounds, m);
  return result;
}

double median(std::vector<double> values) {
  std::erase_if(values, [](double v) { return std::isnan(v); });
  if (values.empty()) return kNone;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace qvpeers
