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

constexpr int kLongestCompared = 40;

// Letters to change, insert, leave out or swap with their neighbour.
int distanceOf(const Name& a, const Name& b) noexcept {
  int rows[3][kLongestCompared + 1];
  int *before = rows[0], *last = rows[1], *now = rows[2];
  for (int j = 0; j <= b.length; ++j) last[j] = j;
  for (int i = 1; i <= a.length; ++i) {
    now[0] = i;
    for (int j = 1; j <= b.length; ++j) {
      const char x = upperCase(a.text[i - 1]), y = upperCase(b.text[j - 1]);
      now[j] = std::min({last[j] + 1, now[j - 1] + 1, last[j - 1] + (x != y)});
      if (i > 1 && j > 1 && x == upperCase(b.text[j - 2]) && upperCase(a.text[i - 2]) == y)
        now[j] = std::min(now[j], before[j - 2] + 1);
    }
    int* const free = before;
    before = last;
    last = now;
    now = free;
  }
  return last[b.length];
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
  char bare[kLongestCompared];
  int length = 0;
  for (int i = 0; i < name.length; ++i) {
    if (name.text[i] == ' ') continue;
    if (length == kLongestCompared) return -1;
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
Nearest::Nearest(const Name& wanted) noexcept
    : wanted_(wanted), distance_(std::max(1, wanted.length / 3) + 1) {}

void Nearest::offer(const char* word) noexcept {
  const Name name = nameOf(word);
  if (std::max(wanted_.length, name.length) > kLongestCompared) return;
  const int distance = distanceOf(wanted_, name);
  if (distance >= distance_) return;
  distance_ = distance;
  best_ = word;
}

void Nearest::offerValues() noexcept {
  for (const Numbered& w : kFields) offer(w.name);
  for (const Function& f : kFunctions) offer(f.name);
  for (const Numbered& w : kFrequencies) offer(w.name);
  for (const char* word : kOthers) offer(word);
  for (int i = 0; i < qvCatalogueSize(); ++i) offer(qvCatalogueItem(i)->shortName);
  for (int i = 0; i < qvCatalogueSize(); ++i) {
    const char* name = qvCatalogueItem(i)->name;
    offer(hasPrefix(wanted_.length > 1 ? wanted_.text : "  ") ? name : name + 2);
  }
}

}  // namespace qv::formula
