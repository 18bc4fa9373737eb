// Formats with one file per security and no directory file: the security is its file's name, and the
// file itself tells its first and last date.
#pragma once

#include "datafiles/bar_info.h"
#include "datafiles/paths.h"
#include "datafiles/record_reader.h"

namespace qv::datafiles {

// A caller's file name, with the format's extension where it has no ".".
struct SecurityName {
  char file[kPathSize + 4];
  char symbol[kPathSize];  // up to the first "."

  SecurityName(const char* fileName, const char* extension) noexcept;
};

// The dates of the first record and of the file's last bytes, as many as a record has, and the
// frequency that follows from them; a file without records has none. 0 or -4.
template <typename DateOf>
int readDates(InputFile& file, const RecordPlace& place, QvBars& info, DateOf dateOf) noexcept {
  if (place.records == 0) return QV_OK;
  const auto dateAt = [&](std::int64_t offset, double& date) {
    RecordBytes record;
    if (!file.seek(offset) || file.read(record.bytes, place.recordSize) < place.recordSize) return false;
    date = dateOf(record.bytes);
    return true;
  };
  if (!dateAt(place.first, info.begindate) ||
      !dateAt(file.size() - static_cast<std::int64_t>(place.recordSize), info.enddate))
    return QV_FILE_READ;
  info.frequency = frequencyOf(place.records, info.begindate, info.enddate);
  return QV_OK;
}

// Lists the files *extension of a directory. describe(file, name, info) gives a file's description, dates
// and frequency; what it leaves out, also because the file cannot be read, is listed as unknown.
using Describe = void (*)(InputFile& file, const SecurityName& name, QvBars& info) noexcept;
int listSecurityFiles(const char* directory, const char* extension, const char* output, int append,
                      Describe describe) noexcept;

}  // namespace qv::datafiles
