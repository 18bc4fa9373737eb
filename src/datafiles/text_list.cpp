// Listing the text price files of a directory.
#include <cstdio>

#include "datafiles/directory.h"
#include "datafiles/listing.h"
#include "datafiles/paths.h"
#include "datafiles/texts.h"
#include "platform/platform.h"
#include "qvlib60/datafiles.h"
#include "qvlib60/dates.h"

namespace {

using namespace qv::datafiles;

double modificationDate(const char* path) noexcept {
  int year, month, day;
  if (!qv::platform::modificationDate(path, &year, &month, &day)) return 0.0;
  return qvYMDtoDate(year, month, day, 0, 0, 0);
}

// The layout file of that name is no data file.
void listFile(const Path& prefix, const char* longName, Listing& listing) noexcept {
  char path[2 * kPathSize], shortName[kPathSize];
  std::snprintf(path, sizeof path, "%s%s", prefix.text, longName);
  qv::platform::shortName(path, shortName, sizeof shortName);
  if (qv::compareNoCase(shortName, "TXTINFO.TXT") == 0) return;
  char symbol[kPathSize];
  copyText(symbol, stemOf(shortName));
  listing.add({shortName, symbol, longName, 0, 0.0, modificationDate(path)});
}

}  // namespace

extern "C" {

int QVCALL qvTXTlist(const char* directory, const char* output, int append) noexcept {
  if (!directory || !output) return QV_INVALID_PARM;
  Listing listing(output, append);
  if (!listing.ok()) return QV_FILE_OPEN;
  const Path prefix = joinPath(directory, "");
  for (const char* extension : {".ASC", ".CSV", ".PRN", ".TXT"}) {
    const DirectoryFiles files(directory, extension);
    if (!files.ok()) return QV_MALLOC;
    for (std::size_t i = 0; i < files.count(); ++i) listFile(prefix, files[i], listing);
  }
  return listing.finish();
}

}  // extern "C"
