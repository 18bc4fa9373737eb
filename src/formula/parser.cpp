#include "formula/parser.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>

#include "core/characters.h"
#include "patterns/candle_names.h"

namespace qv::formula {

namespace {

// What binds tighter has the higher level.
enum Level { kOr = 1, kAnd, kNot, kComparison, kSum, kProduct, kSign };

struct Operator {
  int level;
  Kind kind;
  bool swapped;  // a > b is b < a
};

constexpr Operator kNoOperator{0, Kind::Number, false};

Operator operatorOf(Symbol symbol) noexcept {
  switch (symbol) {
    case Symbol::Plus:
      return {kSum, Kind::Add, false};
    case Symbol::Minus:
      return {kSum, Kind::Subtract, false};
    case Symbol::Times:
      return {kProduct, Kind::Multiply, false};
    case Symbol::Over:
      return {kProduct, Kind::Divide, false};
    case Symbol::Less:
      return {kComparison, Kind::Less, false};
    case Symbol::LessOrEqual:
      return {kComparison, Kind::LessOrEqual, false};
    case Symbol::Greater:
      return {kComparison, Kind::Less, true};
    case Symbol::GreaterOrEqual:
      return {kComparison, Kind::LessOrEqual, true};
    case Symbol::Equal:
      return {kComparison, Kind::Equal, false};
    case Symbol::NotEqual:
      return {kComparison, Kind::NotEqual, false};
    default:
      return kNoOperator;
  }
}

// The operator that a token begins.
Operator operatorAt(const Token& token) noexcept {
  if (token.symbol != Symbol::Word) return operatorOf(token.symbol);
  const Name word = nameOf(token);
  if (sameWord(word, nameOf("and"))) return {kAnd, Kind::And, false};
  if (sameWord(word, nameOf("or"))) return {kOr, Kind::Or, false};
  if (sameWord(word, nameOf("crosses"))) return {kComparison, Kind::CrossesAbove, false};
  return kNoOperator;
}

}  // namespace

void Complaint::say(int at, const char* format, ...) noexcept {
  if (size_ < 1) return;
  char message[160];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(message, sizeof message, format, arguments);
  va_end(arguments);
  std::snprintf(text_, static_cast<std::size_t>(size_), "%s at %d", message, at + 1);
}

void Complaint::sayCode(int code) noexcept {
  char message[32];
  qvErrDesc(code, message);
  if (size_ > 0) std::snprintf(text_, static_cast<std::size_t>(size_), "%s", message);
}

Parser::Parser(const char* text, int length, QvFormula& f, Complaint& complaint) noexcept
    : lexer_(text, length), f_(f), graph_(f), complaint_(complaint) {
  tokens_[0] = lexer_.next();
  tokens_[1] = lexer_.next();
}

void Parser::advance() noexcept {
  tokens_[0] = tokens_[1];
  tokens_[1] = lexer_.next();
}

bool Parser::accept(Symbol symbol) noexcept {
  if (token().symbol != symbol) return false;
  advance();
  return true;
}

bool Parser::isWord(const char* word) const noexcept {
  return token().symbol == Symbol::Word && sameWord(nameOf(token()), nameOf(word));
}

bool Parser::expect(Symbol symbol, const char* what) noexcept {
  if (accept(symbol)) return true;
  unexpected(what);
  return false;
}

int Parser::unexpected(const char* wanted) noexcept {
  const Token& t = token();
  const auto byte = static_cast<unsigned char>(t.length ? t.text[0] : 0);
  if (t.symbol == Symbol::End)
    complaint_.say(t.at, "%s expected, the formula ends", wanted);
  else if (t.symbol == Symbol::BadNumber)
    complaint_.say(t.at, "number out of range");
  else if (t.symbol == Symbol::BadText)
    complaint_.say(t.at, "no closing quote");
  else if (byte < 0x20 || byte > 0x7E)
    complaint_.say(t.at, "%s expected, not the byte 0x%02X", wanted, static_cast<unsigned>(byte));
  else
    complaint_.say(t.at, "%s expected, not %.*s", wanted,
                   t.symbol == Symbol::Text ? 1 : std::min(t.length, 40),
                   t.symbol == Symbol::Text ? "\"" : t.text);
  return kFailed;
}

int Parser::run() noexcept {
  const int root = expression(kOr);
  if (root >= 0 && token().symbol != Symbol::End) return unexpected("an operator");
  return root < 0 ? root : graph_.finish(root);
}

// Operators of this level and tighter ones. Comparisons don't chain.
int Parser::expression(int level) noexcept {
  int left = prefixed(level);
  for (Operator next = operatorAt(token()); left >= 0 && next.level >= level; next = operatorAt(token())) {
    if (next.kind == Kind::CrossesAbove) {
      left = crossing(left);
    } else {
      advance();
      const int right = expression(next.level + 1);
      if (right < 0) return right;
      left = next.swapped ? graph_.itemwise(next.kind, right, left) : graph_.itemwise(next.kind, left, right);
    }
    if (left >= 0 && next.level == kComparison && operatorAt(token()).level == kComparison) {
      complaint_.say(token().at, "comparisons do not chain: join two with and");
      return kFailed;
    }
  }
  return left;
}

int Parser::crossing(int left) noexcept {
  advance();
  const bool above = isWord("above");
  if (!above && !isWord("below")) return unexpected("above or below");
  advance();
  const int right = expression(kSum);
  if (right < 0) return right;
  return above ? graph_.itemwise(Kind::CrossesAbove, left, right)
               : graph_.itemwise(Kind::CrossesAbove, right, left);
}

bool Parser::deeper(int at) noexcept {
  if (++depth_ <= QV_FORMULA_MAX_DEPTH) return true;
  complaint_.say(at, "more than %d levels", int{QV_FORMULA_MAX_DEPTH});
  return false;
}

int Parser::prefixed(int level) noexcept {
  const bool negated = isWord("not"), minus = token().symbol == Symbol::Minus;
  if (!negated && !minus) return indexed();
  if (negated && level > kNot) {
    complaint_.say(token().at, "not needs brackets here");
    return kFailed;
  }
  if (!deeper(token().at)) return kFailed;
  advance();
  const int operand = expression(negated ? kNot : kSign);
  --depth_;
  return operand < 0 ? operand : graph_.itemwise(negated ? Kind::Not : Kind::Negate, operand);
}

// A value and how many bars back: x[3].
int Parser::indexed() noexcept {
  int value = primary();
  while (value >= 0 && token().symbol == Symbol::OpenIndex) {
    const int at = token().at;
    if (!deeper(at)) return kFailed;
    advance();
    const int back = constant("a number of bars");
    --depth_;
    if (back < 0) return back;
    if (!expect(Symbol::CloseIndex, "]")) return kFailed;
    const Node& number = graph_[back];
    if (number.kind == Kind::Number && !(number.number >= 0 && number.number == std::floor(number.number))) {
      complaint_.say(at, "bars back must be a whole number, 0 or more");
      return kFailed;
    }
    if (!graph_[value].constant) value = graph_.window(Kind::Shift, value, back);
  }
  return value;
}

int Parser::primary() noexcept {
  const Token first = token();
  switch (first.symbol) {
    case Symbol::Number:
      advance();
      return graph_.number(first.number);
    case Symbol::Parameter:
      advance();
      return parameter(first);
    case Symbol::Word:
      return word();
    case Symbol::Open:
      break;
    default:
      return unexpected("a value");
  }
  if (!deeper(first.at)) return kFailed;
  advance();
  const int inside = expression(kOr);
  --depth_;
  if (inside >= 0 && !expect(Symbol::Close, ")")) return kFailed;
  return inside;
}

int Parser::constant(const char* what) noexcept {
  const int at = token().at, value = expression(kOr);
  if (value < 0 || graph_[value].constant) return value;
  complaint_.say(at, "%s must not change from bar to bar", what);
  return kFailed;
}

int Parser::parameter(const Token& name) noexcept {
  if (name.length > kLongestName) {
    complaint_.say(name.at, "a parameter's name has at most %d letters", kLongestName);
    return kFailed;
  }
  int index = 0;
  while (index < f_.parameterCount &&
         !sameWord(nameOf(name), nameOf(f_.parameters[static_cast<std::size_t>(index)].name)))
    ++index;
  if (index == QV_FORMULA_MAX_PARAMETERS) {
    complaint_.say(name.at, "more than %d parameters", int{QV_FORMULA_MAX_PARAMETERS});
    return kFailed;
  }
  if (index == f_.parameterCount) {
    if (!f_.parameters.grow(static_cast<std::size_t>(index) + 1)) return Graph::kExhausted;
    Parameter& added = f_.parameters[static_cast<std::size_t>(index)];
    added = {};
    std::memcpy(added.name, name.text, static_cast<std::size_t>(name.length));
    added.value = std::numeric_limits<double>::quiet_NaN();
    ++f_.parameterCount;
  }
  return graph_.parameter(index);
}

int Parser::word() noexcept {
  const Token name = token();
  if (isWord("and") || isWord("or") || isWord("crosses")) return unexpected("a value");
  advance();
  if (!deeper(name.at)) return kFailed;
  int value = kFailed;
  if (const int series = findField(nameOf(name)))
    value = graph_.field(series, context_);
  else if (const Function* known = findFunction(nameOf(name)))
    value = function(*known);
  else if (const int frequency = findFrequency(nameOf(name)))
    value = compressed(frequency);
  else if (sameWord(nameOf(name), nameOf("candle")))
    value = candle();
  else if (const QvCatalogueEntry* entry = findEntry(nameOf(name)))
    value = call(entry, name);
  else
    value = unknown(name, Nearest(nameOf(name)));
  --depth_;
  return value;
}

// `nearest` may have been offered what else could stand here.
int Parser::unknown(const Token& word, Nearest nearest) noexcept {
  nearest.offerValues();
  const int shown = std::min(word.length, 40);
  if (nearest.word())
    complaint_.say(word.at, "%.*s: unknown, did you mean %s?", shown, word.text, nearest.word());
  else
    complaint_.say(word.at, "%.*s: unknown", shown, word.text);
  return kFailed;
}

int Parser::function(const Function& function) noexcept {
  int operands[3] = {};
  if (!expect(Symbol::Open, "(")) return kFailed;
  const bool window = function.kind == Kind::Highest || function.kind == Kind::Lowest;
  for (int k = 0; k < function.operands; ++k) {
    if (k > 0 && !expect(Symbol::Comma, ",")) return kFailed;
    const int at = token().at;
    operands[k] = window && k == 1 ? constant("a period") : expression(kOr);
    if (operands[k] < 0) return operands[k];
    const Node& operand = graph_[operands[k]];
    if (window && k == 1 && operand.kind == Kind::Number &&
        !(operand.number >= 1 && operand.number == std::floor(operand.number))) {
      complaint_.say(at, "%s: the period must be a whole number from 1", function.name);
      return kFailed;
    }
  }
  if (token().symbol == Symbol::Comma) {
    complaint_.say(token().at, "%s takes %d value%s", function.name, function.operands,
                   function.operands == 1 ? "" : "s");
    return kFailed;
  }
  if (!expect(Symbol::Close, ")")) return kFailed;
  if (window)
    return graph_[operands[0]].constant ? operands[0]
                                        : graph_.window(function.kind, operands[0], operands[1]);
  return function.operands == 1   ? graph_.itemwise(function.kind, operands[0])
         : function.operands == 2 ? graph_.itemwise(function.kind, operands[0], operands[1])
                                  : graph_.itemwise(function.kind, operands[0], operands[1], operands[2]);
}

int Parser::compressed(int frequency) noexcept {
  if (!expect(Symbol::Open, "(")) return kFailed;
  const int outer = context_, inner = graph_.context(outer, frequency);
  if (inner < 0) return inner;
  context_ = inner;
  const int value = expression(kOr);
  context_ = outer;
  if (value < 0) return value;
  if (!expect(Symbol::Close, ")")) return kFailed;
  return graph_.coarse(value, outer);
}

int Parser::candle() noexcept {
  if (!expect(Symbol::Open, "(")) return kFailed;
  const Token pattern = token();
  if (pattern.symbol != Symbol::Text) return unexpected("a candle's name in quotes");
  advance();
  const int index = findCandle(nameOf(pattern));
  if (index < 0) {
    Nearest nearest(nameOf(pattern));
    for (const NamedCandlePattern& known : candlePatterns) nearest.offer(known.name + 2);
    if (nearest.word())
      complaint_.say(pattern.at, "no candle of this name, did you mean %s?", nearest.word());
    else
      complaint_.say(pattern.at, "no candle of this name");
    return kFailed;
  }
  const int at = following().at;
  const int period = accept(Symbol::Comma) ? constant("a period") : graph_.number(20);
  if (period < 0) return period;
  if (graph_[period].kind == Kind::Number && !(graph_[period].number >= 1)) {
    complaint_.say(at, "candle: the period must be at least 1");
    return kFailed;
  }
  if (!expect(Symbol::Close, ")")) return kFailed;
  return graph_.candle(index, period, context_);
}

// The output of a call that is named behind it, or the main one.
int Parser::selected(const QvCatalogueEntry* entry, int call) noexcept {
  int output = entry->mainOutput;
  if (token().symbol == Symbol::Dot) {
    advance();
    const Token name = token();
    if (name.symbol != Symbol::Word) return unexpected("an output's name");
    Nearest nearest(nameOf(name));
    output = -1;
    for (int k = 0; k < entry->outputCount; ++k) {
      if (sameWord(nameOf(name), nameOf(entry->outputs[k].name))) output = k;
      nearest.offer(entry->outputs[k].name);
    }
    if (output < 0) {
      complaint_.say(name.at, "%s: no output %.*s, did you mean %s?", entry->shortName,
                     std::min(name.length, 40), name.text,
                     nearest.word() ? nearest.word() : entry->outputs[entry->mainOutput].name);
      return kFailed;
    }
    advance();
  }
  return call + 1 + output;
}

}  // namespace qv::formula
