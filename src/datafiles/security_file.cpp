#include "datafiles/security_file.h"

#include <algorithm>
#include <cstdio>

#include "core/numbers.h"
#include "datafiles/directory.h"
#include "datafiles/listing.h"
#include "datafiles/texts.h"

namespace qv::datafiles {

SecurityName::SecurityName(const char* fileName, const char* extension) noexcept {
  const std::string_view name = trimmed(fileName).substr(0, kPathSize - 1);
  copyText(symbol, stemOf(name));
  const char* added = name.find('.') == name.npos ? extension : "";
  std::snprintf(file, sizeof file, "%.*s%s", static_cast<int>(name.size()), name.data(), added);
}

SecurityFile::SecurityFile(const char* directory, const char* fileName, const SecurityFormat& f) noexcept
    : format(f), name(fileName, f.extension), file(directory, name.file), status_(QV_FILE_OPEN) {
  if (!file.ok()) return;
  const std::int64_t records =
      file.size() / static_cast<std::int64_t>(f.recordSize) - static_cast<std::int64_t>(f.headerRecords);
  place = {static_cast<std::int64_t>(f.headerRecords * f.recordSize), f.recordSize,
           std::max(saturate(records), 0)};
  status_ = records > kMostRecords || file.read(header, f.headerSize) < f.headerSize ? QV_FILE_READ : QV_OK;
}

QvBars SecurityFile::newInfo(const char* directory) const noexcept {
  QvBars info = newBarInfo(format.type, place.records, directory);
  copyText(info.name, name.file);
  copyText(info.symbol, name.symbol);
  return info;
}

int listSecurityFiles(const char* directory, const SecurityFormat& format, const char* output, int append,
                      Describe describe) noexcept {
  if (!directory || !output) return QV_INVALID_PARM;
  Listing listing(output, append);
  if (!listing.ok()) return QV_FILE_OPEN;
  const DirectoryFiles files(directory, format.extension);
  if (!files.ok()) return QV_MALLOC;
  for (std::size_t i = 0; i < files.count(); ++i) {
    SecurityFile security(directory, files[i], format);
    QvBars info{};
    if (security.file.ok()) describe(security, info);
    listing.add({security.name.file, security.name.symbol, info.description, info.frequency, info.begindate,
                 info.enddate});
  }
  return listing.finish();
}

}  // namespace qv::datafiles
