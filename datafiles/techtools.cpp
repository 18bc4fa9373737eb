// Finding, reading and listing TechTools securities.
#include <algorithm>
#include <cmath>

#include "core/characters.h"
#include "core/numbers.h"
#include "datafiles/record_range.h"
#include "datafiles/security_file.h"
#include "qvlib60/datafiles.h"

namespace {

using namespace qv::datafiles;

constexpr char kExtension[] = ".TTD";
constexpr std::size_t kRecordSize = 16;  // also of the header, which begins with the price-format code

double dateNumber(const Byte* record) noexcept {
  return unsigned16(record);
}

RecordPlace placeOf(const InputFile& file) noexcept {
  const std::int64_t records = file.size() / static_cast<std::int64_t>(kRecordSize) - 1;
  return {kRecordSize, kRecordSize, std::max(qv::saturate(records), 0)};
}

int readPriceFormat(InputFile& file, int& code) noexcept {
  Byte field[2];
  if (file.read(field, sizeof field) < sizeof field) return QV_FILE_READ;
  code = signed16(field);
  return QV_OK;
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
  InputFile file(directory, SecurityName(fileName, kExtension).file);
  if (!file.ok()) return QV_FILE_OPEN;
  int code;
  if (const int status = readPriceFormat(file, code)) return status;
  RecordBytes found;
  const int number = findDate(file, placeOf(file), date, dateNumber, found);
  if (number >= 0 && foundDate) *foundDate = dateNumber(found.bytes);
  return number;
}

int QVCALL qvTTread(QvBars* bars, const char* directory, const char* fileName, int start,
                    int count) noexcept {
  if (!bars || !directory || !fileName) return QV_INVALID_PARM;
  const SecurityName name(fileName, kExtension);
  InputFile file(directory, name.file);
  if (!file.ok()) return QV_FILE_OPEN;
  int code;
  if (const int status = readPriceFormat(file, code)) return status;
  const RecordPlace place = placeOf(file);
  QvBars info = newBarInfo(kTechTools, place.records, directory);
  copyText(info.name, name.file);
  copyText(info.symbol, name.symbol);
  copyText(info.description, textOf(info.symbol));
  if (const int status = readDates(file, place, info, dateNumber)) return status;
  RecordReader records(file, kRecordSize);
  if (!records.ok()) return QV_MALLOC;
  if (const int status = recordRange(*bars, place.records, start, count)) return status;

  qvCopyBarInfo(&info, bars);
  qvReSizeBars(bars, 0);
  if (count == 0) return QV_OK;
  if (!records.seek(place.first + start * static_cast<std::int64_t>(kRecordSize))) return QV_FILE_SEEK;
  const PriceDecoder price{priceFormat(code), hasHalfTicks(name.file, code)};
  const int stored = records.read(std::min(count, place.records - start), [&](int i, const Byte* record) {
    bars->date.data[i] = dateNumber(record);
    bars->open.data[i] = price(record + 2);
    bars->high.data[i] = price(record + 4);
    bars->low.data[i] = price(record + 6);
    bars->close.data[i] = price(record + 8);
    bars->volume.data[i] = unsigned24(record + 10);
    bars->openInterest.data[i] = unsigned24(record + 13);
  });
  qvReSizeBars(bars, stored);
  return records.status();
}

int QVCALL qvTTlist(const char* directory, const char* output, int append) noexcept {
  return listSecurityFiles(directory, kExtension, output, append,
                           [](InputFile& file, const SecurityName& name, QvBars& info) noexcept {
                             copyText(info.description, name.symbol);
                             readDates(file, placeOf(file), info, dateNumber);
                           });
}

}  // extern "C"
