// The values that a rule compares: what stands between comparisons and the words and, or, not.
#include <algorithm>
#include <charconv>
#include <string_view>

#include "core/characters.h"
#include "runs/screen.h"
#include "runs/words.h"

namespace qv::runs {

namespace {

bool isWordCharacter(char c) {
  return isLetter(c) || isDigit(c) || c == '_' || c == '$' || c == '.';
}

// The length of a sign or word at `i` that separates operands; 0 where there is none.
std::size_t separatorAt(const std::string& rule, std::size_t i) {
  if (std::string_view("<>=!").find(rule[i]) != std::string_view::npos) return 1;
  if (!isLetter(rule[i]) || (i > 0 && isWordCharacter(rule[i - 1]))) return 0;
  std::size_t end = i;
  while (end < rule.size() && isWordCharacter(rule[end])) ++end;
  const std::string word = upper(rule.substr(i, end - i));
  for (const char* separator : {"AND", "OR", "NOT", "CROSSES", "ABOVE", "BELOW"})
    if (word == separator) return end - i;
  return 0;
}

// Without blanks around it, and without brackets that belong to more than this operand.
std::string bare(std::string text) {
  for (;;) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return "";
    text = text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
    const auto opened = std::count(text.begin(), text.end(), '('),
               closed = std::count(text.begin(), text.end(), ')');
    if (opened > closed && text.front() == '(')
      text.erase(0, 1);
    else if (closed > opened && text.back() == ')')
      text.pop_back();
    else
      return text;
  }
}

}  // namespace

std::vector<std::string> operandsOf(const std::string& rule) {
  std::vector<std::string> operands;
  const auto take = [&](const std::string& piece) {
    const std::string text = bare(piece);
    double number;
    const bool named =
        std::any_of(text.begin(), text.end(), isLetter) &&
        std::from_chars(text.data(), text.data() + text.size(), number).ptr != text.data() + text.size();
    const auto same = [&](const std::string& other) { return upper(other) == upper(text); };
    if (named && std::none_of(operands.begin(), operands.end(), same)) operands.push_back(text);
  };
  std::string piece;
  int calls = 0;  // brackets of calls and quotes keep what is in them together
  char quote = 0;
  std::vector<bool> isCall;
  for (std::size_t i = 0; i < rule.size();) {
    const char c = rule[i];
    if (quote) {
      quote = c == quote ? '\0' : quote;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '(' || c == '[') {
      isCall.push_back(c == '[' || (i > 0 && isWordCharacter(rule[i - 1]) && !bare(piece).empty()));
      calls += isCall.back();
    } else if ((c == ')' || c == ']') && !isCall.empty()) {
      calls -= isCall.back();
      isCall.pop_back();
    } else if (const std::size_t length = calls ? 0 : separatorAt(rule, i)) {
      take(piece);
      piece.clear();
      i += length;
      continue;
    }
    piece += c;
    ++i;
  }
  take(piece);
  return operands;
}

}  // namespace qv::runs
