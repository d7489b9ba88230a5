#include "base/text.h"

#include <gtest/gtest.h>

namespace skv::test {

// Every pair, so that no lead byte swallows or changes what follows it.
TEST(TextTest, EveryByteComesBackFromACodePage) {
  for (const int number : {1250, 1252, 1253, 932, 950, 437, 65001}) {
    const CodePage page(number);
    for (int pair = 0; pair < 0x10000; ++pair) {
      const std::string bytes{static_cast<char>(pair >> 8), static_cast<char>(pair)};
      ASSERT_EQ(page.encode(page.decode(bytes)), bytes) << number << " " << pair;
    }
  }
}

TEST(TextTest, ValReadsTheLeadingNumber) {
  for (const char* row : {"12|12", " 1 2 .5x|12.5", "-3|-3", "+.5|0.5", "1,5|1", "1.2.3|1.2",
                          "1e3|1000", "1D2|100", "2e|2", "2e-x|2", "37614.75 |37614.75"})
    EXPECT_DOUBLE_EQ(val(split(row, '|')[0]), std::stod(split(row, '|')[1])) << row;
  for (const char* none : {"", "abc", "0x10", "inf", "nan", "1e999", "--1", "e5"})
    EXPECT_EQ(val(none), 0) << none;
}

TEST(TextTest, WhatAPageLacksIsStoredByItsLikeness) {
  const struct {
    int page;
    const char* text;
    const char* stored;
  } cases[] = {
      {1252, "Caf\u00e9 737", "Caf\u00e9 737"},
      {1252, "Łódź", "Lódz"},
      {1250, "Łódź", "Łódź"},
      {1252, "\u041c\u0438\u0413-21", "MiG-21"},
      {1252, "na\xefve", "na\u00efve"},
      // Half a character, which would become another one with a letter or a path's backslash.
      {932,
       "\x81"
       "A\u65e5\x83",
       "_A\u65e5_"},
  };
  for (const auto& [page, text, stored] : cases)
    EXPECT_EQ(storable(text, CodePage(page)), stored) << text;
  const CodePage japanese(932);
  const std::string half = japanese.decode("\x81");
  EXPECT_EQ(japanese.lacking(half + "A"), half);
  EXPECT_EQ(japanese.lacking("\u65e5\u672c \u0142\u0142"), "\u0142");
}

}  // namespace skv::test
