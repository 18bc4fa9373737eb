#include "runs/directories.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace qv::runs {

namespace fs = std::filesystem;

namespace {

std::string upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

}  // namespace

std::string typeOfDirectory(const std::string& directory) {
  std::string type = "CSV";
  std::error_code failed;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory, failed)) {
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

}  // namespace qv::runs
