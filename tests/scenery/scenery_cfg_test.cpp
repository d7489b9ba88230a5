#include "scenery/scenery_cfg.h"

#include <gtest/gtest.h>

#include "scenery/scenery_list_files.h"
#include "scenery/scenery_row.h"
#include "support/text.h"

namespace skv::test {

const CodePage page;

TEST(SceneryCfgTest, ReadsWhatASimulatorAndAnEditorWrite) {
  const SceneryCfg cfg = parseSceneryCfg(
      "; by hand\r\n[general]\nCACHE_SIZE = 12 MB\r\nOther=1\r\n"
      "[AREA.002]\r\ntitle=\" Alps \"\r\nLayer= 7.6\r\nLocal=Addon Scenery\\Alps\r\nactive=true\r\n"
      "Flatten.0=a\r\nFlatten.9=c\r\nFlatten.4=b\r\nExclude=x\x05y\r\nExclude.10=never\r\n"
      "[Area.003]\r\nLayer=3\r\n"
      "[Area.004]\r\nTitle=Sea\r\nActive=yes\r\nRemote=\\\\srv\\scenedb\\x\r\n",
      page);
  EXPECT_EQ(cfg.Cache_Size + cfg.Clean_On_Exit, "12 MB");
  ASSERT_EQ(cfg.areas.size(), 2U);
  EXPECT_TRUE(cfg.areas[0].Active && !cfg.areas[1].Active);
  const SceneryRow row = rowOfArea(cfg.areas[0]);
  EXPECT_EQ(row.Name + row.Area + row.Layer + row.SortLayer, " Alps 0027.6008");
  EXPECT_EQ(row.Flatten + row.Exclude, coded(";a;b;cx y"));
  EXPECT_TRUE(!IsBuiltInArea(row) && IsBuiltInArea(rowOfArea(cfg.areas[1])));
  EXPECT_TRUE(IsBuiltInArea({.Folder = "SceneDB\\x"}) && IsBuiltInArea({.Folder = "scenery"}));
  EXPECT_FALSE(IsBuiltInArea({.Folder = "Scenery\\World"}) || IsBuiltInArea({}));
  std::string keys;
  for (const char* layer : {"", "12", " 3x", "1000", "1e400", "-5"}) keys += sortLayer(layer) + " ";
  EXPECT_EQ(keys, "000 012 003 1000 000 -005 ");
}

TEST(SceneryCfgTest, StopsAfterElevenMissingNumbersAndCountsWhatItDidNotReach) {
  const auto read = [](const std::string& numbers) {
    std::string text;
    for (const std::string& number : split(numbers, ' '))
      text += "[Area." + number + "]\r\nTitle=x\r\n";
    const SceneryCfg cfg = parseSceneryCfg(text + "[Area.003]\r\nTitel=x\r\n", page);
    std::string unreached;
    for (const std::string& area : cfg.unreached) unreached += area.substr(5) + ";";
    return std::pair(cfg.areas.size(), unreached);
  };
  EXPECT_EQ(read("001 002 013"), std::pair(3UL, std::string("003 (no title);")));
  EXPECT_EQ(read("001 002 014 999"), std::pair(2UL, std::string("014: x;999: x;003 (no title);")));
  EXPECT_EQ(read("001 002 002 1000 1"),
            std::pair(2UL, std::string("002 (there twice);1000: x;1: x;003 (no title);")));
}

TEST(SceneryCfgTest, LosesNoCharacterOfAnArea) {
  SceneryCfg cfg;
  cfg.areas.push_back({.Title = " \"Köln\"", .Local = "'x'", .Flatten = {"a", "b"}});
  cfg.areas.push_back({.Title = "two\r\nlines]", .Remote = "\"q\"", .Exclude = {"", "e"}});
  const SceneryCfg again = parseSceneryCfg(sceneryCfgBytes(cfg, page), page);
  ASSERT_EQ(again.areas.size(), 2U);
  EXPECT_EQ(again.areas[0].Title + again.areas[0].Local, " \"Köln\"'x'");
  EXPECT_EQ(again.areas[1].Title + again.areas[1].Remote, "two  lines]\"q\"");
  EXPECT_EQ(areaOfRow(rowOfArea(again.areas[0])).Flatten, (Lines{"a", "b"}));
  EXPECT_EQ(areaOfRow(rowOfArea(again.areas[1])).Exclude, (Lines{"", "e"}));
}

TEST(SceneryListFilesTest, ReadBackWhateverTheFieldsHold) {
  const auto rows =
      parseSceneryLibrary(coded("\n\r\nFoo|x\\Foo\r\n\nA|B|1|2|3|4|5|6|7|more\n"), page);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].Name + rows[0].Folder + rows[0].Area + rows[1].Exclude, "Foox\\Foo7");
  EXPECT_EQ(sceneryLibraryBytes({{.Name = coded("a|b\r\n"), .Exclude = coded("c;d")}}, page),
            coded("a b  ||||||||c;d\r\n"));

  const std::string bytes =
      sceneryCacheBytes({37654.4537152778, {{.Name = "Rom", .active = true}}}, page);
  EXPECT_TRUE(bytes.starts_with(coded("37654.4537152778\r\nTrue|Rom||"))) << bytes;
  const SceneryCache read = parseSceneryCache(bytes, page);
  EXPECT_EQ(read.stamp, 37654.4537152778);
  EXPECT_TRUE(read.rows.size() == 1 && read.rows[0].active);
  // What a line cannot hold is read from the database each time.
  for (const char* name : {"a\x01", "Ж"})
    EXPECT_EQ(parseSceneryCache(sceneryCacheBytes({1.5, {{.Name = name}}}, page), page).stamp, 0);
}

}  // namespace skv::test
