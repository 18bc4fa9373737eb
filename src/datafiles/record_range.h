// Which records a read takes, by the rules that all readers share.
//
// A reader first turns the caller's start and count into a range (this allocates an empty bar set),
// then fills the bar information, and returns early when the count is 0.
#pragma once

#include "qvlib60/core.h"

namespace qv::datafiles {

// Allocates a bar set without storage to `count` bars and cuts `count` to the set's capacity. 0; -1 for
// a bar set with a series that cannot hold them; -3. The bars to come are meaningful from the first on.
int fitToBars(QvBars& bars, int& count) noexcept;

// The range in a file of `records` records, oldest first: a negative count means to the end (all
// records for a start of 0 or less), a negative start the last `count` records. 0, -9 when start is not
// below the number of records, or what fitToBars answers. The range may reach beyond the file's end.
int recordRange(QvBars& bars, int records, int& start, int& count) noexcept;
// The same for a single series.
int recordRange(QvArray& array, int records, int& start, int& count) noexcept;

}  // namespace qv::datafiles
