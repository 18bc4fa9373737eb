// CSV files as data sites write them.
#pragma once

#include <string>
#include <string_view>

#include "runs/load.h"

namespace qv::runs {

// Reads a file's text. What it holds besides the bars is filled in, but not what the file's name tells.
Loaded readCsv(const std::string& file, std::string_view text, const LoadOptions& options);

}  // namespace qv::runs
