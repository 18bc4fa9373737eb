// The words of the language that are no calculations, comparison of words, and the nearest known word to a
// mistyped one.
#pragma once

#include "core/nearest.h"
#include "formula/lexer.h"
#include "formula/nodes.h"

namespace qv::formula {

// A stretch of a text.
struct Name {
  const char* text = nullptr;
  int length = 0;
};

Name nameOf(const char* text) noexcept;
inline Name nameOf(const Token& token) noexcept {
  return {token.text, token.length};
}
// In any case.
bool sameWord(const Name& a, const Name& b) noexcept;
bool isStartOf(const Name& word, const Name& whole) noexcept;

// Functions with a fixed number of operands, of which the last may have to be constant.
struct Function {
  const char* name;
  Kind kind;
  int operands;
};
const Function* findFunction(const Name& name) noexcept;

// The series of a bar set by name: 1 open .. 6 open interest; 0 for any other word.
int findField(const Name& name) noexcept;

// The frequency of qvGroupBarsDate of "weekly", "monthly", "quarterly", "yearly"; 0 for any other word.
int findFrequency(const Name& name) noexcept;

// The pattern of a candle by its name, in any case, with or without blanks and prefix: its index in
// candlePatterns or -1.
int findCandle(const Name& name) noexcept;

// The calculation of a short or full name; null for any other.
const QvCatalogueEntry* findEntry(const Name& name) noexcept;

// Whether the word begins a value.
bool isValue(const Name& name) noexcept;

// The nearest word to a mistyped one.
class Nearest : public NearestWord {
 public:
  explicit Nearest(const Name& wanted) noexcept
      : NearestWord({wanted.text, static_cast<std::size_t>(wanted.length)}) {}
  void offerValues() noexcept;  // everything that may stand for a value
};

}  // namespace qv::formula
