// Moving calculations are chains of stages that work through their series tile by tile, so that what lies
// between input and output never leaves the first-level cache.
//
// A stage gives one result for each item. Its lead() is the number of items that pass before its first
// value; until then it gives 0.0. It takes a series in pieces of any length and keeps what it needs of the
// past, so that the results do not depend on how the series is cut: bar by bar gives the bits of the whole
// series at once. It holds no pointer of its caller's and can be copied; one that takes memory says by ok()
// whether it could be had (a stage without it gives 0.0). Results may overwrite the input of recurrences and
// of formulas, not that of windows and delays.
#pragma once

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

#include "core/memory.h"
#include "core/numbers.h"
#include "kernels/lanes.h"

namespace qv {

inline constexpr int kTile = 256;
using Tile = double[kTile];

template <std::size_t kCount>
using Inputs = std::array<const double*, kCount>;
template <std::size_t kCount>
using Outputs = std::array<double*, kCount>;

template <typename Pointers>
QV_INLINE Pointers advanced(Pointers all, int items) noexcept {
  for (auto& p : all) p += items;
  return all;
}

template <typename Array>
concept HasItems = requires(const Array& all) {
  std::begin(all);
};
// Whether a stage has what memory it needs: what it says, or what all parts of its state say.
template <typename Stage>
bool isOk(const Stage& stage) noexcept {
  if constexpr (requires { stage.ok(); })
    return stage.ok();
  else if constexpr (requires(Stage & s) { s.state(); })
    return std::apply([](const auto&... parts) { return (isOk(parts) && ...); },
                      const_cast<Stage&>(stage).state());
  else if constexpr (HasItems<Stage>)
    return std::all_of(std::begin(stage), std::end(stage), [](const auto& one) { return isOk(one); });
  else
    return true;
}
// Its lead, per output where these differ.
template <typename Stage>
int leadOf(const Stage& stage, int output = 0) noexcept {
  if constexpr (requires { stage.lead(output); })
    return stage.lead(output);
  else
    return stage.lead();
}

// out[j] = formula of the items j of the inputs; out may be one of them.
template <typename Formula, typename... In>
QV_INLINE void map(int count, double* out, Formula formula, const In*... in) noexcept {
  each(count, [=](int j) QV_LAMBDA { out[j] = formula(in[j]...); });
}

// The item before each. Formulas of neighbours take the first item of a piece apart:
//   out[0] = changeOf(x[0], before_.take(x, count));
//   map(count - 1, out + 1, changeOf, x + 1, x);
class Before {
 public:
  Before() noexcept = default;
  explicit Before(double none) noexcept : last_(none), begun_(true) {}
  // What stood before x[0], where nothing did x[0] itself or what was given; the piece is left behind.
  double take(const double* x, int count) noexcept {
    const double before = begun_ ? last_ : x[0];
    begun_ = true;
    last_ = x[count - 1];
    return before;
  }
  auto state() noexcept { return std::tie(last_, begun_); }

 private:
  double last_ = 0.0;
  bool begun_ = false;
};

// The items that pass before a calculation's first.
class Lead {
 public:
  explicit Lead(int items) noexcept : left_(items) {}
  int left() const noexcept { return left_; }
  // Of the next `count` items those that pass.
  int pass(int count) noexcept {
    const int passed = std::min(left_, count);
    left_ -= passed;
    return passed;
  }
  // The same; their results are 0.0.
  template <typename... Out>
  int pass(int count, Out*... out) noexcept {
    if (left_ == 0) return 0;
    const int passed = pass(count);
    (std::fill_n(out, passed, 0.0), ...);
    return passed;
  }
  template <typename V>
  void fields(V& v) noexcept {
    v.within(left_, 0, left_);
  }

 private:
  int left_;
};

// A stage behind one whose first `after` results are no values yet.
template <typename Stage>
class After {
 public:
  static constexpr int kInputs = Stage::kInputs, kOutputs = Stage::kOutputs;

  template <typename... Parameters>
  explicit After(int after, Parameters&&... parameters) noexcept
      : lead_(after), after_(after), stage_(std::forward<Parameters>(parameters)...) {}
  int lead(int output = 0) const noexcept { return saturatingSum(after_, leadOf(stage_, output)); }
  QV_INLINE void run(Inputs<kInputs> in, int count, Outputs<kOutputs> out) noexcept {
    if (lead_.left() == 0) [[likely]]
      return stage_.run(in, count, out);
    const int passed = lead_.pass(count);
    for (double* y : out) std::fill_n(y, passed, 0.0);
    if (passed < count) stage_.run(advanced(in, passed), count - passed, advanced(out, passed));
  }
  void endShort(int items, Outputs<kOutputs> last) const noexcept requires requires(const Stage& s) {
    s.endShort(items, last);
  }
  { stage_.endShort(std::max(0, saturatingSum(items, -after_)), last); }
  const Stage& stage() const noexcept { return stage_; }
  auto state() noexcept { return std::tie(lead_, stage_); }

 private:
  Lead lead_;
  int after_;
  Stage stage_;
};

// Items and those that stood `lag` items before them.
class Delay {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit Delay(int lag) noexcept : lag_(lag) {}
  bool ok() const noexcept { return !failed_ && (held_ == 0 || kept_.ok()); }
  int lead() const noexcept { return lag_; }

  // body(at, items, before): the piece's items from `at` on, and those that stood before them. Returns how
  // many at the beginning of the piece have none before them.
  template <typename Body>
  int over(const double* x, int count, Body body) noexcept {
    if (lag_ == 0) return body(0, count, x), 0;
    const int none = keepFirst(x, count);
    int at = none;
    while (at < std::min(lag_, count)) {  // those before lie in what is kept, a ring
      const int items = std::min({count - at, lag_ - place_, lag_ - at});
      double* kept = kept_.data() + place_;
      body(at, items, static_cast<const double*>(kept));
      std::copy_n(x + at, items, kept);
      place_ = place_ + items == lag_ ? 0 : place_ + items;
      at += items;
    }
    if (at < count) {
      body(at, count - at, x + at - lag_);
      std::copy_n(x + count - lag_, lag_, kept_.data());
      place_ = 0;
    }
    return none;
  }
  // The same for a whole series, behind which nothing comes: nothing is kept.
  template <typename Body>
  int overAll(const double* x, int count, Body body) const noexcept {
    if (lag_ < count) body(lag_, count - lag_, x);
    return std::min(lag_, count);
  }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const int none = over(in[0], count, [y = out[0]](int at, int items, const double* before) {
      std::copy_n(before, items, y + at);
    });
    std::fill_n(out[0], none, 0.0);
  }
  bool reserve(int count) noexcept {
    return kept_.grow(static_cast<std::size_t>(std::min(lag_, saturatingSum(held_, count))));
  }
  template <typename V>
  void fields(V& v) noexcept {
    v.within(held_, 0, lag_);
    v.within(place_, 0, std::max(0, lag_ - 1));
    v.buffer(kept_, held_);
  }

 private:
  int keepFirst(const double* x, int count) noexcept {
    if (!ok()) return count;
    const int items = std::min(lag_ - held_, count);
    if (items == 0) return 0;
    failed_ = !kept_.grow(static_cast<std::size_t>(held_) + static_cast<std::size_t>(items));
    if (failed_) return count;
    std::copy_n(x, items, kept_.data() + held_);
    held_ += items;
    return items;
  }

  int lag_, held_ = 0, place_ = 0;
  bool failed_ = false;
  memory::Buffer<double> kept_;
};

}  // namespace qv
