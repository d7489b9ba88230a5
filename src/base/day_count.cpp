#include "base/day_count.h"

#include <ctime>

namespace skv {

double localDayCount(std::int64_t seconds, std::int32_t nanoseconds) {
  constexpr std::int64_t secondsOfDay = 86400;
  constexpr std::int64_t dayOfEpoch = 25569;  // 1 January 1970, counted from 30 December 1899
  const std::time_t moment = seconds;
  std::tm zone{};
  const bool known = ::localtime_r(&moment, &zone) != nullptr;
  const std::int64_t local = seconds + (known ? zone.tm_gmtoff : 0) + dayOfEpoch * secondsOfDay;
  // In one division, which rounds once.
  return (static_cast<double>(local) + static_cast<double>(nanoseconds) * 1e-9) / secondsOfDay;
}

}  // namespace skv
