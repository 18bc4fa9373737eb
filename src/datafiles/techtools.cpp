// Finding, reading and listing TechTools securities.
#include <algorithm>
#include <cmath>

#include "core/characters.h"
#include "datafiles/security_file.h"
#include "qvlib60/datafiles.h"

namespace {

using namespace qv::datafiles;

// The header has a record's size and begins with the price-format code.
constexpr SecurityFormat kFormat = {QV_FILETYPE_TECHTOOLS, ".TTD", 16, 1, 2};

// Where the fields of a record begin, behind its date.
constexpr std::size_t kOpen = 2, kHigh = 4, kLow = 6, kClose = 8, kVolume = 10, kOpenInterest = 13;

double dateNumber(const Byte* record) noexcept {
  return unsigned16(record);
}

// ---- Prices ---------------------------------------------------------------------------------------

// How a price-format code turns the stored number into a price.
struct PriceFormat {
  enum Rule { kNoPrice, kQuotient, kProduct, kWholeAndParts };
  int code;
  Rule rule;
  double number;       // divisor, factor, or the parts of a whole
  double shift = 1.0;  // whole and parts: what stands between them, 10 for one digit of parts
};
constexpr PriceFormat kPriceFormats[] = {
    {-35, PriceFormat::kQuotient, 500},
    {-34, PriceFormat::kQuotient, 400},
    {-32, PriceFormat::kQuotient, 200},
    {-25, PriceFormat::kProduct, 0.02},
    {-24, PriceFormat::kProduct, 0.025},
    {-22, PriceFormat::kProduct, 0.05},
    {-19, PriceFormat::kQuotient, 512},
    {-18, PriceFormat::kQuotient, 256},
    {-17, PriceFormat::kQuotient, 128},
    {-16, PriceFormat::kQuotient, 64},
    {-15, PriceFormat::kQuotient, 32},
    {-14, PriceFormat::kQuotient, 16},
    {-13, PriceFormat::kQuotient, 8},
    {-12, PriceFormat::kQuotient, 4},
    {-11, PriceFormat::kQuotient, 2},
    {-9, PriceFormat::kWholeAndParts, 512, 1000},
    {-8, PriceFormat::kWholeAndParts, 256, 1000},
    {-7, PriceFormat::kWholeAndParts, 128, 1000},
    {-6, PriceFormat::kWholeAndParts, 64, 100},
    {-5, PriceFormat::kWholeAndParts, 32, 100},
    {-4, PriceFormat::kWholeAndParts, 16, 100},
    {-3, PriceFormat::kWholeAndParts, 8, 10},
    {-2, PriceFormat::kWholeAndParts, 4, 10},
    {-1, PriceFormat::kWholeAndParts, 2, 10},
    {0, PriceFormat::kProduct, 1},
    {1, PriceFormat::kQuotient, 10},
    {2, PriceFormat::kQuotient, 100},
    {3, PriceFormat::kQuotient, 1000},
    {4, PriceFormat::kQuotient, 10000},
    {5, PriceFormat::kQuotient, 100000},
    {10, PriceFormat::kProduct, 10},
};
constexpr int kHundredths = 2;
constexpr double kHalfTick = 0.005f;  // the single-precision number

PriceFormat priceFormat(int code) noexcept {
  for (const PriceFormat& format : kPriceFormats)
    if (format.code == code) return format;
  return {code, PriceFormat::kNoPrice, 0};
}

// Live cattle and the like trade in ticks of 2.5 hundredths, of which the file holds whole hundredths.
bool hasHalfTicks(const char* fileName, int code) noexcept {
  if (code != kHundredths) return false;
  constexpr const char* kPrefixes[] = {"FC_", "LC_", "LH_", "PB_"};
  return std::any_of(std::begin(kPrefixes), std::end(kPrefixes), [fileName](const char* prefix) {
    for (int k = 0; k < 3; ++k)
      if (qv::upperCase(fileName[k]) != prefix[k]) return false;
    return true;
  });
}

struct PriceDecoder {
  PriceFormat format;
  bool halfTicks;

  double operator()(const Byte* field) const noexcept {
    const int stored = unsigned16(field);
    const double v = stored;
    switch (format.rule) {
      case PriceFormat::kQuotient: {
        const double price = v / format.number;
        return halfTicks && stored % 5 != 0 ? price + kHalfTick : price;
      }
      case PriceFormat::kProduct:
        return v * format.number;
      case PriceFormat::kWholeAndParts: {
        const double whole = std::floor(v / format.shift);
        return whole + (v - format.shift * whole) / format.number;
      }
      default:
        return 0.0;
    }
  }
};

}  // namespace

extern "C" {

int QVCALL qvTTfindrec(const char* directory, const char* fileName, double date, double* foundDate) noexcept {
  if (!directory || !fileName) return QV_INVALID_PARM;
  SecurityFile security(directory, fileName, kFormat);
  if (security.status()) return security.status();
  return findDate(security.file, security.place, date, dateNumber, foundDate);
}

int QVCALL qvTTread(QvBars* bars, const char* directory, const char* fileName, int start,
                    int count) noexcept {
  if (!bars || !directory || !fileName) return QV_INVALID_PARM;
  SecurityFile security(directory, fileName, kFormat);
  if (security.status()) return security.status();
  QvBars info = security.newInfo(directory);
  copyText(info.description, textOf(info.symbol));
  if (const int status = readDates(security, info, dateNumber)) return status;
  const int code = signed16(security.header);
  const PriceDecoder price{priceFormat(code), hasHalfTicks(security.name.file, code)};
  const auto decode = [&](const Byte* record) -> qv::Bar {
    return {dateNumber(record),
            price(record + kOpen),
            price(record + kHigh),
            price(record + kLow),
            price(record + kClose),
            double(unsigned24(record + kVolume)),
            double(unsigned24(record + kOpenInterest))};
  };
  return readBars(security.file, security.place, info, *bars, start, count, QV_FILE_SEEK, decode);
}

int QVCALL qvTTlist(const char* directory, const char* output, int append) noexcept {
  return listSecurityFiles(directory, kFormat, output, append,
                           [](SecurityFile& security, QvBars& info) noexcept {
                             copyText(info.description, security.name.symbol);
                             readDates(security, info, dateNumber);
                           });
}

}  // extern "C"
