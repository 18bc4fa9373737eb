#include "stream/progress.h"

#include <algorithm>

namespace qv::stream {

namespace {

using In = const double * [Opening::kMostInputs];
using Out = double * [Opening::kMostOutputs];

}  // namespace

bool Progress::begin(LivePtr opened) noexcept {
  now_ = std::move(opened);
  before_.reset(now_->copy());
  keep(rowsOf(kMostAtOnce), kMostAtOnce);
  held_ = 0;
  return before_ && kept_.ok();
}

void Progress::keep(memory::Buffer<double> kept, int room) noexcept {
  kept_ = std::move(kept);
  room_ = room;
  if (!kept_.ok()) return;
  double* row = kept_.data();
  for (int k = 0; k < feed_.inputCount; ++k, row += room) rows_[k] = row;
}

bool Progress::copy(Progress& to) noexcept {
  to.feed_ = feed_;
  to.now_.reset(now_->copy());
  to.before_.reset(before_->copy());
  to.bars_ = bars_;
  to.held_ = held_;
  to.keep(kept_, room_);
  return to.now_ && to.before_ && to.kept_.ok();
}

void Progress::run(Live& running, std::int64_t first, const double* const* in, int at, int count,
                   double* const* outputs) const noexcept {
  Tile unwanted[Opening::kMostOutputs];
  Out out;
  for (int k = 0; k < feed_.outputCount; ++k) out[k] = outputs && outputs[k] ? outputs[k] : unwanted[k];
  if (first >= feed_.begin) return running.run(in, at, count, out);
  const int skipped = static_cast<int>(std::min<std::int64_t>(feed_.begin - first, count));
  for (int k = 0; k < feed_.outputCount; ++k) {
    std::fill_n(out[k], skipped, 0.0);
    out[k] += skipped;
  }
  if (skipped < count) running.run(in, at + skipped, count - skipped, out);
}

bool Progress::take(const double* const* values, int count, double* const* outputs) noexcept {
  if (held_ + count > room_ && !moveUp(count)) return false;
  if (count > reserved_ && !reserve()) return false;
  if (count == 1)
    for (int k = 0; k < feed_.inputCount; ++k) rows_[k][held_] = *values[feed_.inputs[k]];
  else
    for (int k = 0; k < feed_.inputCount; ++k) std::copy_n(values[feed_.inputs[k]], count, rows_[k] + held_);
  bool allWanted = outputs != nullptr && bars_ >= feed_.begin;
  for (int k = 0; k < feed_.outputCount && allWanted; ++k) allWanted = outputs[k] != nullptr;
  if (allWanted)
    now_->run(rows_, held_, count, outputs);
  else
    run(*now_, bars_, rows_, held_, count, outputs);
  reserved_ -= count;
  held_ += count;
  bars_ += count;
  return true;
}

bool Progress::moveUp(int count) noexcept {
  LivePtr before(now_->copy());
  memory::Buffer<double> larger;
  if (!before) return false;
  const std::size_t bars = now_->size() / static_cast<std::size_t>(std::max(feed_.inputCount, 1));
  const int room = std::max(room_, truncatedInt(static_cast<double>(bars)));
  if (room > room_) {
    larger = rowsOf(room);
    if (!larger.ok()) return false;
  }
  if (count > reserved_ && !reserve()) return false;
  before_ = std::move(before);
  if (room > room_) keep(std::move(larger), room);
  held_ = 0;
  return true;
}

bool Progress::reserve() noexcept {
  reserved_ = now_->reserve(kMostAtOnce) ? kMostAtOnce : 0;
  return reserved_ > 0;
}

bool Progress::takeMany(const double* const* values, int count, double* const* outputs) noexcept {
  const double* from[Opening::kMostSets * kSeriesCount + Opening::kMostArrays] = {};
  for (int k = 0; k < feed_.inputCount; ++k) from[feed_.inputs[k]] = values[feed_.inputs[k]];
  Out out{};
  for (int k = 0; outputs && k < feed_.outputCount; ++k) out[k] = outputs[k];
  const auto advance = [&](int items) {
    for (int k = 0; k < feed_.inputCount; ++k) from[feed_.inputs[k]] = values[feed_.inputs[k]] + items;
    for (int k = 0; outputs && k < feed_.outputCount; ++k)
      if (out[k]) out[k] = outputs[k] + items;
  };
  // All but the last bars need not be kept.
  int at = 0;
  for (; count - at > kMostAtOnce;) {
    const int items = std::min(kTile, count - at - kMostAtOnce);
    if (!now_->reserve(items)) return false;
    Tile copies[Opening::kMostInputs];  // an output may be the caller's input
    In in;
    for (int k = 0; k < feed_.inputCount; ++k) {
      std::copy_n(from[feed_.inputs[k]], items, copies[k]);
      in[k] = copies[k];
    }
    run(*now_, bars_, in, 0, items, out);
    reserved_ = 0;
    bars_ += items;
    held_ = room_;  // what was kept is of no use any more
    advance(at += items);
  }
  return take(from, count - at, out);
}

bool Progress::replay(Live& running, int first, int end) noexcept {
  for (int at = first; at < end;) {
    const int items = std::min(kTile, end - at);
    if (!running.reserve(items)) return false;
    run(running, bars_ - held_ + at, rows_, at, items, nullptr);
    at += items;
  }
  return true;
}

bool Progress::peek(const double* const* values, double* const* outputs) noexcept {
  const LivePtr next(now_->copy());
  if (!next || !next->reserve(1)) return false;
  In in;
  for (int k = 0; k < feed_.inputCount; ++k) in[k] = values[feed_.inputs[k]];
  double bar[Opening::kMostInputs];
  for (int k = 0; k < feed_.inputCount; ++k) {
    bar[k] = *in[k];
    in[k] = &bar[k];
  }
  run(*next, bars_, in, 0, 1, outputs);
  return true;
}

bool Progress::replaceLast(const double* const* values, double* const* outputs) noexcept {
  LivePtr before;
  if (held_ > 1) {
    before.reset(before_->copy());
    if (!before || !replay(*before, 0, held_ - 1)) return false;
  }
  LivePtr now(before ? before->copy() : before_->copy());
  if (!now || !now->reserve(1)) return false;
  for (int k = 0; k < feed_.inputCount; ++k) *rows_[k] = *values[feed_.inputs[k]];
  run(*now, bars_ - 1, rows_, 0, 1, outputs);
  if (before) before_ = std::move(before);
  now_ = std::move(now);
  reserved_ = 0;
  held_ = 1;
  return true;
}

void Progress::save(Bytes& to) noexcept {
  to.word(static_cast<std::uint64_t>(bars_));
  to.integer(held_);
  for (int k = 0; k < feed_.inputCount; ++k)
    for (int i = 0; i < held_; ++i) to.number(rows_[k][i]);
  before_->save(to);
}

bool Progress::load(Reader& from) noexcept {
  const auto bars = from.word<std::uint64_t>();
  if (bars > INT64_MAX / 2) from.refuse();
  // As many as there are bytes for; of a calculation without inputs as many as its state has numbers.
  const std::size_t bytes =
      from.left() / (feed_.inputCount ? sizeof(double) * static_cast<std::size_t>(feed_.inputCount) : 1);
  const int most = std::max(truncatedInt(static_cast<double>(bytes)), feed_.inputCount ? 0 : kMostAtOnce);
  const int held = from.integer(
      bars > 0, static_cast<std::int64_t>(std::min<std::uint64_t>(bars, static_cast<std::uint64_t>(most))));
  if (!from.ok()) return true;
  if (held > room_) keep(rowsOf(held), held);
  if (!kept_.ok()) return false;
  bars_ = static_cast<std::int64_t>(bars);
  held_ = held;
  for (int k = 0; k < feed_.inputCount; ++k)
    for (int i = 0; i < held; ++i) rows_[k][i] = from.number();
  if (!before_->load(from)) return false;
  if (!from.ok()) return true;
  now_.reset(before_->copy());
  reserved_ = 0;
  return now_ && replay(*now_, 0, held_);
}

}  // namespace qv::stream
