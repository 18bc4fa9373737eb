// The word that somebody meant who mistyped it.
#pragma once

#include <algorithm>
#include <string_view>

#include "core/characters.h"

namespace qv {

// The nearest of the words that are offered to it, none where all are farther off than a slip of the finger.
class NearestWord {
 public:
  explicit NearestWord(std::string_view wanted) noexcept
      : wanted_(wanted), distance_(std::max(1, static_cast<int>(wanted.size()) / 3) + 1) {}

  void offer(const char* word) noexcept {
    const std::string_view name(word);
    if (std::max(wanted_.size(), name.size()) > kLongestCompared) return;
    const int distance = distanceOf(wanted_, name);
    if (distance >= distance_) return;
    distance_ = distance;
    best_ = word;
  }
  const char* word() const noexcept { return best_; }

 protected:
  std::string_view wanted_;

 private:
  static constexpr std::size_t kLongestCompared = 40;

  // Letters to change, insert, leave out or swap with their neighbour, in any case.
  static int distanceOf(std::string_view a, std::string_view b) noexcept {
    int rows[3][kLongestCompared + 1];
    int *before = rows[0], *last = rows[1], *now = rows[2];
    for (std::size_t j = 0; j <= b.size(); ++j) last[j] = static_cast<int>(j);
    for (std::size_t i = 1; i <= a.size(); ++i) {
      now[0] = static_cast<int>(i);
      for (std::size_t j = 1; j <= b.size(); ++j) {
        const char x = upperCase(a[i - 1]), y = upperCase(b[j - 1]);
        now[j] = std::min({last[j] + 1, now[j - 1] + 1, last[j - 1] + (x != y)});
        if (i > 1 && j > 1 && x == upperCase(b[j - 2]) && upperCase(a[i - 2]) == y)
          now[j] = std::min(now[j], before[j - 2] + 1);
      }
      int* const free = before;
      before = last;
      last = now;
      now = free;
    }
    return last[b.size()];
  }

  int distance_;  // a nearer word than this is taken
  const char* best_ = nullptr;
};

}  // namespace qv
