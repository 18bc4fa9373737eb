#include "formula/slots.h"

#include <climits>

namespace qv::formula {

namespace {

class Slots {
 public:
  explicit Slots(QvFormula& f) noexcept
      : f_(f),
        lastUse_(static_cast<std::size_t>(f.nodeCount)),
        nextFree_(static_cast<std::size_t>(f.nodeCount)),
        firstFree_(static_cast<std::size_t>(f.contextCount)) {}

  bool run() noexcept {
    if (!lastUse_.ok() || !nextFree_.ok() || !firstFree_.ok()) return false;
    for (int i = 0; i < f_.nodeCount; ++i) {
      lastUse_[at(i)] = i;
      for (int k = 0; k < node(i).count; ++k) {
        const int operand = node(i).operands[k];
        lastUse_[at(operand)] = i;
        ++node(operand).uses;
      }
    }
    lastUse_[at(f_.root)] = INT_MAX;
    for (int k = 0; k < f_.contextCount; ++k) firstFree_[at(k)] = -1;
    for (int i = 0; i <= f_.root; ++i) assign(i);
    return true;
  }

 private:
  static std::size_t at(int i) noexcept { return static_cast<std::size_t>(i); }
  Node& node(int i) noexcept { return f_.nodes[at(i)]; }

  void assign(int i) noexcept {
    Node& n = node(i);
    if (n.kind == Kind::Call) {
      for (int k = 1; k <= n.entry->outputCount; ++k) take(i + k);  // all at once, read or not
    } else if (!n.constant && n.kind != Kind::Field && n.kind != Kind::Output) {
      takeOver(i);
    }
    for (int k = 0; k < n.count; ++k)
      if (lastUse_[at(n.operands[k])] == i) release(n.operands[k]);
    if (lastUse_[at(i)] == i) release(i);
  }

  void take(int i) noexcept {
    if (i == f_.root) return;
    Node& n = node(i);
    std::int32_t& free = firstFree_[at(n.context)];
    if (free >= 0) {
      n.slot = node(free).slot;
      free = nextFree_[at(free)];
    } else {
      n.slot = f_.contexts[at(n.context)].slots++;
    }
  }

  // Kinds that read an item no later than they write it work in place.
  void takeOver(int i) noexcept {
    Node& n = node(i);
    const bool inPlace = (isItemwise(n.kind) && n.kind != Kind::CrossesAbove) || n.kind == Kind::Shift ||
                         n.kind == Kind::Highest || n.kind == Kind::Lowest;
    if (inPlace && i != f_.root) {
      for (int k = 0; k < n.count; ++k) {
        const Node& from = node(n.operands[k]);
        if (from.slot < 0 || lastUse_[at(n.operands[k])] != i) continue;
        n.slot = from.slot;
        lastUse_[at(n.operands[k])] = INT_MAX;  // not released with the others
        return;
      }
    }
    take(i);
  }

  void release(int i) noexcept {
    if (node(i).slot < 0) return;
    std::int32_t& free = firstFree_[at(node(i).context)];
    nextFree_[at(i)] = free;
    free = i;
  }

  QvFormula& f_;
  memory::Buffer<std::int32_t> lastUse_;
  // The free slots of a context, each named by the node that had it last.
  memory::Buffer<std::int32_t> nextFree_, firstFree_;
};

}  // namespace

bool assignSlots(QvFormula& f) noexcept {
  return Slots(f).run();
}

}  // namespace qv::formula
