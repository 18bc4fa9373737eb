#include "formula/words.h"

#include <algorithm>
#include <cstring>

#include "core/characters.h"
#include "patterns/candle_names.h"

namespace qv::formula {

namespace {

constexpr Function kFunctions[] = {
    {"abs", Kind::Absolute, 1}, {"min", Kind::Smaller, 2},     {"max", Kind::Larger, 2},
    {"if", Kind::If, 3},        {"highest", Kind::Highest, 2}, {"lowest", Kind::Lowest, 2},
};

struct Numbered {
  const char* name;
  int number;
};

constexpr Numbered kFields[] = {
    {"open", 1}, {"high", 2}, {"low", 3}, {"close", 4}, {"volume", 5}, {"openinterest", 6},
    {"o", 1},    {"h", 2},    {"l", 3},   {"c", 4},     {"v", 5},
};
constexpr Numbered kFrequencies[] = {{"weekly", 3}, {"monthly", 4}, {"quarterly", 5}, {"yearly", 6}};
constexpr const char* kOthers[] = {"candle", "and", "or", "not", "crosses"};

template <std::size_t n>
int numberOf(const Numbered (&words)[n], const Name& name) noexcept {
  for (const Numbered& w : words)
    if (sameWord(name, nameOf(w.name))) return w.number;
  return 0;
}

bool hasPrefix(const char* name) noexcept {
  return upperCase(name[0]) == 'Q' && upperCase(name[1]) == 'V';
}

// The names of the catalogue's entries, as qvCatalogueFind knows them, by hash: a formula of ten terms has no
// time for ten walks through the table.
class EntryIndex {
 public:
  EntryIndex() noexcept {
    for (int i = 0; i < qvCatalogueSize(); ++i) add(qvCatalogueItem(i)->shortName, qvCatalogueItem(i));
    for (int i = 0; i < qvCatalogueSize(); ++i) add(qvCatalogueItem(i)->name + 2, qvCatalogueItem(i));
    for (int i = 0; i < qvCatalogueSize(); ++i) add(qvCatalogueItem(i)->name, qvCatalogueItem(i));
  }

  const QvCatalogueEntry* find(const Name& name) const noexcept { return rows_[rowOf(name)].entry; }

 private:
  struct Row {
    Name name;
    const QvCatalogueEntry* entry;
  };
  static constexpr std::uint32_t kRows = 2048;  // three names of some 200 entries; a full table takes no more

  // Where the name is, or would be.
  std::uint32_t rowOf(const Name& name) const noexcept {
    std::uint32_t hash = 2166136261u;
    for (int i = 0; i < name.length; ++i)
      hash = (hash ^ static_cast<unsigned char>(upperCase(name.text[i]))) * 16777619u;
    std::uint32_t row = (hash ^ hash >> 15) % kRows;
    while (rows_[row].entry && !sameWord(rows_[row].name, name)) row = (row + 1) % kRows;
    return row;
  }
  void add(const char* text, const QvCatalogueEntry* entry) noexcept {
    Row& row = rows_[rowOf(nameOf(text))];
    if (!row.entry && count_ < kRows / 2) row = {nameOf(text), entry}, ++count_;
  }

  Row rows_[kRows] = {};
  std::uint32_t count_ = 0;
};

}  // namespace

Name nameOf(const char* text) noexcept {
  return {text, static_cast<int>(std::strlen(text))};
}

bool isStartOf(const Name& word, const Name& whole) noexcept {
  if (word.length > whole.length) return false;
  for (int i = 0; i < word.length; ++i)
    if (upperCase(word.text[i]) != upperCase(whole.text[i])) return false;
  return true;
}

bool sameWord(const Name& a, const Name& b) noexcept {
  return a.length == b.length && isStartOf(a, b);
}

const Function* findFunction(const Name& name) noexcept {
  for (const Function& f : kFunctions)
    if (sameWord(name, nameOf(f.name))) return &f;
  return nullptr;
}

int findField(const Name& name) noexcept {
  return numberOf(kFields, name);
}

int findFrequency(const Name& name) noexcept {
  return numberOf(kFrequencies, name);
}

int findCandle(const Name& name) noexcept {
  constexpr int kLongestPattern = 40;
  char bare[kLongestPattern];
  int length = 0;
  for (int i = 0; i < name.length; ++i) {
    if (name.text[i] == ' ') continue;
    if (length == kLongestPattern) return -1;
    bare[length++] = name.text[i];
  }
  for (std::size_t k = 0; k < candlePatterns.size(); ++k) {
    const Name full = nameOf(candlePatterns[k].name), wanted{bare, length};
    if (sameWord(wanted, full) || sameWord(wanted, {full.text + 2, full.length - 2}))
      return static_cast<int>(k);
  }
  return -1;
}

const QvCatalogueEntry* findEntry(const Name& name) noexcept {
  static const EntryIndex index;
  return index.find(name);
}

bool isValue(const Name& name) noexcept {
  return findField(name) || findFunction(name) || findFrequency(name) || sameWord(name, nameOf("candle")) ||
         sameWord(name, nameOf("not")) || findEntry(name);
}

// A third of the letters may be wrong, one in short words.
void Nearest::offerValues() noexcept {
  for (const Numbered& w : kFields) offer(w.name);
  for (const Function& f : kFunctions) offer(f.name);
  for (const Numbered& w : kFrequencies) offer(w.name);
  for (const char* word : kOthers) offer(word);
  for (int i = 0; i < qvCatalogueSize(); ++i) offer(qvCatalogueItem(i)->shortName);
  for (int i = 0; i < qvCatalogueSize(); ++i) {
    const char* name = qvCatalogueItem(i)->name;
    offer(wanted_.size() > 1 && hasPrefix(wanted_.data()) ? name : name + 2);
  }
}

}  // namespace qv::formula
