// Listing the text price files of a directory.
#include <cstdio>

#include "datafiles/listing.h"
#include "datafiles/paths.h"
#include "datafiles/texts.h"
#include "platform/names.h"
#include "platform/platform.h"
#include "qvlib60/datafiles.h"
#include "qvlib60/dates.h"

namespace {

using namespace qv::datafiles;

struct Context {
  Path prefix;
  Listing* listing;
};

double modificationDate(const char* path) noexcept {
  int year, month, day;
  if (!qv::platform::modificationDate(path, &year, &month, &day)) return 0.0;
  return qvYMDtoDate(year, month, day, 0, 0, 0);
}

bool listFile(const char* longName, void* context) noexcept {
  const auto& c = *static_cast<const Context*>(context);
  char path[2 * kPathSize], shortName[kPathSize];
  std::snprintf(path, sizeof path, "%s%s", c.prefix.text, longName);
  qv::platform::shortName(path, shortName, sizeof shortName);
  if (qv::platform::compareNoCase(shortName, "TXTINFO.TXT") == 0) return true;
  char symbol[kPathSize];
  copyText(symbol, stemOf(shortName));
  c.listing->add({shortName, symbol, longName, 0, 0.0, modificationDate(path)});
  return true;
}

}  // namespace

extern "C" {

int QVCALL qvTXTlist(const char* directory, const char* output, int append) noexcept {
  if (!directory || !output) return QV_INVALID_PARM;
  Listing listing(output, append);
  if (!listing.ok()) return QV_FILE_OPEN;
  Context context{joinPath(directory, ""), &listing};
  for (const char* pattern : {"*.ASC", "*.CSV", "*.PRN", "*.TXT"})
    if (const int status = qv::platform::listFiles(context.prefix.text, pattern, listFile, &context))
      return status;
  return listing.finish();
}

}  // extern "C"
