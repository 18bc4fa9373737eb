// Directories of price files: what kind of files they hold, and what there is to read.
#pragma once

#include <string>
#include <vector>

namespace qv::runs {

// The type of a directory's files for qvFILEread, told by the files that are in it: "CT", "DJ", "TC", "TT",
// "TXT" (with a layout file txtinfo.txt), or "CSV", which also stands for a directory that has none of these.
std::string typeOfDirectory(const std::string& directory);

// The same for a file, or a security of a directory: a text file beside those of a vendor is one all the
// same.
std::string typeOfFile(const std::string& file);

// One thing to read: a text file, or a security of a vendor's directory.
struct Source {
  std::string file;  // as load() takes it
  std::string type;
  std::string symbol;
  // What the directory tells of a vendor's security.
  std::string description, frequency, first, last;
};

// What is in a directory, in the order of names or, for vendors' directories, of their lists. Throws
// qv::Error where it can't be read.
std::vector<Source> sourcesOf(const std::string& directory, const std::string& type = "");

}  // namespace qv::runs
