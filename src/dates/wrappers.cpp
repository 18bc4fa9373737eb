// Date functions with 16-bit parts and numbered text formats. They only convert their
// arguments; a "Julian" value is the date number.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "core/memory.h"
#include "dates/pictures.h"
#include "qvlib60/dates.h"

namespace {

using namespace qv::dates;

// '*' stands for the caller's separator.
struct DateFormat {
  const char* picture;
  int order;
};

constexpr DateFormat kDateFormats[] = {
    {"YY*MM*DD", QV_DATE_YMD},   {"YYYY*MM*DD", QV_DATE_YMD}, {"MM*DD*YY", QV_DATE_MDY},
    {"MM*DD*YYYY", QV_DATE_MDY}, {"DD*MM*YY", QV_DATE_DMY},   {"DD*MM*YYYY", QV_DATE_DMY},
    {"YYMMDD", QV_DATE_YMD},     {"YYYYMMDD", QV_DATE_YMD},   {"MMDDYY", QV_DATE_MDY},
    {"MMDDYYYY", QV_DATE_MDY},   {"DDMMYY", QV_DATE_DMY},     {"DDMMYYYY", QV_DATE_DMY},
};

constexpr const char* kTimeFormats[] = {"HH*NN*SS", "HH*NN", "HHNNSS", "HHNN"};

// The formats are numbered from 1; null for other codes.
template <typename T, int N>
const T* numbered(const T (&table)[N], short code) noexcept {
  return code >= 1 && code <= N ? &table[code - 1] : nullptr;
}

int orderOf(short code) noexcept {
  const DateFormat* format = numbered(kDateFormats, code);
  return format ? format->order : QV_DATE_YMD;
}

short narrowed(int value) noexcept {
  return static_cast<short>(std::clamp<int>(value, INT16_MIN, INT16_MAX));
}

// The separator becomes part of the picture: letters in it are fields like any others.
int formatWith(double date, const char* pattern, const char* separator, char* out) noexcept {
  if (!std::strchr(pattern, '*')) return qvFormatDate(date, pattern, out);
  if (!separator) return QV_INVALID_PARM;
  const std::size_t separatorLength = std::strlen(separator);
  // A separator takes the place of its '*' at most twice; the pattern leaves room for the terminator.
  qv::memory::Buffer<char> picture(std::strlen(pattern) + 2 * separatorLength);
  if (!picture.ok()) return QV_MALLOC;
  char* end = picture.data();
  for (; *pattern; ++pattern) {
    if (*pattern != '*') {
      *end++ = *pattern;
    } else {
      std::memcpy(end, separator, separatorLength);
      end += separatorLength;
    }
  }
  *end = '\0';
  return qvFormatDate(date, picture.data(), out);
}

}  // namespace

extern "C" {

double QVCALL qvYMDToJulian(short year, short month, short day) noexcept {
  return qvYMDtoDate(year, month, day, 0, 0, 0);
}

double QVCALL qvHMSToJulian(short hour, short minute, short second) noexcept {
  return qvYMDtoDate(0, 0, 0, hour, minute, second);
}

void QVCALL qvJulianToYMD(double date, short* year, short* month, short* day) noexcept {
  if (!year || !month || !day) return;
  int y, m, d;
  qvDateToYMD(date, &y, &m, &d, nullptr, nullptr, nullptr);
  *year = narrowed(y);
  *month = narrowed(m);
  *day = narrowed(d);
}

void QVCALL qvJulianToHMS(double date, short* hour, short* minute, short* second) noexcept {
  if (!hour || !minute || !second) return;
  int h, m, s;
  qvDateToYMD(date, nullptr, nullptr, nullptr, &h, &m, &s);
  *hour = narrowed(h);
  *minute = narrowed(m);
  *second = narrowed(s);
}

int QVCALL qvJulianDOW(double date) noexcept {
  return qvDayOfWeek(date);
}

int QVCALL qvJulianDif(double date1, double date2) noexcept {
  return qvDateDiff("D", date1, date2);
}

int QVCALL qvYMDDif(short y1, short m1, short d1, short y2, short m2, short d2) noexcept {
  return qvDateDiff("D", qvYMDToJulian(y1, m1, d1), qvYMDToJulian(y2, m2, d2));
}

int QVCALL qvHMSDif(short h1, short m1, short s1, short h2, short m2, short s2) noexcept {
  return qvDateDiff("S", qvHMSToJulian(h1, m1, s1), qvHMSToJulian(h2, m2, s2));
}

double QVCALL qvDateTxtToJulian(const char* text, short code) noexcept {
  return qvDateStrToDate(text, orderOf(code));
}

int QVCALL qvDateTxtVal(const char* text, short code) noexcept {
  return qvDateStrValidate(text, orderOf(code));
}

int QVCALL qvDateTxtDif(const char* text1, const char* text2, short code1, short code2) noexcept {
  if (!text1 || !text2) return QV_INVALID_PARM;
  return qvDateDiff("D", qvDateTxtToJulian(text1, code1), qvDateTxtToJulian(text2, code2));
}

double QVCALL qvTimeTxtToJulian(const char* text, int) noexcept {
  return qvTimeStrToTime(text);
}

int QVCALL qvTimeTxtDif(const char* text1, const char* text2, int, int) noexcept {
  if (!text1 || !text2) return QV_INVALID_PARM;
  return qvDateDiff("S", qvTimeStrToTime(text1), qvTimeStrToTime(text2));
}

int QVCALL qvJulianToDateTxt(double date, short code, const char* separator, char* out) noexcept {
  if (!out) return QV_INVALID_PARM;
  *out = '\0';
  const DateFormat* format = numbered(kDateFormats, code);
  return format ? formatWith(date, format->picture, separator, out) : 0;
}

int QVCALL qvJulianToTimeTxt(double date, short code, const char* separator, char* out) noexcept {
  if (!out) return QV_INVALID_PARM;
  *out = '\0';
  const char* const* picture = numbered(kTimeFormats, code);
  return picture ? formatWith(date, *picture, separator, out) : 0;
}

}  // extern "C"
