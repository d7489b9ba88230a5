#include "platform/desktop/system_clock.h"

#include <ctime>

#include "base/day_count.h"

namespace skv {

double SystemClock::now() const {
  timespec time{};
  ::clock_gettime(CLOCK_REALTIME, &time);
  return localDayCount(time.tv_sec, static_cast<std::int32_t>(time.tv_nsec));
}

}  // namespace skv
