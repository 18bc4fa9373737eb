// How far a stream has come: the calculation after its bars, and so much of the past that the last bar can be
// taken back.
#pragma once

#include "kernels/live.h"

namespace qv::stream {

// Which series go into the calculation and from which bar on.
struct Feed {
  int begin = 0;  // the first bar that the calculation takes
  int inputCount = 0, outputCount = 0;
  int inputs[Opening::kMostInputs]{};  // of the calculation, as places among the caller's values
};

// The state before the last bars and these bars: taking the last one back replays the others. The earlier
// state moves up as soon as these have as many numbers as it has, so that copying it costs every bar the
// same, whatever the periods.
class Progress {
 public:
  explicit Progress(const Feed& feed) noexcept : feed_(feed) {}

  // False for memory, as all below.
  bool begin(LivePtr opened) noexcept;
  bool copy(Progress& to) noexcept;
  // The next bars, up to kMostAtOnce; all or none.
  static constexpr int kMostAtOnce = 32;
  bool take(const double* const* values, int count, double* const* outputs) noexcept;
  // Any number of bars. What has been taken when memory runs out stays.
  bool takeMany(const double* const* values, int count, double* const* outputs) noexcept;
  bool peek(const double* const* values, double* const* outputs) noexcept;
  bool replaceLast(const double* const* values, double* const* outputs) noexcept;

  std::int64_t bars() const noexcept { return bars_; }
  void save(Bytes& to) noexcept;
  // Into one that has begun.
  bool load(Reader& from) noexcept;
  const Live& now() const noexcept { return *now_; }

 private:
  memory::Buffer<double> rowsOf(int items) const noexcept {
    return memory::Buffer<double>(static_cast<std::size_t>(items) *
                                  static_cast<std::size_t>(feed_.inputCount));
  }
  void keep(memory::Buffer<double> kept, int room) noexcept;
  // The calculation over the bars from in[..][at] on, which are the stream's `first` and those that follow.
  void run(Live& running, std::int64_t first, const double* const* in, int at, int count,
           double* const* outputs) const noexcept;
  // Forgets the past before the next `count` bars.
  bool moveUp(int count) noexcept;
  // Memory for the next kMostAtOnce bars: asked for seldom.
  bool reserve() noexcept;
  // The kept bars first .. end - 1 once more.
  bool replay(Live& running, int first, int end) noexcept;

  Feed feed_;
  LivePtr now_, before_;
  std::int64_t bars_ = 0;
  memory::Buffer<double> kept_;  // the bars since before_, `room_` of each input
  int room_ = 0, held_ = 0;
  double* rows_[Opening::kMostInputs]{};  // of each input
  int reserved_ = 0;                      // for so many bars now_ has memory
};

}  // namespace qv::stream
