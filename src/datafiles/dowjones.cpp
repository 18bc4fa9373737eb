// Finding, reading and listing Dow Jones securities.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "core/characters.h"
#include "datafiles/bar_info.h"
#include "datafiles/listing.h"
#include "datafiles/record_reader.h"
#include "qvlib60/datafiles.h"

namespace {

using namespace qv::datafiles;

constexpr char kDirectoryFile[] = "mapinfo.dat";
constexpr std::size_t kEntrySize = 71;

// Dates count days; this is the date number of day 0.
constexpr double kDayZero = 7305.0;

double dateNumber(const Byte* field) noexcept {
  return unsigned16(field) + kDayZero;
}

// ---- The directory --------------------------------------------------------------------------------

struct Security {
  char symbol[9];
  char description[16];
  char cusip[10];
  char type, period, format;
  char dataFile[13];
  double firstDate, lastDate;
  int records;

  int frequency() const noexcept {
    return period == 'D'   ? QV_FREQ_DAILY
           : period == 'W' ? QV_FREQ_WEEKLY
           : period == 'M' ? QV_FREQ_MONTHLY
                           : QV_FREQ_UNKNOWN;
  }
  int dataType() const noexcept {
    switch (type) {
      case 'B':
      case 'T':
        return QV_DATATYPE_BOND;
      case 'V':
        return QV_DATATYPE_COMMODITY;
      case 'M':
        return QV_DATATYPE_MUTUAL_FUND;
      case 'O':
        return QV_DATATYPE_OPTION;
      case 'S':
        return QV_DATATYPE_STOCK;
      case 'W':
      case 'X':
      case 'Y':
        return QV_DATATYPE_INDEX;
      default:
        return QV_DATATYPE_UNKNOWN;
    }
  }
};

// Where the fields of an entry begin. The header has the number of entries where these have theirs of
// records.
namespace at {
constexpr std::size_t kSymbol = 0, kType = 8, kFormat = 10, kFirstDate = 12, kLastDate = 14,
                      kDescription = 20, kCount = 45, kPeriod = 47, kCusip = 61;
}

Security decode(const Byte* entry) noexcept {
  Security s{};
  copyText(s.symbol, textField(entry + at::kSymbol, 8));
  s.type = static_cast<char>(entry[at::kType]);
  s.format = static_cast<char>(entry[at::kFormat]);
  s.firstDate = dateNumber(entry + at::kFirstDate);
  s.lastDate = dateNumber(entry + at::kLastDate);
  copyText(s.description, textField(entry + at::kDescription, 15));
  s.records = std::max(signed16(entry + at::kCount), 0);
  s.period = static_cast<char>(entry[at::kPeriod]);
  copyText(s.cusip, textField(entry + at::kCusip, 9));
  std::snprintf(s.dataFile, sizeof s.dataFile, "%s.%cQ%c", s.symbol, s.type, s.period);
  return s;
}

// Calls visit(security) for each entry until it answers true. 0 when it did; -8 when it never did, -2,
// -3, and -4 when the file ends before the entries that its header promises.
template <typename Visit>
int visitSecurities(InputFile& file, Visit visit) noexcept {
  if (!file.ok()) return QV_FILE_OPEN;
  RecordReader entries(file, kEntrySize);
  if (!entries.ok()) return QV_MALLOC;
  const Byte* header = entries.next();
  if (!header) return QV_FILE_READ;
  const int count = signed16(header + at::kCount);
  for (int i = 0; i < count; ++i) {
    const Byte* entry = entries.next();
    if (!entry) return QV_FILE_READ;
    if (visit(decode(entry))) return QV_OK;
  }
  return QV_FILE_NOT_FOUND;
}

// A caller's name of a security: blanks as type and period fit every one.
struct WantedName {
  char text[kPathSize];
  char type = ' ', period = ' ';

  explicit WantedName(const char* name) noexcept {
    copyText(text, name);
    char digit = '1';
    for (char* c = text; *c; ++c) {
      if (!std::strchr("+<>|=;\\/", *c)) continue;
      *c = digit;
      digit = digit == '9' ? '0' : static_cast<char>(digit + 1);
    }
    char* filters = std::strchr(text, '.');
    if (!filters) return;
    *filters = '\0';
    if (!filters[1]) return;
    type = qv::upperCase(filters[1]);
    if (filters[2] && filters[3]) period = qv::upperCase(filters[3]);
  }

  bool fits(const Security& s) const noexcept {
    return (qv::compareNoCase(text, s.symbol) == 0 || qv::compareNoCase(text, s.description) == 0) &&
           (type == ' ' || type == s.type) && (period == ' ' || period == s.period);
  }
};

// ---- Record formats -------------------------------------------------------------------------------

// The offsets of a record's fields; 0 for one that it does not have (the date is always at 0). Prices are
// singles, volume and open interest 32-bit integers.
struct Layout {
  std::size_t size;
  int open, high, low, close, volume, openInterest;
};
constexpr Layout kLayouts[] = {
    {18, 0, 6, 10, 14, 2, 0},  {6, 0, 0, 0, 2, 0, 0},     {10, 0, 0, 0, 6, 2, 0},
    {14, 0, 2, 6, 10, 0, 0},   {18, 0, 6, 10, 14, 2, 0},  {18, 14, 2, 6, 10, 0, 0},
    {22, 18, 6, 10, 14, 0, 2}, {22, 18, 6, 10, 14, 2, 0}, {26, 22, 10, 14, 18, 6, 2},
    {10, 0, 0, 0, 0, 6, 2},
};

double price(const Byte* record, int offset) noexcept {
  return offset ? single(record + offset) : 0.0;
}
double quantity(const Byte* record, int offset) noexcept {
  return offset ? signed32(record + offset) : 0.0;
}

// Finds the security that a name means and the layout of its records.
int findSecurity(const char* directory, const char* name, Security& security, Layout& layout) noexcept {
  const WantedName wanted(name);
  InputFile file(directory, kDirectoryFile);
  const int status = visitSecurities(file, [&](const Security& candidate) {
    security = candidate;
    return wanted.fits(candidate);
  });
  if (status) return status;
  if (!qv::isDigit(security.format)) return QV_FILE_READ;
  layout = kLayouts[security.format - '0'];
  return QV_OK;
}

// Finds the security that a name means and opens its data file: use(security, layout, file).
template <typename Use>
int withSecurity(const char* directory, const char* name, Use use) noexcept {
  Security security;
  Layout layout;
  if (const int status = findSecurity(directory, name, security, layout)) return status;
  // A symbol out of a file could name any file of the machine.
  if (!isPlainName(security.dataFile)) return QV_FILE_OPEN;
  InputFile file(directory, security.dataFile);
  return file.ok() ? use(security, layout, file) : QV_FILE_OPEN;
}

}  // namespace

extern "C" {

int QVCALL qvDJfindrec(const char* directory, const char* name, double date, double* foundDate) noexcept {
  if (!directory || !name) return QV_INVALID_PARM;
  return withSecurity(directory, name, [&](const Security& security, const Layout& layout, InputFile& file) {
    return findDate(file, {0, layout.size, security.records}, date, dateNumber, foundDate);
  });
}

int QVCALL qvDJread(QvBars* bars, const char* directory, const char* name, int start, int count) noexcept {
  if (!bars || !directory || !name) return QV_INVALID_PARM;
  return withSecurity(directory, name, [&](const Security& security, const Layout& layout, InputFile& file) {
    QvBars info = newBarInfo(QV_FILETYPE_DOWJONES, security.records, directory);
    copyText(info.name, security.dataFile);
    copyText(info.description, security.description);
    copyText(info.symbol, security.symbol);
    copyText(info.cusip, security.cusip);
    info.begindate = security.firstDate;
    info.enddate = security.lastDate;
    info.frequency = security.frequency();
    info.datatype = security.dataType();
    const auto decodeBar = [&](const Byte* record) -> qv::Bar {
      return {dateNumber(record),
              price(record, layout.open),
              price(record, layout.high),
              price(record, layout.low),
              price(record, layout.close),
              quantity(record, layout.volume),
              quantity(record, layout.openInterest)};
    };
    const RecordPlace place = {0, layout.size, security.records};
    return readBars(file, place, info, *bars, start, count, QV_FILE_SEEK, decodeBar);
  });
}

int QVCALL qvDJlist(const char* directory, const char* output, int append) noexcept {
  if (!directory || !output) return QV_INVALID_PARM;
  InputFile file(directory, kDirectoryFile);
  if (!file.ok()) return QV_FILE_OPEN;
  Listing listing(output, append);
  if (!listing.ok()) return QV_FILE_OPEN;
  const int status = visitSecurities(file, [&](const Security& s) {
    listing.add({s.dataFile, s.symbol, s.description, s.frequency(), s.firstDate, s.lastDate});
    return false;
  });
  const int written = listing.finish();
  return status == QV_FILE_NOT_FOUND ? written : status;
}

}  // extern "C"
