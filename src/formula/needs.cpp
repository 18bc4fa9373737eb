// How many bars a formula needs: first valid index and the index from which on a value does not depend on
// where the data began, node by node.
#include "formula/needs.h"

#include <algorithm>
#include <climits>

#include "core/numbers.h"
#include "formula/constants.h"
#include "patterns/candle_names.h"

namespace qv::formula {

namespace {

struct Need {
  int first;
  int settled;
  bool never;  // the values never forget where the data began
  bool repaints;
};

// The most daily bars of a frequency of qvGroupBarsDate, on weekdays.
int barsOf(int frequency) noexcept {
  constexpr int kBars[] = {5, 23, 66, 262};
  return kBars[frequency - 3];
}

class Needs {
 public:
  Needs(const QvFormula& f, double tolerance) noexcept
      : f_(f),
        tolerance_(tolerance),
        needs_(static_cast<std::size_t>(f.nodeCount)),
        numbers_(static_cast<std::size_t>(f.nodeCount)) {}

  int run(QvFormulaNeeds& needs) noexcept {
    if (!needs_.ok() || !numbers_.ok()) return QV_MALLOC;
    if (const int status = resolve(f_, numbers_.data())) return status;
    for (int i = 0; i <= f_.root; ++i)
      need(i) = f_.nodes[static_cast<std::size_t>(i)].constant ? Need{} : needOf(i);
    const Need& root = need(f_.root);
    needs.firstValid = root.first;
    needs.settled = root.never ? -1 : root.settled;
    needs.repaints = root.repaints;
    needs.series = static_cast<std::int32_t>(f_.series);
    return QV_OK;
  }

 private:
  const Node& node(int i) const noexcept { return f_.nodes[static_cast<std::size_t>(i)]; }
  Need& need(int i) noexcept { return needs_[static_cast<std::size_t>(i)]; }
  Need& operand(const Node& of, int k) noexcept { return need(of.operands[k]); }
  double number(const Node& of, int k) const noexcept {
    return numbers_[static_cast<std::size_t>(of.operands[k])];
  }

  // What all of a node's series need.
  Need together(const Node& n, int operands) noexcept {
    Need all{};
    for (int k = 0; k < operands; ++k) {
      const Need& one = operand(n, k);
      all.first = std::max(all.first, one.first);
      all.settled = std::max(all.settled, one.settled);
      all.never |= one.never;
      all.repaints |= one.repaints;
    }
    return all;
  }

  static Need later(Need n, int bars) noexcept {
    n.first = saturatingSum(n.first, bars);
    n.settled = saturatingSum(n.settled, bars);
    return n;
  }

  Need needOf(int i) noexcept {
    const Node& n = node(i);
    const int last = n.count ? truncatedInt(number(n, n.count - 1)) : 0;
    switch (n.kind) {
      case Kind::Field:
        return {};
      case Kind::Shift:
        return later(together(n, 1), last);
      case Kind::Highest:
      case Kind::Lowest:
        return later(together(n, 1), saturatingSum(last, -1));
      case Kind::Call:
        return together(n, n.entry->inputCount);
      case Kind::Output:
        return output(i);
      case Kind::Candle:
        return later({}, saturatingSum(last, candlePatterns[static_cast<std::size_t>(n.index)].bars, -1));
      case Kind::Coarse:
        return coarse(i);
      default:
        return later(together(n, n.count), n.kind == Kind::CrossesAbove);
    }
  }

  Need output(int i) noexcept {
    const Node &n = node(i), &call = node(n.operands[0]);
    const QvCatalogueEntry& entry = *call.entry;
    double params[kMostOperands] = {};
    for (int k = 0; k < entry.paramCount; ++k) params[k] = number(call, entry.inputCount + k);
    const Need in = operand(n, 0);
    const int first = qvCatalogueFirstValidOf(&entry, n.index, params, 0);
    const int settle = qvCatalogueSettle(&entry, params, tolerance_);
    Need out = later(in, std::max(first, 0));
    out.settled = saturatingSum(out.settled, std::max(settle, 0));
    out.never |= settle < 0;
    out.repaints |= entry.outputs[n.index].repaints != 0;
    return out;
  }

  // A value is known when its group is over; the first group may have begun before the data.
  Need coarse(int i) noexcept {
    const Node& from = node(node(i).operands[0]);
    const std::int64_t bars = barsOf(f_.contexts[static_cast<std::size_t>(from.context)].frequency);
    Need out = operand(node(i), 0);
    out.first = saturate(bars * (std::int64_t{out.first} + 1));
    out.settled = saturate(bars * (std::int64_t{out.settled} + 2));
    return out;
  }

  const QvFormula& f_;
  double tolerance_;
  memory::Buffer<Need> needs_;
  memory::Buffer<double> numbers_;
};

}  // namespace

int needsOf(const QvFormula& f, double tolerance, QvFormulaNeeds& needs) noexcept {
  return Needs(f, tolerance).run(needs);
}

}  // namespace qv::formula
