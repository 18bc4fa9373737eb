// The arguments of a calculation: series first, then numbers, by place or by name; methods and other choices
// by their own names.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>

#include "formula/parser.h"

namespace qv::formula {

namespace {

constexpr int kMostInputs = 4, kMostParams = 5;

bool isChoice(const QvCatalogueParam& param) noexcept {
  return param.kind == QV_PARAM_METHOD || param.kind == QV_PARAM_CHOICE;
}

// The parameter of a name, or of the first letters of just one; -1 for any other word.
int findParam(const QvCatalogueEntry& entry, const Name& name) noexcept {
  int started = -1, count = 0;
  for (int k = 0; k < entry.paramCount; ++k) {
    const Name param = nameOf(entry.params[k].name);
    if (sameWord(name, param)) return k;
    if (isStartOf(name, param)) started = k, ++count;
  }
  return count == 1 ? started : -1;
}

}  // namespace

struct Parser::Arguments {
  const QvCatalogueEntry& entry;
  int inputCount = 0, numberCount = 0;
  int inputs[kMostInputs] = {};
  int numbers[kMostParams] = {}, numberPlaces[kMostParams] = {};
  int params[kMostParams] = {-1, -1, -1, -1, -1}, places[kMostParams] = {};  // nodes, -1 while not given

  // Of the parameters that are not given yet: how many there are, without the choices or with them.
  int open(bool choices) const noexcept {
    int count = 0;
    for (int k = 0; k < entry.paramCount; ++k)
      count += params[k] < 0 && (choices || !isChoice(entry.params[k]));
    return count;
  }
};

int Parser::call(const QvCatalogueEntry* entry, const Token& name) noexcept {
  if (entry->barsCount > 1) {
    complaint_.say(name.at, "%s: needs a second bar set, which a formula does not have", entry->shortName);
    return kFailed;
  }
  Arguments arguments{*entry};
  if (accept(Symbol::Open) && !accept(Symbol::Close)) {
    do {
      if (const int status = argument(arguments); status < 0) return status;
    } while (accept(Symbol::Comma));
    if (!expect(Symbol::Close, ")")) return kFailed;
  }
  if (const int status = takeNumbers(arguments); status < 0) return status;
  for (int k = arguments.inputCount; k < entry->inputCount; ++k) {
    const auto usual = static_cast<unsigned>(entry->inputs[k].series);
    if (!usual) {
      complaint_.say(name.at, "%s: needs a series (%s) that a bar set does not hold", entry->shortName,
                     entry->inputs[k].name);
      return kFailed;
    }
    arguments.inputs[k] = graph_.field(std::countr_zero(usual), context_);
  }
  int operands[kMostOperands], count = 0;
  for (int k = 0; k < entry->inputCount; ++k) operands[count++] = arguments.inputs[k];
  for (int k = 0; k < entry->paramCount; ++k) operands[count++] = arguments.params[k];
  const int made = graph_.call(entry, operands, context_);
  return made < 0 ? made : selected(entry, made);
}

// One argument: name=value, a choice's name, a number, or a series before all numbers. 0 or a failure.
int Parser::argument(Arguments& arguments) noexcept {
  const QvCatalogueEntry& entry = arguments.entry;
  const Token first = token();
  const bool isNamed =
      first.symbol == Symbol::Word && following().symbol == Symbol::Equal && following().length == 1;
  if (isNamed) {
    const Name name = nameOf(first);
    if (findParam(entry, name) >= 0 || !isValue(name)) return namedArgument(arguments, first);
  }
  if (const int taken = choiceArgument(arguments)) return taken < 0 ? taken : int{QV_OK};
  const int value = expression(1);
  if (value < 0) return value;
  if (graph_[value].constant) {
    if (arguments.numberCount == entry.paramCount) {
      complaint_.say(first.at, "%s takes %d parameter%s", entry.shortName, int{entry.paramCount},
                     entry.paramCount == 1 ? "" : "s");
      return kFailed;
    }
    arguments.numberPlaces[arguments.numberCount] = first.at;
    arguments.numbers[arguments.numberCount++] = value;
    return QV_OK;
  }
  if (arguments.numberCount > 0 || arguments.inputCount == entry.inputCount) {
    const char* rule = arguments.inputCount < entry.inputCount ? "series go before the numbers"
                       : entry.inputCount ? "a number that is the same at every bar expected"
                                          : "takes no series, it reads the bars themselves";
    complaint_.say(first.at, "%s: %s", entry.shortName, rule);
    return kFailed;
  }
  arguments.inputs[arguments.inputCount++] = value;
  return QV_OK;
}

int Parser::namedArgument(Arguments& arguments, const Token& name) noexcept {
  const QvCatalogueEntry& entry = arguments.entry;
  const int param = findParam(entry, nameOf(name));
  if (param < 0) {
    Nearest nearest(nameOf(name));
    for (int k = 0; k < entry.paramCount; ++k) nearest.offer(entry.params[k].name);
    const char* offered = nearest.word();
    if (!offered && entry.paramCount == 1) offered = entry.params[0].name;
    const int shown = std::min(name.length, 40);
    if (offered)
      complaint_.say(name.at, "%s: no parameter %.*s, did you mean %s?", entry.shortName, shown, name.text,
                     offered);
    else
      complaint_.say(name.at, "%s: no parameter %.*s", entry.shortName, shown, name.text);
    return kFailed;
  }
  if (arguments.params[param] >= 0) {
    complaint_.say(name.at, "%s: %s is given twice", entry.shortName, entry.params[param].name);
    return kFailed;
  }
  advance();
  advance();
  arguments.places[param] = token().at;
  if (isChoice(entry.params[param]))
    if (const int taken = choiceArgument(arguments)) return taken < 0 ? taken : int{QV_OK};
  const int value = constant(entry.params[param].name);
  if (value < 0) return value;
  arguments.params[param] = value;
  return QV_OK;
}

// Takes a choice of a parameter that is not given yet: a word, two words, or a text. 1 when there was one, 0
// when there was none, or a failure.
int Parser::choiceArgument(Arguments& arguments) noexcept {
  const QvCatalogueEntry& entry = arguments.entry;
  const Token first = token(), second = following();
  if (first.symbol != Symbol::Word && first.symbol != Symbol::Text) return 0;
  const bool two = first.symbol == Symbol::Word && second.symbol == Symbol::Word;
  if (first.symbol == Symbol::Word && !two && second.symbol != Symbol::Comma &&
      second.symbol != Symbol::Close)
    return 0;
  char name[80];
  if (first.length + second.length > 70) {
    if (first.symbol == Symbol::Word) return 0;
    return unexpected("a value");
  }
  std::snprintf(name, sizeof name, "%.*s%.*s", first.length, first.text, two ? second.length : 0,
                second.text);
  Nearest nearest(nameOf(first));
  for (int k = 0; k < entry.paramCount; ++k) {
    const QvCatalogueParam& param = entry.params[k];
    if (arguments.params[k] >= 0 || !isChoice(param)) continue;
    const int choice = qvCatalogueChoice(&entry, k, name);
    for (int c = 0; c < param.choiceCount; ++c) nearest.offer(param.choices[c]);
    if (choice < 0) continue;
    arguments.params[k] = graph_.number(choice);
    arguments.places[k] = first.at;
    if (arguments.params[k] < 0) return arguments.params[k];
    advance();
    if (two) advance();
    return 1;
  }
  if (first.symbol == Symbol::Word) {
    const bool hasChoices = arguments.open(true) > arguments.open(false);
    return hasChoices && !isValue(nameOf(first)) ? unknown(first, nearest) : 0;
  }
  if (nearest.word())
    complaint_.say(first.at, "%s: unknown name, did you mean %s?", entry.shortName, nearest.word());
  else
    complaint_.say(first.at, "%s: unknown name", entry.shortName);
  return kFailed;
}

// Gives the numbers to the parameters in their order. Choices get one only when every parameter does: they
// have names, and ma(20) is one of 20 bars.
int Parser::takeNumbers(Arguments& arguments) noexcept {
  const QvCatalogueEntry& entry = arguments.entry;
  const bool choicesToo = arguments.numberCount > arguments.open(false);
  if (arguments.numberCount > arguments.open(true)) {
    complaint_.say(arguments.numberPlaces[arguments.numberCount - 1], "%s takes %d parameter%s",
                   entry.shortName, int{entry.paramCount}, entry.paramCount == 1 ? "" : "s");
    return kFailed;
  }
  int next = 0;
  for (int k = 0; k < entry.paramCount; ++k) {
    int& param = arguments.params[k];
    if (param < 0 && next < arguments.numberCount && (choicesToo || !isChoice(entry.params[k]))) {
      arguments.places[k] = arguments.numberPlaces[next];
      param = arguments.numbers[next++];
    } else if (param < 0) {
      param = graph_.number(entry.params[k].defaultValue);
    }
    if (param < 0) return param;
    if (const int status = checkNumber(arguments, k); status < 0) return status;
  }
  return QV_OK;
}

int Parser::checkNumber(const Arguments& arguments, int k) noexcept {
  const Node& node = graph_[arguments.params[k]];
  if (node.kind != Kind::Number) return QV_OK;
  const QvCatalogueParam& param = arguments.entry.params[k];
  const double number = node.number;
  const char* rule = nullptr;
  if (!std::isfinite(number))
    rule = "must be a number";
  else if (param.isInteger && number != std::floor(number))
    rule = "must be a whole number";
  else if (param.kind == QV_PARAM_PERIOD && !(number >= 1))
    rule = "must be at least 1";
  else if (isChoice(param) && !(number >= 0 && number < param.choiceCount))
    rule = "is out of range";
  if (!rule) return QV_OK;
  complaint_.say(arguments.places[k], "%s: %s %s", arguments.entry.shortName, param.name, rule);
  return kFailed;
}

}  // namespace qv::formula
