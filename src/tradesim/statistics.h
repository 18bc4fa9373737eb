// Running performance figures.
#pragma once

#include "qvlib60/tradesim/records.h"

namespace qv::tradesim {

// Takes one closed trade into the long or the short block, and brings the net block up to date.
void addToStatistics(QvOrderSystem& sys, const QvTrade& trade) noexcept;

}  // namespace qv::tradesim
