// Opening a formula with the reason where it fails as a number, too.
#pragma once

#include <memory>

#include "formula/nodes.h"

namespace qv::formula {

struct CloseFormula {
  void operator()(QvFormula* f) const noexcept { qvFormulaClose(f); }
};
using FormulaPtr = std::unique_ptr<QvFormula, CloseFormula>;

// 0 with the formula; -1 for a text that is none, or -3, with the reason in `error` as qvFormulaOpen gives
// it.
int open(const char* text, char* error, int errorSize, FormulaPtr& f) noexcept;

}  // namespace qv::formula
