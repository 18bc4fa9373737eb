// What an opened formula is: a table of nodes, each after those that it is made of. Equal nodes are one node,
// so equal expressions are computed once.
#pragma once

#include <cstdint>

#include "core/memory.h"
#include "qvlib60/catalogue.h"
#include "qvlib60/formula.h"

namespace qv::formula {

enum class Kind : std::uint8_t {
  Number,     // constant.number
  Parameter,  // index: which one
  // One item of the result out of the same item of each operand: items.h.
  Negate,
  Absolute,
  Not,
  Add,
  Subtract,
  Multiply,
  Divide,
  Smaller,
  Larger,
  Less,
  LessOrEqual,
  Equal,
  NotEqual,
  And,
  Or,
  If,
  CrossesAbove,  // and of the items before
  // Of whole series.
  Field,    // index: a series of the context's bar set, 0 date .. 6 open interest
  Shift,    // operands: series, bars back
  Highest,  // operands: series, period
  Lowest,
  Call,    // entry; operands: its inputs, then its parameters. Its outputs are the next nodes.
  Output,  // of the call in its operand; index: which one
  Candle,  // index: the pattern; operand: period of the average body
  Coarse,  // operand: a series of a coarser context, laid back onto this one
};

constexpr bool isItemwise(Kind kind) noexcept {
  return kind >= Kind::Negate && kind <= Kind::CrossesAbove;
}

constexpr bool isComparison(Kind kind) noexcept {
  return kind >= Kind::Less && kind <= Kind::NotEqual;
}
constexpr bool isLogic(Kind kind) noexcept {
  return kind == Kind::And || kind == Kind::Or;
}

inline constexpr int kMostOperands = 9;  // four series and five parameters

struct Node {
  Kind kind = Kind::Number;
  bool constant = false;  // the same at every bar: numbers, parameters and what is made of them
  std::int32_t context = 0;
  std::int32_t index = 0;
  std::int32_t count = 0;  // of operands
  std::int32_t operands[kMostOperands] = {};
  std::int32_t next = -1;  // of the nodes with the same hash
  std::int32_t uses = 0;   // operands of other nodes that it is
  std::int32_t slot = -1;  // which of its context's blocks holds its items; -1: none
  double number = 0.0;
  const QvCatalogueEntry* entry = nullptr;
};

// The bars that a node is computed on: 0 is the caller's bar set, others are compressed from their parent.
struct Context {
  std::int32_t parent = -1;
  std::int32_t frequency = 0;  // of qvGroupBarsDate
  std::int32_t slots = 0;      // blocks of one item for each bar that an evaluation needs
};

inline constexpr int kLongestName = 31;

struct Parameter {
  char name[kLongestName + 1];
  double value;  // not a number until it is set
};

}  // namespace qv::formula

struct QvFormula {
  qv::memory::Buffer<char> text;  // as it was opened
  qv::memory::Buffer<qv::formula::Node> nodes;
  qv::memory::Buffer<qv::formula::Context> contexts;
  qv::memory::Buffer<qv::formula::Parameter> parameters;
  int nodeCount = 0, contextCount = 0, parameterCount = 0;
  int root = 0;
  unsigned series = 0;  // that are read of the caller's bar set
};
