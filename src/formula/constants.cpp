#include "formula/constants.h"

#include "core/numbers.h"
#include "formula/items.h"

namespace qv::formula {

namespace {

bool takes(const QvCatalogueParam& param, double number) noexcept {
  switch (param.kind) {
    case QV_PARAM_PERIOD:
      return number >= 1.0;
    case QV_PARAM_METHOD:
    case QV_PARAM_CHOICE:
      return truncatedInt(number) >= 0 && truncatedInt(number) < param.choiceCount;
    default:
      return true;
  }
}

// Whether a series takes the constants among its operands.
bool takesConstants(const Node& node, const double* numbers) noexcept {
  const double last = node.count ? numbers[node.operands[node.count - 1]] : 0.0;
  switch (node.kind) {
    case Kind::Shift:
      return last >= 0.0;
    case Kind::Highest:
    case Kind::Lowest:
    case Kind::Candle:
      return last >= 1.0;
    case Kind::Call:
      for (int k = 0; k < node.entry->paramCount; ++k)
        if (!takes(node.entry->params[k], numbers[node.operands[node.entry->inputCount + k]])) return false;
      return true;
    default:
      return true;
  }
}

}  // namespace

int resolve(const QvFormula& f, double* numbers) noexcept {
  for (int k = 0; k < f.parameterCount; ++k) {
    const double value = f.parameters[static_cast<std::size_t>(k)].value;
    if (value != value) return QV_INVALID_PARM;
  }
  for (int i = 0; i < f.nodeCount; ++i) {
    const Node& n = f.nodes[static_cast<std::size_t>(i)];
    const auto number = [&](int k) { return k < n.count ? numbers[n.operands[k]] : 0.0; };
    if (!n.constant) {
      if (!takesConstants(n, numbers)) return QV_INVALID_PARM;
    } else if (n.kind == Kind::Number) {
      numbers[i] = n.number;
    } else if (n.kind == Kind::Parameter) {
      numbers[i] = f.parameters[static_cast<std::size_t>(n.index)].value;
    } else {
      numbers[i] = itemOf(n.kind, number(0), number(1), number(2), 0.0);
    }
  }
  return QV_OK;
}

}  // namespace qv::formula
