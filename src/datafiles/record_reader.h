// Records of one length in a binary file: read one after the other in large blocks, or searched by
// date.
#pragma once

#include <algorithm>

#include "core/bar.h"
#include "core/memory.h"
#include "datafiles/binary_fields.h"
#include "datafiles/paths.h"
#include "datafiles/record_range.h"
#include "qvlib60/core.h"

namespace qv::datafiles {

class RecordReader {
 public:
  // Begins where the file stands. Test ok() after construction: not so when the memory is exhausted.
  // There are no records of length 0.
  RecordReader(InputFile& file, std::size_t recordSize) noexcept
      : file_(file),
        recordSize_(recordSize),
        block_(kBlockSize),
        wanted_(recordSize ? kBlockSize / recordSize * recordSize : 0) {}

  bool ok() const noexcept { return block_.ok(); }

  // The next record, valid until the next call. Null at the end of the file, where the rest of a
  // broken record is dropped, and when reading fails.
  const Byte* next() noexcept {
    if (next_ == end_ && !readBlock()) return nullptr;
    const Byte* record = block_.data() + next_;
    next_ += recordSize_;
    return record;
  }

  bool seek(std::int64_t offset) noexcept {
    next_ = end_ = 0;
    return file_.seek(offset);
  }

  // Hands up to `count` records to store(i, record), i from 0; their number.
  template <typename Store>
  int read(int count, Store store) noexcept {
    int stored = 0;
    for (const Byte* record; stored < count && (record = next()); ++stored) store(stored, record);
    return stored;
  }

  // The result of a reader: 0, or -4 when the file could not be read on.
  int status() const noexcept { return file_.failed() ? QV_FILE_READ : QV_OK; }

 private:
  static constexpr std::size_t kBlockSize = std::size_t{1} << 16;

  bool readBlock() noexcept {
    end_ = wanted_ ? file_.read(block_.data(), wanted_) : 0;
    end_ -= recordSize_ ? end_ % recordSize_ : 0;
    next_ = 0;
    return end_ > 0;
  }

  InputFile& file_;
  const std::size_t recordSize_;
  memory::Buffer<Byte> block_;
  const std::size_t wanted_;
  std::size_t next_ = 0;  // the part of the block not yet handed out: next_ .. end_
  std::size_t end_ = 0;
};

// A file whose size tells of more records is no data file: ten thousand years of days. A sparse file of some
// gigabytes costs no disk, but would take all memory.
inline constexpr std::int64_t kMostRecords = std::int64_t{1} << 22;

// Where the records of a data file lie.
struct RecordPlace {
  std::int64_t first;  // offset of record 0
  std::size_t recordSize;
  int records;
};

struct RecordBytes {
  static constexpr std::size_t kLongest = 32;
  Byte bytes[kLongest] = {};
};

// One record by its number; false when it cannot be read.
inline bool readRecord(InputFile& file, const RecordPlace& place, int number, RecordBytes& record) noexcept {
  return file.seek(place.first + number * static_cast<std::int64_t>(place.recordSize)) &&
         file.read(record.bytes, place.recordSize) == place.recordSize;
}

// Whether the first record of the file is later than its last one, as `is`; false when they cannot be read. A
// directory may count records beyond the file's end.
template <typename DateOf>
bool tellNewestFirst(InputFile& file, const RecordPlace& place, DateOf dateOf, bool& is) noexcept {
  is = false;
  if (place.recordSize == 0) return true;
  const std::int64_t held = (file.size() - place.first) / static_cast<std::int64_t>(place.recordSize);
  const int last = static_cast<int>(std::min<std::int64_t>(held, place.records)) - 1;
  if (last <= 0) return true;
  RecordBytes first, other;
  if (!readRecord(file, place, 0, first) || !readRecord(file, place, last, other)) return false;
  is = dateOf(first.bytes) > dateOf(other.bytes);
  return true;
}

// The number of the record with this date or, when there is none, of the record with the nearest later
// one, by halving: the records are taken to be in order, as the two ends of the file tell it.
// dateOf(bytes) gives dates in any measure that rises with time. -9 when the date is before the oldest
// or after the newest record, -4 when a record cannot be read; else `found` is the record.
template <typename DateOf>
int findDate(InputFile& file, const RecordPlace& place, double date, DateOf dateOf,
             RecordBytes& found) noexcept {
  bool newestFirst;
  if (!tellNewestFirst(file, place, dateOf, newestFirst)) return QV_FILE_READ;
  // The records before number `low` do not come up to the date, or are all later.
  RecordBytes before, at;
  int low = 0, high = place.records;
  while (low < high) {
    const int middle = low + (high - low) / 2;
    RecordBytes record;
    if (!readRecord(file, place, middle, record)) return QV_FILE_READ;
    const double itsDate = dateOf(record.bytes);
    if (newestFirst ? itsDate > date : itsDate < date) {
      low = middle + 1;
      before = record;
    } else {
      high = middle;
      at = record;
    }
  }
  const bool exact = low < place.records && dateOf(at.bytes) == date;
  const bool between = low > 0 && low < place.records;
  if (!exact && !between) return QV_RECORD_NOT_FOUND;  // also when the date is not a number
  const bool laterOneIsBefore = newestFirst && !exact;
  found = laterOneIsBefore ? before : at;
  return laterOneIsBefore ? low - 1 : low;
}

// The same for a finder whose dates are date numbers: *foundDate (may be null) receives that of the record.
template <typename DateOf>
int findDate(InputFile& file, const RecordPlace& place, double date, DateOf dateOf,
             double* foundDate) noexcept {
  RecordBytes found;
  const int number = findDate(file, place, date, dateOf, found);
  if (number >= 0 && foundDate) *foundDate = dateOf(found.bytes);
  return number;
}

// Reads a range of a file's records into a bar set and gives it the bar information: decode(record) is
// the bar of each record, up to the end of the file, also beyond the records that `place` counts. A count of
// 0 fills only the bar information. 0, what recordRange answers, `seekError`, -3 and -4.
template <typename Decode>
int readBars(InputFile& file, const RecordPlace& place, const QvBars& info, QvBars& bars, int start,
             int count, int seekError, Decode decode) noexcept {
  RecordReader records(file, place.recordSize);
  if (!records.ok()) return QV_MALLOC;
  if (const int status = recordRange(bars, place.records, start, count)) return status;
  qvCopyBarInfo(&info, &bars);
  qvReSizeBars(&bars, 0);
  if (count == 0) return QV_OK;
  if (!records.seek(place.first + start * static_cast<std::int64_t>(place.recordSize))) return seekError;
  const auto store = [&](int i, const Byte* record) { storeBar(bars, i, decode(record)); };
  qvReSizeBars(&bars, records.read(count, store));
  return records.status();
}

}  // namespace qv::datafiles
