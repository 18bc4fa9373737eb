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
  room_ = kMostAtOnce;
  kept_ = rowsOf(room_);
  if (!before_ || !kept_.ok()) return false;
  hold(0);
  return true;
}

bool Progress::copy(Progress& to) noexcept {
  to.feed_ = feed_;
  to.now_.reset(now_->copy());
  to.before_.reset(before_->copy());
  to.kept_ = kept_;
  to.bars_ = bars_;
  to.room_ = room_;
  if (!to.now_ || !to.before_ || !to.kept_.ok()) return false;
  to.hold(held_);
  return true;
}

void Progress::run(Live& running, std::int64_t at, const double* const* in, int count,
                   double* const* outputs) const noexcept {
  Tile unwanted[Opening::kMostOutputs];
  Out out;
  for (int k = 0; k < feed_.outputCount; ++k) out[k] = outputs && outputs[k] ? outputs[k] : unwanted[k];
  if (at >= feed_.begin) return running.run(in, count, out);
  const int skipped = static_cast<int>(std::min<std::int64_t>(feed_.begin - at, count));
  for (int k = 0; k < feed_.outputCount; ++k) {
    std::fill_n(out[k], skipped, 0.0);
    out[k] += skipped;
  }
  if (skipped == count) return;
  In from;
  for (int k = 0; k < feed_.inputCount; ++k) from[k] = in[k] + skipped;
  running.run(from, count - skipped, out);
}

bool Progress::take(const double* const* values, int count, double* const* outputs) noexcept {
  if (held_ + count > room_ && !moveUp(count)) return false;
  if (count > reserved_ && !reserve()) return false;
  for (int k = 0; k < feed_.inputCount; ++k) {
    const double* items = values[feed_.inputs[k]];
    *next_[k] = *items;
    if (count > 1) std::copy_n(items + 1, count - 1, next_[k] + 1);
  }
  bool allWanted = outputs != nullptr && bars_ >= feed_.begin;
  for (int k = 0; k < feed_.outputCount && allWanted; ++k) allWanted = outputs[k] != nullptr;
  if (allWanted)
    now_->run(next_, count, outputs);
  else
    run(*now_, bars_, next_, count, outputs);
  reserved_ -= count;
  hold(held_ + count);
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
  if (larger.ok()) kept_ = std::move(larger);
  room_ = room;
  hold(0);
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
    run(*now_, bars_, in, items, out);
    reserved_ = 0;
    bars_ += items;
    hold(room_);  // what was kept is of no use any more
    advance(at += items);
  }
  return take(from, count - at, out);
}

bool Progress::replay(Live& running, int first, int end) noexcept {
  for (int at = first; at < end;) {
    const int items = std::min(kTile, end - at);
    if (!running.reserve(items)) return false;
    In in;
    for (int k = 0; k < feed_.inputCount; ++k) in[k] = row(k) + at;
    run(running, bars_ - held_ + at, in, items, nullptr);
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
  run(*next, bars_, in, 1, outputs);
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
  In in;
  for (int k = 0; k < feed_.inputCount; ++k) {
    *row(k) = *values[feed_.inputs[k]];
    in[k] = row(k);
  }
  run(*now, bars_ - 1, in, 1, outputs);
  if (before) before_ = std::move(before);
  now_ = std::move(now);
  reserved_ = 0;
  hold(1);
  return true;
}

void Progress::save(Bytes& to) noexcept {
  to.word(static_cast<std::uint64_t>(bars_));
  to.integer(held_);
  for (int k = 0; k < feed_.inputCount; ++k)
    for (int i = 0; i < held_; ++i) to.number(row(k)[i]);
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
  if (held > room_) {
    room_ = held;
    kept_ = rowsOf(room_);
    if (!kept_.ok()) return false;
  }
  bars_ = static_cast<std::int64_t>(bars);
  hold(held);
  for (int k = 0; k < feed_.inputCount; ++k)
    for (int i = 0; i < held; ++i) row(k)[i] = from.number();
  if (!before_->load(from)) return false;
  if (!from.ok()) return true;
  now_.reset(before_->copy());
  reserved_ = 0;
  return now_ && replay(*now_, 0, held_);
}

}  // namespace qv::stream
