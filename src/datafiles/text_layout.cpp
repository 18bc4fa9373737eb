// The layout of text price files: reading and writing the record that says which column holds what.
#include <algorithm>
#include <cstdio>

#include "core/output_file.h"
#include "datafiles/line_reader.h"
#include "datafiles/paths.h"
#include "datafiles/text_fields.h"
#include "datafiles/texts.h"
#include "qvlib60/datafiles.h"

namespace {

using namespace qv::datafiles;
using qv::OutputFile;

static_assert(sizeof(QvTxtInfo) == 56);

// The settings that are plain numbers, in the order in which they are written.
struct NumberSetting {
  const char* key;
  int32_t QvTxtInfo::*field;
};
constexpr NumberSetting kNumbers[] = {
    {"skip", &QvTxtInfo::skip},
    {"dt", &QvTxtInfo::dateColumn},
    {"ti", &QvTxtInfo::timeColumn},
    {"op", &QvTxtInfo::openColumn},
    {"hi", &QvTxtInfo::highColumn},
    {"lo", &QvTxtInfo::lowColumn},
    {"cl", &QvTxtInfo::closeColumn},
    {"vol", &QvTxtInfo::volumeColumn},
    {"oi", &QvTxtInfo::openInterestColumn},
};

// The words for the order of the date's parts; the shape of the dates themselves is found out while
// they are read.
struct DateWord {
  const char* word;
  int format;
};
constexpr DateWord kDateWords[] = {
    {"N/A", 0},      {"YMD", 0},        {"MDY", 1},      {"DMY", 2},
    {"YY_MM_DD", 0}, {"CCYY_MM_DD", 0}, {"MM_DD_YY", 1}, {"MM_DD_CCYY", 1},
    {"DD_MM_YY", 2}, {"DD_MM_CCYY", 2}, {"YYMMDD", 0},   {"CCYYMMDD", 0},
    {"MMDDYY", 1},   {"MMDDCCYY", 1},   {"DDMMYY", 2},   {"DDMMCCYY", 2},
};

void readDelimiters(std::string_view value, QvTxtInfo& info) noexcept {
  value = value.substr(0, sizeof info.delimiters);
  char* out = info.delimiters;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] == '\\' && value.substr(i + 1, 1) == "t") {
      *out++ = '\t';
      ++i;
    } else {
      *out++ = value[i] == '_' ? ' ' : value[i];
    }
  }
}

void readSetting(std::string_view key, std::string_view value, QvTxtInfo& info) noexcept {
  if (qv::compareNoCase(key, "delimit") == 0) readDelimiters(value, info);
  if (qv::compareNoCase(key, "dtformat") == 0)
    for (const DateWord& w : kDateWords)
      if (qv::compareNoCase(trimmed(value), w.word) == 0) info.dateFormat = w.format;
  for (const NumberSetting& n : kNumbers)
    if (qv::compareNoCase(key, n.key) == 0) info.*n.field = integerValue(value);
}

void readLine(const Line& line, QvTxtInfo& info) noexcept {
  const std::string_view text = line.text.substr(0, line.text.find('\0'));
  const std::size_t equals = text.find('=');
  if (equals == text.npos) return;
  std::string_view value = text.substr(equals + 1);
  // The last character is taken for the newline, also where the file or the piece ends without one.
  const bool hasNewline = line.endsWithNewline && text.size() == line.text.size();
  if (!hasNewline && !value.empty()) value.remove_suffix(1);
  // Only blanks are trimmed: a tab at the end may be a delimiter.
  value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
  value = value.substr(0, value.find_last_not_of(' ') + 1);
  readSetting(trimmed(text.substr(0, equals)), value, info);
}

}  // namespace

extern "C" {

int QVCALL qvTXTreadinfo(const char* directory, const char* fileName, QvTxtInfo* info) noexcept {
  if (!directory || !fileName || !info) return QV_INVALID_PARM;
  InputFile file(directory, fileName);
  if (!file.ok()) return QV_FILE_OPEN;
  LineReader lines(file, kLayoutLine);
  if (!lines.ok()) return QV_MALLOC;

  QvTxtInfo read{};
  read.delimiters[0] = ' ';
  Line line;
  while (lines.next(line)) readLine(line, read);
  if (lines.failed()) return QV_FILE_READ;
  *info = read;
  return QV_OK;
}

int QVCALL qvTXTwriteinfo(const char* directory, const char* fileName, const QvTxtInfo* info) noexcept {
  if (!directory || !fileName || !info) return QV_INVALID_PARM;
  Path path = joinPath(directory, fileName);
  resolveCase(path);
  OutputFile out(path.text, false, qv::StdoutName::kFile);
  if (!out.ok()) return QV_FILE_OPEN;

  std::fputs("delimit  = ", out.stream());
  const std::string_view delimiters = textOf(info->delimiters);
  // A tab is written as itself where its two letters would push the last delimiters out of what is read.
  const auto tabs = static_cast<std::size_t>(std::count(delimiters.begin(), delimiters.end(), '\t'));
  const bool spelled = delimiters.size() + tabs <= sizeof info->delimiters;
  for (const char c : delimiters) {
    const bool letters = c == '\t' && spelled;
    if (letters) std::fputc('\\', out.stream());
    std::fputc(letters ? 't' : c == ' ' ? '_' : c, out.stream());
  }
  std::fputc('\n', out.stream());
  for (const NumberSetting& n : kNumbers) std::fprintf(out.stream(), "%-8s = %i\n", n.key, info->*n.field);
  const int format = info->dateFormat;
  std::fprintf(out.stream(), "dtformat = %s\n", format == 1 ? "MDY" : format == 2 ? "DMY" : "YMD");
  return out.finish() ? QV_OK : QV_FILE_WRITE;
}

}  // extern "C"
