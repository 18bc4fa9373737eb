// Directories of price files: what kind of files they hold, and what securities.
#pragma once

#include <string>
#include <vector>

namespace qv::runs {

// The type of a directory's files for qvFILEread, told by the files that are in it: "CT", "DJ", "TC", "TT",
// "TXT" (with a layout file txtinfo.txt), or "CSV", which also stands for a directory that has none of these.
std::string typeOfDirectory(const std::string& directory);

// One thing to read: a file, or a security of a vendor's directory.
struct Source {
  std::string file;  // as loadBars takes it
  std::string symbol;
};

}  // namespace qv::runs
