// Many independent pieces of work on several threads.
#pragma once

#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace qv::runs {

// Calls work(0) .. work(count - 1), each once, on `jobs` threads, the caller's included. The first exception
// ends the work and comes out here.
template <typename Work>
void inParallel(std::size_t count, int jobs, Work work) {
  std::atomic<std::size_t> next{0};
  std::exception_ptr failed;
  std::mutex failing;
  const auto run = [&] {
    try {
      for (std::size_t i; (i = next++) < count;) work(i);
    } catch (...) {
      next = count;
      const std::lock_guard lock(failing);
      if (!failed) failed = std::current_exception();
    }
  };
  std::vector<std::jthread> threads;
  for (int k = 1; k < jobs && static_cast<std::size_t>(k) < count; ++k) threads.emplace_back(run);
  run();
  threads.clear();  // waits for them
  if (failed) std::rethrow_exception(failed);
}

}  // namespace qv::runs
