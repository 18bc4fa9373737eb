#include "runs/directories.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "core/characters.h"
#include "qvlib60.hpp"
#include "runs/temporary_file.h"
#include "runs/words.h"

namespace qv::runs {

namespace fs = std::filesystem;

namespace {

bool isTextFile(const fs::path& path) {
  const std::string extension = upper(path.extension().string());
  return (extension == ".CSV" || extension == ".TXT" || extension == ".PRN" || extension == ".ASC") &&
         upper(path.filename().string()) != "TXTINFO.TXT";
}

std::vector<Source> textFiles(const std::string& directory, const std::string& type) {
  std::vector<Source> sources;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
    if (!isTextFile(entry.path()) || entry.is_directory()) continue;
    sources.push_back({entry.path().string(), type, entry.path().stem().string(), "", "", "", ""});
  }
  std::sort(sources.begin(), sources.end(), [](const Source& a, const Source& b) { return a.file < b.file; });
  return sources;
}

// The library's list of a vendor's directory: two header lines, then columns of fixed width.
std::vector<Source> listedSecurities(const std::string& directory, const std::string& type) {
  const TemporaryFile list;
  check(qvFILElist(type.c_str(), directory.c_str(), list.path.string().c_str(), 0), directory);
  std::ifstream lines(list.path);
  std::string line;
  std::vector<Source> sources;
  const auto column = [&](std::size_t begin, std::size_t width) {
    std::string text = begin < line.size() ? line.substr(begin, width) : "";
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
  };
  for (int i = 0; std::getline(lines, line); ++i) {
    if (i < 2) continue;
    sources.push_back({(fs::path(directory) / column(0, 12)).string(), type, column(13, 16), column(30, 48),
                       column(79, 9), column(89, 10), column(100, 10)});
  }
  return sources;
}

}  // namespace

std::string typeOfDirectory(const std::string& directory) {
  std::string type = "CSV";
  std::error_code failed;
  for (const fs::directory_entry& entry :
       fs::directory_iterator(directory.empty() ? "." : directory, failed)) {
    const std::string name = upper(entry.path().filename().string());
    const std::string extension = upper(entry.path().extension().string());
    if (name == "MASTER" || name == "XMASTER") return "CT";
    if (name == "MAPINFO.DAT") return "DJ";
    if (name == "TXTINFO.TXT") return "TXT";
    if (extension == ".NDX") type = "TC";
    if (extension == ".TTD") type = "TT";
  }
  return type;
}

std::string typeOfFile(const std::string& file) {
  const fs::path path(file);
  std::error_code ignored;
  const std::string type = typeOfDirectory(path.parent_path().string());
  return type != "TXT" && isTextFile(path) && fs::is_regular_file(path, ignored) ? "CSV" : type;
}

std::vector<Source> sourcesOf(const std::string& directory, const std::string& type) {
  std::error_code failed;
  const fs::directory_iterator opened(directory, failed);
  if (failed) throw Error(directory, failed.message(), QV_FILE_OPEN);
  const std::string kind = type.empty() ? typeOfDirectory(directory) : upper(type);
  return kind == "CSV" || kind == "TXT" ? textFiles(directory, kind) : listedSecurities(directory, kind);
}

}  // namespace qv::runs
