// Reading dates and times from text: tolerant parsers that look at groups of letters and digits only.
#include <algorithm>
#include <cstring>

#include "core/characters.h"
#include "dates/calendar.h"
#include "dates/pictures.h"
#include "qvlib60/dates.h"

namespace {

using namespace qv;
using namespace qv::dates;

bool isAfternoonMark(char c) noexcept {
  return c == 'P' || c == 'p';
}

// A group of letters or a group of digits, in the caller's text; only its first 8 characters count.
struct Token {
  const char* text = nullptr;
  int length = 0;

  // Characters from..to - 1 as far as they exist.
  Token part(int from, int to) const noexcept {
    from = std::min(from, length);
    return {text + from, std::min(to, length) - from};
  }
  // 0 for letters and for an empty token.
  int number() const noexcept {
    int value = 0;
    for (int i = 0; i < length && isDigit(text[i]); ++i) value = value * 10 + (text[i] - '0');
    return value;
  }
};

constexpr int kTokens = 8;
constexpr int kTokenLength = 8;

struct Tokens {
  Token at[kTokens];
  int last = 0;  // number of the last token; kTokens when the text has more than that
};

// The first character never opens a token, so a text that begins with a separator leaves token 0
// empty: callers rely on such a text being refused.
void tokenize(const char* text, Tokens& tokens) noexcept {
  char previous = '\0';
  for (const char* p = text; *p; previous = *p++) {
    const bool digit = isDigit(*p);
    if (!digit && !isLetter(*p)) continue;
    const bool continues = digit ? isDigit(previous) : isLetter(previous);
    if (p != text && !continues && ++tokens.last == kTokens) return;
    Token& token = tokens.at[tokens.last];
    if (token.length == 0) token.text = p;
    if (token.length < kTokenLength) ++token.length;
  }
}

// Dates, and times after them, that are written without separators: 20080115 093000.
void splitCompactForms(Tokens& tokens, int format) noexcept {
  if (tokens.last == 1) {
    const Token time = tokens.at[1];
    for (int k = 0; k < 3; ++k) tokens.at[3 + k] = time.part(2 * k, 2 * k + 2);
    tokens.last += 2;
  }
  const Token date = tokens.at[0];
  const int first = date.length >= 7 && format == QV_DATE_YMD ? 4 : 2;
  tokens.at[0] = date.part(0, first);
  tokens.at[1] = date.part(first, first + 2);
  tokens.at[2] = date.part(first + 2, kTokenLength);
  tokens.last += 2;
}

// 1 .. 12 when the token begins with the name of a month, else 0.
int namedMonth(const Token& token) noexcept {
  constexpr const char* kNames[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                    "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
  if (token.length < 3) return 0;
  for (int m = 0; m < 12; ++m) {
    const char* name = kNames[m];
    if (upperCase(token.text[0]) == name[0] && upperCase(token.text[1]) == name[1] &&
        upperCase(token.text[2]) == name[2])
      return m + 1;
  }
  return 0;
}

struct DateTime {
  int year, month, day, hour, minute, second;
};

DateTime parseDate(const char* text, int format) noexcept {
  struct Order {
    int year, month, day;
  };
  constexpr Order kOrders[] = {{0, 1, 2}, {2, 0, 1}, {2, 1, 0}};
  if (format < QV_DATE_YMD || format > QV_DATE_DMY) format = QV_DATE_YMD;

  Tokens tokens;
  tokenize(text, tokens);
  if (tokens.last < 2) splitCompactForms(tokens, format);
  const Order order = kOrders[format];
  DateTime d{};
  d.year = widenedYear(tokens.at[order.year].number());
  d.month = tokens.at[order.month].number();
  if (d.month == 0) d.month = namedMonth(tokens.at[order.month]);
  d.day = tokens.at[order.day].number();
  if (tokens.last >= 3) d.hour = tokens.at[3].number();
  if (tokens.last >= 4) d.minute = tokens.at[4].number();
  if (tokens.last >= 5) d.second = tokens.at[5].number();
  // Whatever its number, the last token may be the marker; a morning marker changes nothing.
  if (tokens.last < kTokens && tokens.at[tokens.last].length > 0 &&
      isAfternoonMark(*tokens.at[tokens.last].text) && d.hour < 12)
    d.hour += 12;
  return d;
}

DateTime parseTime(const char* text) noexcept {
  const char* p = text;
  while (*p && !isDigit(*p)) ++p;
  // A field ends at any other character and after two digits, so 093000 is 9:30:00 and two
  // separators in a row leave a field 0.
  int fields[3] = {};
  for (int& field : fields) {
    int digits = 0;
    while (digits < 2 && isDigit(*p)) {
      field = field * 10 + (*p++ - '0');
      ++digits;
    }
    if (*p && !isDigit(*p)) ++p;
  }
  DateTime t{0, 0, 0, fields[0], fields[1], fields[2]};
  if (t.hour < 12 && std::strpbrk(text, "Pp")) t.hour += 12;
  return t;
}

int isValid(const DateTime& d) noexcept {
  return qvDateValidate(d.year, d.month, d.day, d.hour, d.minute, d.second);
}
// 0.0 when invalid.
double dateNumber(const DateTime& d) noexcept {
  return qvYMDtoDate(d.year, d.month, d.day, d.hour, d.minute, d.second);
}
void store(int* where, int value) noexcept {
  if (where) *where = value;
}

}  // namespace

extern "C" {

int QVCALL qvDateStrToYMD(const char* text, int format, int* year, int* month, int* day, int* hour,
                          int* minute, int* second) noexcept {
  if (!text) return QV_INVALID_PARM;
  const DateTime d = parseDate(text, format);
  store(year, d.year);
  store(month, d.month);
  store(day, d.day);
  store(hour, d.hour);
  store(minute, d.minute);
  store(second, d.second);
  return isValid(d);
}

double QVCALL qvDateStrToDate(const char* text, int format) noexcept {
  return text ? dateNumber(parseDate(text, format)) : 0.0;
}

int QVCALL qvDateStrValidate(const char* text, int format) noexcept {
  return text ? isValid(parseDate(text, format)) : QV_INVALID_PARM;
}

int QVCALL qvTimeStrToHMS(const char* text, int* hour, int* minute, int* second) noexcept {
  if (!text) return QV_INVALID_PARM;
  const DateTime t = parseTime(text);
  store(hour, t.hour);
  store(minute, t.minute);
  store(second, t.second);
  return isValid(t);
}

double QVCALL qvTimeStrToTime(const char* text) noexcept {
  return text ? dateNumber(parseTime(text)) : 0.0;
}

}  // extern "C"
