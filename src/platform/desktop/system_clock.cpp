#include "platform/desktop/system_clock.h"

#include <chrono>
#include <ctime>

namespace skv {

double SystemClock::now() const {
  using namespace std::chrono;
  constexpr double secondsOfDay = 86400;
  constexpr double dayOfEpoch = 25569;  // 1 January 1970, counted from 30 December 1899
  const auto time = system_clock::now();
  const std::time_t seconds = system_clock::to_time_t(time);
  std::tm local{};
  ::localtime_r(&seconds, &local);
  const double fraction = duration<double>(time - system_clock::from_time_t(seconds)).count();
  return dayOfEpoch +
         (static_cast<double>(seconds) + static_cast<double>(local.tm_gmtoff) + fraction) /
             secondsOfDay;
}

}  // namespace skv
