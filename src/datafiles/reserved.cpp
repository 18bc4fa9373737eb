// CSI, FutureSource and AIQ: the formats have their codes and functions, but no layout is published
// that a reader could follow. Finders and readers answer -10 and touch nothing; the listings are empty.
#include "datafiles/listing.h"
#include "qvlib60/datafiles.h"

namespace {

int emptyListing(const char* directory, const char* output, int append) noexcept {
  if (!directory || !output) return QV_INVALID_PARM;
  qv::datafiles::Listing listing(output, append);
  return listing.ok() ? listing.finish() : QV_FILE_OPEN;
}

}  // namespace

extern "C" {

int QVCALL qvCSIfindrec(const char*, const char*, double, double*) noexcept {
  return QV_UNKNOWN;
}
int QVCALL qvCSIlist(const char* directory, const char* output, int append) noexcept {
  return emptyListing(directory, output, append);
}
int QVCALL qvCSIread(QvBars*, const char*, const char*, int, int) noexcept {
  return QV_UNKNOWN;
}

int QVCALL qvFSfindrec(const char*, const char*, double, double*) noexcept {
  return QV_UNKNOWN;
}
int QVCALL qvFSlist(const char* directory, const char* output, int append) noexcept {
  return emptyListing(directory, output, append);
}
int QVCALL qvFSread(QvBars*, const char*, const char*, int, int) noexcept {
  return QV_UNKNOWN;
}

int QVCALL qvAIQfindrec(const char*, const char*, double, double*) noexcept {
  return QV_UNKNOWN;
}
int QVCALL qvAIQlist(const char* directory, const char* output, int append) noexcept {
  return emptyListing(directory, output, append);
}
int QVCALL qvAIQread(QvBars*, const char*, const char*, int, int) noexcept {
  return QV_UNKNOWN;
}

}  // extern "C"
