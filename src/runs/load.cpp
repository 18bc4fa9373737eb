#include "runs/load.h"

#include <filesystem>

#include "runs/directories.h"

namespace qv::runs {

namespace fs = std::filesystem;

Bars loadBars(const std::string& file, const LoadOptions& options) {
  const fs::path path(file);
  if (fs::is_directory(path))
    throw Error(file, "a directory; name a security in it as DIR/NAME", QV_FILE_OPEN);
  const std::string directory = path.has_parent_path() ? path.parent_path().string() : ".";
  const std::string type = options.type.empty() ? typeOfDirectory(directory) : options.type;
  Bars bars;
  check(qvFILEread(type.c_str(), &bars, directory.c_str(), path.filename().c_str(), 0, -1), file);
  return bars;
}

}  // namespace qv::runs
