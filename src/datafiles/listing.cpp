#include "datafiles/listing.h"

#include "core/numbers.h"
#include "datafiles/bar_info.h"
#include "dates/pictures.h"
#include "qvlib60/dates.h"

namespace qv::datafiles {

namespace {

struct DateText {
  char text[dates::kPictureRoom] = "Unknown";

  explicit DateText(double date) noexcept {
    if (isNonZero(date)) qvFormatDate(date, dates::defaultPicture(dates::Picture::Date), text);
  }
};

}  // namespace

Listing::Listing(const char* output, int append) noexcept : out_(output, append != 0) {
  if (!out_.ok()) return;
  std::fputs(
      "File Name    Symbol           Description                                      Frequency First Date "
      "Last Date \n"
      "------------ ---------------- ------------------------------------------------ --------- ---------- "
      "----------\n",
      out_.stream());
}

void Listing::add(const ListingLine& line) noexcept {
  const DateText first(line.firstDate), last(line.lastDate);
  std::fprintf(out_.stream(), "%-12.12s %-16.16s %-48.48s %-9.9s %-10.10s %s\n", line.fileName, line.symbol,
               line.description, frequencyName(line.frequency), first.text, last.text);
}

}  // namespace qv::datafiles
