// Parameter ranges: how many combinations they have, the values of one of them, and its label.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "core/numbers.h"
#include "qvlib60/tradesim.h"
#include "tradesim/report_fields.h"

namespace {

using namespace qv;

constexpr int kDecimals = 8;           // the finest that a label shows
constexpr int kLongestValueText = 10;  // wider values lose their tail

int countOf(const QvOptVar& var) noexcept {
  return var.step != 0 ? truncatedInt((var.end - var.start) / var.step + 1.0) : 1;
}

int saturatingProduct(int a, int b) noexcept {
  return saturate(std::int64_t{a} * b);
}

struct ValueFormat {
  int width;  // of the whole part, with its sign
  int decimals;
  int length() const noexcept { return width + (decimals > 0 ? decimals + 1 : 0); }
};

// Wide enough for the range and one step beyond it, with the decimals of that number.
ValueFormat formatOf(const QvOptVar& var) noexcept {
  const double widest = std::fmax(std::fabs(var.start), std::fabs(var.end)) + std::fabs(var.step);
  const tradesim::FixedPoint p = tradesim::fixedPoint(widest, kDecimals);
  ValueFormat format{1, 0};
  for (long long rest = p.whole; rest > 9; rest /= 10) ++format.width;
  if (var.start < 0 || var.end < 0) ++format.width;
  if (p.fraction != 0) {
    format.decimals = kDecimals;
    for (int rest = p.fraction; rest % 10 == 0; rest /= 10) --format.decimals;
  }
  return format;
}

// Returns the end of the text. Never longer than the format says, whatever value the record holds,
// so that qvOptVarStringLen is always room enough.
char* appendValue(char* out, const QvOptVar& var) noexcept {
  const ValueFormat format = formatOf(var);
  const tradesim::FixedPoint v = tradesim::fixedPoint(var.value, format.decimals);
  char text[64];
  int length = std::snprintf(text, sizeof text, "%*lld", format.width, v.whole);
  if (format.decimals > 0)
    length += std::snprintf(text + length, sizeof text - static_cast<std::size_t>(length), ".%0*d",
                            format.decimals, v.fraction);
  const int kept = std::min({length, format.length(), kLongestValueText});
  std::memcpy(out, text, static_cast<std::size_t>(kept));
  return out + kept;
}

}  // namespace

extern "C" {

int QVCALL qvOptVarCount(QvOptVar* vars, int n) noexcept {
  if (!vars && n > 0) return QV_INVALID_PARM;
  int combinations = 1;
  for (int i = 0; i < n; ++i) {
    vars[i].count = countOf(vars[i]);
    combinations = saturatingProduct(combinations, vars[i].count);
  }
  return combinations;
}

int QVCALL qvOptVarValue(QvOptVar* vars, int n, int k) noexcept {
  if (!vars && n > 0) return QV_INVALID_PARM;
  if (k > qvOptVarCount(vars, n) || k < 1) return QV_INVALID_PARM;
  int divisor = 1;  // never 0 here: a variable without values leaves no combinations
  for (int i = 0; i < n; ++i) {
    const int index = (k - 1) / divisor % vars[i].count;
    vars[i].value = index * vars[i].step + vars[i].start;
    divisor = saturatingProduct(divisor, vars[i].count);
  }
  return QV_OK;
}

int QVCALL qvOptVarString(const QvOptVar* vars, int n, const char* separator, char* out) noexcept {
  if ((!vars && n > 0) || !separator || !out) return QV_INVALID_PARM;
  const std::size_t separatorLength = std::strlen(separator);
  for (int i = 0; i < n; ++i) {
    if (i > 0) {
      std::memcpy(out, separator, separatorLength);
      out += separatorLength;
    }
    out = appendValue(out, vars[i]);
  }
  *out = '\0';
  return QV_OK;
}

int QVCALL qvOptVarStringLen(const QvOptVar* vars, int n, const char* separator) noexcept {
  if ((!vars && n > 0) || !separator) return QV_INVALID_PARM;
  std::int64_t length = 1;
  for (int i = 0; i < n; ++i) length += formatOf(vars[i]).length();
  if (n > 1) length += static_cast<std::int64_t>(std::strlen(separator)) * (n - 1);
  return saturate(length);
}

}  // extern "C"
