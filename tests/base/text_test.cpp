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
  };
  for (const auto& [page, text, stored] : cases)
    EXPECT_EQ(storable(text, CodePage(page)), stored) << text;
}

TEST(TextTest, NamesWhatAPageLacksOnceEach) {
  const struct {
    int page;
    const char *text, *lacking;
  } cases[] = {{1252, "a\u00e9\u0141\u00e9\u0142\u0141\xef", "\u0141\u0142\xef"},
               {932, "\u30bb\u30b9\u30ca\u00e9\u30bb\u00e9\uff76", "\u00e9"},
               {65001, "\u0141\xef", ""}};
  for (const auto& [page, text, lacking] : cases)
    EXPECT_EQ(CodePage(page).lacking(text), lacking) << page;
}

TEST(TextTest, PutsLettersAndTheirAccentsTogether) {
  const std::string grave = "\u0300", below = "\u0323";
  std::string many;
  for (int count = 0; count < 100; ++count) many += grave + below;
  EXPECT_EQ(composed("e" + grave + "x"), "\u00e8x");
  EXPECT_EQ(composed("a" + grave + below), "\u1ea1" + grave);
  EXPECT_EQ(composed("\xff"
                     "e" +
                     grave),
            "\xff"
            "e" +
                grave);
  // So many are no letter's; those around them are looked at all the same.
  EXPECT_EQ(composed("e" + grave + "a" + many + "e" + grave),
            "\u00e8"
            "a" +
                many + "\u00e8");
  EXPECT_EQ(composed("e" + grave + "a" + many),
            "\u00e8"
            "a" +
                many);
}

}  // namespace skv::test
