// The exported functions: opening, parameters, evaluation.
#include "qvlib60/formula.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "core/calculation.h"
#include "formula/constants.h"
#include "formula/evaluate.h"
#include "formula/needs.h"
#include "formula/open.h"
#include "formula/parser.h"

namespace {

using namespace qv;
using namespace qv::formula;

int parse(const char* text, int length, QvFormula& f, Complaint& complaint) noexcept {
  constexpr int kUsualNodes = 32;
  if (!f.nodes.grow(kUsualNodes) || !f.contexts.grow(1)) return QV_MALLOC;
  f.text = memory::Buffer<char>(static_cast<std::size_t>(length) + 1);
  if (!f.text.ok()) return QV_MALLOC;
  std::memcpy(f.text.data(), text, static_cast<std::size_t>(length));
  f.contexts[0] = {};
  f.contextCount = 1;
  return Parser(text, length, f, complaint).run();
}

// A prepared output that is shorter than the bars takes what it holds.
int evaluateInto(const QvFormula& f, const double* numbers, const QvBars& bars, QvArray& out) noexcept {
  const bool fits = out.capacity >= bars.barsize;
  memory::Buffer<double> whole(static_cast<std::size_t>(fits ? 0 : bars.barsize));
  if (!whole.ok()) return QV_MALLOC;
  int firstValid = 0;
  if (const int status = evaluate(f, numbers, bars, fits ? out.data : whole.data(), &firstValid))
    return status;
  if (!fits) std::copy_n(whole.data(), out.size, out.data);
  qvSetFirstValid(&out, firstValid);
  return QV_OK;
}

}  // namespace

int qv::formula::open(const char* text, char* error, int errorSize, FormulaPtr& f) noexcept {
  Complaint complaint(error, errorSize);
  if (!text) {
    complaint.sayCode(QV_INVALID_PARM);
    return QV_INVALID_PARM;
  }
  const void* end = std::memchr(text, '\0', QV_FORMULA_MAX_LENGTH + 1);
  if (!end) {
    complaint.say(QV_FORMULA_MAX_LENGTH, "more than %d characters", int{QV_FORMULA_MAX_LENGTH});
    return QV_INVALID_PARM;
  }
  void* block = memory::allocateZeroed(1, sizeof(QvFormula));
  FormulaPtr made(block ? new (block) QvFormula : nullptr);
  const auto length = static_cast<int>(static_cast<const char*>(end) - text);
  const int status = made ? parse(text, length, *made, complaint) : int{QV_MALLOC};
  if (status == QV_MALLOC) complaint.sayCode(QV_MALLOC);
  if (status == QV_OK) f = std::move(made);
  return status;
}

extern "C" {

QvFormula* QVCALL qvFormulaOpen(const char* text, char* error, int errorSize) noexcept {
  FormulaPtr f;
  open(text, error, errorSize, f);
  return f.release();
}

void QVCALL qvFormulaClose(QvFormula* f) noexcept {
  if (!f) return;
  f->~QvFormula();
  memory::release(f);
}

int QVCALL qvFormulaParameter(QvFormula* f, const char* name, double value) noexcept {
  if (!f || !name) return QV_INVALID_PARM;
  const Name wanted = nameOf(name + (name[0] == '$'));
  for (int k = 0; k < f->parameterCount; ++k) {
    Parameter& p = f->parameters[static_cast<std::size_t>(k)];
    if (!sameWord(wanted, nameOf(p.name))) continue;
    p.value = value;
    return QV_OK;
  }
  return QV_INVALID_PARM;
}

int QVCALL qvFormulaParameterCount(const QvFormula* f) noexcept {
  return f ? f->parameterCount : int{QV_INVALID_PARM};
}

const char* QVCALL qvFormulaParameterName(const QvFormula* f, int i) noexcept {
  return f && i >= 0 && i < f->parameterCount ? f->parameters[static_cast<std::size_t>(i)].name : nullptr;
}

int QVCALL qvFormulaNeeds(const QvFormula* f, double tolerance, QvFormulaNeeds* needs) noexcept {
  return f && needs ? needsOf(*f, tolerance, *needs) : int{QV_INVALID_PARM};
}

int QVCALL qvFormulaEval(const QvFormula* f, const QvBars* bars, QvArray* out) noexcept {
  if (!f) return QV_INVALID_PARM;
  memory::Buffer<double> numbers(static_cast<std::size_t>(f->nodeCount));
  if (!numbers.ok()) return QV_MALLOC;
  if (const int status = resolve(*f, numbers.data())) return status;
  // Dates that are read can't be written, those that nobody reads may serve as output.
  if (bars && out && out->data && (f->series & kDate) && sharesBlock(out, &bars->date))
    return QV_INVALID_PARM;
  const bool wasEmpty = out && !out->data;
  const BarInput set{bars, f->series};
  int first = 0;  // the evaluation writes all items
  const int n = prepareOverwritten({&set, 1}, {}, {&out, 1}, 0, &first, 0);
  if (n < 1) return n;
  // The entry step refuses missing bars and a missing output.
  // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker)
  const int status = evaluateInto(*f, numbers.data(), *bars, *out);
  if (status < 0 && wasEmpty) qvFreeArray(out);
  if (status < 0 && !wasEmpty) std::fill_n(out->data, out->size, 0.0);
  return status;
}

}  // extern "C"
