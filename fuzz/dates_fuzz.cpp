// Dates: what a text means, what a date number means, and the pictures that it is printed by.
#include <memory>

#include "input.h"

namespace qvfuzz {
namespace {

bool isOneOf(char c, const char* letters) {
  return c && std::strchr(letters, c);
}

// The room that a picture is promised to do with.
std::size_t roomOf(const std::string& picture) {
  std::size_t room = picture.size() + 1;
  for (std::size_t i = 0; i < picture.size(); ++i)
    if (isOneOf(picture[i], "YMDHNSymdhns") && (i == 0 || (picture[i - 1] | 32) != (picture[i] | 32)) &&
        (i + 1 == picture.size() || (picture[i + 1] | 32) != (picture[i] | 32)))
      ++room;
  return room;
}

void print(double date, const std::string& picture) {
  const std::unique_ptr<char[]> out(new char[roomOf(picture)]);
  const int length = qvFormatDate(date, picture.c_str(), out.get());
  QV_REQUIRE(length >= 0 && std::strlen(out.get()) == static_cast<std::size_t>(length), "%d, %s", length,
             out.get());
}

void parse(const std::string& text, int format) {
  int y = 0, m = 0, d = 0, h = 0, n = 0, s = 0;
  const int valid = qvDateStrToYMD(text.c_str(), format, &y, &m, &d, &h, &n, &s);
  const double date = qvDateStrToDate(text.c_str(), format);
  QV_REQUIRE(valid == qvDateStrValidate(text.c_str(), format) && (valid == 0 || valid == 1), "%s",
             text.c_str());
  QV_REQUIRE(sameBits(date, valid ? qvYMDtoDate(y, m, d, h, n, s) : 0.0), "%s is %.17g", text.c_str(), date);
  // A text's year below 101 means another one; seconds of the far future are finer than a double is there.
  if (valid && (y == 0 || (y > 100 && y < 20000))) {
    int y2, m2, d2, h2, n2, s2;
    qvDateToYMD(date, &y2, &m2, &d2, &h2, &n2, &s2);
    QV_REQUIRE(h == h2 && n == n2 && s == s2, "%s: %d %d %d", text.c_str(), h2, n2, s2);
    QV_REQUIRE(y == 0 || (y == y2 && m == m2 && d == d2), "%s: %d %d %d", text.c_str(), y2, m2, d2);
    char out[40];
    if (y >= 1000 && y <= 9999) {
      qvFormatDate(date, "YYYY-MM-DD HH:NN:SS", out);
      QV_REQUIRE(sameBits(qvDateStrToDate(out, QV_DATE_YMD), date), "%s", out);
    }
  }
  int h3, n3, s3;
  const int time = qvTimeStrToHMS(text.c_str(), &h3, &n3, &s3);
  QV_REQUIRE(sameBits(qvTimeStrToTime(text.c_str()), time ? qvYMDtoDate(0, 0, 0, h3, n3, s3) : 0.0), "%s",
             text.c_str());
  const auto code = static_cast<short>(format);
  qvDateTxtToJulian(text.c_str(), code);
  qvDateTxtVal(text.c_str(), code);
  qvTimeTxtToJulian(text.c_str(), format);
}

void numbers(Input& in, double date) {
  int y, m, d, h, n, s;
  qvDateToYMD(date, &y, &m, &d, &h, &n, &s);
  QV_REQUIRE(h >= 0 && h <= 24 && n >= 0 && n < 60 && s >= 0 && s < 60, "%.17g: %d %d %d", date, h, n, s);
  if (std::fabs(date) >= 1 && y > 100 && y < 9999 && h < 24) {
    QV_REQUIRE(qvDateValidate(y, m, d, h, n, s) == 1, "%.17g: %d %d %d", date, y, m, d);
    int y2, m2, d2, h2, n2, s2;
    qvDateToYMD(qvYMDtoDate(y, m, d, h, n, s), &y2, &m2, &d2, &h2, &n2, &s2);
    QV_REQUIRE(y == y2 && m == m2 && d == d2 && h == h2 && n == n2 && s == s2, "%.17g", date);
  }
  QV_REQUIRE(qvDayOfWeek(date) >= 0 && qvDayOfWeek(date) <= 6, "%.17g", date);
  QV_REQUIRE(qvJulianDOW(date) == qvDayOfWeek(date), "%.17g", date);
  const double other = in.number();
  const int a = in.integer(), b = in.integer(), c = in.integer();
  const auto x = static_cast<short>(a), z = static_cast<short>(b), w = static_cast<short>(c);
  short part[3];
  qvJulianToYMD(date, &part[0], &part[1], &part[2]);
  qvJulianToHMS(date, &part[0], &part[1], &part[2]);
  qvJulianDif(date, other);
  qvYMDDif(x, z, w, w, z, x);
  qvHMSDif(x, z, w, w, z, x);
  qvYMDToJulian(x, z, w);
  qvHMSToJulian(x, z, w);
  qvNumToDate(a);
  qvNumToTime(b);
  qvYearToDays(a);
  qvIsLeapYear(a);
  qvYMDtoDate(a, b, c, in.choose(-1, 25), in.choose(-1, 61), in.integer());
  const char letter[] = {static_cast<char>(in.choose(-128, 127)), 0};
  qvDatePart(letter, date);
  qvDateDiff(letter, date, other);
}

void run(const uint8_t* data, std::size_t size) {
  Input in(data, size);
  const int format = in.choose(-1, 13);
  const double date = in.flip() ? in.choose(-800000, 3000000) + in.choose(0, 86400) / 86400.0 : in.number();
  qvSet2DigitYearCutoff(in.choose(-1, 101));
  numbers(in, date);
  Heap heap(in);
  const std::string separator = in.cText(40), other = in.cText(40);
  heap.arm();
  const std::unique_ptr<char[]> out(new char[20 + 4 * separator.size()]);
  const int lengths[] = {qvJulianToDateTxt(date, static_cast<short>(format), separator.c_str(), out.get()),
                         qvJulianToTimeTxt(date, static_cast<short>(format), separator.c_str(), out.get())};
  Heap::disarm();
  for (int length : lengths) QV_REQUIRE(length >= 0 || (length == QV_MALLOC && heap.fails()), "%d", length);
  qvDateTxtDif(separator.c_str(), other.c_str(), static_cast<short>(format), 2);
  qvTimeTxtDif(separator.c_str(), other.c_str(), 0, 0);
  const std::string text = in.rest().c_str();
  parse(text, format);
  print(date, text);
}

}  // namespace
}  // namespace qvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  qvfuzz::run(data, size);
  return 0;
}
