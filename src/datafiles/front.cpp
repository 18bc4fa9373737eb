// The front of the data files: one finder, lister and reader for all formats, chosen by a type text,
// and the printed bar information.
#include <cstring>
#include <iterator>

#include "core/numbers.h"
#include "core/output_file.h"
#include "datafiles/bar_info.h"
#include "datafiles/text_fields.h"
#include "datafiles/texts.h"
#include "dates/pictures.h"
#include "qvlib60/datafiles.h"
#include "qvlib60/dates.h"

namespace {

using namespace qv::datafiles;

// The functions of one format, by its code. Text files, which need a layout besides, have none here.
struct Family {
  decltype(&qvCSIfindrec) findrec;
  decltype(&qvCSIlist) list;
  decltype(&qvCSIread) read;
};
constexpr Family kFamilies[] = {
    {},
    {qvCSIfindrec, qvCSIlist, qvCSIread},
    {qvCTfindrec, qvCTlist, qvCTread},
    {qvDJfindrec, qvDJlist, qvDJread},
    {qvFSfindrec, qvFSlist, qvFSread},
    {qvTCfindrec, qvTClist, qvTCread},
    {qvTTfindrec, qvTTlist, qvTTread},
    {},
    {qvAIQfindrec, qvAIQlist, qvAIQread},
};
static_assert(std::size(kFamilies) == QV_FILETYPE_AIQ + 1);

// "7" and "TXT" mean the layout file of that name by convention; any other type text that is not a
// format's names the layout file.
int readLayout(const char* type, const char* directory, QvTxtInfo& layout) noexcept {
  const bool usual = std::strcmp(type, "7") == 0 || qv::compareNoCase(type, "TXT") == 0;
  return qvTXTreadinfo(directory, usual ? "txtinfo.txt" : type, &layout);
}

void printDate(std::FILE* out, const char* label, double date) noexcept {
  using namespace qv::dates;
  if (!qv::isNonZero(date)) return;
  char text[kPictureRoom];
  qvFormatDate(date, defaultPicture(Picture::Date), text);
  std::fprintf(out, "%-13s%s\n", label, text);
}

template <std::size_t N>
void printText(std::FILE* out, const char* label, const char (&field)[N]) noexcept {
  const std::string_view text = textOf(field);
  std::fprintf(out, "%-13s%.*s\n", label, static_cast<int>(text.size()), field);
}

}  // namespace

extern "C" {

int QVCALL qvFILEtype(const char* type) noexcept {
  if (!type) return QV_INVALID_PARM;
  const int code = integerValue(type);
  if (code > QV_FILETYPE_UNKNOWN && code <= QV_FILETYPE_AIQ) return code;
  struct Name {
    const char* text;
    int code;
  };
  constexpr Name kNames[] = {{"AIQ", QV_FILETYPE_AIQ},         {"CSI", QV_FILETYPE_CSI},
                             {"CT", QV_FILETYPE_COMPUTRAC},    {"DJ", QV_FILETYPE_DOWJONES},
                             {"FS", QV_FILETYPE_FUTURESOURCE}, {"TC", QV_FILETYPE_TELECHART},
                             {"TT", QV_FILETYPE_TECHTOOLS}};
  for (const Name& name : kNames)
    if (qv::compareNoCase(type, name.text) == 0) return name.code;
  return QV_FILETYPE_TEXT;
}

int QVCALL qvFILEfindrec(const char* type, const char* directory, const char* fileName, double date,
                         double* foundDate) noexcept {
  if (foundDate) *foundDate = 0.0;
  if (!type || !directory || !fileName) return QV_INVALID_PARM;
  const int code = qvFILEtype(type);
  if (code == QV_FILETYPE_TEXT) {
    QvTxtInfo layout;
    if (const int status = readLayout(type, directory, layout)) return status;
    return qvTXTfindrec(directory, fileName, &layout, date, foundDate);
  }
  return kFamilies[code].findrec(directory, fileName, date, foundDate);
}

int QVCALL qvFILElist(const char* type, const char* directory, const char* output, int append) noexcept {
  if (!type || !directory || !output) return QV_INVALID_PARM;
  const int code = qvFILEtype(type);
  if (code == QV_FILETYPE_TEXT) return qvTXTlist(directory, output, append);
  return kFamilies[code].list(directory, output, append);
}

int QVCALL qvFILEread(const char* type, QvBars* bars, const char* directory, const char* fileName, int start,
                      int count) noexcept {
  if (!type || !bars || !directory || !fileName) return QV_INVALID_PARM;
  const int code = qvFILEtype(type);
  if (code == QV_FILETYPE_TEXT) {
    QvTxtInfo layout;
    if (const int status = readLayout(type, directory, layout)) return status;
    return qvTXTread(bars, directory, fileName, &layout, start, count);
  }
  return kFamilies[code].read(bars, directory, fileName, start, count);
}

int QVCALL qvFILEprintinfo(const QvBars* bars, const char* output, int append) noexcept {
  if (!bars || !output) return QV_INVALID_PARM;
  qv::OutputFile file(output, append != 0);
  if (!file.ok()) return QV_FILE_OPEN;
  std::FILE* out = file.stream();
  std::fprintf(out, "barsize      %i\ndatasize     %i\nreccnt       %i\n", bars->barsize, bars->datasize,
               bars->reccnt);
  printText(out, "path", bars->path);
  printText(out, "name", bars->name);
  printText(out, "symbol", bars->symbol);
  printText(out, "description", bars->description);
  if (bars->cusip[0]) printText(out, "cusip", bars->cusip);
  printDate(out, "begindate", bars->begindate);
  printDate(out, "enddate", bars->enddate);
  std::fprintf(out, "frequency    %s\ndatatype     %s\n", frequencyName(bars->frequency),
               dataTypeName(bars->datatype));
  if (bars->optiontype) std::fprintf(out, "optiontype   %s\n", optionTypeName(bars->optiontype));
  printDate(out, "deliverydate", bars->deliverydate);
  if (qv::isNonZero(bars->strikeprice))
    std::fprintf(out, "strikeprice  %8lld.%02i\n",
                 static_cast<long long>(qv::truncatedInt64(bars->strikeprice)),
                 qvDecimals(bars->strikeprice, 2));
  std::fprintf(out, "filetype     %s\n", fileTypeName(bars->filetype));
  return file.finish() ? QV_OK : QV_FILE_WRITE;
}

}  // extern "C"
