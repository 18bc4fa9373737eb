// Builds the node table of a formula: an expression that is there already is not made again, and operators
// between numbers are computed at once.
#pragma once

#include "formula/nodes.h"

namespace qv::formula {

class Graph {
 public:
  explicit Graph(QvFormula& f) noexcept : f_(f) {}

  // All give the index of a node, or kExhausted when memory runs out. An operand that is kExhausted makes the
  // result so.
  static constexpr int kExhausted = -3;

  int number(double value) noexcept;
  int parameter(int index) noexcept;
  int field(int series, int context) noexcept;
  int itemwise(Kind kind, int a, int b = kNone, int c = kNone) noexcept;
  // Shift, Highest, Lowest, of a series and a constant.
  int window(Kind kind, int series, int constant) noexcept;
  // The node of the call; its outputs follow.
  int call(const QvCatalogueEntry* entry, const int* operands, int context) noexcept;
  int candle(int pattern, int period, int context) noexcept;
  int coarse(int series, int context) noexcept;

  // The context of bars compressed from those of `parent`.
  int context(int parent, int frequency) noexcept;
  // The formula is the value of this node. 0 or kExhausted.
  int finish(int root) noexcept;

  const Node& operator[](int node) const noexcept { return f_.nodes[static_cast<std::size_t>(node)]; }

 private:
  static constexpr int kNone = -1;
  static constexpr int kBuckets = 256;

  Node& at(int node) noexcept { return f_.nodes[static_cast<std::size_t>(node)]; }
  int add(const Node& node) noexcept;
  int append(const Node& node) noexcept;

  QvFormula& f_;
  std::int32_t buckets_[kBuckets] = {};  // index + 1 of the newest node of a hash
};

}  // namespace qv::formula
