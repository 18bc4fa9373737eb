// Calendar steps that the text functions share.
#pragma once

namespace qv::dates {

// The two-digit-year rule: below the cutoff (negative years too) + 2000, else below 100 + 1900;
// other years as they are.
int widenedYear(int year) noexcept;

}  // namespace qv::dates
