// Printing dates by pictures ("yyyy/mm/dd hh:nn:ss"), and the pictures of the default format.
#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>

#include "core/characters.h"
#include "core/numbers.h"
#include "dates/pictures.h"
#include "qvlib60/dates.h"

namespace {

using namespace qv::dates;

std::atomic<int> defaultFormat{QV_DATE_YMD};

// By kind, then by default format.
constexpr const char* kPictures[3][3] = {
    {"yyyy/mm/dd", "mm/dd/yyyy", "dd/mm/yyyy"},
    {"yy/mm/dd hh:nn:ss", "mm/dd/yy hh:nn:ss", "dd/mm/yy hh:nn:ss"},
    {"yyyy/mm/dd hh:nn:ss", "mm/dd/yyyy hh:nn:ss", "dd/mm/yyyy hh:nn:ss"},
};

char digit(int value) noexcept {
  return static_cast<char>('0' + value % 10);
}

char* putTwoDigits(char* out, int value) noexcept {
  *out++ = digit(value / 10);
  *out++ = digit(value);
  return out;
}

// A single letter in the picture prints a single digit where that is enough.
char* putField(char* out, int value, std::size_t run) noexcept {
  if (run >= 2 || value >= 10) return putTwoDigits(out, value);
  *out++ = digit(value);
  return out;
}

// The field has four digits: years outside 0 .. 9999 are printed as the nearer of these.
char* putYear(char* out, int year, std::size_t run) noexcept {
  year = std::clamp(year, 0, 9999);
  if (run == 4) out = putTwoDigits(out, year / 100);
  return putTwoDigits(out, year % 100);
}

// The marker "AM/PM" or "A/P" that begins `picture`: the part for the hour. Of a marker that the end
// of the picture cuts short only the characters that are there are written. Advances `picture`.
char* putMarker(char* out, const char*& picture, bool afternoon) noexcept {
  const std::size_t partLength = picture[1] == '/' ? 1 : 2;
  const std::size_t length = 2 * partLength + 1;
  const std::size_t first = afternoon ? partLength + 1 : 0;
  std::size_t i = 0;
  for (; i < length && picture[i]; ++i)
    if (i >= first && i < first + partLength) *out++ = picture[i];
  picture += i;
  return out;
}

}  // namespace

const char* qv::dates::defaultPicture(Picture kind) noexcept {
  return kPictures[static_cast<int>(kind)][defaultFormat.load(std::memory_order_relaxed)];
}

extern "C" {

int QVCALL qvFormatDate(double date, const char* picture, char* out) noexcept {
  if (!out) return QV_INVALID_PARM;
  *out = '\0';
  if (!picture) return QV_INVALID_PARM;

  int year, month, day, hour, minute, second;
  qvDateToYMD(date, &year, &month, &day, &hour, &minute, &second);
  int shownHour = hour;
  if (std::strpbrk(picture, "Aa")) shownHour = hour == 0 ? 12 : hour > 12 && hour < 24 ? hour - 12 : hour;

  char* end = out;
  bool afterHour = false;  // an M means minutes after an hour, until the next M or N
  while (*picture) {
    const char letter = qv::upperCase(*picture);
    if (letter == 'A') {
      end = putMarker(end, picture, hour >= 12);
      continue;
    }
    std::size_t run = 1;
    while (qv::upperCase(picture[run]) == letter) ++run;
    switch (letter) {
      case 'Y':
        end = putYear(end, year, run);
        break;
      case 'M':
        end = putField(end, afterHour ? minute : month, run);
        afterHour = false;
        break;
      case 'D':
        end = putField(end, day, run);
        break;
      case 'H':
        end = putField(end, shownHour, run);
        afterHour = true;
        break;
      case 'N':
        end = putField(end, minute, run);
        afterHour = false;
        break;
      case 'S':
        end = putField(end, second, run);
        break;
      default:
        std::memcpy(end, picture, run);
        end += run;
        break;
    }
    picture += run;
  }
  *end = '\0';
  return qv::saturate(end - out);
}

void QVCALL qvSetDefaultDateFormat(int format) noexcept {
  if (format >= QV_DATE_YMD && format <= QV_DATE_DMY) defaultFormat.store(format, std::memory_order_relaxed);
}

}  // extern "C"
