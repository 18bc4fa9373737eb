// Chains in the middle of their series: what a stream keeps of a calculation.
//
// A calculation is opened by calling its own function with an output that is an Opening: calculate<Chain>()
// (calculate.h) then hands the chain over instead of computing. So what a function makes of its parameters
// and which chain it picks is written once, for whole series and for updates.
#pragma once

#include <memory>
#include <new>

#include "core/calculation.h"
#include "kernels/state.h"
#include "kernels/tiles.h"

namespace qv {

class Live {
 public:
  Live() noexcept = default;
  Live(const Live&) = delete;
  Live& operator=(const Live&) = delete;

  // Memory for a piece of so many items, up to a tile. False when it runs out: nothing has happened then.
  virtual bool reserve(int count) noexcept = 0;
  // The items from in[..][at] on.
  virtual void run(const double* const* in, int at, int count, double* const* out) noexcept = 0;
  // Null when memory runs out.
  virtual Live* copy() noexcept = 0;
  // Of its state, in numbers.
  virtual std::size_t size() noexcept = 0;
  virtual void save(Bytes& to) noexcept = 0;
  // Into one that was opened with the same parameters. False when memory runs out; `from` tells what was
  // read.
  virtual bool load(Reader& from) noexcept = 0;

  struct Close {
    void operator()(Live* running) const noexcept {
      if (!running) return;
      void* block = running->block_;
      running->~Live();
      memory::release(block);
    }
  };

 protected:
  virtual ~Live() = default;
  // A heap may align blocks to less than vectors need.
  template <typename Self, typename... Parts>
  static Self* make(Parts&&... parts) noexcept {
    constexpr std::size_t kRoom = sizeof(Self) + alignof(Self);
    void* const block = memory::allocate(1, kRoom);
    if (!block) return nullptr;
    void* place = block;
    std::size_t room = kRoom;
    auto* self =
        new (std::align(alignof(Self), sizeof(Self), place, room)) Self(std::forward<Parts>(parts)...);
    self->block_ = block;
    return self;
  }

 private:
  void* block_ = nullptr;
};
using LivePtr = std::unique_ptr<Live, Live::Close>;

template <typename Chain>
class LiveChain final : public Live {
 public:
  explicit LiveChain(const Chain& chain) noexcept : chain_(chain) {}
  static LiveChain* of(const Chain& chain) noexcept {
    LiveChain* made = make<LiveChain>(chain);
    if (!made) return nullptr;
    IsWhole whole;
    whole(made->chain_);
    if (whole.ok() && isOk(made->chain_)) return made;
    Close{}(made);
    return nullptr;
  }

  bool reserve(int count) noexcept override {
    Reserve reserve(count);
    reserve(chain_);
    return reserve.ok();
  }
  void run(const double* const* in, int at, int count, double* const* out) noexcept override {
    Inputs<Chain::kInputs> from;
    for (std::size_t k = 0; k < from.size(); ++k) from[k] = in[k] + at;
    Outputs<Chain::kOutputs> to;
    std::copy_n(out, to.size(), to.begin());
    chain_.run(from, count, to);
  }
  Live* copy() noexcept override { return of(chain_); }
  std::size_t size() noexcept override {
    Measure measure;
    measure(chain_);
    return measure.numbers();
  }
  void save(Bytes& to) noexcept override { Save{to}(chain_); }
  bool load(Reader& from) noexcept override {
    Load load(from);
    load(chain_);
    return load.hasMemory();
  }

 private:
  Chain chain_;
};

// The output that asks for the chain. It stands for the first of a calculation's outputs, and beside it are
// the records to call with; nobody reads or writes their items.
struct Opening : QvArray {
  static constexpr int kMostSets = 2, kMostArrays = 4, kMostOutputs = 5, kMostInputs = 8;
  static constexpr int kNoValue = INT_MAX;  // the first valid index of an output that looks at later bars
  static constexpr int kOpened = 1;         // the answer of a function that has handed its chain over

  QvBars sets[kMostSets]{};
  QvArray arrays[kMostArrays]{}, others[kMostOutputs]{};

  LivePtr chain;
  int begin = 0;  // the first item that the chain takes
  int inputCount = 0, outputCount = 0;
  int inputs[kMostInputs]{};  // of the chain, as numberOf tells them
  int firstValid[kMostOutputs]{};

  Opening() noexcept : QvArray{&mark, 0, 0, 0} {
    const QvArray endless{&items, INT_MAX, INT_MAX, 0};
    for (QvBars& set : sets) {
      set.barsize = set.datasize = INT_MAX;
      for (int k = 0; k < kSeriesCount; ++k) seriesOf(set, k) = endless;
    }
    std::fill(std::begin(arrays), std::end(arrays), endless);
  }

  // Series k of set s is s * kSeriesCount + k; the single ones follow.
  int numberOf(const QvArray* a) const noexcept {
    for (int s = 0; s < kMostSets; ++s)
      for (int k = 0; k < kSeriesCount; ++k)
        if (a == &seriesOf(sets[s], k)) return s * kSeriesCount + k;
    return kMostSets * kSeriesCount + static_cast<int>(a - arrays);
  }

  // kOpened or -3. `s`: the first item that the chain takes.
  template <typename Chain>
  int take(const Chain& taken, const std::array<const QvArray*, Chain::kInputs>& from, int s) noexcept {
    chain.reset(LiveChain<Chain>::of(taken));
    begin = s;
    inputCount = Chain::kInputs;
    outputCount = Chain::kOutputs;
    for (std::size_t k = 0; k < from.size(); ++k) inputs[k] = numberOf(from[k]);
    return chain ? kOpened : int{QV_MALLOC};
  }

  static inline double mark = 0.0;

 private:
  static inline double items = 0.0;
};

// Null for an output that is none.
QV_INLINE Opening* openingOf(QvArray* out) noexcept {
  return out && out->data == &Opening::mark ? static_cast<Opening*>(out) : nullptr;
}

}  // namespace qv
