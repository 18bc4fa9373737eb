#include "datafiles/computrac_directory.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>

#include "core/numbers.h"
#include "datafiles/bar_info.h"
#include "datafiles/line_reader.h"
#include "datafiles/mbf.h"
#include "datafiles/texts.h"
#include "qvlib60/dates.h"

namespace qv::datafiles::computrac {

namespace {

constexpr char kIntradayPeriod = 'I';

// ---- Entries --------------------------------------------------------------------------------------

// Where the fields of an entry begin.
namespace master {
constexpr std::size_t kFileNumber = 0, kFields = 4, kName = 7, kDirectoryMark = 18, kFirstDate = 25,
                      kLastDate = 29, kPeriod = 33, kSymbol = 36;
}
namespace xmaster {
constexpr std::size_t kSymbol = 1, kName = 16, kPeriod = 62, kFileNumber = 65, kFlags = 70, kFirstDate = 108,
                      kLastDate = 116;
}

bool decodeMaster(const Byte* record, Security& s) noexcept {
  using namespace master;
  if (std::memcmp(record + kDirectoryMark, "<DIR>", 5) == 0) return false;
  s = {};
  s.inMaster = true;
  s.fileNumber = record[kFileNumber];
  std::snprintf(s.dataFile, sizeof s.dataFile, "F%i.DAT", s.fileNumber);
  s.fieldsPerRecord = record[kFields];
  copyText(s.name, textField(record + kName, 16));
  s.firstDate = qvNumToDate(truncatedInt(mbfSingle(record + kFirstDate)));
  s.lastDate = qvNumToDate(truncatedInt(mbfSingle(record + kLastDate)));
  s.period = static_cast<char>(record[kPeriod]);
  copyText(s.symbol, textField(record + kSymbol, 16));
  return true;
}

// The fields of a record stand in this order, whatever the bits that flag them.
FieldOrder flaggedFields(int flags) noexcept {
  constexpr int kBits[kFieldCount] = {4, 7, 5, 0, 1, 2, 3, 6};
  FieldOrder order{};
  int next = 1;
  for (int f = 0; f < kFieldCount; ++f)
    if (flags >> kBits[f] & 1) order.position[f] = next++;
  return order;
}

bool decodeXmaster(const Byte* record, Security& s) noexcept {
  using namespace xmaster;
  s = {};
  copyText(s.symbol, textField(record + kSymbol, 15));
  copyText(s.name, textField(record + kName, 45));
  s.period = static_cast<char>(record[kPeriod]);
  s.fileNumber = signed16(record + kFileNumber);
  std::snprintf(s.dataFile, sizeof s.dataFile, "F%i.MWD", s.fileNumber);
  s.flagged = flaggedFields(record[kFlags]);
  s.firstDate = qvNumToDate(signed32(record + kFirstDate));
  s.lastDate = qvNumToDate(signed32(record + kLastDate));
  return true;
}

// ---- Names ----------------------------------------------------------------------------------------

// As many words of the symbol as the wanted name has: both are cut at blanks, each of which counts.
bool matchesFirstWords(std::string_view symbol, const char* wanted) noexcept {
  std::size_t end = symbol.find(' ');
  for (const char* c = wanted; *c && end != symbol.npos; ++c)
    if (*c == ' ') end = symbol.find(' ', end + 1);
  return compareNoCase(symbol.substr(0, end), wanted) == 0;
}

bool isNamed(const Security& s, const char* wanted) noexcept {
  char withPeriod[sizeof s.symbol + 2];
  std::snprintf(withPeriod, sizeof withPeriod, "%s@%c", s.symbol, s.period);
  return compareNoCase(wanted, s.dataFile) == 0 || compareNoCase(wanted, s.symbol) == 0 ||
         compareNoCase(wanted, withPeriod) == 0 || (s.inMaster && matchesFirstWords(s.symbol, wanted)) ||
         compareNoCase(wanted, s.name) == 0;
}

// ---- Field orders ---------------------------------------------------------------------------------

FieldOrder usualOrder(char period, int fields) noexcept {
  struct Usual {
    bool intraday;
    int fields;
    FieldOrder order;  // date time open high low close volume openInterest
  };
  constexpr Usual kUsual[] = {
      {true, 4, {1, 2, 0, 0, 0, 3, 4, 0}},  {true, 5, {1, 2, 0, 0, 0, 3, 4, 5}},
      {true, 6, {1, 2, 0, 3, 4, 5, 6, 0}},  {true, 7, {1, 2, 3, 4, 5, 6, 7, 0}},
      {true, 8, {1, 2, 3, 4, 5, 6, 7, 8}},  {false, 5, {1, 0, 0, 2, 3, 4, 5, 0}},
      {false, 6, {1, 0, 2, 3, 4, 5, 6, 0}}, {false, 7, {1, 0, 2, 3, 4, 5, 6, 7}},
  };
  for (const Usual& usual : kUsual)
    if (usual.intraday == (period == kIntradayPeriod) && usual.fields == fields) return usual.order;
  return {};
}

// A line's first item, without its quotes.
std::string_view fieldName(std::string_view line) noexcept {
  std::string_view name = line.substr(0, line.find(','));
  if (name.starts_with('"')) name.remove_prefix(1);
  if (name.ends_with('"')) name.remove_suffix(1);
  return name;
}

// Every line that is not empty counts a position, also one with an unknown name. -2 without such a file.
int readOrderFile(const char* directory, int fileNumber, FieldOrder& order) noexcept {
  char name[16];
  std::snprintf(name, sizeof name, "F%i.DOP", fileNumber);
  InputFile file(directory, name);
  if (!file.ok()) return QV_FILE_OPEN;
  LineReader lines(file, kLayoutLine, EndOfFileMark::kIsCharacter);
  if (!lines.ok()) return QV_MALLOC;

  constexpr const char* kNames[kFieldCount] = {"DATE", "TIME", "OPEN", "HIGH", "LOW", "CLOSE", "VOL", "OI"};
  constexpr char kLineEnds[] = {'\r', '\n', kEndOfFileMark, '\0'};
  order = {};
  int position = 0;
  for (Line line; position < INT_MAX && lines.next(line);) {
    std::string_view text = line.text.substr(0, line.text.find('\0'));
    text = text.substr(0, text.find_last_not_of(kLineEnds) + 1);
    if (text.empty()) continue;
    ++position;
    const std::string_view field = fieldName(text);
    for (int f = 0; f < kFieldCount; ++f)
      if (compareNoCase(field, kNames[f]) == 0) order.position[f] = position;
  }
  return lines.failed() ? QV_FILE_READ : QV_OK;
}

}  // namespace

int FieldOrder::fields() const noexcept {
  return static_cast<int>(std::count_if(position, position + kFieldCount, [](int p) { return p != 0; }));
}

int Security::frequency() const noexcept {
  switch (period) {
    case kIntradayPeriod:
      return QV_FREQ_INTRADAY;
    case 'D':
      return QV_FREQ_DAILY;
    case 'W':
      return QV_FREQ_WEEKLY;
    case 'M':
      return QV_FREQ_MONTHLY;
    case 'Q':
      return QV_FREQ_QUARTERLY;
    case 'Y':
      return QV_FREQ_YEARLY;
    default:
      return QV_FREQ_UNKNOWN;
  }
}

constexpr DirectoryFile kMaster = {"master", 53, 0, decodeMaster};
constexpr DirectoryFile kXmaster = {"xmaster", 150, 10, decodeXmaster};

bool hasRoom(const char* directory) noexcept {
  return std::strlen(joinPath(directory, "").text) <= 244;
}

int findSecurity(const char* directory, const char* name, Security& security, FieldOrder& order) noexcept {
  const auto isWanted = [&](const Security& candidate) {
    if (!isNamed(candidate, name)) return false;
    security = candidate;
    return true;
  };
  const int inMaster = visitSecurities(directory, kMaster, isWanted);
  if (inMaster == QV_MALLOC) return inMaster;
  if (inMaster == QV_OK) {
    const int status = readOrderFile(directory, security.fileNumber, order);
    if (status != QV_FILE_OPEN) return status;
    order = usualOrder(security.period, security.fieldsPerRecord);
    return QV_OK;
  }
  // A master without a header is an error only when the security is not in xmaster either.
  const int inXmaster = visitSecurities(directory, kXmaster, isWanted);
  if (inXmaster == QV_OK) order = security.flagged;
  return inXmaster == QV_FILE_NOT_FOUND ? inMaster : inXmaster;
}

}  // namespace qv::datafiles::computrac
