// Reading bars, or one column, from a text price file: one pass over its lines counts the records,
// finds out their order and remembers where the wanted ones begin; a second one reads these.
#include <algorithm>
#include <climits>

#include "core/numbers.h"
#include "datafiles/bar_info.h"
#include "datafiles/line_reader.h"
#include "datafiles/paths.h"
#include "datafiles/record_range.h"
#include "datafiles/text_fields.h"
#include "datafiles/text_record.h"
#include "datafiles/texts.h"
#include "platform/platform.h"
#include "qvlib60/datafiles.h"

namespace {

using namespace qv::datafiles;

enum class Order { kUnknown, kOldestFirst, kNewestFirst };

constexpr std::int64_t kNotSeen = -1;

struct Survey {
  int records = 0;
  Order order = Order::kUnknown;
  std::int64_t startPosition = kNotSeen;  // where the record that the caller starts with begins
};

// The first two different dates tell the order. Records numbered below skip - 1 take no part, and
// neither do texts that are no date: a stray heading must not turn the file around.
Survey surveyRecords(LineReader& lines, TextRecord& record, int skip, int start) noexcept {
  Survey s;
  double firstDate = 0.0;
  lines.skip(skip);
  std::int64_t position = lines.position();
  for (Line line; s.records < INT_MAX && lines.next(line); position = lines.position()) {
    if (line.isEmpty()) continue;
    if (s.records == start) s.startPosition = position;
    if (s.order == Order::kUnknown && s.records >= std::int64_t{skip} - 1) {
      record.splitDate(line.text);
      const double date = record.date();
      if (firstDate == 0.0) {
        firstDate = date;
      } else if (date != 0.0 && date != firstDate) {
        s.order = date > firstDate ? Order::kOldestFirst : Order::kNewestFirst;
      }
    }
    ++s.records;
  }
  return s;
}

// The range in a file that is newest first, or has no order. The three cases of start exclude each
// other: a negative count with a start above 0 thus gives the oldest start + 1 records.
int newestFirstRange(QvBars& bars, int records, int& start, int& count) noexcept {
  if (start >= records) return QV_RECORD_NOT_FOUND;
  if (count < 0) {
    count = start > 0 ? start + 1 : records;
    start = 0;
  }
  if (const int status = fitToBars(bars, count)) return status;
  if (start < 0) {
    start = 0;
  } else if (start > 0) {
    start = std::max(start - count + 1, 0);
  } else {
    start = std::max(records - count, 0);
  }
  return QV_OK;
}

void fillBarInfo(QvBars& bars, int records, const char* directory, const char* fileName,
                 const char* path) noexcept {
  QvBars info = newBarInfo(QV_FILETYPE_TEXT, records, directory);
  const std::string_view name = trimmed(fileName);
  qv::platform::shortName(path, info.name, sizeof info.name);
  copyText(info.description, trimmedEnd(stemOf(name).substr(0, sizeof info.description - 1)));
  copyText(info.symbol, stemOf(trimmedEnd(name.substr(0, sizeof info.symbol))));
  qvCopyBarInfo(&info, &bars);
}

// Places the reader at a record, counted from the first line after the headers on.
template <typename IsRecord>
void seekRecord(LineReader& lines, int skip, int number, IsRecord isRecord) noexcept {
  lines.seek(0);
  lines.skip(skip);
  for (Line line; number > 0 && lines.next(line);)
    if (isRecord(line)) --number;
}

bool isRecord(const Line& line) noexcept {
  return !line.isEmpty();
}
bool isNotBlank(const Line& line) noexcept {
  return !isBlank(line.text);
}

}  // namespace

extern "C" {

int QVCALL qvTXTread(QvBars* bars, const char* directory, const char* fileName, const QvTxtInfo* info,
                     int start, int count) noexcept {
  if (!bars || !directory || !fileName || !info) return QV_INVALID_PARM;
  InputFile file(directory, fileName);
  if (!file.ok()) return QV_FILE_OPEN;
  LineReader lines(file, kDataLine);
  if (!lines.ok()) return QV_MALLOC;

  TextRecord record(*info);
  const Survey found = surveyRecords(lines, record, info->skip, start);
  if (lines.failed()) return QV_FILE_READ;
  const bool oldestFirst = found.order == Order::kOldestFirst;
  if (const int status = oldestFirst ? recordRange(*bars, found.records, start, count)
                                     : newestFirstRange(*bars, found.records, start, count))
    return status;
  fillBarInfo(*bars, found.records, directory, fileName, file.path());
  if (count == 0) return qvReSizeBars(bars, 0);

  if (oldestFirst && found.startPosition != kNotSeen) {
    lines.seek(found.startPosition);
  } else {
    seekRecord(lines, info->skip, start, isRecord);
  }
  const int step = oldestFirst ? 1 : found.order == Order::kNewestFirst ? -1 : 0;
  int i = oldestFirst ? 0 : count - 1;
  for (Line line; i >= 0 && i < count && lines.next(line);) {
    if (!record.splitBar(line.text)) continue;
    storeBar(*bars, i, record.bar());
    i += step;
  }
  if (oldestFirst) qvReSizeBars(bars, i);
  return lines.failed() ? QV_FILE_READ : QV_OK;
}

int QVCALL qvTXTreadarray(QvArray* array, const char* directory, const char* fileName, const char* delimiters,
                          int skip, int column, int start, int count) noexcept {
  if (!array || !directory || !fileName || !delimiters) return QV_INVALID_PARM;
  if (count == 0) return QV_OK;
  InputFile file(directory, fileName);
  if (!file.ok()) return QV_FILE_OPEN;
  LineReader lines(file, kDataLine);
  if (!lines.ok()) return QV_MALLOC;

  // The header lines count: in the total, and in start where it is not below skip.
  int total = lines.skip(skip);
  std::int64_t position = lines.position(), startPosition = kNotSeen;
  for (Line line; total < INT_MAX && lines.next(line); position = lines.position()) {
    if (isBlank(line.text)) continue;
    if (total == start) startPosition = position;
    ++total;
  }
  if (lines.failed()) return QV_FILE_READ;

  if (count < 0) count = start > 0 ? std::max(total - start, 0) : total;
  if (!array->data)
    if (const int status = qvAllocArray(array, count)) return status;
  count = std::min(count, array->capacity);
  if (start < 0) start = std::max(total - count, 0);
  if (startPosition != kNotSeen) {
    lines.seek(startPosition);
  } else {
    seekRecord(lines, skip, start, isNotBlank);
  }

  Columns columns(delimiters);
  int stored = 0;
  for (Line line; stored < count && lines.next(line);) {
    if (isBlank(line.text)) continue;
    columns.split(trimmedFront(line.text), column);
    array->data[stored++] = decimalValue(columns[column]);
  }
  array->firstValid = 0;
  qvReSizeArray(array, stored);
  return lines.failed() ? QV_FILE_READ : QV_OK;
}

}  // extern "C"
