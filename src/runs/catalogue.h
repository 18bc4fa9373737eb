// Calculations by names that people write.
#pragma once

#include <string>

namespace qv::runs {

// "rsii: no such calculation, did you mean rsi?", or with other words behind it where no name is near.
std::string noSuchCalculation(const std::string& name, const std::string& otherwise = "");

}  // namespace qv::runs
