// Finding, reading and listing CompuTrac securities.
#include <algorithm>

#include "core/bar.h"
#include "core/numbers.h"
#include "datafiles/bar_info.h"
#include "datafiles/computrac_directory.h"
#include "datafiles/listing.h"
#include "datafiles/mbf.h"
#include "datafiles/record_range.h"
#include "qvlib60/datafiles.h"
#include "qvlib60/dates.h"

namespace {

using namespace qv::datafiles;
using namespace qv::datafiles::computrac;

// Gives the values of a record's fields.
class Decoder {
 public:
  // Where an order file with unknown names places a field beyond the record's end there is none.
  explicit Decoder(const FieldOrder& order) noexcept {
    const int fields = order.fields();
    for (int f = 0; f < kFieldCount; ++f) {
      const int position = order.position[f];
      offsets_[f] = position >= 1 && position <= fields ? (position - 1) * static_cast<int>(kFieldSize) : -1;
    }
  }

  bool has(Field f) const noexcept { return offsets_[f] >= 0; }
  double value(const Byte* record, Field f) const noexcept {
    return has(f) ? mbfSingle(record + offsets_[f]) : 0.0;
  }
  int integer(const Byte* record, Field f) const noexcept { return qv::truncatedInt(value(record, f)); }
  double dateTime(const Byte* record) const noexcept {
    return qvNumToDate(integer(record, kDate)) + qvNumToTime(integer(record, kTime));
  }

 private:
  int offsets_[kFieldCount];
};

// The records of a data file, of which the first is a header with the number of the last one.
int placeRecords(InputFile& file, const FieldOrder& order, RecordPlace& place) noexcept {
  Byte header[4];
  if (file.read(header, sizeof header) < sizeof header) return QV_FILE_READ;
  const std::size_t recordSize = static_cast<std::size_t>(order.fields()) * kFieldSize;
  std::int64_t last = signed16(header + 2);
  // Measured from eight bytes beyond the end: records of three fields and more come out right, and
  // shorter ones are counted that the file does not have.
  if (last < 0) last = recordSize ? (file.size() + 8) / static_cast<std::int64_t>(recordSize) : 0;
  if (last > kMostRecords) return QV_FILE_READ;
  place = {static_cast<std::int64_t>(recordSize), recordSize, std::max(qv::saturate(last) - 1, 0)};
  return QV_OK;
}

// Finds the security that a name means and opens its data file: use(security, decoder, file, place).
template <typename Use>
int withSecurity(const char* directory, const char* name, Use use) noexcept {
  Security security;
  FieldOrder order;
  if (const int status = findSecurity(directory, name, security, order)) return status;
  InputFile file(directory, security.dataFile);
  if (!file.ok()) return QV_FILE_OPEN;
  RecordPlace place;
  if (const int status = placeRecords(file, order, place)) return status;
  return use(security, Decoder(order), file, place);
}

// Reads a range of a security's records into `target`, a bar set or a series: describe(security,
// records) before the first record, then store(decoder, i, record) for each.
template <typename Target, typename Describe, typename Store>
int readSecurity(Target& target, const char* directory, const char* name, int start, int count, int& stored,
                 Describe describe, Store store) noexcept {
  return withSecurity(directory, name,
                      [&](const Security& security, const Decoder& decoder, InputFile& file,
                          const RecordPlace& place) -> int {
                        RecordReader records(file, place.recordSize);
                        if (!records.ok()) return QV_MALLOC;
                        if (const int status = recordRange(target, place.records, start, count))
                          return status;
                        describe(security, place.records);
                        stored = 0;
                        if (count == 0) return QV_OK;
                        if (!records.seek(place.first + start * static_cast<std::int64_t>(place.recordSize)))
                          return QV_FILE_READ;
                        stored = records.read(std::min(count, place.records - start),
                                              [&](int i, const Byte* record) { store(decoder, i, record); });
                        return records.status();
                      });
}

}  // namespace

extern "C" {

int QVCALL qvCTfindrec(const char* directory, const char* name, double date, double* foundDate) noexcept {
  if (!directory || !name) return QV_INVALID_PARM;
  return withSecurity(
      directory, name,
      [&](const Security&, const Decoder& decoder, InputFile& file, const RecordPlace& place) {
        // Compared as the file holds dates and times, in one number: the date's, then six digits of the time.
        constexpr double kTimeDigits = 1e6;
        int year, month, day, hour, minute, second;
        qvDateToYMD(date, &year, &month, &day, &hour, &minute, &second);
        double wanted = ((year - 1900.0) * 10000 + month * 100 + day) * kTimeDigits;
        if (decoder.has(kTime)) wanted += hour * 10000 + minute * 100 + second;
        const auto dateTimeOf = [&](const Byte* record) {
          return decoder.integer(record, kDate) * kTimeDigits + decoder.integer(record, kTime);
        };
        RecordBytes found;
        const int number = findDate(file, place, wanted, dateTimeOf, found);
        if (number >= 0 && foundDate) *foundDate = decoder.dateTime(found.bytes);
        return number;
      });
}

int QVCALL qvCTread(QvBars* bars, const char* directory, const char* name, int start, int count) noexcept {
  if (!bars || !directory || !name) return QV_INVALID_PARM;
  int stored = -1;
  const int status = readSecurity(
      *bars, directory, name, start, count, stored,
      [&](const Security& security, int records) {
        QvBars info = newBarInfo(QV_FILETYPE_COMPUTRAC, records, directory);
        copyText(info.name, security.dataFile);
        copyText(info.description, security.name);
        copyText(info.symbol, security.symbol);
        info.begindate = security.firstDate;
        info.enddate = security.lastDate;
        info.frequency = security.frequency();
        qvCopyBarInfo(&info, bars);
      },
      [&](const Decoder& decoder, int i, const Byte* record) {
        qv::storeBar(*bars, i,
                     {decoder.dateTime(record), decoder.value(record, kOpen), decoder.value(record, kHigh),
                      decoder.value(record, kLow), decoder.value(record, kClose),
                      decoder.value(record, kVolume), decoder.value(record, kOpenInterest)});
      });
  if (stored >= 0) qvReSizeBars(bars, stored);
  return status;
}

int QVCALL qvCTreadarray(QvArray* array, const char* directory, const char* name, const char* fieldName,
                         int start, int count) noexcept {
  if (!array || !directory || !name || !fieldName) return QV_INVALID_PARM;
  struct Name {
    const char* text;
    Field field;
  };
  constexpr Name kNames[] = {{"dt", kDate},  {"op", kOpen},    {"hi", kHigh},        {"lo", kLow},
                             {"cl", kClose}, {"vol", kVolume}, {"oi", kOpenInterest}};
  const Name* wanted = std::find_if(std::begin(kNames), std::end(kNames), [&](const Name& known) {
    return qv::compareNoCase(known.text, fieldName) == 0;
  });
  if (wanted == std::end(kNames)) return QV_INVALID_PARM;

  int stored = -1;
  const int status = readSecurity(
      *array, directory, name, start, count, stored, [](const Security&, int) {},
      [&](const Decoder& decoder, int i, const Byte* record) {
        array->data[i] =
            wanted->field == kDate ? decoder.dateTime(record) : decoder.value(record, wanted->field);
      });
  if (stored >= 0) qvReSizeArray(array, stored);
  return status;
}

int QVCALL qvCTlist(const char* directory, const char* output, int append) noexcept {
  if (!directory || !output) return QV_INVALID_PARM;
  Listing listing(output, append);
  if (!listing.ok()) return QV_FILE_OPEN;
  int status = QV_OK;
  for (const DirectoryFile* file : {&kMaster, &kXmaster}) {
    const int result = visitSecurities(directory, *file, [&](const Security& s) {
      listing.add({s.dataFile, s.symbol, s.name, s.frequency(), s.firstDate, s.lastDate});
      return false;
    });
    if (result != QV_FILE_NOT_FOUND) status = result;
  }
  const int written = listing.finish();
  return status ? status : written;
}

}  // extern "C"
