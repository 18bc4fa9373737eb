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

// How the files of a format are laid out: a header, then records.
struct SecurityFormat {
  int type;  // QV_FILETYPE_...
  const char* extension;
  std::size_t recordSize;
  std::size_t headerRecords;  // the header takes their place
  std::size_t headerSize;     // the bytes of it that a file must have
};

// A security's file, opened, its header read and its records counted. Test status() after construction:
// 0, -2, or -4 for a file that ends in its header or is too large.
class SecurityFile {
 public:
  SecurityFile(const char* directory, const char* fileName, const SecurityFormat& format) noexcept;

  int status() const noexcept { return status_; }
  // The bar information so far: no description, dates and frequency.
  QvBars newInfo(const char* directory) const noexcept;

  const SecurityFormat& format;
  const SecurityName name;
  InputFile file;
  RecordPlace place{};
  static constexpr std::size_t kLongestHeader = 48;
  Byte header[kLongestHeader] = {};

 private:
  int status_;
};

// The dates of the first record and of the file's last bytes, as many as a record has, and the
// frequency that follows from them; a file without records has none. 0 or -4.
template <typename DateOf>
int readDates(SecurityFile& security, QvBars& info, DateOf dateOf) noexcept {
  InputFile& file = security.file;
  const RecordPlace& place = security.place;
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

// Lists the files of a format in a directory. describe(security, info) gives the description, dates and
// frequency of a file that could be opened; what it leaves out is listed as unknown.
using Describe = void (*)(SecurityFile& security, QvBars& info) noexcept;
int listSecurityFiles(const char* directory, const SecurityFormat& format, const char* output, int append,
                      Describe describe) noexcept;

}  // namespace qv::datafiles
