// Node by node in the order of the table, each into the block of its slot. Itemwise nodes that follow each
// other go through the items together, a tile at a time.
#include "formula/evaluate.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "core/calculation.h"
#include "core/numbers.h"
#include "formula/frames.h"
#include "formula/items.h"
#include "kernels/lanes.h"
#include "kernels/whole.h"
#include "patterns/candle_names.h"

namespace qv::formula {

namespace {

constexpr int kTile = 512;
constexpr int kTogether = 2;  // itemwise nodes that go through the items in one pass

using TileRule = void (*)(const double* const* in, int count, double* out) noexcept;

template <typename Rule>
void runTile(const double* const* in, int count, double* out) noexcept {
  constexpr Rule rule{};
  const double *a = in[0], *b = in[1], *c = in[2], *d = in[3];
  each(count, [=](int i) QV_LAMBDA {
    if constexpr (requires { rule(a[i]); })
      out[i] = rule(a[i]);
    else if constexpr (requires { rule(a[i], b[i]); })
      out[i] = rule(a[i], b[i]);
    else if constexpr (requires { rule(a[i], b[i], c[i]); })
      out[i] = rule(a[i], b[i], c[i]);
    else
      out[i] = rule(a[i], b[i], c[i], d[i]);
  });
}

TileRule tileOf(Kind kind) noexcept {
  return visitItem(kind, [](auto rule) -> TileRule { return runTile<decltype(rule)>; });
}

// And and Or of c and a comparison of a and b.
template <typename Logic, typename Comparison>
void runJoined(const double* const* in, int count, double* out) noexcept {
  constexpr Logic logic{};
  constexpr Comparison comparison{};
  const double *a = in[0], *b = in[1], *c = in[2];
  each(count, [=](int i) QV_LAMBDA { out[i] = logic(c[i], comparison(a[i], b[i])); });
}

TileRule joinedOf(Kind logic, Kind comparison) noexcept {
  return visitLogic(logic, [comparison](auto outer) {
    return visitComparison(
        comparison, [](auto inner) -> TileRule { return runJoined<decltype(outer), decltype(inner)>; });
  });
}

class Evaluation {
 public:
  Evaluation(const QvFormula& f, const double* numbers, double* result) noexcept
      : f_(f),
        numbers_(numbers),
        result_(result),
        values_(static_cast<std::size_t>(f.nodeCount)),
        frames_(f.contextCount) {}
  Evaluation(const Evaluation&) = delete;
  Evaluation& operator=(const Evaluation&) = delete;

  int run(const QvBars& bars, int* firstValid) noexcept {
    if (!values_.ok()) return QV_MALLOC;
    if (const int status = frames_.build(f_, bars)) return status;
    for (int i = 0; i <= f_.root; ++i) {
      if (node(i).constant) continue;
      if (isItemwise(node(i).kind))
        i = itemwise(i);
      else if (const int status = series(i))
        return status;
    }
    return finish(bars.barsize, firstValid);
  }

 private:
  const Node& node(int i) const noexcept { return f_.nodes[static_cast<std::size_t>(i)]; }
  QvArray& value(int i) noexcept { return values_[static_cast<std::size_t>(i)]; }
  const Node& operandNode(const Node& of, int k) const noexcept { return node(of.operands[k]); }
  QvArray& operand(const Node& of, int k) noexcept { return value(of.operands[k]); }
  double number(const Node& of, int k) const noexcept { return numbers_[of.operands[k]]; }
  int integer(const Node& of, int k) const noexcept { return truncatedInt(number(of, k)); }

  int series(int i) noexcept {
    const Node& n = node(i);
    switch (n.kind) {
      case Kind::Field:
        return field(i);
      case Kind::Shift:
        return shift(i);
      case Kind::Highest:
      case Kind::Lowest:
        return extreme(i);
      case Kind::Call:
        return call(i);
      case Kind::Output:
        return QV_OK;  // the call has set it
      case Kind::Candle:
        return candle(i);
      default:
        return coarse(i);
    }
  }

  // The block of node i; the root's is the result itself.
  double* take(int i) noexcept {
    const Frame& frame = frames_[node(i).context];
    double* data = i == f_.root ? result_ : frame.block(node(i).slot);
    value(i) = {data, frame.size(), frame.size(), 0};
    return data;
  }

  // Items below the first valid index are 0.0, as whoever reads them expects.
  int known(int i, int firstValid) noexcept {
    QvArray& a = value(i);
    a.firstValid = firstValid;
    std::fill_n(a.data, std::min(firstValid, a.size), 0.0);
    return QV_OK;
  }

  // ---- Kinds

  int field(int i) noexcept {
    const QvBars& bars = *frames_[node(i).context].bars;
    const QvArray& a = seriesOf(bars, node(i).index);
    value(i) = {a.data, bars.barsize, a.capacity, std::max(a.firstValid, 0)};
    return QV_OK;
  }

  struct Step {
    TileRule rule;
    const double* from[4] = {};  // null: a number, or none; of a crossing the last two are the items before
    double* out;
    int first = 0;
    bool crossing;
    double numbers[4][kTile];
  };

  // Operand k of a node at a place of a step's operands.
  void read(const Node& n, int k, Step& step, int place) noexcept {
    if (operandNode(n, k).constant) {
      std::fill_n(step.numbers[place], kTile, number(n, k));
    } else {
      step.from[place] = operand(n, k).data;
      step.first = std::max(step.first, operand(n, k).firstValid);
    }
  }
  void finishStep(int i, Step& step) noexcept {
    step.out = take(i);
    value(i).firstValid = step.first;
  }
  void prepare(int i, Step& step) noexcept {
    const Node& n = node(i);
    step.rule = tileOf(n.kind);
    step.crossing = n.kind == Kind::CrossesAbove;
    for (int k = 0; k < n.count; ++k) {
      read(n, k, step, k);
      if (step.crossing) read(n, k, step, k + 2);
    }
    if (step.crossing) step.first = saturatingSum(step.first, 1);
    finishStep(i, step);
  }

  // A comparison that only the And or Or right behind it reads takes no step of its own.
  bool joins(int i, int before) const noexcept {
    const Node &n = node(i), &from = node(before);
    return isLogic(n.kind) && isComparison(from.kind) && from.uses == 1 &&
           (n.operands[0] == before || n.operands[1] == before);
  }
  void join(int i, int before, Step& step) noexcept {
    const Node& n = node(i);
    step.rule = joinedOf(n.kind, node(before).kind);
    read(n, n.operands[0] == before ? 1 : 0, step, 2);
    finishStep(i, step);
  }

  // Node i and those behind it that can go with it; the index of the last one. One that looks back goes
  // alone, for a node behind it may have taken over the block that it reads.
  int itemwise(int i) noexcept {
    Step steps[kTogether];
    int count = 0, last = i;
    const int size = frames_[node(i).context].size(), context = node(i).context;
    for (int next = i; next <= f_.root && count < kTogether; ++next) {
      const Node& n = node(next);
      if (n.constant) continue;
      const bool looksBack = n.kind == Kind::CrossesAbove;
      if (!isItemwise(n.kind) || n.context != context || (looksBack && count > 0)) break;
      if (count > 0 && joins(next, last))
        join(next, last, steps[count - 1]);
      else
        prepare(next, steps[count++]);
      last = next;
      if (looksBack) break;
    }
    for (int at = 0; at < size; at += kTile) {
      const int end = std::min(at + kTile, size);
      for (const Step* step = steps; step < steps + count; ++step) {
        const int first = std::clamp(step->first, at, end);
        std::fill(step->out + at, step->out + first, 0.0);
        if (first == end) continue;
        const double* in[4];
        for (int k = 0; k < 4; ++k)
          in[k] = step->from[k] ? step->from[k] + (first - (step->crossing && k > 1)) : step->numbers[k];
        step->rule(in, end - first, step->out + first);
      }
    }
    return last;
  }

  int shift(int i) noexcept {
    const Node& n = node(i);
    const int back = integer(n, 1);
    const QvArray from = operand(n, 0);
    double* out = take(i);
    const int first = saturatingSum(from.firstValid, back);
    if (first < from.size)
      std::memmove(out + first, from.data + from.firstValid,
                   static_cast<std::size_t>(from.size - first) * sizeof(double));
    return known(i, first);
  }

  int extreme(int i) noexcept {
    const Node& n = node(i);
    const int period = integer(n, 1);
    const QvArray from = operand(n, 0);
    double* out = take(i);
    const int first = saturatingSum(from.firstValid, period, -1);
    if (first < from.size) {
      const Windows windows{from.firstValid, from.size, period};
      const int status = n.kind == Kind::Highest ? highestOfWindows(from.data, windows, out)
                                                 : lowestOfWindows(from.data, windows, out);
      if (status) return status;
    }
    return known(i, first);
  }

  int call(int i) noexcept {
    const Node& n = node(i);
    const QvCatalogueEntry& entry = *n.entry;
    const QvBars* bars = frames_[n.context].bars;
    const QvArray* inputs[kMostOperands] = {};
    QvArray* outputs[kMostOperands] = {};
    double params[kMostOperands] = {};
    int start = 0;
    for (int k = 0; k < entry.inputCount; ++k) {
      inputs[k] = &operand(n, k);
      start = std::max(start, inputs[k]->firstValid);
    }
    for (int k = 0; entry.barsCount && k < kSeriesCount; ++k)
      if (entry.series & (1 << k)) start = std::max(start, seriesOf(*bars, k).firstValid);
    for (int k = 0; k < entry.paramCount; ++k) params[k] = number(n, entry.inputCount + k);
    for (int k = 0; k < entry.outputCount; ++k) {
      take(i + 1 + k);
      outputs[k] = &value(i + 1 + k);
    }
    const int status = qvCatalogueCall(&entry, &bars, inputs, outputs, params, start);
    if (status < 0) return status;
    for (int k = 0; k < entry.outputCount; ++k) {
      const int size = bars->barsize;
      // A calculation that centres its values has none for the last bars.
      std::fill(outputs[k]->data + outputs[k]->size, outputs[k]->data + size,
                std::numeric_limits<double>::quiet_NaN());
      outputs[k]->size = size;
      // Some calculations set an index that knows nothing of where their input begins.
      const int own = std::max(qvCatalogueFirstValidOf(&entry, k, params, 0), 0);
      int first = std::max(outputs[k]->firstValid, saturatingSum(start, own));
      // Signals over bars compare with the bar before, which must be valid, too.
      if (entry.barsCount && (entry.flags & QV_CALC_SIGNALS) && start > 0) first = saturatingSum(first, 1);
      known(i + 1 + k, status > 0 ? std::max(first, size) : first);  // too few bars: nothing is known
    }
    return QV_OK;
  }

  int candle(int i) noexcept {
    const Node& n = node(i);
    const NamedCandlePattern& pattern = candlePatterns[static_cast<std::size_t>(n.index)];
    const QvBars& bars = *frames_[n.context].bars;
    const int period = integer(n, 0);
    take(i);
    int first = 0;
    for (const QvArray* a : {&bars.open, &bars.high, &bars.low, &bars.close})
      first = std::max(first, a->firstValid);
    first = saturatingSum(first, period, pattern.bars, -1);
    QvCandles candles{};
    int status = qvCandleConstructTrailing(&bars, &candles, period);
    if (status == QV_OK) status = qvCandleFill(&bars, &candles, &value(i), pattern.name, first, bars.barsize);
    qvCandleFree(&candles);
    return status < 0 ? status : known(i, first);
  }

  int coarse(int i) noexcept {
    const Node& n = node(i);
    double* out = take(i);
    const Frame& frame = frames_[operandNode(n, 0).context];
    return known(i, layBack(frame, operand(n, 0), value(i).size, out));
  }

  // What is no series of the evaluation's own goes to the result.
  int finish(int n, int* firstValid) noexcept {
    const QvArray& v = value(f_.root);
    if (node(f_.root).constant) {
      std::fill_n(result_, n, numbers_[f_.root]);
      *firstValid = 0;
      return QV_OK;
    }
    *firstValid = v.firstValid;
    const int first = std::min(*firstValid, n);
    if (v.data != result_) std::copy(v.data + first, v.data + n, result_ + first);
    std::fill_n(result_, first, 0.0);
    return QV_OK;
  }

  const QvFormula& f_;
  const double* numbers_;
  double* result_;
  memory::Buffer<QvArray> values_;
  Frames frames_;
};

}  // namespace

int evaluate(const QvFormula& f, const double* numbers, const QvBars& bars, double* result,
             int* firstValid) noexcept {
  Evaluation evaluation(f, numbers, result);
  return evaluation.run(bars, firstValid);
}

}  // namespace qv::formula
