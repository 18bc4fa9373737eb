#include "runs/load.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "core/bar_series.h"
#include "runs/csv.h"
#include "runs/directories.h"
#include "runs/words.h"

namespace qv::runs {

namespace fs = std::filesystem;

namespace {

std::string readText(const std::string& file) {
  struct Close {
    void operator()(std::FILE* f) const { std::fclose(f); }
  };
  const std::unique_ptr<std::FILE, Close> f(std::fopen(file.c_str(), "rb"));
  if (!f) throw Error(file, errno == ENOENT ? "no such file" : std::strerror(errno), QV_FILE_OPEN);
  std::string text;
  std::error_code ignored;
  if (const auto size = fs::file_size(file, ignored); !ignored)
    text.reserve(static_cast<std::size_t>(std::min<std::uintmax_t>(size, 1 << 30)) + 1);
  char piece[1 << 16];
  for (std::size_t n; (n = std::fread(piece, 1, sizeof piece, f.get())) > 0;) text.append(piece, n);
  if (std::ferror(f.get())) throw Error(file, std::strerror(errno), QV_FILE_READ);
  return text;
}

void copyText(const std::string& from, char* to, std::size_t size) {
  to[from.copy(to, size - 1)] = 0;
}

// By the usual distance of two bars, in days.
int frequencyOf(const Bars& b) {
  std::vector<double> gaps;
  for (int i = 1; i < b.barsize; ++i) gaps.push_back(b.date.data[i] - b.date.data[i - 1]);
  if (gaps.empty()) return QV_FREQ_UNKNOWN;
  std::nth_element(gaps.begin(), gaps.begin() + static_cast<std::ptrdiff_t>(gaps.size() / 2), gaps.end());
  const double usual = gaps[gaps.size() / 2];
  return usual <= 0.0    ? QV_FREQ_UNKNOWN
         : usual < 0.99  ? QV_FREQ_INTRADAY
         : usual < 5.0   ? QV_FREQ_DAILY
         : usual < 15.0  ? QV_FREQ_WEEKLY
         : usual < 45.0  ? QV_FREQ_MONTHLY
         : usual < 200.0 ? QV_FREQ_QUARTERLY
                         : QV_FREQ_YEARLY;
}

void fillInfo(const fs::path& path, Bars& bars) {
  copyText(path.parent_path().string(), bars.path, sizeof bars.path);
  copyText(path.filename().string(), bars.name, sizeof bars.name);
  copyText(path.stem().string(), bars.description, sizeof bars.description);
  copyText(path.stem().string(), bars.symbol, sizeof bars.symbol);
  bars.filetype = QV_FILETYPE_TEXT;
  bars.frequency = frequencyOf(bars);
}

// Bars without a date, and in text files without a close, are none: the readers give 0 for what they can't
// read.
void dropUnreadable(Loaded& loaded) {
  Bars& b = loaded.bars;
  const bool isText = loaded.type == "TXT";
  int kept = 0;
  for (int i = 0; i < b.barsize; ++i) {
    const bool noDate = b.date.data[i] == 0.0, noClose = isText && b.close.data[i] == 0.0;
    if (noDate || noClose) {
      loaded.leftOut.push_back({i + 1, noDate ? "no date" : "no close"});
      continue;
    }
    for (int k = 0; k < 7; ++k) {
      double* items = seriesOf(b, k).data;
      items[kept] = items[i];
    }
    ++kept;
  }
  if (kept < b.barsize) check(qvReSizeBars(&b, kept), b.path);
}

// A series of nothing but zeros was not in the file; below, as in CSV files.
void markUnknown(Bars& b) {
  for (int k = 1; k < 7; ++k) {
    QvArray& a = seriesOf(b, k);
    if (!std::all_of(a.data, a.data + a.size, [](double x) { return x == 0.0; })) continue;
    if (k < 4) std::copy(b.close.data, b.close.data + a.size, a.data);
    a.firstValid = a.size;
  }
}

Loaded loadOther(const std::string& file, const std::string& type, const fs::path& path) {
  const std::string directory = path.has_parent_path() ? path.parent_path().string() : ".",
                    name = path.filename().string();
  Loaded loaded;
  loaded.type = type;
  Bars& bars = loaded.bars;
  const int status = qvFILEread(type.c_str(), &bars, directory.c_str(), name.c_str(), 0, -1);
  if (status == QV_FILE_OPEN || status == QV_FILE_NOT_FOUND)
    throw Error(file, "not found; qv list " + directory + " shows what there is", status);
  check(status, file);
  if (bars.barsize > 0) {
    dropUnreadable(loaded);
    markUnknown(bars);
  }
  if (bars.barsize <= 0) throw Error(file, "no bars in it", QV_FILE_READ);
  if (bars.frequency == QV_FREQ_UNKNOWN) bars.frequency = frequencyOf(bars);
  return loaded;
}

}  // namespace

Loaded load(const std::string& file, const LoadOptions& options) {
  const fs::path path(file);
  std::error_code ignored;
  if (fs::is_directory(path, ignored))
    throw Error(file, "a directory; name a file or a security in it", QV_FILE_OPEN);
  const std::string type = options.type.empty() ? typeOfFile(file) : upper(options.type);
  Loaded loaded;
  if (type == "CSV") {
    loaded = readCsv(file, readText(file), options);
    fillInfo(path, loaded.bars);
  } else {
    loaded = loadOther(file, type, path);
  }
  Bars& b = loaded.bars;
  b.begindate = b.date.data[0];
  b.enddate = b.date.data[b.barsize - 1];
  return loaded;
}

}  // namespace qv::runs
