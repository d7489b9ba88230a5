// Times as stored text has them: a count of days.
#pragma once

#include <cstdint>

namespace skv {

// Days since 30 December 1899 in local time, daylight saving by the zone's rules for that moment,
// the time of day as the fraction. The moment is given in seconds since 1 January 1970 UTC and the
// nanoseconds after it. In this century the double keeps steps of less than a microsecond, so two
// times of one file system may become equal here; times are compared before they are converted.
double localDayCount(std::int64_t seconds, std::int32_t nanoseconds);

}  // namespace skv
