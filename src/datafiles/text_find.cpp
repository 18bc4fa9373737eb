// Finding the record of a date in a text price file, in either order.
#include <climits>

#include "datafiles/line_reader.h"
#include "datafiles/paths.h"
#include "datafiles/text_record.h"
#include "qvlib60/datafiles.h"

extern "C" {

int QVCALL qvTXTfindrec(const char* directory, const char* fileName, const QvTxtInfo* info, double date,
                        double* foundDate) noexcept {
  using namespace qv::datafiles;
  if (!directory || !fileName || !info) return QV_INVALID_PARM;
  InputFile file(directory, fileName);
  if (!file.ok()) return QV_FILE_OPEN;
  LineReader lines(file, kDataLine);
  if (!lines.ok()) return QV_MALLOC;

  const auto found = [foundDate](int number, double itsDate) {
    if (foundDate) *foundDate = itsDate;
    return number;
  };
  TextRecord record(*info);
  double current = 0.0;
  int number = 0;
  lines.skip(info->skip);
  for (Line line; number < INT_MAX && lines.next(line);) {
    if (line.isEmpty()) continue;
    record.splitDateTime(line.text);
    const double before = current;
    current = record.dateTime();
    const double previous = before == 0.0 ? current : before;
    if (date == current) return found(number, current);
    if (previous < date && date < current) return found(number, current);
    if (current < date && date < previous) return found(number - 1, previous);
    ++number;
  }
  return lines.failed() ? QV_FILE_READ : QV_RECORD_NOT_FOUND;
}

}  // extern "C"
