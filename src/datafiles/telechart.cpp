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
  const auto store = [bars](int i, const Byte* record) {
    bars->date.data[i] = dateNumber(record);
    bars->high.data[i] = mbfSingle(record + 4);
    bars->low.data[i] = mbfSingle(record + 8);
    bars->close.data[i] = mbfSingle(record + 12);
    bars->volume.data[i] = mbfSingle(record + 16);
    bars->open.data[i] = mbfSingle(record + 20);
    if (i == 0) bars->begindate = bars->date.data[0];
  };
  return readBars(security.file, security.place, info, *bars, start, count, QV_FILE_READ, store);
}

int QVCALL qvTClist(const char* directory, const char* output, int append) noexcept {
  return listSecurityFiles(directory, kFormat, output, append,
                           [](SecurityFile& security, QvBars& info) noexcept { describe(security, info); });
}

}  // extern "C"
