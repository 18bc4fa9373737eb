// Long runs over many tasks: on several threads, each with things of its own, to be watched and stopped.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>

#include "runs/parallel.h"

namespace qv::runs {

// How a run goes on, and whether it shall.
struct RunControl {
  int jobs = 1;                                // threads
  const std::atomic<bool>* stopped = nullptr;  // set from outside, at any time
  std::function<void(double)> progress =
      {};  // the part that is done, a few times a second, by one thread at a time

  bool isStopped() const noexcept { return stopped && stopped->load(std::memory_order_relaxed); }
};

// task(worker, index) for every index below `count` until the run is stopped, in ascending order, each on one
// of the threads, for which `makeWorker` makes what it works with.
template <typename MakeWorker, typename Task>
void runTasks(std::size_t count, const RunControl& control, MakeWorker makeWorker, Task task) {
  using Clock = std::chrono::steady_clock;
  constexpr auto kBetweenReports = std::chrono::milliseconds(100);
  std::atomic<std::size_t> next{0}, done{0};
  std::mutex reporting;
  Clock::time_point reported = Clock::now();
  const auto report = [&] {
    const std::unique_lock lock(reporting, std::try_to_lock);
    if (!lock || Clock::now() - reported < kBetweenReports) return;
    control.progress(static_cast<double>(done) / static_cast<double>(count));
    reported = Clock::now();
  };
  const auto threads = static_cast<std::size_t>(std::max(control.jobs, 1));
  inParallel(std::min(threads, count), control.jobs, [&](std::size_t) {
    auto worker = makeWorker();
    for (std::size_t i; !control.isStopped() && (i = next++) < count;) {
      task(worker, i);
      ++done;
      if (control.progress) report();
    }
  });
}

}  // namespace qv::runs
