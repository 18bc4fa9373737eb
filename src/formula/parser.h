// Reads a formula's text into its node table: precedence climbing over the lexer's tokens. docs/formulas.md
// has the grammar.
#pragma once

#include "formula/graph.h"
#include "formula/lexer.h"
#include "formula/words.h"

namespace qv::formula {

// The message of the first fault, in the caller's buffer.
class Complaint {
 public:
  Complaint(char* text, int size) noexcept : text_(text), size_(text ? size : 0) {
    if (size_ > 0) text_[0] = '\0';
  }
  // "MESSAGE at PLACE"; places are counted from 0 here and from 1 in the message.
  void say(int at, const char* format, ...) noexcept __attribute__((format(printf, 3, 4)));
  void sayCode(int code) noexcept;

 private:
  char* text_;
  int size_;
};

class Parser {
 public:
  Parser(const char* text, int length, QvFormula& f, Complaint& complaint) noexcept;

  // 0 with the whole formula in its table, -1 with a complaint, or -3.
  int run() noexcept;

 private:
  // These give a node, kFailed after a complaint, or Graph::kExhausted.
  static constexpr int kFailed = -1;
  int expression(int level) noexcept;
  int prefixed(int level) noexcept;
  // One level down, which --depth_ leaves; false after a complaint where there are too many.
  bool deeper(int at) noexcept;
  int indexed() noexcept;
  int primary() noexcept;
  int word() noexcept;
  int parameter(const Token& name) noexcept;
  int function(const Function& function) noexcept;
  int compressed(int frequency) noexcept;
  int candle() noexcept;
  int call(const QvCatalogueEntry* entry, const Token& name) noexcept;
  int selected(const QvCatalogueEntry* entry, int call) noexcept;
  int crossing(int left) noexcept;
  int unknown(const Token& word, Nearest nearest) noexcept;

  // The arguments of a calculation, in parser_call.cpp.
  struct Arguments;
  int argument(Arguments& arguments) noexcept;
  int namedArgument(Arguments& arguments, const Token& name) noexcept;
  int choiceArgument(Arguments& arguments) noexcept;
  int takeNumbers(Arguments& arguments) noexcept;
  int checkNumber(const Arguments& arguments, int param) noexcept;

  const Token& token() const noexcept { return tokens_[0]; }
  const Token& following() const noexcept { return tokens_[1]; }
  void advance() noexcept;
  bool accept(Symbol symbol) noexcept;
  bool isWord(const char* word) const noexcept;
  // Refuses to go on unless the symbol stands here; false after a complaint.
  bool expect(Symbol symbol, const char* what) noexcept;
  int unexpected(const char* wanted) noexcept;
  // An argument that must be constant.
  int constant(const char* what) noexcept;

  Lexer lexer_;
  Token tokens_[2];
  QvFormula& f_;
  Graph graph_;
  Complaint& complaint_;
  int context_ = 0;
  int depth_ = 0;
};

}  // namespace qv::formula
