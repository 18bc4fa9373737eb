// Works that several entries of the catalogue go back to, and notes that several share.
#pragma once

namespace qv::catalogue {

inline constexpr const char kWilder[] =
    "J. Welles Wilder Jr., New Concepts in Technical Trading Systems, 1978";
inline constexpr const char kChandeKroll[] =
    "Tushar S. Chande and Stanley Kroll, The New Technical Trader, 1994";
inline constexpr const char kAchelis[] = "Steven B. Achelis, Technical Analysis from A to Z, 1995";

inline constexpr const char kSeeded[] =
    "Seeded with the first value, and valid from it on; charts that seed with the average of the first p "
    "values "
    "differ until both have forgotten where they began.";
inline constexpr const char kCascade[] =
    "Every smoothing begins with the first value; charts that begin each one p - 1 bars after the one "
    "before, or "
    "seed it with an average, differ until both have forgotten where they began.";

}  // namespace qv::catalogue
