// A formula's text as tokens.
#pragma once

namespace qv::formula {

enum class Symbol : unsigned char {
  End,
  Number,
  Word,
  Parameter,  // $name; the text is the name
  Text,       // in quotes; the text is what stands between them
  Plus,
  Minus,
  Times,
  Over,
  Open,
  Close,
  OpenIndex,
  CloseIndex,
  Comma,
  Dot,
  Less,
  LessOrEqual,
  Greater,
  GreaterOrEqual,
  Equal,
  NotEqual,
  BadNumber,  // too large or too small for a double
  BadText,    // no closing quote
  BadByte,
};

struct Token {
  Symbol symbol = Symbol::End;
  int at = 0;  // of the first character in the formula, from 0
  const char* text = nullptr;
  int length = 0;
  double number = 0.0;
};

class Lexer {
 public:
  Lexer(const char* text, int length) noexcept : begin_(text), at_(text), end_(text + length) {}
  Token next() noexcept;

 private:
  Token number() noexcept;
  Token quoted() noexcept;
  Token word(Symbol symbol) noexcept;
  Token taken(Symbol symbol, int length) noexcept;

  const char *begin_, *at_, *end_;
};

}  // namespace qv::formula
