// Finding, reading and listing TeleChart securities.
#include "core/numbers.h"
#include "datafiles/mbf.h"
#include "datafiles/security_file.h"
#include "qvlib60/datafiles.h"
#include "qvlib60/dates.h"

namespace {

using namespace qv::datafiles;

constexpr SecurityFormat kFormat = {QV_FILETYPE_TELECHART, ".NDX", 24, 2, 48};
constexpr std::size_t kDescriptionWidth = 22;

// Where the fields of a record begin, behind its date.
constexpr std::size_t kHigh = 4, kLow = 8, kClose = 12, kVolume = 16, kOpen = 20;

double dateNumber(const Byte* record) noexcept {
  return qvNumToDate(qv::truncatedInt(mbfSingle(record)));
}

// Reads what the file tells of its security. 0 or -4.
int describe(SecurityFile& security, QvBars& info) noexcept {
  if (security.status()) return security.status();
  copyText(info.description, textField(security.header, kDescriptionWidth));
  return readDates(security, info, dateNumber);
}

}  // namespace

extern "C" {

int QVCALL qvTCfindrec(const char* directory, const char* fileName, double date, double* foundDate) noexcept {
  if (!directory || !fileName) return QV_INVALID_PARM;
  SecurityFile security(directory, fileName, kFormat);
  if (security.status()) return security.status();
  return findDate(security.file, security.place, date, dateNumber, foundDate);
}

int QVCALL qvTCread(QvBars* bars, const char* directory, const char* fileName, int start,
                    int count) noexcept {
  if (!bars || !directory || !fileName) return QV_INVALID_PARM;
  SecurityFile security(directory, fileName, kFormat);
  QvBars info = security.newInfo(directory);
  if (const int status = describe(security, info)) return status;
  // The open interest is not in the records: its series stays as it is.
  int stored = 0;
  const auto decode = [&](const Byte* record) -> qv::Bar {
    return {dateNumber(record),
            mbfSingle(record + kOpen),
            mbfSingle(record + kHigh),
            mbfSingle(record + kLow),
            mbfSingle(record + kClose),
            mbfSingle(record + kVolume),
            bars->openInterest.data[stored++]};
  };
  const int status = readBars(security.file, security.place, info, *bars, start, count, QV_FILE_READ, decode);
  if (stored > 0) bars->begindate = bars->date.data[0];
  return status;
}

int QVCALL qvTClist(const char* directory, const char* output, int append) noexcept {
  return listSecurityFiles(directory, kFormat, output, append,
                           [](SecurityFile& security, QvBars& info) noexcept { describe(security, info); });
}

}  // extern "C"
