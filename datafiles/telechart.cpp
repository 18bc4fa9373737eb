// Finding, reading and listing TeleChart securities.
#include <algorithm>

#include "core/numbers.h"
#include "datafiles/mbf.h"
#include "datafiles/record_range.h"
#include "datafiles/security_file.h"
#include "qvlib60/datafiles.h"
#include "qvlib60/dates.h"

namespace {

using namespace qv::datafiles;

constexpr char kExtension[] = ".NDX";
constexpr std::size_t kRecordSize = 24;
constexpr std::size_t kHeaderSize = 2 * kRecordSize;
constexpr std::size_t kDescriptionWidth = 22;

double dateNumber(const Byte* record) noexcept {
  return qvNumToDate(qv::truncatedInt(mbfSingle(record)));
}

RecordPlace placeOf(const InputFile& file) noexcept {
  const std::int64_t records = file.size() / static_cast<std::int64_t>(kRecordSize) - 2;
  return {kHeaderSize, kRecordSize, std::max(qv::saturate(records), 0)};
}

// Reads what the file tells of its security. 0 or -4.
int describe(InputFile& file, QvBars& info) noexcept {
  Byte header[kHeaderSize];
  if (file.read(header, sizeof header) < sizeof header) return QV_FILE_READ;
  copyText(info.description, textField(header, kDescriptionWidth));
  return readDates(file, placeOf(file), info, dateNumber);
}

}  // namespace

extern "C" {

int QVCALL qvTCfindrec(const char* directory, const char* fileName, double date, double* foundDate) noexcept {
  if (!directory || !fileName) return QV_INVALID_PARM;
  InputFile file(directory, SecurityName(fileName, kExtension).file);
  if (!file.ok()) return QV_FILE_OPEN;
  Byte header[kHeaderSize];
  if (file.read(header, sizeof header) < sizeof header) return QV_FILE_READ;
  RecordBytes found;
  const int number = findDate(file, placeOf(file), date, dateNumber, found);
  if (number >= 0 && foundDate) *foundDate = dateNumber(found.bytes);
  return number;
}

int QVCALL qvTCread(QvBars* bars, const char* directory, const char* fileName, int start,
                    int count) noexcept {
  if (!bars || !directory || !fileName) return QV_INVALID_PARM;
  const SecurityName name(fileName, kExtension);
  InputFile file(directory, name.file);
  if (!file.ok()) return QV_FILE_OPEN;
  const RecordPlace place = placeOf(file);
  QvBars info = newBarInfo(kTeleChart, place.records, directory);
  copyText(info.name, name.file);
  copyText(info.symbol, name.symbol);
  if (const int status = describe(file, info)) return status;
  RecordReader records(file, kRecordSize);
  if (!records.ok()) return QV_MALLOC;
  if (const int status = recordRange(*bars, place.records, start, count)) return status;

  qvCopyBarInfo(&info, bars);
  qvReSizeBars(bars, 0);
  if (count == 0) return QV_OK;
  if (!records.seek(place.first + start * static_cast<std::int64_t>(kRecordSize))) return QV_FILE_READ;
  const int stored = records.read(count, [bars](int i, const Byte* record) {
    bars->date.data[i] = dateNumber(record);
    bars->high.data[i] = mbfSingle(record + 4);
    bars->low.data[i] = mbfSingle(record + 8);
    bars->close.data[i] = mbfSingle(record + 12);
    bars->volume.data[i] = mbfSingle(record + 16);
    bars->open.data[i] = mbfSingle(record + 20);
    bars->openInterest.data[i] = 0.0;  // not in the records; nothing may stay of an earlier file
  });
  if (stored > 0) bars->begindate = bars->date.data[0];
  qvReSizeBars(bars, stored);
  return records.status();
}

int QVCALL qvTClist(const char* directory, const char* output, int append) noexcept {
  return listSecurityFiles(
      directory, kExtension, output, append,
      [](InputFile& file, const SecurityName&, QvBars& info) noexcept { describe(file, info); });
}

}  // extern "C"
