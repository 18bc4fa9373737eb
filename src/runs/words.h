// Words in capitals, to be compared in any case.
#pragma once

#include <algorithm>
#include <string>

#include "core/characters.h"

namespace qv::runs {

inline std::string upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), upperCase);
  return text;
}

}  // namespace qv::runs
