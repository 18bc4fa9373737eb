#include "formula/graph.h"

#include <algorithm>
#include <bit>
#include <initializer_list>

#include "core/calculation.h"
#include "formula/items.h"
#include "formula/slots.h"

namespace qv::formula {

namespace {

std::uint64_t bitsOf(double v) noexcept {
  return std::bit_cast<std::uint64_t>(v);
}

bool same(const Node& a, const Node& b) noexcept {
  return a.kind == b.kind && a.context == b.context && a.index == b.index && a.entry == b.entry &&
         bitsOf(a.number) == bitsOf(b.number) && std::equal(a.operands, a.operands + a.count, b.operands);
}

std::uint64_t hashOf(const Node& node) noexcept {
  std::uint64_t h = static_cast<std::uint64_t>(node.kind);
  const auto mix = [&h](std::uint64_t v) { h = (h ^ v) * 0x9E3779B97F4A7C15u, h ^= h >> 29; };
  mix(static_cast<std::uint64_t>(node.context));
  mix(static_cast<std::uint64_t>(node.index));
  mix(bitsOf(node.number));
  mix(reinterpret_cast<std::uintptr_t>(node.entry));
  for (int k = 0; k < node.count; ++k) mix(static_cast<std::uint64_t>(node.operands[k]));
  return h;
}

Node nodeOf(Kind kind, int context, std::initializer_list<int> operands) noexcept {
  Node node;
  node.kind = kind;
  node.context = context;
  for (const int operand : operands) node.operands[node.count++] = operand;
  return node;
}

}  // namespace

int Graph::append(const Node& node) noexcept {
  if (!f_.nodes.grow(static_cast<std::size_t>(f_.nodeCount) + 1)) return kExhausted;
  at(f_.nodeCount) = node;
  return f_.nodeCount++;
}

int Graph::add(const Node& node) noexcept {
  for (int k = 0; k < node.count; ++k)
    if (node.operands[k] == kExhausted) return kExhausted;
  std::int32_t& bucket = buckets_[hashOf(node) >> 56];
  static_assert(kBuckets == 256);
  for (int i = bucket - 1; i >= 0; i = (*this)[i].next)
    if (same((*this)[i], node)) return i;
  const int added = append(node);
  if (added < 0) return added;
  at(added).next = bucket - 1;
  bucket = added + 1;
  return added;
}

int Graph::number(double value) noexcept {
  Node node;
  node.constant = true;
  node.number = value;
  return add(node);
}

int Graph::parameter(int index) noexcept {
  Node node;
  node.kind = Kind::Parameter;
  node.constant = true;
  node.index = index;
  return add(node);
}

int Graph::field(int series, int context) noexcept {
  Node node = nodeOf(Kind::Field, context, {});
  node.index = series;
  f_.series |= 1u << series;
  return add(node);
}

int Graph::itemwise(Kind kind, int a, int b, int c) noexcept {
  Node node;
  node.kind = kind;
  node.constant = true;
  bool numbers = true;
  for (const int operand : {a, b, c}) {
    if (operand == kNone) break;
    if (operand == kExhausted) return kExhausted;
    const Node& from = (*this)[operand];
    node.operands[node.count++] = operand;
    node.constant = node.constant && from.constant;
    numbers = numbers && from.kind == Kind::Number;
    node.context = std::max(node.context, from.context);
  }
  if (!node.constant) return add(node);
  if (kind == Kind::CrossesAbove) return number(0.0);  // what never moves never crosses
  if (!numbers) return add(node);
  const auto valueOf = [this](int operand) { return operand == kNone ? 0.0 : (*this)[operand].number; };
  return number(itemOf(kind, valueOf(a), valueOf(b), valueOf(c), 0.0));
}

int Graph::window(Kind kind, int series, int constant) noexcept {
  if (series == kExhausted || constant == kExhausted) return kExhausted;
  return add(nodeOf(kind, (*this)[series].context, {series, constant}));
}

int Graph::call(const QvCatalogueEntry* entry, const int* operands, int context) noexcept {
  Node node = nodeOf(Kind::Call, context, {});
  node.entry = entry;
  node.count = entry->inputCount + entry->paramCount;
  std::copy_n(operands, node.count, node.operands);
  if (entry->barsCount) f_.series |= static_cast<unsigned>(entry->series);
  const int before = f_.nodeCount, made = add(node);
  if (made < before) return made;
  for (int k = 0; k < entry->outputCount; ++k) {
    Node output = nodeOf(Kind::Output, context, {made});
    output.index = k;
    if (append(output) < 0) return kExhausted;
  }
  return made;
}

int Graph::candle(int pattern, int period, int context) noexcept {
  Node node = nodeOf(Kind::Candle, context, {period});
  node.index = pattern;
  f_.series |= kPrices;
  return add(node);
}

int Graph::coarse(int series, int context) noexcept {
  if (series == kExhausted || (*this)[series].constant) return series;
  return add(nodeOf(Kind::Coarse, context, {series}));
}

int Graph::context(int parent, int frequency) noexcept {
  f_.series |= kDate;
  for (int i = 0; i < f_.contextCount; ++i) {
    const Context& known = f_.contexts[static_cast<std::size_t>(i)];
    if (known.parent == parent && known.frequency == frequency) return i;
  }
  const auto at = static_cast<std::size_t>(f_.contextCount);
  if (!f_.contexts.grow(at + 1)) return kExhausted;
  f_.contexts[at] = {parent, frequency};
  return f_.contextCount++;
}

int Graph::finish(int root) noexcept {
  f_.root = root;
  return assignSlots(f_) ? QV_OK : kExhausted;
}

}  // namespace qv::formula
