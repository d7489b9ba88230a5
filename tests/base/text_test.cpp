#include "base/text.h"

#include <gtest/gtest.h>

#include <cmath>

namespace skv {
namespace {

TEST(TextTest, UpperKeepsTheNumberOfCharactersAndStrangeBytes) {
  // One character has no capital of two.
  for (const char* row :
       {"Boeing 737-400|BOEING 737-400", "caf\u00e9|CAF\u00c9", "stra\u00dfe|STRA\u00dfE",
        "\u00ff \u0131 \ufb01|\u0178 I \ufb01", "a\xe9z\xff|A\xe9Z\xff", "\xc3|\xc3",
        "\u00e9\xc3|\u00c9\xc3", "\U00010428|\U00010400"})
    EXPECT_EQ(upper(split(row, '|')[0]), split(row, '|')[1]) << row;
  EXPECT_TRUE(equalsIgnoringCase("Textur\u00c9\xfe", "texTUR\u00e9\xfe"));
  EXPECT_FALSE(equalsIgnoringCase("a\xe9", "a\xc9")) << "bytes that are no text have no case";
}

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

TEST(TextTest, CodePagesTellTheirCharacters) {
  const struct {
    int page;
    const char* bytes;
    const char* text;
  } cases[] = {
      {1252, "\x80 \xe9 \x9f", "\u20ac \u00e9 \u0178"},
      {1250, "\xb9 \xe8", "\u0105 \u010d"},
      {932, "\x83\x5c\xb1z", "\u30bd\uff71z"},
      {65001, "\u4e2d\xff", "\u4e2d\xff"},
      {99999, "\x80", "\u20ac"},  // an unknown page is 1252
      {37, "a\x80", "a\u20ac"},   // and so is one that is not ASCII below 128
  };
  for (const auto& [page, bytes, text] : cases) {
    EXPECT_EQ(CodePage(page).decode(bytes), text) << page;
    EXPECT_EQ(CodePage(page).encode(text), bytes) << page;
  }
  EXPECT_EQ(CodePage(1252).encode("\u4e2d \u0105 \U0001f600"), "? ? ?");
  EXPECT_EQ(CodePage(1250).encode("\u00f8"), "?");
  EXPECT_EQ(CodePage(1252).lacking("\u0141\u00f3d\u017a \u0141\u017a"), "\u0141\u017a");
  EXPECT_EQ(CodePage(1250).lacking("\u0141\u00f3d\u017a"), "");
}

TEST(TextTest, ValReadsTheLeadingNumber) {
  for (const char* row : {"12|12", " 1 2 .5x|12.5", "-3|-3", "+.5|0.5", "1,5|1", "1.2.3|1.2",
                          "1e3|1000", "1D2|100", "2e|2", "2e-x|2", "37614.75 |37614.75"})
    EXPECT_DOUBLE_EQ(val(split(row, '|')[0]), std::stod(split(row, '|')[1])) << row;
  for (const char* none : {"", "abc", "0x10", "inf", "nan", "1e999", "--1", "e5"})
    EXPECT_EQ(val(none), 0) << none;
}

TEST(TextTest, DecimalIsPlainAndReadsBack) {
  for (const char* text : {"0", "46350.5", "-1.25", "0.1", "100", "1000000000000000", "0.000001",
                           "46350.123456789", "0.3", "123456789012346000000"})
    EXPECT_EQ(decimal(val(text)), text);
  EXPECT_EQ(decimal(-0.0), "0");
  EXPECT_EQ(decimal(HUGE_VAL), "0");
  EXPECT_EQ(decimal(0.30000000000000004), "0.3");
  EXPECT_EQ(decimal(9.9999999999999999), "10");
}

TEST(TextTest, SplitAndTrim) {
  EXPECT_EQ(split("a\\", '\\'), (std::vector<std::string>{"a", ""}));
  EXPECT_EQ(split("", '\\'), (std::vector<std::string>{""}));
  EXPECT_EQ(trim("  a b "), "a b");
  EXPECT_EQ(trim("   "), "");
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
      {1252, "o\u0301\U0001F6E9", "ó_"},
      {1252, "na\xefve", "na\u00efve"},
  };
  for (const auto& [page, text, stored] : cases)
    EXPECT_EQ(storable(text, CodePage(page)), stored) << text;
}

}  // namespace
}  // namespace skv
