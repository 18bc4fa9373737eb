// The securities of a CompuTrac directory: the files "master" and "xmaster", and the order files that
// tell which field of a record stands where.
#pragma once

#include "datafiles/binary_fields.h"
#include "datafiles/paths.h"
#include "datafiles/record_reader.h"
#include "qvlib60/core.h"

namespace qv::datafiles::computrac {

enum Field { kDate, kTime, kOpen, kHigh, kLow, kClose, kVolume, kOpenInterest, kFieldCount };
inline constexpr std::size_t kFieldSize = 4;

// The positions of the fields in a record, from 1; 0 where a field is absent.
struct FieldOrder {
  int position[kFieldCount];

  // The number of fields that a record holds.
  int fields() const noexcept;
};

// One entry of a directory file.
struct Security {
  int fileNumber;
  char dataFile[16];
  char symbol[17];
  char name[46];
  char period;
  double firstDate, lastDate;  // date numbers
  bool inMaster;
  int fieldsPerRecord;  // of securities in master
  FieldOrder flagged;   // of securities in xmaster

  int frequency() const noexcept;
};

struct DirectoryFile {
  const char* name;
  std::size_t recordSize;
  std::size_t countOffset;
  // False for an entry that is no security.
  bool (*decode)(const Byte* record, Security& security) noexcept;
};
extern const DirectoryFile kMaster, kXmaster;

// True for a directory whose path leaves room for the names of its data files.
bool hasRoom(const char* directory) noexcept;

// Calls visit(security) for each security until it answers true. 0 when it did; -8 when it never did or
// when there is no such file; -4 when the file has no header or cannot be read on; -3. A file that ends
// early has fewer entries.
template <typename Visit>
int visitSecurities(const char* directory, const DirectoryFile& format, Visit visit) noexcept {
  if (!hasRoom(directory)) return QV_FILE_NOT_FOUND;
  InputFile file(directory, format.name);
  if (!file.ok()) return QV_FILE_NOT_FOUND;
  RecordReader records(file, format.recordSize);
  if (!records.ok()) return QV_MALLOC;
  const Byte* header = records.next();
  if (!header) return QV_FILE_READ;
  const int count = signed16(header + format.countOffset);
  for (int i = 0; i < count; ++i) {
    const Byte* record = records.next();
    if (!record) return records.status() ? int{QV_FILE_READ} : int{QV_FILE_NOT_FOUND};
    Security security;
    if (format.decode(record, security) && visit(security)) return QV_OK;
  }
  return QV_FILE_NOT_FOUND;
}

// The security that a caller's name means, and its fields. 0, -3, -4 or -8.
int findSecurity(const char* directory, const char* name, Security& security, FieldOrder& order) noexcept;

}  // namespace qv::datafiles::computrac
