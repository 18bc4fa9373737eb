// The sequence in which a bar's orders are tried.
#pragma once

#include "qvlib60/tradesim/records.h"

namespace qv::tradesim {

// Below 0: a is tried first; above 0: b; 0: they keep their places. Contradicts itself for a market
// sell entry beside a buy entry, where each comes before the other.
int compareOrders(const QvOrder& a, const QvOrder& b) noexcept;

// Stable; ends, and stays in the table, with a comparison that contradicts itself too.
void sortOrders(QvOrder* orders, int count) noexcept;

}  // namespace qv::tradesim
