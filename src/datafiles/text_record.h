// The lines of a text price file as its layout describes them.
#pragma once

#include "core/bar.h"
#include "datafiles/text_fields.h"
#include "qvlib60/datafiles.h"

namespace qv::datafiles {

// Reads the values of one line at a time. Leading blanks of a line are ignored.
class TextRecord {
 public:
  explicit TextRecord(const QvTxtInfo& layout) noexcept;

  // Split as far as is needed for the date alone, for date and time, and for a whole bar. splitBar
  // answers false for a line of nothing but blanks.
  void splitDate(std::string_view line) noexcept;
  void splitDateTime(std::string_view line) noexcept;
  bool splitBar(std::string_view line) noexcept;

  // What does not read as a date or time gives 0.0, as does a column that the line does not have.
  double date() const noexcept;
  double dateTime() const noexcept;
  Bar bar() const noexcept;

 private:
  const QvTxtInfo layout_;
  const int timeColumn_;  // 0 when it is the date column
  Columns columns_;
};

}  // namespace qv::datafiles
