#include "formula/lexer.h"

#include <charconv>

#include "core/characters.h"

namespace qv::formula {

namespace {

constexpr bool isBlank(char c) noexcept {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
constexpr bool beginsWord(char c) noexcept {
  return isLetter(c) || c == '_';
}

}  // namespace

Token Lexer::taken(Symbol symbol, int length) noexcept {
  const Token token{symbol, static_cast<int>(at_ - begin_), at_, length, 0.0};
  at_ += length;
  return token;
}

Token Lexer::number() noexcept {
  Token token{Symbol::Number, static_cast<int>(at_ - begin_), at_, 0, 0.0};
  const auto [end, error] = std::from_chars(at_, end_, token.number);  // whatever the caller's locale is
  if (error != std::errc()) token.symbol = Symbol::BadNumber;
  token.length = static_cast<int>(end - at_);
  at_ = end;
  return token;
}

Token Lexer::quoted() noexcept {
  const char quote = *at_;
  const char* end = at_ + 1;
  while (end < end_ && *end != quote) ++end;
  if (end == end_) return taken(Symbol::BadText, static_cast<int>(end_ - at_));
  Token token = taken(Symbol::Text, static_cast<int>(end - at_) + 1);
  ++token.text;
  token.length -= 2;
  return token;
}

Token Lexer::word(Symbol symbol) noexcept {
  const char* end = at_;
  while (end < end_ && (beginsWord(*end) || isDigit(*end))) ++end;
  return taken(symbol, static_cast<int>(end - at_));
}

Token Lexer::next() noexcept {
  while (at_ < end_ && isBlank(*at_)) ++at_;
  if (at_ == end_) return taken(Symbol::End, 0);
  const char c = *at_, after = at_ + 1 < end_ ? at_[1] : '\0';
  if (isDigit(c) || (c == '.' && isDigit(after))) return number();
  if (beginsWord(c)) return word(Symbol::Word);
  if (c == '$' && beginsWord(after)) {
    ++at_;
    Token token = word(Symbol::Parameter);
    --token.at;
    return token;
  }
  switch (c) {
    case '"':
    case '\'':
      return quoted();
    case '+':
      return taken(Symbol::Plus, 1);
    case '-':
      return taken(Symbol::Minus, 1);
    case '*':
      return taken(Symbol::Times, 1);
    case '/':
      return taken(Symbol::Over, 1);
    case '(':
      return taken(Symbol::Open, 1);
    case ')':
      return taken(Symbol::Close, 1);
    case '[':
      return taken(Symbol::OpenIndex, 1);
    case ']':
      return taken(Symbol::CloseIndex, 1);
    case ',':
      return taken(Symbol::Comma, 1);
    case '.':
      return taken(Symbol::Dot, 1);
    case '<':
      return after == '=' ? taken(Symbol::LessOrEqual, 2) : taken(Symbol::Less, 1);
    case '>':
      return after == '=' ? taken(Symbol::GreaterOrEqual, 2) : taken(Symbol::Greater, 1);
    case '=':
      return taken(Symbol::Equal, after == '=' ? 2 : 1);
    case '!':
      return after == '=' ? taken(Symbol::NotEqual, 2) : taken(Symbol::BadByte, 1);
    default:
      return taken(Symbol::BadByte, 1);
  }
}

}  // namespace qv::formula
