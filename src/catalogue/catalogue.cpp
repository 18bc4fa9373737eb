// The exported functions of the catalogue: finding entries, calling them, asking how many bars they need.
#include "qvlib60/catalogue.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "catalogue/item.h"
#include "core/text.h"
#include "qvlib60/version.h"

static_assert(sizeof(QvCatalogueParam) == (sizeof(void*) == 8 ? 80 : 72));
static_assert(sizeof(QvCatalogueInput) == (sizeof(void*) == 8 ? 16 : 12));
static_assert(sizeof(QvCatalogueOutput) == (sizeof(void*) == 8 ? 56 : 52));
static_assert(sizeof(QvCatalogueEntry) == (sizeof(void*) == 8 ? 112 : 72));

namespace {

using namespace qv;
using namespace qv::catalogue;

// In the order in which they are listed.
constexpr const Family* kFamilies[] = {&averages,   &momentum,   &stochastics, &trend,
                                       &bands,      &volume,     &breadth,     &barShape,
                                       &counting,   &sentiment,  &range,       &relativeVolatility,
                                       &statistics, &transforms, &patterns};

const Item* itemAt(int i) noexcept {
  if (i < 0) return nullptr;
  for (const Family* family : kFamilies) {
    if (i < family->count) return family->items + i;
    i -= family->count;
  }
  return nullptr;
}

// The item of an entry that lies in the table; null for any other address.
const Item* itemOf(const QvCatalogueEntry* entry) noexcept {
  const auto at = reinterpret_cast<std::uintptr_t>(entry);
  for (const Family* family : kFamilies) {
    const auto first = reinterpret_cast<std::uintptr_t>(family->items) + offsetof(Item, entry);
    if (at < first || at - first >= static_cast<std::uintptr_t>(family->count) * sizeof(Item)) continue;
    return (at - first) % sizeof(Item) ? nullptr : family->items + (at - first) / sizeof(Item);
  }
  return nullptr;
}

template <typename Matches>
const QvCatalogueEntry* find(const Matches& matches) noexcept {
  for (const Family* family : kFamilies)
    for (int i = 0; i < family->count; ++i)
      if (matches(family->items[i].entry)) return &family->items[i].entry;
  return nullptr;
}

bool isPrefix(const char* text) noexcept {
  return (text[0] == 'q' || text[0] == 'Q') && (text[1] == 'v' || text[1] == 'V');
}

const char* withoutPrefix(const char* name) noexcept {
  return isPrefix(name) ? name + 2 : name;
}

constexpr char lower(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Equal but for blanks and case.
bool sameWords(const char* a, const char* b) noexcept {
  for (;; ++a, ++b) {
    while (*a == ' ') ++a;
    while (*b == ' ') ++b;
    if (lower(*a) != lower(*b)) return false;
    if (!*a) return true;
  }
}

// The numbers of a call, the defaults where the caller gave none.
struct Given : Numbers {
  double own[kMostParams];

  Given(const QvCatalogueEntry& entry, const double* params) noexcept : Numbers{}, own{} {
    values = own;
    for (int i = 0; i < entry.paramCount; ++i) own[i] = params ? params[i] : entry.params[i].defaultValue;
  }
  Given(const Given&) = delete;
  Given& operator=(const Given&) = delete;
};

// Whether the calculation takes these numbers at all.
bool accepts(const QvCatalogueEntry& entry, const Numbers& numbers) noexcept {
  for (int i = 0; i < entry.paramCount; ++i) {
    const QvCatalogueParam& p = entry.params[i];
    if (p.kind == QV_PARAM_PERIOD && !(numbers.values[i] >= 1)) return false;
    const bool named = p.kind == QV_PARAM_METHOD || p.kind == QV_PARAM_CHOICE;
    if (named && (numbers[i] < 0 || numbers[i] >= p.choiceCount)) return false;
  }
  return true;
}

}  // namespace

bool qv::catalogue::isEntry(const QvCatalogueEntry* entry) noexcept {
  return itemOf(entry) != nullptr;
}

extern "C" {

int QVCALL qvCatalogueSize() noexcept {
  int size = 0;
  for (const Family* family : kFamilies) size += family->count;
  return size;
}

const QvCatalogueEntry* QVCALL qvCatalogueItem(int i) noexcept {
  const Item* item = itemAt(i);
  return item ? &item->entry : nullptr;
}

const QvCatalogueEntry* QVCALL qvCatalogueFind(const char* name) noexcept {
  if (!name) return nullptr;
  const auto* entry =
      find([name](const QvCatalogueEntry& e) { return compareNoCase(e.shortName, name) == 0; });
  if (entry) return entry;
  return find([bare = withoutPrefix(name)](const QvCatalogueEntry& e) {
    return compareNoCase(e.name + 2, bare) == 0;
  });
}

int QVCALL qvCatalogueChoice(const QvCatalogueEntry* entry, int param, const char* name) noexcept {
  if (!itemOf(entry) || !name || param < 0 || param >= entry->paramCount) return QV_INVALID_PARM;
  const QvCatalogueParam& p = entry->params[param];
  for (int i = 0; i < p.choiceCount; ++i)
    if (sameWords(p.choices[i], withoutPrefix(name))) return i;
  return QV_INVALID_PARM;
}

int QVCALL qvCatalogueCall(const QvCatalogueEntry* entry, const QvBars* const* bars,
                           const QvArray* const* inputs, QvArray* const* outputs, const double* params,
                           int start) noexcept {
  const Item* item = itemOf(entry);
  if (!item || (entry->barsCount && !bars) || (entry->inputCount && !inputs) || !outputs)
    return QV_INVALID_PARM;
  return item->call(bars, inputs, outputs, Given(*entry, params).values, start);
}

int QVCALL qvCatalogueFirstValidOf(const QvCatalogueEntry* entry, int output, const double* params,
                                   int start) noexcept {
  const Item* item = itemOf(entry);
  if (!item || !item->firstValid || output < 0 || output >= entry->outputCount) return QV_INVALID_PARM;
  const Given given(*entry, params);
  if (!accepts(*entry, given)) return QV_INVALID_PARM;
  return saturate(item->firstValid({given, std::max(start, 0), output}));
}

int QVCALL qvCatalogueFirstValid(const QvCatalogueEntry* entry, const double* params, int start) noexcept {
  if (!itemOf(entry)) return QV_INVALID_PARM;
  int latest = QV_INVALID_PARM;
  for (int k = 0; k < entry->outputCount; ++k)
    latest = std::max(latest, qvCatalogueFirstValidOf(entry, k, params, start));
  return latest;
}

int QVCALL qvCatalogueSettle(const QvCatalogueEntry* entry, const double* params, double tolerance) noexcept {
  const Item* item = itemOf(entry);
  if (!item) return QV_INVALID_PARM;
  const Given given(*entry, params);
  if (!accepts(*entry, given)) return QV_INVALID_PARM;
  if (!item->settled) return item->lateItems;
  const std::int64_t settled = item->settled({given, tolerance});
  if (settled < 0) return QV_INVALID_PARM;
  return saturate(std::max<std::int64_t>(settled - std::max(qvCatalogueFirstValid(entry, params, 0), 0), 0));
}

const char* QVCALL qvVersion() noexcept {
  return QVLIB60_VERSION;
}

}  // extern "C"
