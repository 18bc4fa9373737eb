// Directory listings: the layout that the listers of all formats share.
#pragma once

#include "core/output_file.h"
#include "qvlib60/core.h"

namespace qv::datafiles {

// One data file. Texts are cut to their columns (12, 16 and 48 characters).
struct ListingLine {
  const char* fileName;
  const char* symbol;
  const char* description;
  int frequency;     // code of the bar information
  double firstDate;  // date numbers, printed in the default format; 0 prints "Unknown"
  double lastDate;
};

// A listing that begins with its header lines. Test ok() after construction: an output that cannot be
// opened is -2.
class Listing {
 public:
  Listing(const char* output, int append) noexcept;

  bool ok() const noexcept { return out_.ok(); }
  void add(const ListingLine& line) noexcept;
  // The lister's result: 0, or -5 when some of it could not be written.
  int finish() noexcept { return out_.finish() ? QV_OK : QV_FILE_WRITE; }

 private:
  OutputFile out_;
};

}  // namespace qv::datafiles
