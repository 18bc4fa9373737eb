#include "datafiles/security_file.h"

#include <cstdio>

#include "datafiles/listing.h"
#include "datafiles/texts.h"
#include "platform/platform.h"

namespace qv::datafiles {

SecurityName::SecurityName(const char* fileName, const char* extension) noexcept {
  const std::string_view name = trimmed(fileName).substr(0, kPathSize - 1);
  copyText(symbol, stemOf(name));
  const char* added = name.find('.') == name.npos ? extension : "";
  std::snprintf(file, sizeof file, "%.*s%s", static_cast<int>(name.size()), name.data(), added);
}

namespace {

struct Context {
  const char* directory;
  const char* extension;
  Describe describe;
  Listing* listing;
};

bool listFile(const char* fileName, void* context) noexcept {
  const auto& c = *static_cast<const Context*>(context);
  const SecurityName name(fileName, c.extension);
  QvBars info{};
  InputFile file(c.directory, name.file);
  if (file.ok()) c.describe(file, name, info);
  c.listing->add({name.file, name.symbol, info.description, info.frequency, info.begindate, info.enddate});
  return true;
}

}  // namespace

int listSecurityFiles(const char* directory, const char* extension, const char* output, int append,
                      Describe describe) noexcept {
  if (!directory || !output) return QV_INVALID_PARM;
  Listing listing(output, append);
  if (!listing.ok()) return QV_FILE_OPEN;
  Context context{directory, extension, describe, &listing};
  char pattern[8];
  std::snprintf(pattern, sizeof pattern, "*%s", extension);
  if (const int status = platform::listFiles(joinPath(directory, "").text, pattern, listFile, &context))
    return status;
  return listing.finish();
}

}  // namespace qv::datafiles
