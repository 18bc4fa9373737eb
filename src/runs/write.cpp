#include "runs/write.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace qv::runs {

namespace fs = std::filesystem;

namespace {

constexpr const char* kLayoutFile = "txtinfo.txt";

// The series from the opens on, with their columns in a layout.
struct Column {
  const char* heading;
  int32_t QvTxtInfo::*number;
  const QvArray QvBars::*series;

  bool isIn(const QvBars& bars) const { return (bars.*series).firstValid < bars.barsize; }
};
constexpr Column kColumns[] = {{"Open", &QvTxtInfo::openColumn, &QvBars::open},
                               {"High", &QvTxtInfo::highColumn, &QvBars::high},
                               {"Low", &QvTxtInfo::lowColumn, &QvBars::low},
                               {"Close", &QvTxtInfo::closeColumn, &QvBars::close},
                               {"Volume", &QvTxtInfo::volumeColumn, &QvBars::volume},
                               {"OpenInterest", &QvTxtInfo::openInterestColumn, &QvBars::openInterest}};

bool hasTimes(const QvBars& bars) {
  return std::any_of(bars.date.data, bars.date.data + bars.barsize,
                     [](double date) { return date != std::floor(date); });
}

QvTxtInfo layoutOf(const QvBars& bars) {
  QvTxtInfo layout = {};
  int column = 0;
  layout.dateColumn = ++column;
  if (hasTimes(bars)) layout.timeColumn = ++column;
  for (const Column& c : kColumns)
    if (c.isIn(bars)) layout.*c.number = ++column;
  layout.skip = 1;
  layout.delimiters[0] = ',';
  return layout;
}

// A layout file of the directory must say the same: it is that of all its files.
void writeLayout(const std::string& directory, const QvTxtInfo& layout) {
  const std::string path = (fs::path(directory) / kLayoutFile).string();
  QvTxtInfo other;
  if (qvTXTreadinfo(directory.c_str(), kLayoutFile, &other) == QV_OK) {
    if (std::memcmp(&other, &layout, sizeof layout) == 0) return;
    throw Error(path, "another layout than that of the new file: write into a directory of its own",
                QV_FILE_EXISTS);
  }
  if (const int status = qvTXTwriteinfo(directory.c_str(), kLayoutFile, &layout); status < 0)
    throw Error(path, fs::is_directory(directory) ? "can't be written there" : "there is no such directory",
                status);
}

std::string textOf(double x) {
  if (!std::isfinite(x)) return "N/A";  // an empty cell would be none
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, x).ptr};
}

}  // namespace

void writeText(const std::string& file, const QvBars& bars) {
  const fs::path path(file);
  const std::string directory = path.has_parent_path() ? path.parent_path().string() : ".";
  if (fs::exists(path)) throw Error(file, "exists already", QV_FILE_EXISTS);
  const QvTxtInfo layout = layoutOf(bars);
  writeLayout(directory, layout);
  const bool times = layout.timeColumn > 0;
  std::string text = times ? "Date,Time" : "Date";
  for (const Column& c : kColumns)
    if (c.isIn(bars)) text += std::string(",") + c.heading;
  text += '\n';
  for (int i = 0; i < bars.barsize; ++i) {
    int year, month, day, hour, minute, second;
    qvDateToYMD(bars.date.data[i], &year, &month, &day, &hour, &minute, &second);
    char date[96];
    std::snprintf(date, sizeof date, times ? "%04d-%02d-%02d,%02d:%02d:%02d" : "%04d-%02d-%02d", year, month,
                  day, hour, minute, second);
    text += date;
    for (const Column& c : kColumns)
      if (c.isIn(bars)) text += "," + textOf((bars.*c.series).data[i]);
    text += '\n';
  }
  std::FILE* f = std::fopen(file.c_str(), "wb");
  if (!f) throw Error(file, std::strerror(errno), QV_FILE_OPEN);
  const bool written = std::fwrite(text.data(), 1, text.size(), f) == text.size();
  if (std::fclose(f) != 0 || !written) throw Error(file, std::strerror(errno), QV_FILE_WRITE);
}

}  // namespace qv::runs
