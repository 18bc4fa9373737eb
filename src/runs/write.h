// Bars as a text file with its layout.
#pragma once

#include <string>

#include "qvlib60.hpp"

namespace qv::runs {

// Writes a new file with a header line, numbers in full, and beside it the layout file txtinfo.txt. Throws
// qv::Error where the file exists, or a layout file with another layout does.
void writeText(const std::string& file, const QvBars& bars);

}  // namespace qv::runs
