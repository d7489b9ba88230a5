#include "base/day_count.h"

#include <gtest/gtest.h>

#include <ctime>

#include "support/environment_variable.h"

namespace skv {
namespace {

constexpr double hour = 1.0 / 24;

TEST(DayCountTest, IsLocalByTheZonesRulesOfThatMoment) {
  constexpr std::int64_t january = 1011312000, july = 1026950400;  // 18th of 2002, 0:00 UTC
  const struct {
    const char* zone;
    double inJanuary, inJuly;  // hours off
  } zones[] = {{"UTC0", 0, 0},
               {"CET-1CEST,M3.5.0,M10.5.0/3", 1, 2},
               {"EST5EDT,M4.1.0,M10.5.0", -5, -4},
               {"AEST-10AEDT,M10.5.0,M3.5.0/3", 11, 10},
               {"<+0545>-5:45", 5.75, 5.75}};
  for (const auto& [zone, inJanuary, inJuly] : zones) {
    const test::Variable set("TZ", zone);
    ::tzset();
    EXPECT_DOUBLE_EQ(localDayCount(january, 0), 37274 + inJanuary * hour) << zone;
    EXPECT_DOUBLE_EQ(localDayCount(july, 0), 37455 + inJuly * hour) << zone;
  }
  const test::Variable set("TZ", "UTC0");
  ::tzset();
  EXPECT_EQ(localDayCount(-25569 * std::int64_t{86400}, 0), 0);
  EXPECT_DOUBLE_EQ(localDayCount(january + 43200, 500000000), 37274.5 + 0.5 / 86400);
  EXPECT_LT(localDayCount(january, 1000), localDayCount(january, 2000));
}

}  // namespace
}  // namespace skv
